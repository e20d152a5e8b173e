#include "entry/HostError.h"
#include "render/Picture.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QtTest>
#include <QtEndian>
#include <sys/stat.h>
#include <thread>

namespace {

QImage Gradient(int w, int h)
{
    QImage img(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            img.setPixel(x, y, qRgb(x * 255 / w, y * 255 / h, 90));
    return img;
}

QByteArray Encoded(const QImage& img, const char* format, int quality = -1)
{
    QByteArray bytes;
    QBuffer b(&bytes);
    b.open(QIODevice::WriteOnly);
    img.save(&b, format, quality);
    return bytes;
}

QString Write(const QTemporaryDir& dir, const QString& name, const QByteArray& bytes)
{
    QFile f(dir.filePath(name));
    f.open(QIODevice::WriteOnly);
    f.write(bytes);
    return f.fileName();
}

quint32 Crc32(const QByteArray& data)
{
    quint32 c = 0xFFFFFFFFu;
    for (char ch : data) {
        c ^= uchar(ch);
        for (int k = 0; k < 8; ++k)
            c = (c >> 1) ^ (0xEDB88320u & (0u - (c & 1u)));
    }
    return ~c;
}

// A PNG that is only a signature and a header chunk declaring w x h pixels.
QByteArray PngHeader(quint32 w, quint32 h)
{
    QByteArray ihdr("IHDR");
    char be[4];
    qToBigEndian(w, be);
    ihdr.append(be, 4);
    qToBigEndian(h, be);
    ihdr.append(be, 4);
    ihdr.append("\x08\x02\x00\x00\x00", 5); // 8-bit RGB
    QByteArray png("\x89PNG\r\n\x1a\n", 8);
    qToBigEndian(quint32(13), be);
    png.append(be, 4);
    png += ihdr;
    qToBigEndian(Crc32(ihdr), be);
    png.append(be, 4);
    // An empty data chunk: readers stop at its header to report the size.
    png.append("\0\0\0\0IDAT\x35\xaf\x06\x1e", 12);
    return png;
}

// A JPEG made of markers only: SOI, the given segments, a frame header.
QByteArray JpegMarkers(const QByteArray& segments, uchar sof, uchar precision, int w, int h, int components)
{
    QByteArray j("\xFF\xD8", 2);
    j += segments;
    QByteArray frame;
    frame += char(precision);
    frame += char(h >> 8);
    frame += char(h & 255);
    frame += char(w >> 8);
    frame += char(w & 255);
    frame += char(components);
    for (int c = 0; c < components; ++c)
        frame += QByteArray::fromRawData("\x01\x11\x00", 3);
    j += char(0xFF);
    j += char(sof);
    j += char((frame.size() + 2) >> 8);
    j += char((frame.size() + 2) & 255);
    j += frame;
    j += QByteArray("\xFF\xD9", 2);
    return j;
}

QByteArray Segment(uchar marker, const QByteArray& payload)
{
    QByteArray s;
    s += char(0xFF);
    s += char(marker);
    s += char((payload.size() + 2) >> 8);
    s += char((payload.size() + 2) & 255);
    return s + payload;
}

int ErrorOf(const std::function<void()>& f, QString* text = nullptr)
{
    try {
        f();
    } catch (const HostError& e) {
        if (text)
            *text = e.Description();
        return e.Number();
    }
    return 0;
}

} // namespace

class TestPictureStore : public QObject {
    Q_OBJECT

private slots:
    void oneFileIsOnePictureDecodedOnce()
    {
        QTemporaryDir dir;
        const QByteArray png = Encoded(Gradient(120, 80), "PNG");
        const QString a = Write(dir, "a.png", png);
        const QString b = Write(dir, "copy of a.png", png);
        PictureStore store;
        const PictureRef p = store.Load(a);
        QCOMPARE(p->PixelSize(), QSize(120, 80));
        QVERIFY(!p->IsDecoded()); // the header gives the size
        QCOMPARE(store.Load(a).get(), p.get());
        QCOMPARE(store.Load(b).get(), p.get());          // same content, another path
        QCOMPARE(store.FromBytes(png).get(), p.get());   // and embedded in a report
        const qint64 first = p->Image().cacheKey();
        QCOMPARE(p->Image().cacheKey(), first);
        QCOMPARE(store.DecodedBytes(), qint64(120 * 80 * 4));
        QVERIFY(!p->Jpeg()); // a PNG cannot pass through

        // A file changed in place is a new picture.
        QTest::qWait(20);
        Write(dir, "a.png", Encoded(Gradient(60, 30), "PNG"));
        QCOMPARE(store.Load(a)->PixelSize(), QSize(60, 30));
    }

    void concurrentUsersShareOneDecode()
    {
        PictureStore store;
        const PictureRef p = store.FromBytes(Encoded(Gradient(400, 300), "JPG", 90));
        std::vector<qint64> keys(8);
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i)
            threads.emplace_back([&, i] { keys[size_t(i)] = p->Image().cacheKey(); });
        for (auto& t : threads)
            t.join();
        for (qint64 k : keys)
            QCOMPARE(k, keys[0]);
    }

    void screenCopiesAreScaledAndKept()
    {
        PictureStore store;
        const PictureRef p = store.FromBytes(Encoded(Gradient(1000, 500), "PNG"));
        const QImage small = p->ImageFor(QSize(100, 50));
        QCOMPARE(small.size(), QSize(100, 50));
        QCOMPARE(p->ImageFor(QSize(100, 50)).cacheKey(), small.cacheKey());
        QCOMPARE(p->ImageFor(QSize(2000, 1000)).size(), QSize(1000, 500)); // never enlarged
        // A JPEG's screen copy decodes small without the whole picture.
        const PictureRef j = store.FromBytes(Encoded(Gradient(1600, 1200), "JPG", 90));
        QCOMPARE(j->ImageFor(QSize(200, 150)).size(), QSize(200, 150));
        QVERIFY(!j->IsDecoded());
    }

    void decodedPixelsStayWithinTheBudget()
    {
        PictureStore store(3 * 200 * 200 * 4 / 2, 1 << 20); // room for one and a half
        std::vector<PictureRef> pics;
        for (int i = 0; i < 3; ++i) {
            pics.push_back(store.FromBytes(Encoded(Gradient(200, 200 + i), "PNG")));
            QVERIFY(!pics.back()->Image().isNull());
        }
        QVERIFY(!pics[0]->IsDecoded());
        QVERIFY(pics[2]->IsDecoded());
        QVERIFY(store.DecodedBytes() <= 3 * 200 * 200 * 4 / 2);
        QCOMPARE(pics[0]->Image().size(), QSize(200, 200)); // decoded again when needed
    }

    void unreadablePathsFailAtOnce()
    {
        QTemporaryDir dir;
        PictureStore store;
        QCOMPARE(ErrorOf([&] { store.Load(dir.filePath("none.png")); }), 53);
        QCOMPARE(ErrorOf([&] { store.Load(dir.path()); }), 75);
        // A FIFO with no writer would block a plain open, and a device never ends.
        const QString fifo = dir.filePath("photo.jpg");
        QCOMPARE(::mkfifo(fifo.toLocal8Bit().constData(), 0600), 0);
        QCOMPARE(ErrorOf([&] { store.Load(fifo); }), 75);
        QCOMPARE(ErrorOf([&] { store.Load(QStringLiteral("/dev/zero")); }), 75);
        QVERIFY(!store.TryLoad(fifo));
        QCOMPARE(ErrorOf([&] { store.Load(Write(dir, "junk.jpg", "\xFF\xD8 no picture")); }), 481);
        QCOMPARE(ErrorOf([&] { store.Load(Write(dir, "empty.png", QByteArray())); }), 481);
    }

    void picturesPastTheLimitAreRefused()
    {
        PictureStore store;
        QString text;
        QCOMPARE(ErrorOf([&] { store.FromBytes(PngHeader(20000, 20000)); }, &text), 481);
        QCOMPARE(text, QStringLiteral("Picture too large: 20000 x 20000 pixels (the limit is 100 megapixels)"));
        QCOMPARE(ErrorOf([&] { store.FromBytes(JpegMarkers({}, 0xC0, 8, 65000, 65000, 3)); }, &text), 481);
        QCOMPARE(text, QStringLiteral("Picture too large: 65000 x 65000 pixels (the limit is 100 megapixels)"));
        // Just under the limit is a picture (never decoded here).
        const PictureRef ok = store.FromBytes(PngHeader(10000, 10000));
        QCOMPARE(ok->PixelSize(), QSize(10000, 10000));
    }

    void truncatedJpegKeepsItsSize()
    {
        const QByteArray whole = Encoded(Gradient(320, 240), "JPG", 90);
        PictureStore store;
        const PictureRef p = store.FromBytes(whole.left(whole.size() / 2));
        QCOMPARE(p->PixelSize(), QSize(320, 240));
        const QImage img = p->Image(); // the decoder fills what is missing, or gives up
        QVERIFY(img.isNull() || img.size() == QSize(320, 240));
        QCOMPARE(ErrorOf([&] { store.FromBytes(whole.left(40)); }), 481); // no frame header yet
    }

    void jpegStreamsThatPassThrough()
    {
        const QByteArray rgb = Encoded(Gradient(64, 48), "JPG", 90);
        auto s = ParseJpegStream(rgb);
        QVERIFY(s);
        QCOMPARE(s->width, 64);
        QCOMPARE(s->height, 48);
        QCOMPARE(s->components, 3);
        QVERIFY(!s->invertedCmyk);
        QImage grayImg = Gradient(30, 20).convertToFormat(QImage::Format_Grayscale8);
        QCOMPARE(ParseJpegStream(Encoded(grayImg, "JPG"))->components, 1);

        QCOMPARE(ParseJpegStream(JpegMarkers({}, 0xC2, 8, 10, 20, 3))->width, 10); // progressive
        auto cmyk = ParseJpegStream(JpegMarkers(Segment(0xEE, QByteArray("Adobe\0\x64\0\0\0\0\x02", 12)), 0xC0, 8, 5, 5, 4));
        QVERIFY(cmyk && cmyk->invertedCmyk);
        QVERIFY(!ParseJpegStream(JpegMarkers({}, 0xC1, 12, 10, 10, 3)));  // 12-bit
        QVERIFY(!ParseJpegStream(JpegMarkers({}, 0xC9, 8, 10, 10, 3)));   // arithmetic coding
        QVERIFY(!ParseJpegStream(JpegMarkers({}, 0xC3, 8, 10, 10, 3)));   // lossless
        QVERIFY(!ParseJpegStream(JpegMarkers({}, 0xC0, 8, 10, 10, 2)));   // two components
        QVERIFY(!ParseJpegStream(JpegMarkers({}, 0xC0, 8, 10, 0, 3)));    // height from a DNL
        // A turned photo would show unturned: it is decoded instead.
        const QByteArray exif6("Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0", 28);
        QVERIFY(!ParseJpegStream(JpegMarkers(Segment(0xE1, exif6), 0xC0, 8, 10, 10, 3)));
        QByteArray exif1 = exif6;
        exif1[25] = 1;
        QVERIFY(ParseJpegStream(JpegMarkers(Segment(0xE1, exif1), 0xC0, 8, 10, 10, 3)));
        // Lengths that run past the end, and no frame at all.
        QVERIFY(!ParseJpegStream(QByteArray("\xFF\xD8\xFF\xE0\x7F\xFF", 6)));
        QVERIFY(!ParseJpegStream(QByteArray("\xFF\xD8\xFF\xDA\x00\x02", 6)));
        QVERIFY(!ParseJpegStream(QByteArray("\x89PNG", 4)));
    }

    void prefetchFillsTheCache()
    {
        QTemporaryDir dir;
        QStringList paths;
        for (int i = 0; i < 4; ++i)
            paths << Write(dir, QStringLiteral("p%1.png").arg(i), Encoded(Gradient(50 + i, 40), "PNG"));
        paths << dir.filePath("missing.png");
        PictureStore store;
        store.Prefetch(paths, true);
        store.WaitForPrefetch();
        QCOMPARE(store.CachedCount(), 4);
        QVERIFY(store.Load(paths[2])->IsDecoded());
    }
};

QTEST_GUILESS_MAIN(TestPictureStore)
#include "tst_picturestore.moc"
