// Pages painted on several threads: the files are the same, byte for byte, whatever the
// number of painter threads and the chunk size; a failure or a cancel with pages in flight
// ends cleanly, leaving no file.
#include "support_report.h"

#include "output/PagePipeline.h"
#include "output/ReportEngine.h"
#include "output/ReportOutput.h"
#include "render/Picture.h"

#include <QDirIterator>
#include <QPainter>
#include <QRandomGenerator>
#include <QtTest>
#include <atomic>
#include <numeric>
#include <thread>

namespace {

RdfItem label(const QString& text, const QString& font, bool bold, bool italic, float top)
{
    RdfItem it;
    it.kind = RdfKind::Label;
    it.text = text;
    it.top = top;
    it.width = 5000;
    it.height = 300;
    it.fontName = font;
    it.fontSize = 10;
    it.flags = (bold ? RdfFlag::Bold : 0) | (italic ? RdfFlag::Italic : 0);
    it.borderStyle = ItemCode::BorderNone;
    return it;
}

RdfItem field(const QString& name, float top, float left)
{
    RdfItem it = label(QString(), QStringLiteral("DejaVu Sans"), false, false, top);
    it.kind = RdfKind::Field;
    it.text.clear();
    it.dataField = name;
    it.left = left;
    it.width = 2600;
    return it;
}

RdfItem picture(float top, float left, const QString& file)
{
    RdfItem it;
    it.kind = RdfKind::Image;
    it.top = top;
    it.left = left;
    it.width = 1800;
    it.height = 1200;
    it.sizeMode = ItemCode::SizeZoom;
    it.borderStyle = ItemCode::BorderNone;
    if (file.isEmpty()) {
        it.dataBound = true; // the listing's first photo
        it.numberA = 1;
    } else {
        it.formatOrFile = file;
    }
    return it;
}

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QMap<QString, QByteArray> filesOf(const QString& dir)
{
    QMap<QString, QByteArray> out;
    for (QDirIterator it(dir, QDir::Files | QDir::Hidden); it.hasNext();) {
        const QString path = it.next();
        out.insert(QFileInfo(path).fileName(), readAll(path));
    }
    return out;
}

// A page for the pipeline alone.
class ImageCanvas : public PageCanvas {
public:
    QImage image{8, 8, QImage::Format_RGB32};
    QPaintDevice* Device() override { return &image; }
};

} // namespace

class TestParallelPrint : public QObject {
    Q_OBJECT
    QTemporaryDir m_tmp;
    QStringList m_keys;
    RdfReport m_report;

    void setUp(ReportEngine& engine, int threads, int chunk)
    {
        ReportOptions o;
        o.threads = threads;
        o.chunkSize = chunk;
        engine.SetOptions(o);
        engine.SetReport(m_report);
    }

    QByteArray printPdf(int threads, int chunk)
    {
        static int run = 0;
        const QString path = m_tmp.filePath(QStringLiteral("run%1.pdf").arg(++run));
        ReportEngine engine;
        setUp(engine, threads, chunk);
        PdfFileOutput out(path);
        if (!engine.Print(m_keys, out))
            return {};
        return readAll(path);
    }

    QMap<QString, QByteArray> printFolder(int threads, const QString& kind)
    {
        static int run = 0;
        const QString dir = m_tmp.filePath(QStringLiteral("%1-%2").arg(kind).arg(++run));
        QDir().mkpath(dir);
        ReportEngine engine;
        setUp(engine, threads, 5);
        std::unique_ptr<PageOutput> out;
        if (kind == "each")
            out = std::make_unique<PdfEachOutput>(dir);
        else
            out = std::make_unique<PageImageOutput>(dir, kind == "png" ? PageImageOutput::Png : PageImageOutput::Svg, 20);
        if (!engine.Print(m_keys, *out))
            return {};
        return filesOf(dir);
    }

private slots:
    void initTestCase()
    {
        ReportFixture f;
        m_keys = f.visibleListings(16);
        QCOMPARE(m_keys.size(), 16);
        m_keys << m_keys[2] << "999999"; // a repeat and a key without a record

        // A JPEG and a PNG on every page, a photo per listing; three fonts.
        QImage logo(64, 40, QImage::Format_RGB32);
        logo.fill(QColor(20, 60, 120));
        QVERIFY(logo.save(m_tmp.filePath("logo.jpg"), "JPG", 90));
        QImage mark(16, 16, QImage::Format_ARGB32);
        mark.fill(QColor(200, 0, 0, 128));
        QVERIFY(mark.save(m_tmp.filePath("mark.png"), "PNG"));
        m_report.items = {label("Listing", "DejaVu Sans", true, false, 0),
                          label("Presented by the office", "DejaVu Serif", false, true, 300),
                          label("Fine print (c)", "DejaVu Sans Mono", false, false, 600),
                          field("ListNum", 900, 0),
                          field("City", 900, 3000),
                          field("OwnerName", 1200, 0),
                          picture(1500, 0, QString()),
                          picture(1500, 2000, m_tmp.filePath("logo.jpg")),
                          picture(1500, 4000, m_tmp.filePath("mark.png"))};
        m_report.header.firstDetailItem = 1;
        m_report.header.lastDetailItem = qint16(m_report.items.size());
        m_report.header.headerFlags = ReportLayout::PageNumbers | ReportLayout::PageBorder;
    }

    void pdfIsTheSameOnAnyNumberOfThreadsAndChunks()
    {
        ReportFixture f;
        PictureStore::Global().Clear();
        const QByteArray one = printPdf(1, 1000);
        // What the file holds, so that equal files are not equally empty.
        QCOMPARE(one.count("/Type/Page/"), m_keys.size() - 1);
        QCOMPARE(one.count("/Type/Font/"), 5); // the three labels', the fields' and the page number's
        QCOMPARE(one.count("/DCTDecode"), one.count("/Subtype/Image/") - 2); // the PNG and its mask go in as Flate
        QVERIFY(one.count("/DCTDecode") >= 3);                                 // the logo and at least two photos
        QVERIFY(one.endsWith("%%EOF\n"));
        for (const auto& [threads, chunk] : {std::pair{1, 1}, {2, 1}, {2, 1000}, {3, 5}, {4, 7}}) {
            PictureStore::Global().Clear();
            QVERIFY2(printPdf(threads, chunk) == one, qPrintable(QString("%1 threads, chunk %2").arg(threads).arg(chunk)));
        }
    }

    void otherOutputsAreTheSameOnAnyNumberOfThreads()
    {
        ReportFixture f;
        for (const QString kind : {"each", "png", "svg"}) {
            const QMap<QString, QByteArray> one = printFolder(1, kind);
            QCOMPARE(one.size(), m_keys.size() - 1); // every record printed, the repeat as "KEY-2.pdf"
            QVERIFY2(printFolder(3, kind) == one, qPrintable(kind));
        }
    }

    void aFullDiskWithPagesInFlightLeavesNothing()
    {
        ReportFixture f;
        const QString dir = m_tmp.filePath("full");
        QVERIFY(QDir().mkpath(dir));
        const qint64 whole = printPdf(1, 1000).size();
        for (qint64 limit : {qint64(200), whole / 3, whole - 10}) {
            OutputHooks hooks;
            hooks.failAfterBytes = limit;
            ReportEngine engine;
            setUp(engine, 3, 4);
            PdfFileOutput out(dir + "/out.pdf", hooks);
            try {
                engine.Print(m_keys, out);
                QFAIL("no error");
            } catch (const HostError& e) {
                QCOMPARE(e.Number(), HostErr::DiskFull);
            }
            QCOMPARE(QDir(dir).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());
        }
    }

    void aCancelWithPagesInFlightStopsAndLeavesNothing()
    {
        ReportFixture f;
        const QString dir = m_tmp.filePath("cancel");
        QVERIFY(QDir().mkpath(dir));
        for (int at : {0, 3, 9, int(m_keys.size()) - 1}) {
            ReportEngine engine;
            setUp(engine, 2, 4);
            ReportOptions o = engine.Options();
            o.progress = [at](int done, int) { return done < at; };
            engine.SetOptions(o);
            {
                PdfFileOutput out(dir + "/out.pdf");
                QVERIFY(!engine.Print(m_keys, out));
            }
            QCOMPARE(QDir(dir).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());
        }
    }

    // Pages come back in order however the threads finish; a page that fails to paint is
    // thrown where it would have been put, after every page before it.
    void thePipelinePutsPagesInOrderAndStopsAtAFailure()
    {
        for (int threads : {1, 2, 4}) {
            std::vector<int> put;
            PagePipeline pipe(threads, 3);
            for (int i = 0; i < 40; ++i)
                pipe.Submit(std::make_unique<ImageCanvas>(),
                            [](PageCanvas&) { std::this_thread::sleep_for(std::chrono::microseconds(QRandomGenerator::global()->bounded(2000))); },
                            [&put, i](std::unique_ptr<PageCanvas> c) {
                                QVERIFY(c);
                                put.push_back(i);
                            });
            pipe.Finish();
            std::vector<int> expected(40);
            std::iota(expected.begin(), expected.end(), 0);
            QCOMPARE(put, expected);
        }
        std::vector<int> put;
        std::atomic<int> painted{0};
        bool thrown = false;
        {
            PagePipeline pipe(3, 4);
            try {
                for (int i = 0; i < 40; ++i)
                    pipe.Submit(std::make_unique<ImageCanvas>(),
                                [i, &painted](PageCanvas&) {
                                    ++painted;
                                    if (i == 7)
                                        throw HostError(61, "Disk full: x");
                                },
                                [&put, i](std::unique_ptr<PageCanvas>) { put.push_back(i); });
                pipe.Finish();
            } catch (const HostError& e) {
                thrown = e.Number() == 61;
            }
        } // pages still in flight are dropped here
        QVERIFY(thrown);
        QCOMPARE(put, (std::vector<int>{0, 1, 2, 3, 4, 5, 6}));
        QVERIFY(painted <= 12); // at most the pages in flight when page 7 failed
    }
};

QTEST_MAIN(TestParallelPrint)
#include "tst_parallelprint.moc"
