// Batch commands on report files: dump, resave, dataview. They run the designer's own
// document code on an offscreen page, so they show exactly what the designer would.
#include "Subcommands.h"

#include "design/OffscreenPage.h"
#include "design/RptImage.h"
#include "document/RdfFile.h"
#include "document/clsRptControl.h"
#include "entry/ReportKinds.h"
#include "host/DataFolder.h"
#include "host/DemoData.h"
#include "host/EmbeddedHost.h"

#include <QFileInfo>
#include <cstdio>

namespace {

void err(const QString& text) { std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData()); }

// The host of a data folder; one that is not prepared is an error (nothing is generated).
std::unique_ptr<EmbeddedHost> openHost(QStringList& args)
{
    const QString dir = DataFolder::ResolveDataFolder(args);
    auto host = EmbeddedHost::Open(dir);
    const QString log = TakeOption(args, QStringLiteral("--sql-log"));
    if (!log.isEmpty() && !host->SetSqlLog(log))
        throw HostError(HostErr::FileAccess, QStringLiteral("Cannot append to ") + log);
    return host;
}

int reportKindOption(QStringList& args)
{
    const QString k = TakeOption(args, QStringLiteral("--kind"), QStringLiteral("listings"));
    const int kind = ReportKindFromName(k);
    if (kind == 0)
        throw HostError(HostErr::SqlSyntax, QStringLiteral("Unknown report kind '%1'").arg(k));
    return kind;
}

struct BatchDocument {
    OffscreenPage page;
    std::unique_ptr<FieldDictionary> dictionary;
    clsRptControl doc;
    explicit BatchDocument(TervaneCommon* host, int reportKind)
    {
        gHost = host;
        if (host)
            dictionary = host->NewFieldDictionary(DictionaryKindOf(reportKind));
        doc.Init(dictionary.get(), &page, nullptr);
        doc.SetSelectionManager(&page);
    }
    ~BatchDocument() { doc.UnloadReport(); }
};

int runDump(const QStringList& argsIn)
{
    QStringList args = argsIn;
    // Accepted as by every subcommand; a dump sends no statement to the host.
    TakeOption(args, QStringLiteral("--sql-log"));
    // "~Graphics~" in a picture's name stands for the data folder's Graphics folder; the
    // folder need not hold a database for that.
    const QString dir = DataFolder::ResolveDataFolder(args);
    if (args.size() != 2) {
        err(QStringLiteral("usage: pagewright dump REPORT.rdf OUT.txt [--data DIR] [--sql-log FILE]"));
        return 2;
    }
    try {
        BatchDocument b(nullptr, ReportKind::Listings);
        RptImage::SetGraphicsFolder(DataFolder::HostPathOf(dir) + QStringLiteral("\\Graphics\\"));
        b.doc.LoadReport(args[0]);
        if (b.doc.RptItemCount() == 0) {
            err(QStringLiteral("%1 has no items: nothing written").arg(args[0]));
            return 0;
        }
        b.doc.DmpReport(args[1]);
    } catch (const HostError& e) {
        err(QStringLiteral("Report Designer File error: ") + e.Text());
        return 1;
    }
    return 0;
}

int runResave(const QStringList& argsIn)
{
    QStringList args = argsIn;
    const bool isStatic = TakeFlag(args, QStringLiteral("--static"));
    try {
        const int kind = reportKindOption(args);
        // The stored field lists need the dictionary's expressions: use the data folder's host.
        std::unique_ptr<EmbeddedHost> host = openHost(args);
        if (args.size() != 2) {
            err(QStringLiteral("usage: pagewright resave REPORT.rdf OUT.rdf [--static] [--kind K] [--data DIR]"));
            return 2;
        }
        BatchDocument b(host.get(), kind);
        b.doc.LoadReport(args[0]);
        if (b.doc.RptItemCount() == 0) {
            err(QStringLiteral("%1 has no items: nothing written").arg(args[0]));
            return 0;
        }
        return b.doc.SaveReport(args[1], isStatic) ? 0 : 1;
    } catch (const HostError& e) {
        err(e.Text());
        return 1;
    }
}

QString kindName(int t)
{
    static const char* const names[] = {"", "Field", "Label", "Box", "Line", "Image", "NewPage", "SubReport", "DateTime", "Section"};
    return t >= 1 && t <= 9 ? QLatin1String(names[t]) : QStringLiteral("Kind%1").arg(t);
}

int runDataview(const QStringList& argsIn)
{
    QStringList args = argsIn;
    try {
        const int kind = reportKindOption(args);
        const QStringList keys = TakeOptions(args, QStringLiteral("--key"));
        if (const QString empty = EmptyKeyMessage(keys); !empty.isEmpty()) {
            err(empty);
            return 2;
        }
        const QString key = keys.value(0);
        bool ok1 = true, ok2 = true;
        const int first = TakeOption(args, QStringLiteral("--first"), QStringLiteral("0")).toInt(&ok1);
        const int last = TakeOption(args, QStringLiteral("--last"), QStringLiteral("0")).toInt(&ok2);
        std::unique_ptr<EmbeddedHost> host = openHost(args);
        if (args.size() != 1 || keys.size() != 1 || !ok1 || !ok2) {
            err(QStringLiteral("usage: pagewright dataview REPORT.rdf --key KEY [--first N --last M] [--kind K] [--data DIR] [--sql-log FILE]"));
            return 2;
        }
        BatchDocument b(host.get(), kind);
        b.doc.LoadReport(args[0]);
        if (!clsRptControl::KeyIsSafe(b.dictionary->DatabaseKind(), key)) {
            err(QStringLiteral("Invalid entry - please try again: %1 is not a key for this report kind").arg(key));
            return 2;
        }
        b.doc.DataView = true;
        if (!b.doc.RefreshData(key, first, last)) {
            std::printf("%s Not Found\n", qPrintable(key));
            return 1;
        }
        b.doc.AutoFillId = key;
        for (int i = 1; i <= b.doc.RptItemCount(); ++i) {
            const ItemRecord& r = b.doc.Item(i);
            QString shown;
            if (r.ObjectType == ObjType::Image)
                shown = DisplayPath(clsRptControl::Prop(r.control, "FileName").toString());
            else if (r.ObjectType == ObjType::Box || r.ObjectType == ObjType::Line)
                shown.clear();
            else
                shown = clsRptControl::Prop(r.control, "Text").toString();
            std::printf("%s\t%s\t%s\n", qPrintable(r.Name), qPrintable(kindName(r.ObjectType)), shown.toLocal8Bit().constData());
        }
    } catch (const HostError& e) {
        err(e.Text());
        return 1;
    }
    return 0;
}

} // namespace

PW_SUBCOMMAND("dump", "dump REPORT.rdf OUT.txt", "write the text dump of a report", runDump);
PW_SUBCOMMAND("resave", "resave REPORT.rdf OUT.rdf [--static]", "load a report and save it again", runResave);
PW_SUBCOMMAND("dataview", "dataview REPORT.rdf --key KEY [--first N --last M]", "fill a report with one record and list what each item shows", runDataview);
