// Report engine timings on the demo database: a listing sheet (page header, eight bound
// fields of which one coded and one computed, a box and a line, page footer, page numbers and
// border) printed for 1,000 listings to PDF, once with a page per record and once flowing in
// two columns. Fetching and layout are timed apart from painting and writing.
#include "design/OffscreenPage.h"
#include "document/clsRptControl.h"
#include "entry/Host.h"
#include "host/DemoData.h"
#include "host/EmbeddedHost.h"
#include "output/ReportEngine.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdio>

namespace {

void buildReport(const QString& file, FieldDictionary& dic)
{
    OffscreenPage page;
    clsRptControl doc;
    doc.Init(&dic, &page, nullptr);
    doc.SetSelectionManager(&page);
    page.SetHeaderFooter(940);
    page.MovePageFooterBar(2800);
    auto place = [&](float top, float left) {
        QObject* c = doc.Item(doc.RptItemCount()).control;
        clsRptControl::SetProp(c, "Top", top);
        clsRptControl::SetProp(c, "Left", left);
    };
    doc.AddNew(ObjType::Label, QString(), 0);
    clsRptControl::SetProp(doc.Item(1).control, "Text", QStringLiteral("Listing Sheet"));
    place(100, 0);
    const int fields[] = {1, 2, 4, 12, 14, 16, 21, 23};
    for (int i = 0; i < 8; ++i) {
        dic.SelectField(fields[i]);
        doc.AddNew(ObjType::Field, dic.FieldColumnName(), fields[i]);
        place(1000 + (i / 2) * 300, (i % 2) * 2600);
    }
    doc.AddNew(ObjType::Box, QString(), 0);
    place(960, 0);
    doc.AddNew(ObjType::Line, QString(), 0);
    place(2300, 0);
    doc.AddNew(ObjType::DateTime, QString(), 0);
    place(2900, 0);
    doc.HeaderFlags = 32 | 64;
    doc.SaveReport(file, false);
    doc.UnloadReport();
}

void run(const QString& report, const QStringList& keys, bool newPage, const QString& pdf, const char* label)
{
    ReportEngine engine;
    ReportOptions o;
    o.newPagePerRecord = newPage;
    engine.SetOptions(o);
    engine.Load(report);
    QElapsedTimer t;
    t.start();
    engine.Run(keys);
    const double fetch = t.nsecsElapsed() / 1e9;
    t.restart();
    engine.WritePdf(pdf);
    const double paint = t.nsecsElapsed() / 1e9;
    const int pages = engine.PageCount();
    std::printf("%-28s records %5lld  pages %5d  fetch+layout %6.2f s  paint+write %6.2f s  %7.1f pages/s  %8.1f records/s  pdf %lld KB\n",
                label, static_cast<long long>(engine.PrintedKeys().size()), pages, fetch, paint, pages / (fetch + paint),
                engine.PrintedKeys().size() / (fetch + paint), static_cast<long long>(QFileInfo(pdf).size() / 1024));
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir dir;
    std::printf("generating 1,200 demo listings...\n");
    GenerateDemoData(dir.path(), 1200);
    auto host = EmbeddedHost::Open(dir.path());
    gHost = host.get();
    auto dic = host->NewFieldDictionary(1);
    const QString report = dir.filePath(QStringLiteral("sheet.rdf"));
    buildReport(report, *dic);

    // 1,000 listings the status filter lets through.
    QStringList keys;
    auto rs = host->Database().OpenRecordset(
        1, QStringLiteral("SELECT ListNum FROM Listings WHERE CLng(LstStatus) NOT IN (2005,2006) ORDER BY ListNum;"), 3, 1, 1);
    for (; !rs->Eof() && keys.size() < 1000; rs->MoveNext())
        keys << rs->Fields(0).toString();
    run(report, keys, true, dir.filePath(QStringLiteral("pages.pdf")), "page per record");
    run(report, keys, false, dir.filePath(QStringLiteral("flow.pdf")), "flowing, one column");
    gHost = nullptr;
    return 0;
}
