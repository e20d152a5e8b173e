// The two hosts side by side on the same demo data (1,200 listings): the data-view refresh of a
// report with 300 bound fields, and a 1,000-record merge to PDF, on SQLite and on PostgreSQL.
//   bench_hosts [ADMIN_URL]   a PostgreSQL URL that may create databases; without one, a private
//                             cluster is started with scripts/pg-test-cluster (and stopped after).
#include "design/OffscreenPage.h"
#include "document/clsRptControl.h"
#include "entry/Host.h"
#include "host/DemoData.h"
#include "host/EmbeddedHost.h"
#include "host/PgDemo.h"
#include "output/ReportEngine.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <sys/resource.h>
#include <vector>

namespace {

void addField(clsRptControl& doc, FieldDictionary& dic, int id, float left, float top)
{
    dic.SelectField(id);
    doc.AddNew(ObjType::Field, dic.FieldColumnName(), id);
    QObject* c = doc.UserControl();
    clsRptControl::SetProp(c, "Left", left);
    clsRptControl::SetProp(c, "Top", top);
    clsRptControl::SetProp(c, "Width", 1700.f);
}

// 300 fields: coded, computed and plain columns, as bench_dataview.
void build300(clsRptControl& doc, FieldDictionary& dic)
{
    const int ids[] = {4, 7, 27, 5, 16, 19, 29, 31, 33, 35, 36, 37, 1, 2, 3, 6, 8, 9, 10, 11, 12, 13, 14, 15, 17, 18, 20, 21, 22, 23, 24, 25, 26, 28, 30, 32, 34, 38};
    for (int i = 0; i < 300; ++i)
        addField(doc, dic, ids[i % std::size(ids)], float(100 + (i % 6) * 1800), float(100 + (i / 6) * 260));
}

void buildSheet(const QString& file, FieldDictionary& dic)
{
    OffscreenPage page;
    clsRptControl doc;
    doc.Init(&dic, &page, nullptr);
    doc.SetSelectionManager(&page);
    page.SetHeaderFooter(940);
    page.MovePageFooterBar(2800);
    const int fields[] = {1, 2, 4, 12, 14, 16, 21, 23};
    for (int i = 0; i < 8; ++i)
        addField(doc, dic, fields[i], float((i % 2) * 2600), float(1000 + (i / 2) * 300));
    doc.HeaderFlags = 32 | 64;
    doc.SaveReport(file, false);
    doc.UnloadReport();
}

void measure(const char* label, const QString& folder, const QString& database, const QString& sheet, const QStringList& keys, const QString& pdf)
{
    auto host = EmbeddedHost::Open(folder, database);
    gHost = host.get();
    auto dic = host->NewFieldDictionary(1);
    {
        OffscreenPage page;
        clsRptControl doc;
        doc.Init(dic.get(), &page, nullptr);
        doc.SetSelectionManager(&page);
        build300(doc, *dic);
        doc.DataView = true;
        std::vector<double> times;
        for (int r = 0; r < 100; ++r) {
            QElapsedTimer t;
            t.start();
            doc.RefreshData(keys[(r * 7) % keys.size()]);
            times.push_back(t.nsecsElapsed() / 1e6);
        }
        std::sort(times.begin(), times.end());
        std::printf("%-10s data view, 300 fields: median %6.2f ms  95th %6.2f ms  max %6.2f ms\n", label, times[times.size() / 2],
                    times[times.size() * 95 / 100], times.back());
        doc.UnloadReport();
    }
    ReportEngine engine;
    ReportOptions o;
    o.newPagePerRecord = true;
    engine.SetOptions(o);
    engine.Load(sheet);
    QElapsedTimer t;
    t.start();
    engine.Run(keys);
    const double fetch = t.nsecsElapsed() / 1e9;
    t.restart();
    engine.WritePdf(pdf);
    const double paint = t.nsecsElapsed() / 1e9;
    std::printf("%-10s merge of %lld records: fetch+layout %6.2f s  paint+write %6.2f s  %7.1f records/s  %d pages\n", label,
                static_cast<long long>(engine.PrintedKeys().size()), fetch, paint, engine.PrintedKeys().size() / (fetch + paint), engine.PageCount());
    gHost = nullptr;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir dir;
    QString admin = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    const QString state = dir.filePath(QStringLiteral("cluster.url"));
    const QString script = QStringLiteral(PW_SOURCE_DIR "/scripts/pg-test-cluster");
    if (admin.isEmpty()) {
        if (QProcess::execute(script, {QStringLiteral("start"), state}) != 0)
            return 1;
        QFile f(state);
        f.open(QIODevice::ReadOnly);
        admin = QString::fromUtf8(f.readAll()).trimmed();
    }
    std::printf("generating 1,200 demo listings and copying them to the server...\n");
    const QString folder = dir.filePath(QStringLiteral("data"));
    GenerateDemoData(folder, 1200);
    const QString url = PgDemo::CreateDatabase(admin, QStringLiteral("pw_bench_hosts"));
    QElapsedTimer load;
    load.start();
    PgDemo::Load(folder + QStringLiteral("/pagewright.db"), url);
    std::printf("copied in %.2f s\n", load.nsecsElapsed() / 1e9);

    QStringList keys;
    {
        auto host = EmbeddedHost::Open(folder, QString());
        auto rs = host->Database().OpenRecordset(1, QStringLiteral("SELECT ListNum FROM Listings WHERE CLng(LstStatus) NOT IN (2005,2006) ORDER BY ListNum"));
        for (; !rs->Eof() && keys.size() < 1000; rs->MoveNext())
            keys << rs->Fields(0).toString();
        gHost = host.get();
        auto dic = host->NewFieldDictionary(1);
        buildSheet(dir.filePath(QStringLiteral("sheet.rdf")), *dic);
        gHost = nullptr;
    }
    qunsetenv("PAGEWRIGHT_DATABASE");
    measure("SQLite", folder, QString(), dir.filePath(QStringLiteral("sheet.rdf")), keys, dir.filePath(QStringLiteral("sqlite.pdf")));
    measure("PostgreSQL", folder, url, dir.filePath(QStringLiteral("sheet.rdf")), keys, dir.filePath(QStringLiteral("pg.pdf")));
    struct rusage ru {};
    getrusage(RUSAGE_SELF, &ru);
    std::printf("peak memory (whole run): %ld MB\n", ru.ru_maxrss / 1024);
    if (argc <= 1)
        QProcess::execute(script, {QStringLiteral("stop"), state});
    return 0;
}
