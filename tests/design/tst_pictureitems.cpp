#include "design/OffscreenPage.h"
#include "design/RptImage.h"
#include "document/clsRptControl.h"
#include "entry/Prompts.h"
#include "render/Picture.h"

#include <QGraphicsScene>
#include <QPainter>
#include <QtEndian>
#include <QtTest>
#include <sys/stat.h>

namespace {

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

// A PNG signature and header chunk declaring w x h pixels, and nothing else.
QByteArray PngHeader(quint32 w, quint32 h)
{
    char be[4];
    QByteArray ihdr("IHDR");
    qToBigEndian(w, be);
    ihdr.append(be, 4);
    qToBigEndian(h, be);
    ihdr.append(be, 4);
    ihdr.append("\x08\x02\x00\x00\x00", 5);
    QByteArray png("\x89PNG\r\n\x1a\n\x00\x00\x00\x0d", 12);
    png += ihdr;
    qToBigEndian(Crc32(ihdr), be);
    png.append(be, 4);
    // An empty data chunk: readers stop at its header to report the size.
    return png.append("\0\0\0\0IDAT\x35\xaf\x06\x1e", 12);
}

} // namespace

class TestPictureItems : public QObject {
    Q_OBJECT

private slots:
    void itemsShowingOnePictureShareOneDecode()
    {
        QTemporaryDir dir;
        const QString png = dir.filePath("plan.png");
        QImage img(900, 900, QImage::Format_RGB32);
        img.fill(qRgb(10, 120, 200));
        QVERIFY(img.save(png));
        const QString report = dir.filePath("shared.rdf");
        {
            OffscreenPage page;
            clsRptControl doc;
            doc.Init(nullptr, &page, nullptr);
            doc.SetSelectionManager(&page);
            for (int i = 0; i < 64; ++i) {
                doc.AddNew(ObjType::Image, QStringLiteral("Unbound"), 0);
                QObject* c = doc.UserControl();
                clsRptControl::SetProp(c, "Embeded", true);
                clsRptControl::SetProp(c, "FileName", png);
                clsRptControl::SetProp(c, "Left", float((i % 8) * 1400));
                clsRptControl::SetProp(c, "Top", float((i / 8) * 1400));
                clsRptControl::SetProp(c, "Width", 1300.f);
                clsRptControl::SetProp(c, "Height", 1300.f);
            }
            QVERIFY(doc.SaveReport(report, false));
        }
        PictureStore::Global().Clear();
        OffscreenPage page;
        clsRptControl doc;
        doc.Init(nullptr, &page, nullptr);
        doc.SetSelectionManager(&page);
        doc.LoadReport(report);
        QCOMPARE(doc.RptItemCount(), 64);
        const PictureRef first = qobject_cast<RptImage*>(doc.Item(1).control)->PictureHandle();
        QVERIFY(first);
        for (int i = 2; i <= 64; ++i)
            QCOMPARE(qobject_cast<RptImage*>(doc.Item(i).control)->PictureHandle().get(), first.get());
        QVERIFY(!first->IsDecoded()); // opening needs only the size

        QImage screen(750, 750, QImage::Format_RGB32);
        screen.fill(Qt::white);
        QPainter p(&screen);
        page.Scene().render(&p, QRectF(0, 0, 750, 750), QRectF(0, 0, 11250, 11250));
        p.end();
        QCOMPARE(PictureStore::Global().DecodedBytes(), qint64(900 * 900 * 4)); // once for all 64
        QCOMPARE(screen.pixel(40, 40), qRgb(10, 120, 200));
        QCOMPARE(screen.pixel(700, 700), qRgb(10, 120, 200));
    }

    void aPictureTooLargeIsRefusedAndTheNameKept()
    {
        QTemporaryDir dir;
        QFile big(dir.filePath("huge.png"));
        QVERIFY(big.open(QIODevice::WriteOnly));
        big.write(PngHeader(12000, 9000));
        big.close();
        ScriptedPrompter prompts;
        RptImage img;
        QImage red(80, 40, QImage::Format_RGB32);
        red.fill(Qt::red);
        img.SetPicture(red);
        img.setProperty("FileName", big.fileName());
        QCOMPARE(prompts.asked.size(), size_t(1));
        QCOMPARE(prompts.asked[0].prompt,
                 QStringLiteral("Error: 481 - Picture too large: 12000 x 9000 pixels (the limit is 100 megapixels)"));
        QCOMPARE(img.FileName(), big.fileName());
        QCOMPARE(img.Picture().size(), QSize(80, 40)); // the picture it had stays

        // A FIFO in place of a picture answers at once instead of hanging the window.
        const QString fifo = dir.filePath("photo.jpg");
        QCOMPARE(::mkfifo(fifo.toLocal8Bit().constData(), 0600), 0);
        img.setProperty("FileName", fifo);
        QCOMPARE(prompts.asked.back().prompt, QStringLiteral("Error: 75 - Path/File access error"));
    }
};

QTEST_MAIN(TestPictureItems)
#include "tst_pictureitems.moc"
