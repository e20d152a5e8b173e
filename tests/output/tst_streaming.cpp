// The streaming print path: records fetched a chunk at a time, pages painted as they complete.
// Whatever the chunk size, the pages are the same, byte for byte.
#include "support_report.h"

#include "output/ReportData.h"
#include "output/ReportEngine.h"
#include "output/ReportOutput.h"
#include "render/Format.h"

#include <QDirIterator>
#include <QPainter>
#include <QtTest>

namespace {

RdfItem item(quint8 kind, const QString& fieldOrText, float top, float left, qint32 height = 300)
{
    RdfItem it;
    it.kind = kind;
    (kind == RdfKind::Label ? it.text : it.dataField) = fieldOrText;
    it.top = top;
    it.left = left;
    it.width = 2600;
    it.height = height;
    it.fontName = QStringLiteral("DejaVu Sans");
    it.fontSize = 10;
    it.borderStyle = ItemCode::BorderNone;
    return it;
}

RdfItem pageBreak(float top)
{
    RdfItem it;
    it.kind = RdfKind::NewPage;
    it.flags = RdfFlag::NewBand;
    it.top = top;
    return it;
}

// Everything in the detail section.
RdfReport detailReport(std::vector<RdfItem> items, int columns = 1)
{
    RdfReport r;
    r.items = std::move(items);
    r.header.firstDetailItem = 1;
    r.header.lastDetailItem = qint16(r.items.size());
    r.header.numberOfColumns = quint8(columns);
    return r;
}

// The files of a folder, by name, with their bytes.
QMap<QString, QByteArray> filesOf(const QString& dir)
{
    QMap<QString, QByteArray> out;
    for (QDirIterator it(dir, QDir::Files | QDir::Hidden); it.hasNext();) {
        QFile f(it.next());
        f.open(QIODevice::ReadOnly);
        out.insert(QFileInfo(f).fileName(), f.readAll());
    }
    return out;
}

} // namespace

class TestStreaming : public QObject {
    Q_OBJECT
    QTemporaryDir m_tmp;
    QStringList m_keys; // listings the demo user sees

    struct Printed {
        int pages = 0;
        QStringList printed, missing;
        int held = 0;
        QMap<QString, QByteArray> files;
    };
    // Prints report for keys in chunks of chunk to PNG pages in a fresh folder.
    Printed printPng(const RdfReport& report, const QStringList& keys, int chunk, bool newPage = true)
    {
        static int run = 0;
        const QString dir = m_tmp.filePath(QStringLiteral("png%1").arg(++run));
        QDir().mkpath(dir);
        ReportEngine engine;
        ReportOptions o;
        o.chunkSize = chunk;
        o.newPagePerRecord = newPage;
        engine.SetOptions(o);
        engine.SetReport(report);
        PageImageOutput out(dir, PageImageOutput::Png, 30);
        if (!engine.Print(keys, out))
            return {};
        return {engine.PageCount(), engine.PrintedKeys(), engine.MissingKeys(), engine.HeldRecordsPeak(), filesOf(dir)};
    }

private slots:
    void initTestCase()
    {
        ReportFixture f;
        m_keys = f.visibleListings(12);
        QCOMPARE(m_keys.size(), 12);
    }

    // Chunk boundaries fall before, on and after the last record; every run prints the same pages.
    void pagesAreTheSameWhateverTheChunkSize()
    {
        ReportFixture f;
        const RdfReport report = detailReport({item(RdfKind::Field, "ListNum", 0, 0), item(RdfKind::Field, "City", 0, 3000),
                                               item(RdfKind::Field, "OwnerName", 400, 0)});
        const int n = int(m_keys.size());
        const Printed whole = printPng(report, m_keys, 1000);
        QCOMPARE(whole.pages, n);
        QCOMPARE(whole.files.size(), n);
        QVERIFY(whole.files.contains("page-000001.png") && whole.files.contains(QString("page-%1.png").arg(n, 6, 10, QChar('0'))));
        for (int chunk : {1, n - 1, n, n + 1, 5}) {
            const Printed p = printPng(report, m_keys, chunk);
            QCOMPARE(p.printed, m_keys);
            QVERIFY2(p.files == whole.files, qPrintable(QString("chunk %1").arg(chunk)));
        }
        // A page per record: held are the record being laid out and the one whose page is open.
        QCOMPARE(printPng(report, m_keys, 5).held, 2);
    }

    // Run keeps every page and its records for the preview, which pages back and forth: each
    // page paints as the streamed output printed it.
    void runKeepsEveryPageForThePreview()
    {
        ReportFixture f;
        const RdfReport report = detailReport({item(RdfKind::Field, "ListNum", 0, 0), item(RdfKind::Field, "OwnerName", 400, 0)});
        const Printed streamed = printPng(report, m_keys, 3);
        ReportEngine engine;
        ReportOptions o;
        o.chunkSize = 3;
        engine.SetOptions(o);
        engine.SetReport(report);
        QVERIFY(engine.Run(m_keys));
        QCOMPARE(engine.PageCount(), streamed.pages);
        for (int page = streamed.pages - 1; page >= 0; --page) {
            QImage img(255, 330, QImage::Format_RGB32); // Letter at 30 dpi
            img.fill(Qt::white);
            QPainter p(&img);
            p.setRenderHint(QPainter::Antialiasing);
            p.setRenderHint(QPainter::SmoothPixmapTransform);
            engine.PaintPage(p, page, 30);
            p.end();
            const QImage printed = QImage::fromData(streamed.files.value(QString("page-%1.png").arg(page + 1, 6, 10, QChar('0'))));
            QVERIFY2(printed.convertToFormat(QImage::Format_RGB32) == img, qPrintable(QString("page %1").arg(page + 1)));
        }
    }

    // Records flowing down two columns across pages, with a page break inside each record.
    void columnsAndPageBreaksStreamAlike()
    {
        ReportFixture f;
        const RdfReport report = detailReport({item(RdfKind::Field, "ListNum", 0, 0), item(RdfKind::Field, "City", 0, 1000),
                                               pageBreak(400), item(RdfKind::Field, "OwnerName", 0, 0)},
                                              2);
        const Printed whole = printPng(report, m_keys, 1000, false);
        QVERIFY(whole.pages > 1);
        for (int chunk : {1, 7}) {
            const Printed p = printPng(report, m_keys, chunk, false);
            QCOMPARE(p.pages, whole.pages);
            QVERIFY(p.files == whole.files);
        }
        // The same layout as the whole-run pagination.
        ReportEngine engine;
        ReportOptions o;
        o.newPagePerRecord = false;
        engine.SetOptions(o);
        engine.SetReport(report);
        QVERIFY(engine.Run(m_keys));
        QCOMPARE(engine.PageCount(), whole.pages);
    }

    void repeatedAndMissingKeysAcrossChunks()
    {
        ReportFixture f;
        const RdfReport report = detailReport({item(RdfKind::Field, "ListNum", 0, 0)});
        const QString a = m_keys[0], b = m_keys[1];
        const QStringList keys{a, "999999", b, a, "0" + a, "888888", a};
        for (int chunk : {1, 2, 3, 100}) {
            const Printed p = printPng(report, keys, chunk);
            QCOMPARE(p.printed, (QStringList{a, b, a, "0" + a, a}));
            QCOMPARE(p.missing, (QStringList{"999999", "888888"}));
            QCOMPARE(p.pages, 5);
            // A repeat prints the same page again.
            QCOMPARE(p.files.value("page-000003.png"), p.files.value("page-000001.png"));
            QVERIFY(p.files.value("page-000002.png") != p.files.value("page-000001.png"));
        }
        // A hidden status is missing, as in data view.
        const std::unique_ptr<Recordset> hidden = gHost->Database().OpenRecordset(
            1, "SELECT ListNum FROM Listings WHERE CLng(LstStatus) IN (" + gHost->StatusList() + ");", 3, 1, 1);
        QVERIFY(!hidden->Eof());
        const QString h = hidden->Fields(0).toString();
        QCOMPARE(printPng(report, {h, a}, 10).missing, QStringList{h});
        // A key that could change the statement stops the run.
        ReportEngine engine;
        engine.SetReport(report);
        PageImageOutput out(m_tmp.path(), PageImageOutput::Png, 30);
        QVERIFY_THROWS_EXCEPTION(HostError, engine.Print({a, "1) OR (1=1"}, out));
    }

    void totalsCoverEveryChunk()
    {
        if (!HavePdfToText())
            QSKIP("pdftotext is not installed");
        ReportFixture f;
        RdfItem sum = item(RdfKind::FunctionField, "ListPrice", 400, 0);
        sum.numberA = 2; // currency
        sum.numberB = 1; // Sum
        sum.formatOrFile = "Currency";
        RdfItem count = item(RdfKind::FunctionField, "ListPrice", 800, 0);
        count.numberB = 5;
        const RdfReport report = detailReport({item(RdfKind::Field, "ListNum", 0, 0), sum, count});
        double total = 0;
        for (const QString& k : m_keys)
            total += gHost->Database().OpenRecordset(1, "SELECT ListPrice FROM Listings WHERE ListNum = " + k + ";", 3, 1, 1)->Fields(0).toDouble();
        const QString money = Format(QVariant(total), "Currency");
        for (int chunk : {1, 5, 1000}) {
            ReportEngine engine;
            ReportOptions o;
            o.chunkSize = chunk;
            engine.SetOptions(o);
            engine.SetReport(report);
            const QString pdf = m_tmp.filePath(QString("totals%1.pdf").arg(chunk));
            PdfFileOutput out(pdf);
            QVERIFY(engine.Print(m_keys, out));
            const QStringList pages = PdfPages(pdf);
            QCOMPARE(pages.size(), m_keys.size());
            for (const QString& page : pages) {
                QVERIFY2(page.contains(money), qPrintable(money + " missing from " + page));
                QVERIFY2(QRegularExpression("(^|\\s)12(\\s|$)").match(page).hasMatch(), qPrintable(page));
            }
        }
    }

    // A band taller than the page continues on the next one; only an item taller than a page
    // is cut, and that is said.
    void aTallBandContinuesOnTheNextPage()
    {
        if (!HavePdfToText())
            QSKIP("pdftotext is not installed");
        ReportFixture f;
        // Letter with the default margins leaves 13,680 twips of body.
        std::vector<RdfItem> items;
        for (int k = 0; k < 8; ++k)
            items.push_back(item(RdfKind::Label, QString("Row %1 text").arg(k), 4000.f * k, 0));
        items.push_back(item(RdfKind::Label, "Crossing the foot", 13400, 3000, 600)); // pushed whole to page 2
        items.push_back(item(RdfKind::Label, "Giant", 30000, 0, 15000));
        items.back().name = "lblGiant";
        ReportEngine engine;
        engine.SetReport(detailReport(items));
        ReportOptions o;
        o.templateOnly = true;
        engine.SetOptions(o);
        QVERIFY(engine.Run({"x"}));
        QCOMPARE(engine.PageCount(), 4); // the giant's tail below the foot makes no empty page
        const QString pdf = m_tmp.filePath("tall.pdf");
        QVERIFY(engine.WritePdf(pdf));
        const QStringList pages = PdfPages(pdf);
        const QString all = pages.join('\f');
        for (int k = 0; k < 8; ++k)
            QCOMPARE(all.count(QString("Row %1 text").arg(k)), 1);
        QVERIFY(pages[0].contains("Row 0 text") && pages[0].contains("Row 3 text") && !pages[0].contains("Row 4 text"));
        QVERIFY(pages[1].contains("Crossing the foot"));
        QVERIFY(pages[2].contains("Row 7 text"));
        QCOMPARE(pages[3].trimmed(), QString("Giant"));
        QCOMPARE(engine.Warnings(),
                 QStringList{"Item 10 (lblGiant) is taller than the printing area of the page (13680 of 15000 twips) and is cut at the page's foot"});
    }
};

QTEST_MAIN(TestStreaming)
#include "tst_streaming.moc"
