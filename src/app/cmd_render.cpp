// pagewright render: a report and record keys to a PDF, through the report engine.
#include "Subcommands.h"

#include "entry/ReportKinds.h"
#include "host/DataFolder.h"
#include "host/DemoData.h"
#include "host/EmbeddedHost.h"
#include "output/ReportEngine.h"

#include <QElapsedTimer>
#include <cstdio>

namespace {

void err(const QString& text) { std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData()); }

int runRender(const QStringList& argsIn)
{
    QStringList args = argsIn;
    const QString usage = QStringLiteral(
        "usage: pagewright render REPORT.rdf --key KEY [--key KEY ...] --pdf OUT.pdf [--kind K] [--no-new-page] [--data DIR]");
    const QStringList keys = TakeOptions(args, QStringLiteral("--key"));
    if (const QString empty = EmptyKeyMessage(keys); !empty.isEmpty()) {
        err(empty);
        return 2;
    }
    const QString pdf = TakeOption(args, QStringLiteral("--pdf"));
    const QString kindName = TakeOption(args, QStringLiteral("--kind"), QStringLiteral("listings"));
    const bool noNewPage = TakeFlag(args, QStringLiteral("--no-new-page"));
    const QString dir = DataFolder::ResolveDataFolder(args);
    const int reportKind = ReportKindFromName(kindName);
    if (args.size() != 1 || keys.isEmpty() || pdf.isEmpty() || reportKind == 0) {
        err(reportKind == 0 ? QStringLiteral("Unknown report kind '%1'").arg(kindName) : usage);
        return 2;
    }
    try {
        if (!DemoDataExists(dir)) {
            err(QStringLiteral("Preparing the demo data in %1 ...").arg(dir));
            GenerateDemoData(dir);
        }
        std::unique_ptr<EmbeddedHost> host = EmbeddedHost::Open(dir);
        gHost = host.get();
        ReportEngine engine;
        ReportOptions options;
        options.databaseKind = DictionaryKindOf(reportKind);
        options.newPagePerRecord = !noNewPage;
        engine.SetOptions(options);
        try {
            engine.Load(args[0]);
        } catch (const HostError& e) {
            err(QStringLiteral("Report Designer File error: ") + e.Text());
            return 1;
        }
        QElapsedTimer timer;
        timer.start();
        engine.Run(keys);
        // Records that are gone are named; the rest still print, as a long run should.
        for (const QString& k : engine.MissingKeys())
            std::printf("%s Not Found\n", qPrintable(k));
        if (engine.PrintedKeys().isEmpty())
            return 1;
        engine.WritePdf(pdf);
        std::printf("Pages: %d\n", engine.PageCount());
        std::printf("Keys: %s\n", qPrintable(engine.PrintedKeys().join(QLatin1Char(' '))));
        std::printf("Time: %lld ms\n", static_cast<long long>(timer.elapsed()));
    } catch (const HostError& e) {
        err(e.Text());
        return 1;
    }
    return 0;
}

} // namespace

PW_SUBCOMMAND("render", "render REPORT.rdf --key KEY [--key KEY ...] --pdf OUT.pdf [--kind K] [--no-new-page]",
              "print a report for one or more records to a PDF", runRender);
