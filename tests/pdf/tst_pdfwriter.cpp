#include "pdf/PdfPage.h"
#include "pdf/PdfStream.h"
#include "pdf/PdfWriter.h"
#include "render/ItemPainter.h"
#include "render/Picture.h"

#include <QBuffer>
#include <QtEndian>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>
#include <limits>
#include <thread>

namespace {

constexpr int kDpi = 1200;

QByteArray Encoded(const QImage& img, const char* format)
{
    QByteArray bytes;
    QBuffer b(&bytes);
    b.open(QIODevice::WriteOnly);
    img.save(&b, format, 90);
    return bytes;
}

QImage Photo(int seed)
{
    QImage img(160, 120, QImage::Format_RGB32);
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x)
            img.setPixel(x, y, qRgb((x + seed * 40) & 255, (y * 2) & 255, (seed * 70) & 255));
    return img;
}

ItemLook Text(const QString& text, QRectF r, double size = 12, bool bold = false, int align = ItemCode::AlignLeft)
{
    ItemLook l;
    l.kind = ItemKind::Text;
    l.text = text;
    l.rect = r;
    l.fontSize = size;
    l.bold = bold;
    l.alignment = align;
    return l;
}

ItemLook Shape(ItemKind kind, QRectF r, int style, quint32 color, double width = 1)
{
    ItemLook l;
    l.kind = kind;
    l.rect = r;
    l.borderStyle = l.lineStyle = style;
    l.borderColor = color;
    l.borderWidth = width;
    return l;
}

ItemLook Pic(const PictureRef& p, QRectF r)
{
    ItemLook l;
    l.kind = ItemKind::Picture;
    l.rect = r;
    l.picture = p;
    l.sizeMode = ItemCode::SizeStretch;
    l.backStyle = ItemCode::BackOpaque;
    return l;
}

// A flyer page in twips, as the engine lays one out.
std::vector<ItemLook> Flyer(const PictureRef& photo, const PictureRef& logo, const QString& city)
{
    std::vector<ItemLook> looks;
    ItemLook band = Shape(ItemKind::Box, QRectF(720, 720, 10800, 1200), ItemCode::BorderSolid, 0x00804000, 2);
    band.backStyle = ItemCode::BackOpaque;
    band.backColor = 0x00F0E0D0;
    looks.push_back(band);
    looks.push_back(Shape(ItemKind::Box, QRectF(720, 2200, 10800, 6000), ItemCode::BorderDash, 0x000000FF, 1));
    looks.push_back(Shape(ItemKind::Line, QRectF(720, 8600, 10800, 30), ItemCode::BorderSolid, 0, 2));
    looks.push_back(Shape(ItemKind::Line, QRectF(720, 9000, 10800, 30), ItemCode::BorderDot, 0x00008000, 1));
    if (logo)
        looks.push_back(Pic(logo, QRectF(900, 800, 1400, 1000)));
    if (photo)
        looks.push_back(Pic(photo, QRectF(2000, 2400, 8000, 5600)));
    looks.push_back(Text(QStringLiteral("Just Listed in ") + city, QRectF(2500, 900, 8800, 600), 24, true, ItemCode::AlignCenter));
    looks.push_back(Text(QStringLiteral("4 bedrooms, 2½ baths – café nearby → pool"), QRectF(900, 9200, 10000, 400)));
    looks.push_back(Text(QStringLiteral("A long description that wraps onto a second line because it does not fit in the "
                                        "width the designer gave it, like a listing's remarks do."),
                         QRectF(900, 9700, 6000, 1200), 10));
    looks.push_back(Text(QStringLiteral("$ 325,000"), QRectF(7000, 9700, 4500, 500), 16, true, ItemCode::AlignRight));
    return looks;
}

void PaintPage(QPainter& p, const std::vector<ItemLook>& looks, double dpi)
{
    p.save();
    p.scale(dpi / 1440.0, dpi / 1440.0);
    for (const ItemLook& l : looks)
        PaintItem(p, l, PixelTwipsForDpi(dpi));
    p.restore();
}

// Pages painted onto our writer, into memory.
QByteArray WritePages(const std::vector<std::vector<ItemLook>>& pages, bool compress = true)
{
    QByteArray bytes;
    QBuffer out(&bytes);
    out.open(QIODevice::WriteOnly);
    PdfWriter pdf(&out);
    pdf.SetResolution(kDpi);
    pdf.SetCompressPages(compress);
    pdf.setPageSize(QPageSize(QPageSize::Letter));
    QPainter p(&pdf);
    for (size_t i = 0; i < pages.size(); ++i) {
        if (i)
            pdf.newPage();
        PaintPage(p, pages[i], kDpi);
    }
    p.end();
    return bytes;
}

bool Have(const char* tool) { return !QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty(); }

QString Run(const QString& tool, const QStringList& args)
{
    QProcess p;
    p.start(tool, args);
    if (!p.waitForFinished(60000))
        return QStringLiteral("timeout");
    return QString::fromUtf8(p.readAllStandardOutput()) + QString::fromUtf8(p.readAllStandardError());
}

QImage Rasterize(const QString& pdf, int dpi)
{
    Run(QStringLiteral("pdftoppm"), {QStringLiteral("-r"), QString::number(dpi), QStringLiteral("-png"),
                                     QStringLiteral("-singlefile"), pdf, pdf});
    return QImage(pdf + QStringLiteral(".png")).convertToFormat(QImage::Format_RGB32);
}

void Save(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

// A device that takes only the first `room` bytes, like a full disk.
class FullDevice : public QIODevice {
public:
    explicit FullDevice(qint64 room) : m_room(room) { open(QIODevice::WriteOnly); }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 len) override
    {
        if (len > m_room)
            return -1;
        m_room -= len;
        return len;
    }

private:
    qint64 m_room;
};

} // namespace

class TestPdfWriter : public QObject {
    Q_OBJECT

private slots:
    void jpegBytesGoInOncePerFile()
    {
        PictureStore store;
        const QByteArray jpegA = Encoded(Photo(1), "JPG"), jpegB = Encoded(Photo(2), "JPG");
        const PictureRef a = store.FromBytes(jpegA), b = store.FromBytes(jpegB);
        const PictureRef logo = store.FromBytes(Encoded(Photo(3), "PNG"));
        std::vector<std::vector<ItemLook>> pages;
        for (int i = 0; i < 30; ++i)
            pages.push_back(Flyer(i % 2 ? a : b, logo, QStringLiteral("Springfield")));
        const QByteArray pdf = WritePages(pages);
        QCOMPARE(pdf.count(jpegA), 1);
        QCOMPARE(pdf.count(jpegB), 1);
        QCOMPARE(pdf.count("/DCTDecode"), 2);
        QCOMPARE(pdf.count("/FlateDecode/Length"), 30 + 1); // the page contents and the PNG logo
        QVERIFY(!a->IsDecoded() && !b->IsDecoded());        // passed through, never decoded
        QCOMPARE(pdf.count("/Type/Font/"), 2);              // regular and bold, once each
        QVERIFY(pdf.contains("/BaseFont/Helvetica-Bold/Encoding/WinAnsiEncoding"));
    }

    // Pages painted on their own threads, finishing in any order, and added in page order make
    // the same file as one painter on the writer: resources are named by content and numbered
    // only when a page is added.
    void pagesPaintedOnOtherThreadsMakeTheSameFile()
    {
        PictureStore store;
        const PictureRef a = store.FromBytes(Encoded(Photo(4), "JPG")), b = store.FromBytes(Encoded(Photo(5), "JPG"));
        const PictureRef logo = store.FromBytes(Encoded(Photo(6), "PNG"));
        std::vector<std::vector<ItemLook>> pages;
        for (int i = 0; i < 12; ++i)
            pages.push_back(Flyer(i % 3 ? a : b, i > 4 ? logo : nullptr, QStringLiteral("Town %1").arg(i)));
        pages.push_back({});
        const QByteArray direct = WritePages(pages);

        const QPageLayout layout(QPageSize(QPageSize::Letter), QPageLayout::Portrait, QMarginsF());
        std::vector<Pdf::PageContent> painted(pages.size());
        std::vector<std::thread> threads;
        for (size_t i = pages.size(); i-- > 0;) // the last page first
            threads.emplace_back([&, i] {
                PdfPage page(layout, kDpi);
                QPainter p(&page);
                PaintPage(p, pages[i], kDpi);
                p.end();
                painted[i] = page.Take();
            });
        for (std::thread& t : threads)
            t.join();
        QByteArray bytes;
        QBuffer out(&bytes);
        out.open(QIODevice::WriteOnly);
        PdfWriter pdf(&out);
        for (const Pdf::PageContent& c : painted)
            pdf.AddPage(c);
        pdf.Close();
        QCOMPARE(pdf.PageCount(), 13);
        QCOMPARE(pdf.PictureCount(), 3);
        QVERIFY(!a->IsDecoded() && !b->IsDecoded());
        QCOMPARE(bytes, direct);
    }

    // The reused zlib streams give what a fresh one gives, call after call, level after level.
    void deflateIsAPlainZlibStream()
    {
        QByteArray text;
        for (int i = 0; i < 4000; ++i)
            text += QByteArray::number(i * 7919 % 1000) + " 0 l\n";
        for (int round = 0; round < 3; ++round)
            for (int level : {1, 6, 1}) {
                const QByteArray data = text.left(text.size() - round * 1000);
                const QByteArray z = Pdf::Deflate(data, level);
                QCOMPARE(z, qCompress(data, level).mid(4));
                QByteArray sized(4, '\0');
                qToBigEndian(quint32(data.size()), sized.data());
                QCOMPARE(qUncompress(sized + z), data);
            }
        QCOMPARE(qUncompress(QByteArray(4, '\0') + Pdf::Deflate(QByteArray(), 1)), QByteArray());
    }

    void crossReferencePointsAtEveryObject()
    {
        const QByteArray pdf = WritePages({Flyer(nullptr, nullptr, "A"), Flyer(nullptr, nullptr, "B"), {}});
        QVERIFY(pdf.startsWith("%PDF-1.4\n"));
        QVERIFY(pdf.endsWith("%%EOF\n"));
        const QRegularExpressionMatch sx = QRegularExpression("startxref\n(\\d+)\n%%EOF\n$").match(QString::fromLatin1(pdf));
        QVERIFY(sx.hasMatch());
        const qsizetype xref = sx.captured(1).toLongLong();
        QVERIFY(pdf.mid(xref).startsWith("xref\n0 "));
        const QList<QByteArray> lines = pdf.mid(xref).split('\n');
        const int count = lines[1].split(' ')[1].toInt();
        QVERIFY(count > 8);
        for (int i = 1; i < count; ++i) {
            const QByteArray entry = pdf.mid(xref + 5 + lines[1].size() + 1 + 20 * i, 20);
            QVERIFY2(entry.endsWith(" 00000 n\r\n"), entry.constData());
            const qsizetype at = entry.left(10).toLongLong();
            QVERIFY2(pdf.mid(at).startsWith(QByteArray::number(i) + " 0 obj\n"), qPrintable(QString::number(i)));
        }
        QVERIFY(pdf.contains(QByteArray("/Size ") + QByteArray::number(count) + "/Root"));
        QVERIFY(pdf.contains("/Count 3>>"));
        QVERIFY(pdf.contains("/MediaBox[0 0 612 792]"));
    }

    void textIsWrittenAsTyped()
    {
        const QByteArray pdf = WritePages({Flyer(nullptr, nullptr, QStringLiteral("Springfield"))}, false);
        // Plain letters (no "fi" ligature), Windows-1252 bytes, what the font lacks as "?".
        QVERIFY(pdf.contains("(Just Listed in Springfield) Tj"));
        QVERIFY(pdf.contains("(4 bedrooms, 2\xBD baths \x96 caf\xE9 nearby ? pool) Tj"));
        QVERIFY(pdf.contains("($ 325,000) Tj"));
        if (!Have("pdftotext"))
            QSKIP("pdftotext is not installed");
        QTemporaryDir dir;
        Save(dir.filePath("t.pdf"), pdf);
        const QString text = Run(QStringLiteral("pdftotext"), {dir.filePath("t.pdf"), QStringLiteral("-")});
        QVERIFY2(text.contains(QStringLiteral("Just Listed in Springfield")), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("2½ baths – café nearby ? pool")), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("like a listing's remarks do.")), qPrintable(text));
        QVERIFY2(!text.contains(QStringLiteral("Error")), qPrintable(text));
    }

    void pngAlphaShowsWhatLiesBelow()
    {
        if (!Have("pdftoppm"))
            QSKIP("pdftoppm is not installed");
        QImage png(100, 100, QImage::Format_ARGB32);
        png.fill(Qt::transparent);
        for (int y = 0; y < 100; ++y)
            for (int x = 0; x < 50; ++x)
                png.setPixel(x, y, qRgba(255, 0, 0, 255));
        PictureStore store;
        ItemLook below = Shape(ItemKind::Box, QRectF(0, 0, 2880, 2880), ItemCode::BorderNone, 0);
        below.backStyle = ItemCode::BackOpaque;
        below.backColor = 0x0000FF00; // green
        ItemLook pic = Pic(store.FromBytes(Encoded(png, "PNG")), QRectF(0, 0, 2880, 2880));
        pic.backStyle = ItemCode::BackTransparent;
        const QByteArray pdf = WritePages({{below, pic}});
        QCOMPARE(pdf.count("/SMask"), 1);
        QTemporaryDir dir;
        Save(dir.filePath("a.pdf"), pdf);
        const QImage shot = Rasterize(dir.filePath("a.pdf"), 36); // two inches: 72 pixels
        QVERIFY(!shot.isNull());
        QCOMPARE(shot.pixel(15, 36), qRgb(255, 0, 0));
        QCOMPARE(shot.pixel(56, 36), qRgb(0, 255, 0));
        QCOMPARE(shot.pixel(100, 36), qRgb(255, 255, 255)); // beside the box: the paper
    }

    void looksLikeQtsOwnPdf()
    {
        if (!Have("pdftoppm"))
            QSKIP("pdftoppm is not installed");
        QTemporaryDir dir;
        PictureStore store;
        const auto page = Flyer(store.FromBytes(Encoded(Photo(4), "JPG")), store.FromBytes(Encoded(Photo(5), "PNG")),
                                QStringLiteral("Springfield"));
        Save(dir.filePath("ours.pdf"), WritePages({page}));
        {
            QPdfWriter qt(dir.filePath("qt.pdf"));
            qt.setResolution(kDpi);
            qt.setPageSize(QPageSize(QPageSize::Letter));
            qt.setPageMargins(QMarginsF(0, 0, 0, 0));
            QPainter p(&qt);
            PaintPage(p, page, kDpi);
        }
        const QImage ours = Rasterize(dir.filePath("ours.pdf"), 50), qt = Rasterize(dir.filePath("qt.pdf"), 50);
        QCOMPARE(ours.size(), qt.size());
        qint64 sum = 0, far = 0;
        for (int y = 0; y < ours.height(); ++y)
            for (int x = 0; x < ours.width(); ++x) {
                const QRgb a = ours.pixel(x, y), b = qt.pixel(x, y);
                const int d = std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
                sum += d;
                far += d > 96;
            }
        const double pixels = double(ours.width()) * ours.height();
        QVERIFY2(sum / pixels < 2.0, qPrintable(QStringLiteral("mean difference %1").arg(sum / pixels)));
        QVERIFY2(far / pixels < 0.005, qPrintable(QStringLiteral("%1 pixels differ").arg(far)));
    }

    void pagesLeaveAsTheyAreDone()
    {
        QByteArray bytes;
        QBuffer out(&bytes);
        out.open(QIODevice::WriteOnly);
        PdfWriter pdf(&out);
        QPainter p(&pdf);
        const auto page = Flyer(nullptr, nullptr, QStringLiteral("Springfield"));
        for (int i = 0; i < 200; ++i) {
            if (i)
                pdf.newPage();
            PaintPage(p, page, pdf.Resolution());
        }
        QVERIFY(bytes.size() >= 64 * 1024); // most of the file is out before the end
        const qsizetype before = bytes.size();
        p.end();
        QVERIFY(bytes.size() - before < 70000);
        QCOMPARE(pdf.PageCount(), 200);
        QVERIFY(!pdf.Failed());
    }

    void oddDrawingStillMakesAValidFile()
    {
        QByteArray bytes;
        QBuffer out(&bytes);
        out.open(QIODevice::WriteOnly);
        PdfWriter pdf(&out);
        pdf.SetCompressPages(false);
        QPainter p(&pdf);
        const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
        p.fillRect(QRectF(nan, 0, 100, 100), Qt::red);
        p.drawLine(QPointF(0, 0), QPointF(inf, -inf));
        p.drawImage(QRectF(0, 0, 100, 100), QImage());
        p.drawText(QPointF(10, 10), QString());
        p.drawText(QPointF(10, 10), QStringLiteral("(parens) and \\ backslash"));
        p.setClipRect(QRectF(0, 0, 0, 0));
        p.drawRect(QRectF(5, 5, 10, 10));
        p.end();
        QVERIFY(!bytes.contains("nan") && !bytes.contains("inf"));
        QVERIFY(bytes.contains("(\\(parens\\) and \\\\ backslash) Tj"));
        if (!Have("pdftotext"))
            QSKIP("pdftotext is not installed");
        QTemporaryDir dir;
        Save(dir.filePath("odd.pdf"), bytes);
        const QString text = Run(QStringLiteral("pdftotext"), {dir.filePath("odd.pdf"), QStringLiteral("-")});
        QVERIFY2(text.contains(QStringLiteral("(parens) and \\ backslash")) && !text.contains(QStringLiteral("Error")), qPrintable(text));
    }

    void aFullDiskIsReported()
    {
        FullDevice full(3000);
        PdfWriter pdf(&full);
        QPainter p(&pdf);
        const auto page = Flyer(nullptr, nullptr, QStringLiteral("Springfield"));
        for (int i = 0; i < 100; ++i) {
            if (i)
                pdf.newPage();
            PaintPage(p, page, pdf.Resolution());
        }
        p.end();
        QVERIFY(pdf.Failed());
    }
};

QTEST_MAIN(TestPdfWriter)
#include "tst_pdfwriter.moc"
