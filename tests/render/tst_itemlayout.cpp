// The layout arithmetic of the four item kinds, in twips.
#include "render/Format.h"
#include "render/ItemLayout.h"

#include <QFontMetricsF>
#include <QtTest>

using namespace ItemLayout;

class TestItemLayout : public QObject {
    Q_OBJECT
private slots:
    void strokeThickness_data()
    {
        QTest::addColumn<double>("points");
        QTest::addColumn<double>("px");
        QTest::addColumn<double>("twips");
        QTest::newRow("0 counts as 1 point") << 0.0 << 15.0 << 15.0;
        QTest::newRow("2 points") << 2.0 << 15.0 << 30.0;
        QTest::newRow("1.5 points rounds down to 2 px") << 1.5 << 15.0 << 30.0;
        QTest::newRow("half a point is still a pixel") << 0.5 << 15.0 << 15.0;
        QTest::newRow("3 points at 300 dpi (12.5 px)") << 3.0 << 4.8 << 57.6;
        QTest::newRow("1 point at 72 dpi") << 1.0 << 20.0 << 20.0;
    }
    void strokeThickness()
    {
        QFETCH(double, points);
        QFETCH(double, px);
        QFETCH(double, twips);
        QVERIFY2(qFuzzyCompare(StrokeThickness(points, px), twips), qPrintable(QString::number(StrokeThickness(points, px))));
    }

    void lines()
    {
        QCOMPARE(LineOrientation(QSizeF(1440, 100)), kHorizontal);
        QCOMPARE(LineOrientation(QSizeF(500, 500)), kVertical); // a square is vertical
        QCOMPARE(LineOrientation(QSizeF(100, 1440)), kVertical);

        QCOMPARE(LineControlSize(QSizeF(1440, 600), 15), QSizeF(1440, 45));
        QCOMPARE(LineControlSize(QSizeF(500, 500), 30), QSizeF(60, 500));
        QCOMPARE(LineRect(QSizeF(1440, 45), 15), QRectF(0, 0, 1440, 15));
        QCOMPARE(LineRect(QSizeF(60, 2000), 30), QRectF(0, 0, 30, 2000));

        // Thicker than one pixel is always drawn solid.
        QCOMPARE(LineDrawStyle(ItemCode::BorderDash, 30, 15), ItemCode::BorderSolid);
        QCOMPARE(LineDrawStyle(ItemCode::BorderDash, 15, 15), ItemCode::BorderDash);
        QCOMPARE(LineDrawStyle(ItemCode::BorderNone, 57.6, 4.8), ItemCode::BorderSolid);
        QCOMPARE(LineDrawStyle(ItemCode::BorderDot, 4.8, 4.8), ItemCode::BorderDot);
    }

    void boxEdgesAndHitBand()
    {
        const BoxEdges e = BoxEdgeRects(QSizeF(1000, 600), 30, 15);
        QCOMPARE(e.top, QRectF(0, 0, 1000, 15));
        QCOMPARE(e.bottom, QRectF(0, 585, 1000, 15));
        QCOMPARE(e.left, QRectF(0, 0, 30, 600));
        QCOMPARE(e.right, QRectF(970, 0, 30, 600));

        const QSizeF box(2000, 1000);
        QVERIFY(BoxHit(box, QPointF(10, 500), true));    // 10 twips inside the left edge
        QVERIFY(BoxHit(box, QPointF(1990, 500), true));  // right edge
        QVERIFY(BoxHit(box, QPointF(1000, 975), true));  // bottom edge
        QVERIFY(!BoxHit(box, QPointF(1000, 500), true)); // the middle reaches what lies beneath
        QVERIFY(!BoxHit(box, QPointF(30, 30), true));    // exactly on the band's inner limit
        QVERIFY(BoxHit(box, QPointF(1000, 500), false)); // an opaque box is hit everywhere
        QVERIFY(!BoxHit(box, QPointF(-1, 500), false));
        QVERIFY(!BoxHit(box, QPointF(2001, 500), true));
    }

    void textBorderThickness_data()
    {
        QTest::addColumn<double>("borderTwips");
        QTest::addColumn<QSizeF>("size");
        QTest::addColumn<double>("px");
        QTest::addColumn<double>("bw");
        QTest::newRow("0 is one pixel") << 0.0 << QSizeF(1440, 300) << 15.0 << 15.0;
        QTest::newRow("1 twip is one pixel") << 1.0 << QSizeF(1440, 300) << 15.0 << 15.0;
        QTest::newRow("3 points") << 60.0 << QSizeF(1440, 300) << 15.0 << 60.0;
        QTest::newRow("nearest pixel up") << 50.0 << QSizeF(1440, 300) << 15.0 << 45.0;
        QTest::newRow("cut to half the height") << 400.0 << QSizeF(1440, 300) << 15.0 << 150.0;
        QTest::newRow("cut to half the width") << 400.0 << QSizeF(240, 900) << 15.0 << 120.0;
        QTest::newRow("300 dpi") << 20.0 << QSizeF(1440, 300) << 4.8 << 19.2;
    }
    void textBorderThickness()
    {
        QFETCH(double, borderTwips);
        QFETCH(QSizeF, size);
        QFETCH(double, px);
        QFETCH(double, bw);
        QVERIFY(qFuzzyCompare(TextBorderThickness(borderTwips, size, px), bw));
    }

    void flatAndShadowLayouts()
    {
        const QSizeF size(1440, 300);
        TextParts t = TextLayout(size, 20, ItemCode::BorderNone, ItemCode::EffectFlat, 15);
        QCOMPARE(t.bw, 0.0);
        QCOMPARE(t.label, QRectF(0, 0, 1440, 300));
        QVERIFY(!t.ring);
        QVERIFY(!t.shadow);

        // Solid 2-point border (2.67 px): a 3-pixel ring around the label.
        t = TextLayout(size, 40, ItemCode::BorderSolid, ItemCode::EffectFlat, 15);
        QCOMPARE(t.label, QRectF(45, 45, 1350, 210));
        QCOMPARE(t.frame, QRectF(0, 0, 1440, 300));
        QVERIFY(t.ring);

        // Shadow with a 3-point border: strips at the right and bottom, a 1-pixel frame.
        t = TextLayout(size, 60, ItemCode::BorderSolid, ItemCode::EffectShadow, 15);
        QVERIFY(t.shadow);
        QCOMPARE(t.bw, 60.0);
        QCOMPARE(t.margin, 15.0);
        QCOMPARE(t.vShadow, QRectF(1380, 66, 60, 300 - 66 - 1));
        QCOMPARE(t.hShadow, QRectF(66, 240, 1440 - 66 - 1, 60));
        QCOMPARE(t.label, QRectF(15, 15, 1440 - 15 - 60, 300 - 15 - 60));
        QCOMPARE(t.frame, QRectF(0, 0, t.label.width() + 30, t.label.height() + 30));

        // The margin is 12 twips in whole pixels: 3 pixels at 300 dpi.
        t = TextLayout(size, 60, ItemCode::BorderSolid, ItemCode::EffectShadow, 4.8);
        QVERIFY(qFuzzyCompare(t.margin, 14.4));
    }

    void shownText_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("format");
        QTest::addColumn<int>("formatClass");
        QTest::addColumn<QString>("shown");
        QTest::newRow("no format shows the raw value") << "1234.5" << "" << 1 << "1234.5";
        QTest::newRow("class 0 is unformatted") << "1234.5" << "#,##0" << 0 << "1234.5";
        QTest::newRow("number") << "1234.5" << "#,##0" << 1 << "1,235";
        QTest::newRow("trailing point trimmed") << "12" << "0." << 1 << "12";
        QTest::newRow("trailing point kept for class 3") << "12" << "0." << 3 << "12.";
        QTest::newRow("empty stays empty") << "" << "#" << 1 << "";
        QTest::newRow("date class unchanged") << "2024-12-25" << "m/d/yy" << 2 << "12/25/24";
        QTest::newRow("class 4 cut to the format length") << "2024-12-25" << "m/d/yy" << 4 << "12/25/";
    }
    void shownText()
    {
        QFETCH(QString, value);
        QFETCH(QString, format);
        QFETCH(int, formatClass);
        QFETCH(QString, shown);
        QCOMPARE(ShownText(value, format, formatClass), shown);
    }

    void messageAndPlaceholderTexts()
    {
        QCOMPARE(FormatFailureMessage(FormatError{13, QStringLiteral("Type mismatch")}, QStringLiteral("abc"), QStringLiteral("#,##0")),
                 QStringLiteral("Error: 13 - Type mismatch\nValue: abc\nFormat: #,##0"));
        QCOMPARE(PlaceholderCaption(12), QStringLiteral("  Picture 12"));
    }

    void graphicsToken_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expanded");
        const QString folder = QStringLiteral("C:\\Tervane\\Graphics\\");
        QTest::newRow("at the start") << "~Graphics~logo.bmp" << folder + "logo.bmp";
        QTest::newRow("every occurrence once it starts so") << "~Graphics~a~Graphics~b.png" << folder + "a" + folder + "b.png";
        QTest::newRow("later in the name: unchanged") << "C:\\x\\~Graphics~logo.bmp" << "C:\\x\\~Graphics~logo.bmp";
        QTest::newRow("case matters") << "~graphics~logo.bmp" << "~graphics~logo.bmp";
        QTest::newRow("token alone") << "~Graphics~" << folder;
    }
    void graphicsToken()
    {
        QFETCH(QString, name);
        QFETCH(QString, expanded);
        QCOMPARE(ExpandGraphicsToken(name, QStringLiteral("C:\\Tervane\\Graphics\\")), expanded);
    }

    void pictureRect_data()
    {
        QTest::addColumn<QSizeF>("item");
        QTest::addColumn<QSizeF>("picture");
        QTest::addColumn<int>("sizeMode");
        QTest::addColumn<int>("alignment");
        QTest::addColumn<QRectF>("previous");
        QTest::addColumn<QRectF>("expected");
        const QSizeF tall(1000, 3000), wide(3000, 1000);
        const QSizeF widePic(2000, 500), tallPic(500, 2000);
        using namespace ItemCode;
        QTest::newRow("zoom wide picture, tall item: full width") << tall << widePic << SizeZoom << PicTopLeft << QRectF() << QRectF(0, 0, 1000, 250);
        QTest::newRow("zoom tall picture, wide item: full height") << wide << tallPic << SizeZoom << PicTopLeft << QRectF() << QRectF(0, 0, 250, 1000);
        QTest::newRow("zoom centred") << tall << widePic << SizeZoom << PicCenter << QRectF() << QRectF(0, 1375, 1000, 250);
        QTest::newRow("zoom top right") << wide << tallPic << SizeZoom << PicTopRight << QRectF() << QRectF(2750, 0, 250, 1000);
        QTest::newRow("zoom bottom left") << tall << widePic << SizeZoom << PicBottomLeft << QRectF() << QRectF(0, 2750, 1000, 250);
        QTest::newRow("clip keeps the natural size") << wide << widePic << SizeClip << PicBottomRight << QRectF() << QRectF(1000, 500, 2000, 500);
        QTest::newRow("clip larger than the item") << tall << widePic << SizeClip << PicCenter << QRectF() << QRectF(-500, 1250, 2000, 500);
        QTest::newRow("stretch ignores alignment") << wide << tallPic << SizeStretch << PicBottomRight << QRectF() << QRectF(0, 0, 3000, 1000);
        QTest::newRow("unknown size mode keeps the size") << wide << tallPic << 7 << PicTopLeft << QRectF(5, 5, 400, 300) << QRectF(0, 0, 400, 300);
        QTest::newRow("unknown alignment keeps the place") << wide << tallPic << SizeZoom << 9 << QRectF(40, 50, 1, 1) << QRectF(40, 50, 250, 1000);
    }
    void pictureRect()
    {
        QFETCH(QSizeF, item);
        QFETCH(QSizeF, picture);
        QFETCH(int, sizeMode);
        QFETCH(int, alignment);
        QFETCH(QRectF, previous);
        QFETCH(QRectF, expected);
        QCOMPARE(PictureRect(item, picture, sizeMode, alignment, previous), expected);
    }

    void textHeightWraps()
    {
        ItemLook look;
        look.fontSize = 10;
        const double line = QFontMetricsF(ItemFont(look)).height();
        QVERIFY(line > 200 && line < 260); // a 10-point line is about 230 twips

        QCOMPARE(TextHeight(look, 1440), line); // empty: still one line
        look.text = QStringLiteral("Short");
        QCOMPARE(TextHeight(look, 1440), line);
        look.text = QStringLiteral("Charming three bedroom colonial with a wrap-around porch and a new roof");
        // About 70 characters at 10 points wrap to three or four lines in two inches.
        const double wrapped = TextHeight(look, 2880);
        QVERIFY2(wrapped >= 3 * line && wrapped <= 4 * line, qPrintable(QString::number(wrapped / line)));
        QVERIFY(TextHeight(look, 1440) > wrapped);
        look.wordWrap = false;
        QCOMPARE(TextHeight(look, 2880), line);
    }
};

QTEST_MAIN(TestItemLayout)
#include "tst_itemlayout.moc"
