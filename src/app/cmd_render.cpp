// pagewright render: a report printed for many records - keys given, read from a file or
// chosen by a condition - to one PDF, a PDF per record, or a PNG or SVG per page, streamed
// page by page through the report engine.
#include "Subcommands.h"

#include "document/RdfPaper.h"
#include "entry/ReportKinds.h"
#include "host/DataFolder.h"
#include "host/DemoData.h"
#include "host/EmbeddedHost.h"
#include "output/RenderKeys.h"
#include "output/ReportEngine.h"
#include "output/ReportOutput.h"

#include <QElapsedTimer>
#include <QFile>
#include <cstdio>
#include <unistd.h>

namespace {

void err(const QString& text) { std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData()); }

const char* const kUsage =
    "usage: pagewright render REPORT.rdf KEYS OUTPUT [--kind K] [--no-new-page] [--paper NAME] [--landscape]\n"
    "                         [--quiet] [--threads N] [--data DIR] [--sql-log FILE]\n"
    "  KEYS:   --key KEY [--key KEY ...] | --keys-file FILE (\"-\": standard input)\n"
    "          | --where \"CONDITION\" [--order-by EXPR] | --all;  then optionally --shard I/N\n"
    "  OUTPUT: --pdf OUT.pdf | --pdf-each DIR | --png DIR [--dpi N] | --svg DIR\n"
    "  NAME:   Letter, Legal, Tabloid, A4, A5, or WxHin / WxHmm (e.g. 8.5x14in)";

// Every value of a repeated option, empty ones included (so that an empty key can be named).
QStringList takeAll(QStringList& args, const QString& name, bool* present)
{
    QStringList values;
    for (;;) {
        const int before = int(args.size());
        const QString v = TakeOption(args, name, QString());
        if (args.size() == before)
            break;
        values << v;
    }
    *present = !values.isEmpty();
    return values;
}

bool takeOne(QStringList& args, const QString& name, QString* value)
{
    const int before = int(args.size());
    *value = TakeOption(args, name, QString());
    return args.size() != before;
}

// Records done, pages a second and time left, rewritten in place on a terminal.
class Progress {
public:
    explicit Progress(bool show) : m_show(show) { m_timer.start(); }
    bool operator()(int done, int total)
    {
        if (!m_show || (m_timer.elapsed() - m_last < 250 && done < total))
            return true;
        m_last = m_timer.elapsed();
        const double secs = std::max(0.001, m_timer.elapsed() / 1000.0);
        const double rate = done / secs;
        const double left = rate > 0 ? (total - done) / rate : 0;
        std::fprintf(stderr, "\r%d of %d records, %.0f records/s, %d:%02d left   ", done, total, rate, int(left) / 60,
                     int(left) % 60);
        if (done >= total)
            std::fprintf(stderr, "\n");
        std::fflush(stderr);
        return true;
    }

private:
    bool m_show;
    QElapsedTimer m_timer;
    qint64 m_last = -1000;
};

int runRender(const QStringList& argsIn)
{
    QStringList args = argsIn;
    bool haveKey = false, haveKeysFile = false, haveWhere = false;
    const QStringList givenKeys = takeAll(args, QStringLiteral("--key"), &haveKey);
    QString keysFile, where, orderBy, shardText, paperName, dpiText, sqlLog, threadsText;
    haveKeysFile = takeOne(args, QStringLiteral("--keys-file"), &keysFile);
    haveWhere = takeOne(args, QStringLiteral("--where"), &where);
    const bool haveOrder = takeOne(args, QStringLiteral("--order-by"), &orderBy);
    const bool all = TakeFlag(args, QStringLiteral("--all"));
    const bool haveShard = takeOne(args, QStringLiteral("--shard"), &shardText);
    QString pdf, pdfEach, png, svg;
    const int outputs = int(takeOne(args, QStringLiteral("--pdf"), &pdf)) + int(takeOne(args, QStringLiteral("--pdf-each"), &pdfEach)) +
                        int(takeOne(args, QStringLiteral("--png"), &png)) + int(takeOne(args, QStringLiteral("--svg"), &svg));
    const bool haveDpi = takeOne(args, QStringLiteral("--dpi"), &dpiText);
    const bool haveThreads = takeOne(args, QStringLiteral("--threads"), &threadsText);
    const bool havePaper = takeOne(args, QStringLiteral("--paper"), &paperName);
    const bool landscape = TakeFlag(args, QStringLiteral("--landscape"));
    const bool portrait = TakeFlag(args, QStringLiteral("--portrait"));
    const bool quiet = TakeFlag(args, QStringLiteral("--quiet"));
    takeOne(args, QStringLiteral("--sql-log"), &sqlLog);
    const QString kindName = TakeOption(args, QStringLiteral("--kind"), QStringLiteral("listings"));
    const bool noNewPage = TakeFlag(args, QStringLiteral("--no-new-page"));
    const QString dir = DataFolder::ResolveDataFolder(args);
    const int reportKind = ReportKindFromName(kindName);

    // Say exactly what is wrong; the usage alone leaves the user guessing.
    const int sources = int(haveKey) + int(haveKeysFile) + int(haveWhere || haveOrder) + int(all);
    QString problem;
    if (reportKind == 0)
        problem = QStringLiteral("Unknown report kind '%1'").arg(kindName);
    else if (haveKey && !EmptyKeyMessage(givenKeys).isEmpty())
        problem = EmptyKeyMessage(givenKeys);
    else if (args.size() != 1)
        problem = QString::fromLatin1(kUsage);
    else if (sources == 0)
        problem = QStringLiteral("Which records? Give --key, --keys-file, --where or --all\n") + QString::fromLatin1(kUsage);
    else if (sources > 1)
        problem = QStringLiteral("Give only one of --key, --keys-file, --where and --all");
    else if (outputs != 1)
        problem = QStringLiteral("Give one output: --pdf, --pdf-each, --png or --svg\n") + QString::fromLatin1(kUsage);
    else if (haveKeysFile && keysFile.isEmpty())
        problem = QStringLiteral("--keys-file needs a file name (\"-\" for standard input)");
    else if (haveShard && !RenderKeys::ParseShard(shardText))
        problem = QStringLiteral("--shard wants I/N with 1 <= I <= N, e.g. --shard 2/8; not '%1'").arg(shardText);
    else if (havePaper && !RdfPaper::FromName(paperName))
        problem = QStringLiteral("Unknown paper '%1': use Letter, Legal, Tabloid, A4, A5 or a size such as 8.5x14in or 210x297mm").arg(paperName);
    else if (landscape && portrait)
        problem = QStringLiteral("Give --landscape or --portrait, not both");
    int dpi = 150;
    if (problem.isEmpty() && haveDpi) {
        bool ok = false;
        dpi = dpiText.toInt(&ok);
        if (!ok || dpi < 10 || dpi > 2400 || png.isEmpty())
            problem = png.isEmpty() ? QStringLiteral("--dpi goes with --png") : QStringLiteral("--dpi wants a number from 10 to 2400");
    }
    int threads = 0;
    if (problem.isEmpty() && haveThreads) {
        bool ok = false;
        threads = threadsText.toInt(&ok);
        if (!ok || threads < 1 || threads > 64)
            problem = QStringLiteral("--threads wants a number from 1 to 64; not '%1'").arg(threadsText);
    }
    if (!problem.isEmpty()) {
        err(problem);
        return 2;
    }

    try {
        std::unique_ptr<EmbeddedHost> host = EmbeddedHost::Open(dir);
        if (!sqlLog.isEmpty() && !host->SetSqlLog(sqlLog))
            throw HostError(HostErr::FileAccess, QStringLiteral("Cannot append to ") + sqlLog);
        gHost = host.get();
        ReportEngine engine;
        ReportOptions options;
        options.databaseKind = DictionaryKindOf(reportKind);
        options.newPagePerRecord = !noNewPage;
        options.threads = threads;
        if (havePaper)
            options.paper = RdfPaper::FromName(paperName)->PageSize();
        if (landscape || portrait)
            options.landscape = landscape;
        Progress progress(!quiet && ::isatty(STDERR_FILENO));
        options.progress = [&progress](int done, int total) { return progress(done, total); };
        engine.SetOptions(options);
        try {
            engine.Load(args[0]);
        } catch (const HostError& e) {
            err(QStringLiteral("Report Designer File error: ") + e.Text());
            return 1;
        }

        QStringList keys = givenKeys;
        if (haveKeysFile) {
            QFile in;
            const bool opened = keysFile == QLatin1String("-") ? in.open(stdin, QIODevice::ReadOnly) : (in.setFileName(keysFile), in.open(QIODevice::ReadOnly));
            if (!opened)
                throw HostError(HostErr::FileNotFound, QStringLiteral("Cannot read the keys file ") + keysFile);
            keys = RenderKeys::Read(in);
        } else if (haveWhere || haveOrder || all) {
            std::unique_ptr<FieldDictionary> dic = host->NewFieldDictionary(options.databaseKind);
            keys = RenderKeys::Select(*dic, where, orderBy);
        }
        if (haveShard) {
            const auto [index, count] = *RenderKeys::ParseShard(shardText);
            keys = RenderKeys::Shard(keys, index, count);
        }
        if (keys.isEmpty()) {
            err(QStringLiteral("No records to print"));
            return 1;
        }

        std::unique_ptr<PageOutput> out;
        if (!pdf.isEmpty())
            out = std::make_unique<PdfFileOutput>(pdf);
        else if (!pdfEach.isEmpty())
            out = std::make_unique<PdfEachOutput>(pdfEach);
        else if (!png.isEmpty())
            out = std::make_unique<PageImageOutput>(png, PageImageOutput::Png, dpi);
        else
            out = std::make_unique<PageImageOutput>(svg, PageImageOutput::Svg, 1440);

        QElapsedTimer timer;
        timer.start();
        engine.Print(keys, *out);
        // Records that are gone are named; the rest still print, as a long run should.
        for (const QString& k : engine.MissingKeys())
            std::printf("%s Not Found\n", qPrintable(k));
        for (const QString& w : engine.Warnings())
            err(QStringLiteral("Warning: ") + w);
        if (engine.PrintedKeys().isEmpty())
            return 1;
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

PW_SUBCOMMAND("render",
              "render REPORT.rdf (--key KEY ... | --keys-file FILE | --where COND [--order-by EXPR] | --all) [--shard I/N]\n"
              "                  (--pdf OUT.pdf | --pdf-each DIR | --png DIR [--dpi N] | --svg DIR) [--paper NAME] [--landscape]\n"
              "                  [--kind K] [--no-new-page] [--threads N] [--quiet] [--sql-log FILE]",
              "print a report for many records to PDF, PNG or SVG", runRender);
