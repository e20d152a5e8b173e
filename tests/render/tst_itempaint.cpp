// Painting every item kind in every style through the shared painter. Each kind's sheet is
// written to renders/ beside the test binary for a look, checked pixel by pixel where the
// rules are exact, and compared with a committed reference (with tolerance for font noise).
// PW_UPDATE_REFERENCES=1 rewrites the references.
#include "render/ItemLayout.h"
#include "render/ItemPainter.h"

#include <QDir>
#include <QPainter>
#include <QPicture>
#include <QtTest>

namespace {

constexpr double kDpi = 96;
constexpr double kPx = 15; // twips per pixel at 96 dpi

QImage Render(const QList<ItemLook>& looks, QSize pixels, double dpi = kDpi)
{
    QImage img(pixels, QImage::Format_ARGB32_Premultiplied);
    img.fill(Qt::white);
    QPainter p(&img);
    const double px = PixelTwipsForDpi(dpi);
    p.scale(1 / px, 1 / px);
    for (const ItemLook& l : looks)
        PaintItem(p, l, px);
    return img;
}

QRgb At(const QImage& img, double xTwips, double yTwips)
{
    return img.pixel(int(xTwips / kPx), int(yTwips / kPx)) & 0xFFFFFF;
}

ItemLook Text(const QRectF& r, const QString& text)
{
    ItemLook l;
    l.kind = ItemKind::Text;
    l.rect = r;
    l.text = text;
    return l;
}

ItemLook Shape(ItemKind kind, const QRectF& r, int style, double width)
{
    ItemLook l;
    l.kind = kind;
    l.rect = r;
    l.borderStyle = style;
    l.lineStyle = style;
    l.borderWidth = width;
    return l;
}

// A bound picture without a photo: the caption, framed.
ItemLook Placeholder(const QRectF& r)
{
    ItemLook l;
    l.kind = ItemKind::Picture;
    l.rect = r;
    l.pictureVisible = false;
    l.placeholderVisible = true;
    l.placeholder = ItemLayout::PlaceholderCaption(3);
    l.borderStyle = ItemCode::BorderSolid;
    return l;
}

QImage TestPicture()
{
    // 80 x 40 pixels: red left half, blue right half, a black diagonal.
    QImage img(80, 40, QImage::Format_RGB32);
    img.fill(QColor(220, 30, 30));
    QPainter p(&img);
    p.fillRect(40, 0, 40, 40, QColor(30, 30, 220));
    p.setPen(Qt::black);
    p.drawLine(0, 0, 79, 39);
    return img;
}

} // namespace

class TestItemPaint : public QObject {
    Q_OBJECT
    QString m_out;

    QImage sheet(const QString& kind) const
    {
        QList<ItemLook> looks;
        auto cell = [](int col, int row, double w, double h) {
            return QRectF(150 + col * 3150, 150 + row * 750, w, h);
        };
        if (kind == QLatin1String("text")) {
            const QString wrap = QStringLiteral("Charming colonial with a wrap-around porch, new roof and a two-car garage");
            const QStringList fonts = {QStringLiteral("Arial"), QStringLiteral("Times New Roman"), QStringLiteral("Courier New")};
            for (int i = 0; i < 12; ++i) {
                ItemLook l = Text(cell(i % 3, i / 3, 3000, 600), QStringLiteral("$1,250,000 List Price"));
                l.alignment = i % 3 == 0 ? ItemCode::AlignLeft : i % 3 == 1 ? ItemCode::AlignCenter : ItemCode::AlignRight;
                l.fontName = fonts[(i / 3) % 3];
                l.fontSize = 8 + 2 * (i % 4);
                l.bold = i & 1;
                l.italic = i & 2;
                l.underline = i == 5;
                l.strikeout = i == 7;
                l.borderStyle = i < 3 ? ItemCode::BorderNone : ItemCode::BorderSolid;
                l.borderWidth = i % 4;
                l.borderColor = 0x00800000 * (i & 1) + 0x000000C0 * ((i >> 1) & 1);
                l.specialEffect = i >= 6 && i < 9 ? ItemCode::EffectShadow : ItemCode::EffectFlat;
                if (l.specialEffect == ItemCode::EffectShadow)
                    l.borderWidth = 3;
                l.backStyle = i % 2;
                l.backColor = 0x00E0F0FF;
                l.foreColor = i == 4 ? 0x000000C0 : 0;
                l.showOutline = i == 11;
                if (i >= 9)
                    l.text = wrap;
                looks << l;
            }
        } else if (kind == QLatin1String("box")) {
            for (int style = 0; style <= 6; ++style)
                for (int wide = 0; wide < 2; ++wide) {
                    ItemLook l = Shape(ItemKind::Box, cell(wide, style, 2700, 600), style, wide ? 3 : 1);
                    l.borderColor = 0x00400080 * quint32(wide);
                    l.backStyle = style % 2;
                    l.backColor = 0x00F0E0D0;
                    looks << l;
                }
        } else if (kind == QLatin1String("line")) {
            for (int style = 0; style <= 6; ++style)
                for (int w = 0; w < 3; ++w) {
                    const double width = w == 0 ? 0 : w == 1 ? 1 : 4;
                    looks << Shape(ItemKind::Line, cell(w, style, 3000, 45), style, width);
                }
            for (int style = 0; style <= 6; ++style)
                looks << Shape(ItemKind::Line, QRectF(150 + style * 300, 5550, 45, 1500), style, style % 2 ? 1 : 2);
        } else {
            const PictureRef picture = Picture::FromImage(TestPicture());
            for (int mode = 0; mode < 3; ++mode)
                for (int align = 0; align < 5; ++align) {
                    ItemLook l;
                    l.kind = ItemKind::Picture;
                    l.rect = QRectF(150 + align * 1650, 150 + mode * 1650, 1500, align % 2 ? 1500 : 900);
                    l.picture = picture;
                    l.sizeMode = mode;
                    l.pictureAlignment = align;
                    l.backStyle = ItemCode::BackOpaque;
                    l.backColor = 0x00D0D0D0;
                    l.borderStyle = align == 2 ? ItemCode::BorderSolid : ItemCode::BorderNone;
                    l.showOutline = align == 4;
                    looks << l;
                }
            ItemLook holder = Placeholder(QRectF(150, 5100, 1500, 900));
            holder.placeholderRect = QRectF(1, 1, 1500, 900);
            looks << holder;
        }
        return Render(looks, QSize(640, 520));
    }

private slots:
    void initTestCase()
    {
        m_out = QCoreApplication::applicationDirPath() + QStringLiteral("/renders/");
        QDir().mkpath(m_out);
    }

    void lineStylesAndThickness()
    {
        const QList<ItemLook> looks = {
            Shape(ItemKind::Line, QRectF(150, 150, 3000, 45), ItemCode::BorderDash, 1),
            Shape(ItemKind::Line, QRectF(150, 450, 3000, 60), ItemCode::BorderDash, 2), // 2 px: drawn solid
            Shape(ItemKind::Line, QRectF(150, 750, 3000, 45), ItemCode::BorderNone, 1),
            Shape(ItemKind::Line, QRectF(3300, 150, 45, 1500), ItemCode::BorderSolid, 0),
        };
        const QImage img = Render(looks, QSize(240, 120));
        img.save(m_out + QStringLiteral("check_lines.png"));
        auto gaps = [&](double yTwips) {
            int white = 0;
            for (int x = 10; x < 210; ++x)
                white += (img.pixel(x, int(yTwips / kPx)) & 0xFFFFFF) == 0xFFFFFF;
            return white;
        };
        QVERIFY(gaps(150) > 20);           // one-pixel dash: gaps along the line
        QCOMPARE(gaps(450), 0);            // thicker than a pixel: solid
        QCOMPARE(gaps(465), 0);            // ... and 2 pixels thick
        QCOMPARE(At(img, 1000, 480), 0xFFFFFFu); // no third pixel
        QCOMPARE(gaps(750), 200);          // style 5: invisible
        // Width 0 is one pixel, down the left of the vertical control.
        QCOMPARE(At(img, 3300, 600), 0u);
        QCOMPARE(At(img, 3315, 600), 0xFFFFFFu);
    }

    void boxEdgesAndBackground()
    {
        ItemLook clear = Shape(ItemKind::Box, QRectF(150, 150, 1500, 900), ItemCode::BorderSolid, 0);
        ItemLook filled = Shape(ItemKind::Box, QRectF(1950, 150, 1500, 900), ItemCode::BorderSolid, 3);
        filled.backStyle = ItemCode::BackOpaque;
        filled.backColor = 0x0000FFFF; // yellow (BGR)
        filled.borderColor = 0x00FF0000; // blue
        const QImage img = Render({clear, filled}, QSize(240, 80));
        QCOMPARE(At(img, 150, 600), 0u);            // left edge, one pixel
        QCOMPARE(At(img, 165, 600), 0xFFFFFFu);     // transparent inside
        QCOMPARE(At(img, 1635, 600), 0u);           // right edge
        QCOMPARE(At(img, 900, 1035), 0u);           // bottom edge
        QCOMPARE(At(img, 1950 + 45, 600), 0x0000FFu); // 3 points = 4 pixels: the 4th is edge
        QCOMPARE(At(img, 1950 + 60, 600), 0xFFFF00u); // then the background
        QCOMPARE(At(img, 3450 - 15, 600), 0x0000FFu);
    }

    void textBorderAndShadow()
    {
        ItemLook flat = Text(QRectF(150, 150, 1500, 450), QString());
        flat.borderStyle = ItemCode::BorderSolid;
        flat.borderWidth = 2; // 40 twips: 3 pixels
        flat.borderColor = 0x000000FF; // red
        ItemLook shadow = Text(QRectF(1950, 150, 1500, 450), QString());
        shadow.specialEffect = ItemCode::EffectShadow;
        shadow.borderStyle = ItemCode::BorderSolid;
        shadow.borderWidth = 3; // bw 60, s 66, m 15
        shadow.borderColor = 0x00008000;
        shadow.backStyle = ItemCode::BackOpaque;
        shadow.backColor = 0x00C0C0C0;
        const QImage img = Render({flat, shadow}, QSize(240, 60));
        img.save(m_out + QStringLiteral("check_text_frames.png"));
        QCOMPARE(At(img, 150 + 30, 300), 0xFF0000u);    // third pixel of the ring
        QCOMPARE(At(img, 150 + 45, 300), 0xFFFFFFu);    // transparent label
        QCOMPARE(At(img, 1950, 300), 0x008000u);        // 1-pixel frame at the left
        QCOMPARE(At(img, 1950 + 15, 300), 0xC0C0C0u);   // opaque label
        QCOMPARE(At(img, 3450 - 15, 300), 0x008000u);   // right shadow strip
        QCOMPARE(At(img, 3450 - 15, 150), 0xFFFFFFu);   // the strip starts s = 66 twips down
        QCOMPARE(At(img, 3450 - 15, 225), 0x008000u);
        QCOMPARE(At(img, 1950 + 30, 600 - 15), 0xFFFFFFu); // the bottom strip starts s in
        QCOMPARE(At(img, 1950 + 90, 600 - 15), 0x008000u);
    }

    void textAlignmentAndClipping()
    {
        // Where the ink lands tells the alignment; nothing spills outside the label.
        auto inkSpan = [](const QImage& img) {
            int first = img.width(), last = -1;
            for (int y = 0; y < img.height(); ++y)
                for (int x = 0; x < img.width(); ++x)
                    if (qGray(img.pixel(x, y)) < 128) {
                        first = std::min(first, x);
                        last = std::max(last, x);
                    }
            return std::pair(first, last);
        };
        ItemLook l = Text(QRectF(0, 0, 3000, 300), QStringLiteral("Price"));
        l.alignment = ItemCode::AlignLeft;
        auto [l0, l1] = inkSpan(Render({l}, QSize(200, 20)));
        l.alignment = ItemCode::AlignRight;
        auto [r0, r1] = inkSpan(Render({l}, QSize(200, 20)));
        l.alignment = ItemCode::AlignCenter;
        auto [c0, c1] = inkSpan(Render({l}, QSize(200, 20)));
        QVERIFY(l0 <= 2);
        QVERIFY(r1 >= 196 && r1 < 200);
        QVERIFY(std::abs((c0 + c1) / 2 - 100) <= 2);
        QCOMPARE(l1 - l0, r1 - r0);

        l.alignment = ItemCode::AlignLeft;
        l.rect = QRectF(0, 0, 900, 300);
        l.text = QStringLiteral("WWWWWWWWWWWWWWWWWWWWWWWW"); // one word, wider than the label
        auto [w0, w1] = inkSpan(Render({l}, QSize(200, 20)));
        QVERIFY(w0 >= 0);
        QVERIFY2(w1 < 60, qPrintable(QString::number(w1)));
    }

    void wrappedTextShowsWholeLinesOnly()
    {
        // A field one and a half lines tall whose text wraps: the second line would be cut in
        // half, so none of it shows, on the screen and on paper alike.
        ItemLook l = Text(QRectF(0, 0, 1800, 0), QStringLiteral("Spacious family home with a large garden"));
        l.fontSize = 12;
        const double line = QFontMetricsF(ItemLayout::ItemFont(l)).height();
        l.rect.setHeight(line * 1.6);
        const double shown = ItemLayout::WholeLinesHeight(l, l.rect.size());
        QVERIFY2(shown > line * 0.95 && shown < line * 1.05, qPrintable(QString::number(shown)));
        for (double dpi : {96.0, 600.0}) {
            const double px = PixelTwipsForDpi(dpi);
            const QImage img = Render({l}, QSize(int(1800 / px) + 2, int(l.rect.height() / px) + 2), dpi);
            int firstLine = 0, below = 0;
            for (int y = 0; y < img.height(); ++y)
                for (int x = 0; x < img.width(); ++x)
                    if (qGray(img.pixel(x, y)) < 160)
                        (y * px < line ? firstLine : below) += 1;
            QVERIFY2(firstLine > 20, qPrintable(QString::number(dpi)));
            QVERIFY2(below == 0, qPrintable(QStringLiteral("%1 dpi: %2 inked pixels under the first line").arg(dpi).arg(below)));
        }
        // Lines that fit are all shown; a label too short for one line still shows its top.
        l.rect.setHeight(line * 2.2);
        QVERIFY(ItemLayout::WholeLinesHeight(l, l.rect.size()) >= line * 2);
        l.text = QStringLiteral("Garden");
        QCOMPARE(ItemLayout::WholeLinesHeight(l, QSizeF(1800, line * 0.5)), line * 0.5);
        QCOMPARE(ItemLayout::WholeLinesHeight(l, QSizeF(1800, line * 3)), line * 3);
    }

    void strokesKeepOnePixelWhenScaledDown_data()
    {
        QTest::addColumn<double>("zoom");
        // A preview replays the printer's pixels at a fraction of their size.
        for (double z : {0.41, 0.55, 0.60, 0.25})
            QTest::newRow(qPrintable(QString::number(z))) << z;
    }
    void strokesKeepOnePixelWhenScaledDown()
    {
        QFETCH(double, zoom);
        const double px = PixelTwipsForDpi(1200); // a high-resolution printer's pixel
        ItemLook box = Shape(ItemKind::Box, QRectF(1440, 1440, 2880, 1440), ItemCode::BorderSolid, 0);
        ItemLook dotted = Shape(ItemKind::Box, QRectF(1440, 3600, 2880, 1440), ItemCode::BorderDot, 0);
        ItemLook hline = Shape(ItemKind::Line, QRectF(1440, 5400, 2880, 45), ItemCode::BorderSolid, 0.5);
        ItemLook vline = Shape(ItemKind::Line, QRectF(5040, 1440, 45, 2880), ItemCode::BorderSolid, 1);
        ItemLook framed = Text(QRectF(1440, 6000, 2880, 600), QString());
        framed.borderStyle = ItemCode::BorderSolid;
        framed.borderWidth = 0;
        QPicture pic;
        {
            QPainter p(&pic);
            p.scale(1 / px, 1 / px);
            for (const ItemLook& l : {box, dotted, hline, vline, framed})
                PaintItem(p, l, px);
        }
        // Screen pixels per printer pixel at this zoom: 96 dpi shown for 1200 printed.
        const double s = zoom * 96.0 / 1200.0;
        QImage img(int(8 * 1440 / px * s), int(8 * 1440 / px * s), QImage::Format_ARGB32_Premultiplied);
        img.fill(Qt::white);
        {
            QPainter p(&img);
            p.scale(s, s);
            p.drawPicture(0, 0, pic);
        }
        // Sample across each stroke: some pixel on the way must be dark.
        auto crossed = [&](QPointF from, QPointF to) {
            const QPointF a = from / px * s, b = to / px * s;
            const int n = int(std::max(std::abs(b.x() - a.x()), std::abs(b.y() - a.y()))) + 1;
            for (int i = 0; i <= n; ++i) {
                const QPointF q = a + (b - a) * (double(i) / n);
                if (img.rect().contains(q.toPoint()) && qGray(img.pixel(q.toPoint())) < 100)
                    return true;
            }
            return false;
        };
        QVERIFY2(crossed({2880, 1300}, {2880, 1600}), "box top edge");
        QVERIFY2(crossed({2880, 2750}, {2880, 3000}), "box bottom edge");
        QVERIFY2(crossed({1300, 2160}, {1600, 2160}), "box left edge");
        QVERIFY2(crossed({4200, 2160}, {4500, 2160}), "box right edge");
        QVERIFY2(crossed({1600, 3450}, {1600, 3750}) || crossed({1700, 3450}, {1700, 3750}), "dotted top edge");
        QVERIFY2(crossed({2880, 5300}, {2880, 5550}), "half-point line");
        QVERIFY2(crossed({4950, 2880}, {5200, 2880}), "vertical line");
        QVERIFY2(crossed({2880, 5900}, {2880, 6150}), "text border");
    }

    void picturePlacement()
    {
        ItemLook pic;
        pic.kind = ItemKind::Picture;
        pic.rect = QRectF(0, 0, 1500, 3000); // tall item, wide picture: full width, 750 high
        pic.picture = Picture::FromImage(TestPicture());
        pic.backStyle = ItemCode::BackOpaque;
        pic.backColor = 0x0000FF00; // green
        pic.pictureAlignment = ItemCode::PicBottomLeft;
        QImage img = Render({pic}, QSize(100, 200));
        QCOMPARE(At(img, 750, 1000), 0x00FF00u);       // above the picture: background
        QCOMPARE(qRed(img.pixel(2, 198)), 220);        // red half at the bottom left
        QCOMPARE(qBlue(img.pixel(97, 160)), 220);      // blue half at the right
        QVERIFY(qGreen(img.pixel(50, 140)) > 200);     // just above the picture (starts at 150)

        pic.sizeMode = ItemCode::SizeStretch;
        img = Render({pic}, QSize(100, 200));
        QCOMPARE(qRed(img.pixel(2, 100)), 220);
        QCOMPARE(qBlue(img.pixel(97, 100)), 220);

        // Clip at natural size (80 x 40 px), centred in a smaller item: the middle of the picture.
        pic.sizeMode = ItemCode::SizeClip;
        pic.pictureAlignment = ItemCode::PicCenter;
        pic.rect = QRectF(0, 0, 600, 300); // 40 x 20 px
        img = Render({pic}, QSize(60, 40));
        QCOMPARE(qRed(img.pixel(5, 10)), 220);
        QCOMPARE(qBlue(img.pixel(35, 10)), 220);
        QCOMPARE(At(img, 700, 100), 0xFFFFFFu); // nothing drawn outside the item

        img = Render({Placeholder(QRectF(0, 0, 1500, 750))}, QSize(100, 50));
        QCOMPARE(At(img, 0, 300), 0u);
        QCOMPARE(At(img, 1485, 300), 0u);
        int ink = 0;
        for (int x = 2; x < 98; ++x)
            for (int y = 2; y < 20; ++y)
                ink += qGray(img.pixel(x, y)) < 128;
        QVERIFY(ink > 20);
    }

    void sheetsMatchReferences_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char* k : {"text", "box", "line", "picture"})
            QTest::newRow(k) << QString::fromLatin1(k);
    }

    void sheetsMatchReferences()
    {
        QFETCH(QString, kind);
        const QImage img = sheet(kind).convertToFormat(QImage::Format_RGB32);
        QVERIFY(img.save(m_out + kind + QStringLiteral(".png")));
        const QString refPath = QStringLiteral(PW_TEST_DATA "/items_") + kind + QStringLiteral(".png");
        if (qEnvironmentVariableIntValue("PW_UPDATE_REFERENCES") == 1) {
            QDir().mkpath(QStringLiteral(PW_TEST_DATA));
            QVERIFY(img.save(refPath));
            return;
        }
        const QImage ref = QImage(refPath).convertToFormat(QImage::Format_RGB32);
        QVERIFY2(!ref.isNull(), qPrintable(refPath + QStringLiteral(" is missing; run with PW_UPDATE_REFERENCES=1")));
        QCOMPARE(ref.size(), img.size());
        // Font hinting differs between machines: allow soft differences and a few changed pixels.
        qsizetype differing = 0;
        for (int y = 0; y < img.height(); ++y)
            for (int x = 0; x < img.width(); ++x) {
                const QRgb a = img.pixel(x, y), b = ref.pixel(x, y);
                const int d = std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                                        std::abs(qBlue(a) - qBlue(b))});
                differing += d > 64;
            }
        const double fraction = double(differing) / (img.width() * img.height());
        QVERIFY2(fraction < 0.005, qPrintable(QStringLiteral("%1 pixels differ").arg(differing)));
    }
};

QTEST_MAIN(TestItemPaint)
#include "tst_itempaint.moc"
