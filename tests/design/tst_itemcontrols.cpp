// The four item controls: their properties and rules, read and written by name as the
// document does, the events they raise, hit testing, and their failure messages.
#include "design/Rectangle.h"
#include "design/RptImage.h"
#include "design/RptLine.h"
#include "design/RptTextBox.h"
#include "entry/Prompts.h"
#include "support_windowhost.h"

#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// The controls only ask the host for AppPath, which may end in "\\" as on the host's own machine.
struct GraphicsHost : WindowTestHost {
    QString appPath;
    QString AppPath() const override { return appPath; }
};

void Mouse(QGraphicsScene& scene, QGraphicsItem* item, QEvent::Type type, QPointF pos,
           Qt::KeyboardModifiers mods = Qt::NoModifier)
{
    QGraphicsSceneMouseEvent e(type);
    e.setPos(pos);
    e.setScenePos(item->mapToScene(pos));
    e.setButton(type == QEvent::GraphicsSceneMouseMove ? Qt::NoButton : Qt::LeftButton);
    e.setButtons(type == QEvent::GraphicsSceneMouseRelease ? Qt::NoButton : Qt::LeftButton);
    e.setModifiers(mods);
    scene.sendEvent(item, &e);
}

QImage Picture80x40()
{
    QImage img(80, 40, QImage::Format_RGB32);
    img.fill(Qt::red);
    return img;
}

} // namespace

class TestItemControls : public QObject {
    Q_OBJECT
private slots:
    void init() { RptItemControl::SetPixelTwips(15); }

    void textDefaultsNameAndAlignment()
    {
        RptTextBox t;
        t.setObjectName(QStringLiteral("txtNewTextBox"));
        QCOMPARE(t.property("Text").toString(), QStringLiteral("txtNewTextBox"));
        QCOMPARE(t.property("BorderStyle").toInt(), 5);
        QCOMPARE(t.BorderWidthTwips(), 1);
        t.setProperty("Text", QStringLiteral("Label1"));
        t.setObjectName(QStringLiteral("other"));
        QCOMPARE(t.Text(), QStringLiteral("Label1"));

        t.setProperty("Alignment", 2);
        QCOMPARE(t.Look().alignment, ItemCode::AlignCenter);
        t.setProperty("Alignment", 7); // unknown: the label keeps its justification
        QCOMPARE(t.Look().alignment, ItemCode::AlignCenter);
        QCOMPARE(t.property("Alignment").toInt(), 7);
    }

    void textFormatsItsValue()
    {
        ScriptedPrompter prompts;
        RptTextBox t;
        t.setProperty("FormatClass", 1);
        t.setProperty("DataFormat", QStringLiteral("0."));
        t.setProperty("Text", QStringLiteral("1234.5"));
        t.setProperty("DataFormat", QStringLiteral("#,##0")); // shows the stored value again
        QCOMPARE(t.property("Text").toString(), QStringLiteral("1,235"));
        QCOMPARE(t.Value(), QStringLiteral("1234.5"));
        t.setProperty("FormatClass", 0);
        t.setProperty("DataFormat", QStringLiteral("0.0")); // class 0: not re-shown
        QCOMPARE(t.Text(), QStringLiteral("1,235"));
        QVERIFY(prompts.asked.empty());
    }

    void textFormatFailureIsReported()
    {
        ScriptedPrompter prompts;
        RptTextBox t;
        t.setProperty("FormatClass", 2);
        t.setProperty("DataFormat", QStringLiteral("mm/dd/yyyy"));
        t.setProperty("Text", QStringLiteral("1e300"));
        QCOMPARE(prompts.asked.size(), size_t(1));
        QCOMPARE(prompts.asked[0].prompt, QStringLiteral("Error: 6 - Overflow\nValue: 1e300\nFormat: mm/dd/yyyy"));
        QCOMPARE(prompts.asked[0].buttons, Mb::OKOnly);
        QCOMPARE(t.Text(), QStringLiteral("Error"));
        QCOMPARE(t.Value(), QStringLiteral("1e300")); // the value is still kept
    }

    void textBorderWidthInPointsAndTwips()
    {
        RptTextBox t;
        t.setProperty("BorderWidth", 2.0f); // the document writes floats
        QCOMPARE(t.BorderWidthTwips(), 40);

        // Larger than half the height: cut to half of it.
        t.Move(0, 0, 1440, 300);
        t.setProperty("BorderStyle", 6);
        t.setProperty("BorderWidth", 20);
        QCOMPARE(t.LabelRect(), QRectF(150, 150, 1140, 0));
        t.setProperty("BorderStyle", 5);
        QCOMPARE(t.LabelRect(), QRectF(0, 0, 1440, 300));
    }

    void textShadowMakesThreePoints()
    {
        RptTextBox t;
        t.setProperty("BorderWidth", 1);
        t.setProperty("SpecialEffect", 2);
        QCOMPARE(t.property("BorderWidth").toInt(), 3);
        QCOMPARE(t.property("BorderStyle").toInt(), 6);
        t.setProperty("SpecialEffect", 0);
        QCOMPARE(t.property("BorderWidth").toInt(), 3); // leaving the shadow keeps the width

        RptTextBox u;
        u.setProperty("BorderWidth", 2);
        u.setProperty("SpecialEffect", 2);
        QCOMPARE(u.property("BorderWidth").toInt(), 2); // only exactly 1 point becomes 3
        QCOMPARE(u.Look().specialEffect, 2);
    }

    void textAutoHeight()
    {
        const QString longText = QStringLiteral("Charming colonial with a wrap-around porch, new roof and a two-car garage");
        const auto box = [&](std::initializer_list<std::pair<const char*, QVariant>> props) {
            auto t = std::make_unique<RptTextBox>();
            t->Move(0, 0, 1440, 255);
            for (const auto& [name, value] : props)
                t->setProperty(name, value);
            t->setProperty("Text", longText);
            return t;
        };
        auto grow = box({{"AllowGrow", true}});
        QVERIFY2(grow->Height() > 4 * 230, qPrintable(QString::number(grow->Height())));
        QCOMPARE(grow->DesignHeight(), 255.0f);
        const float grown = grow->Height();
        grow->setProperty("Text", QStringLiteral("Short")); // not greater than the design height: kept
        QCOMPARE(grow->Height(), grown);

        // A border takes from the label, so the item grows by the same amount more.
        auto framed = box({{"BorderStyle", 6}, {"BorderWidth", 1}, {"AllowGrow", true}});
        QCOMPARE(framed->Height() - framed->LabelRect().height(), 30.0);

        QCOMPARE(box({{"AllowShrink", true}})->Height(), 255.0f);
        QCOMPARE(box({})->Height(), 255.0f);
    }

    void textFontRoundTrip()
    {
        RptTextBox t;
        t.setProperty("FontName", QStringLiteral("Times New Roman"));
        t.setProperty("Fontsize", 14.5f);
        for (const char* flag : {"FontBold", "FontItalic", "FontUnderline", "FontStrikethru"})
            t.setProperty(flag, true);
        RptTextBox u;
        u.setProperty("Font", t.property("Font"));
        QCOMPARE(u.property("Fontsize").toFloat(), 14.5f);
        const ItemLook l = u.Look();
        QCOMPARE(l.fontName, QStringLiteral("Times New Roman"));
        QVERIFY(l.bold && l.italic && l.underline && l.strikeout);
    }

    void textMouseAndKeys()
    {
        QGraphicsScene scene;
        auto* t = new RptTextBox;
        scene.addItem(t);
        t->Move(1000, 500, 1440, 600);
        t->setProperty("BorderStyle", 6);
        t->setProperty("BorderWidth", 3); // label from (60, 60)
        QSignalSpy down(t, &RptItemControl::MouseDown), up(t, &RptItemControl::MouseUp),
            move(t, &RptItemControl::MouseMove), click(t, &RptItemControl::Click);

        // On the label: coordinates are the label's own.
        Mouse(scene, t, QEvent::GraphicsSceneMousePress, QPointF(160, 100), Qt::ShiftModifier);
        QCOMPARE(down.size(), 1);
        QCOMPARE(down[0], (QList<QVariant>{1, 1, 100.0f, 40.0f}));
        Mouse(scene, t, QEvent::GraphicsSceneMouseMove, QPointF(260, 100));
        QCOMPARE(move.size(), 1);
        QCOMPARE(move[0].at(2).toFloat(), 200.0f);
        Mouse(scene, t, QEvent::GraphicsSceneMouseRelease, QPointF(260, 100));
        QCOMPARE(up.size(), 1);
        QCOMPARE(up[0].at(0).toInt(), 1);
        QCOMPARE(click.size(), 1);

        // On the border ring: the control forwards neither down nor up, but still clicks.
        Mouse(scene, t, QEvent::GraphicsSceneMousePress, QPointF(20, 20));
        Mouse(scene, t, QEvent::GraphicsSceneMouseRelease, QPointF(20, 20));
        QCOMPARE(down.size(), 1);
        QCOMPARE(up.size(), 1);
        QCOMPARE(click.size(), 2);

        QSignalSpy keyDown(t, &RptItemControl::KeyDown), keyPress(t, &RptItemControl::KeyPress);
        const auto key = [&](int code, Qt::KeyboardModifiers mods, QString text) {
            QKeyEvent e(QEvent::KeyPress, code, mods, text);
            scene.sendEvent(t, &e);
        };
        key(Qt::Key_Delete, Qt::NoModifier, {});
        key(Qt::Key_A, Qt::ShiftModifier, QStringLiteral("A"));
        key(Qt::Key_unknown, Qt::NoModifier, QString(QChar(0x20AC)));
        key(Qt::Key_unknown, Qt::NoModifier, QString(QChar(0x4E2D)));
        QCOMPARE(keyDown.size(), 4);
        QCOMPARE(keyDown[0], (QList<QVariant>{46, 0}));
        QCOMPARE(keyDown[1], (QList<QVariant>{65, 1}));
        QCOMPARE(keyPress.size(), 2); // "A" and the euro sign (0x80 in ANSI); not the CJK character
        QCOMPARE(keyPress[0].at(0).toInt(), 65);
        QCOMPARE(keyPress[1].at(0).toInt(), 0x80);
    }

    void lineOrientationAndThickness()
    {
        RptLine line;
        line.Move(0, 0, 2000, 600); // wider than tall: horizontal, height forced
        QCOMPARE(line.property("Height").toFloat(), 45.0f);
        QCOMPARE(line.LineRect(), QRectF(0, 0, 2000, 15));

        line.Move(0, 0, 500, 500); // square: vertical
        QCOMPARE(line.property("Orientation").toInt(), 2);
        QCOMPARE(line.property("Width").toFloat(), 45.0f);

        line.setProperty("Orientation", 1); // the aspect decides
        QCOMPARE(line.property("Orientation").toInt(), 2);

        line.setProperty("BorderWidth", 3.0f); // 60 twips = 4 pixels
        QCOMPARE(line.Width(), 90.0f);
        line.setProperty("BorderWidth", 0.0f); // 0 counts as 1
        QCOMPARE(line.Thickness(), 15.0);

        // The document sets the size one property at a time.
        RptLine tall;
        tall.setProperty("Width", 45);
        tall.setProperty("Height", 2000);
        QCOMPARE(tall.Orientation(), 2);
        QCOMPARE(tall.Height(), 2000.0f);

        RptItemControl::SetPixelTwips(4.8); // a 300 dpi page
        RptLine print;
        print.setProperty("BorderWidth", 1.0f);
        QCOMPARE(print.Thickness(), 19.2);
        QCOMPARE(print.Height(), 49.2f);
    }

    void lineDashRule()
    {
        RptLine line;
        line.setProperty("BorderWidth", 2.0f);
        line.setProperty("BorderStyle", 1); // dash on a 2-pixel line: solid
        QCOMPARE(line.DrawStyle(), 6);
        QCOMPARE(line.property("BorderStyle").toInt(), 1);
        line.setProperty("BorderWidth", 1.0f); // back to one pixel: still solid ...
        QCOMPARE(line.DrawStyle(), 6);
        line.setProperty("BorderStyle", 1); // ... until the style is set again
        QCOMPARE(line.DrawStyle(), 1);
        QCOMPARE(line.Look().lineStyle, 1);
        line.setProperty("BorderWidth", 4.0f); // widening switches a dashed line to solid
        QCOMPARE(line.DrawStyle(), 6);
    }

    void lineIgnoresOutline()
    {
        RptLine line;
        Rectangle box;
        QSignalSpy lineBag(&line, &RptItemControl::PropertyChanged), boxBag(&box, &RptItemControl::PropertyChanged);
        line.setProperty("ShowOutline", true);
        box.setProperty("ShowOutline", true);
        QCOMPARE(line.property("ShowOutline").toBool(), false);
        QCOMPARE(box.property("ShowOutline").toBool(), false);
        QCOMPARE(lineBag.size(), 1);
        QCOMPARE(lineBag[0].at(0).toString(), QStringLiteral("ShowOutline"));
        box.setProperty("Backstyle", 1);
        QCOMPARE(boxBag.last().at(0).toString(), QStringLiteral("BackStyle"));
    }

    void boxDefaultsAndHitBand()
    {
        QGraphicsScene scene;
        auto* under = new RptTextBox;
        under->Move(600, 600, 600, 300);
        scene.addItem(under);
        auto* box = new Rectangle;
        box->Move(0, 0, 2000, 1500);
        scene.addItem(box);
        box->setZValue(1);

        QCOMPARE(scene.items(QPointF(800, 700)).value(0), under); // the middle reaches beneath
        QCOMPARE(scene.items(QPointF(10, 700)).value(0), box);    // 10 twips inside the edge
        QCOMPARE(scene.items(QPointF(1000, 1490)).value(0), box);
        QVERIFY(box->contains(QPointF(1975, 750)));

        box->setProperty("Backstyle", 1); // opaque: hit everywhere
        QCOMPARE(scene.items(QPointF(800, 700)).value(0), box);

        Rectangle plain;
        plain.setProperty("BorderWidth", 0.0f);
        QCOMPARE(plain.EdgeThickness(), 15.0); // one pixel
        plain.setProperty("BorderWidth", 2.5f);
        QCOMPARE(plain.EdgeThickness(), 45.0);
        QCOMPARE(plain.property("BorderWidth").toFloat(), 2.5f); // the document keeps fractional points
    }

    void imageGraphicsToken()
    {
        GraphicsHost host;
        const QString root = host.dir.path();
        RptImage img;

        // Without a host path the folder set for the run is used.
        gHost = nullptr;
        QVERIFY(Picture80x40().save(root + QStringLiteral("/logo.png")));
        RptImage::SetGraphicsFolder(root + QStringLiteral("/"));
        img.setProperty("FileName", QStringLiteral("~Graphics~logo.png"));
        RptImage::SetGraphicsFolder(QString());
        QCOMPARE(img.property("FileName").toString(), root + QStringLiteral("/logo.png"));
        QCOMPARE(img.Picture().size(), QSize(80, 40));
        QVERIFY(img.ImageVisible());
        QVERIFY(!img.HolderVisible());

        // From the host: its AppPath and "Graphics\", found even though the case on disk differs.
        gHost = &host;
        host.appPath = root + QStringLiteral("\\");
        QVERIFY(QDir(root).mkdir(QStringLiteral("graphics")));
        QVERIFY(Picture80x40().save(root + QStringLiteral("/graphics/Logo.PNG"), "PNG"));
        img.SetPicture(QImage());
        img.setProperty("FileName", QStringLiteral("~Graphics~logo.png"));
        QCOMPARE(img.FileName(), root + QStringLiteral("\\Graphics\\logo.png"));
        QVERIFY(!img.Picture().isNull());
        QVERIFY(host.prompts.asked.empty());

        // The token later in the path is no token: the name is used as it is, and fails.
        const QString literal = root + QStringLiteral("/x~Graphics~logo.png");
        img.setProperty("FileName", literal);
        QCOMPARE(img.FileName(), literal);
        QCOMPARE(host.prompts.asked.size(), size_t(1));
    }

    void imageLoadFailures()
    {
        QTemporaryDir dir;
        ScriptedPrompter prompts;
        RptImage img;
        img.SetPicture(Picture80x40());
        const QString missing = dir.path() + QStringLiteral("/nothing.bmp");
        img.setProperty("FileName", missing);
        QCOMPARE(prompts.asked.size(), size_t(1));
        QCOMPARE(prompts.asked[0].prompt, QStringLiteral("Error: 53 - File not found"));
        QCOMPARE(prompts.asked[0].buttons, Mb::OKOnly);
        QCOMPARE(img.FileName(), missing);                 // the path is kept
        QCOMPARE(img.Picture().size(), QSize(80, 40));     // and so is the picture
        QVERIFY(img.ImageVisible());
        QVERIFY(!img.HolderVisible());

        QFile junk(dir.path() + QStringLiteral("/junk.jpg"));
        QVERIFY(junk.open(QIODevice::WriteOnly));
        junk.write("\xFF\xD8 this is no picture at all");
        junk.close();
        img.setProperty("FileName", junk.fileName());
        QCOMPARE(prompts.asked.back().prompt, QStringLiteral("Error: 481 - Invalid picture"));

        img.setProperty("FileName", dir.path());
        QCOMPARE(prompts.asked.back().prompt, QStringLiteral("Error: 75 - Path/File access error"));

        img.setProperty("FileName", QString()); // no file: no picture, no message
        QCOMPARE(prompts.asked.size(), size_t(3));
        QVERIFY(img.Picture().isNull());
    }

    void imagePlaceholder()
    {
        RptImage img;
        img.Move(0, 0, 1500, 900);
        QCOMPARE(img.HolderText(), QStringLiteral("  Picture 1"));
        img.setProperty("PhotoSeq", 3);
        img.setProperty("DataBound", true);
        QCOMPARE(img.HolderText(), QStringLiteral("  Picture 3"));
        QVERIFY(img.HolderVisible());
        QCOMPARE(img.HolderRect(), QRectF(1, 1, 1500, 900));
        QVERIFY(!img.Look().pictureVisible);

        img.setProperty("Picture", Picture80x40());
        QVERIFY(img.ImageVisible());
        QVERIFY(!img.HolderVisible());
        img.setProperty("DataBound", true); // a picture is loaded: no placeholder
        QVERIFY(!img.HolderVisible());
        img.setProperty("Picture", QImage()); // cleared while bound: the placeholder returns
        QVERIFY(img.HolderVisible());
        QVERIFY(!img.ImageVisible());
    }

    void imageLayout()
    {
        RptImage img;
        img.Move(0, 0, 1500, 3000);
        img.SetPicture(Picture80x40()); // natural 1200 x 600 twips
        img.setProperty("Alignment", 2);
        QCOMPARE(img.ImageRect(), QRectF(0, 1125, 1500, 750)); // zoom: full width
        img.setProperty("SizeMode", 9); // unknown: the rectangle in force stays
        img.setProperty("Alignment", 4);
        QCOMPARE(img.ImageRect(), QRectF(0, 2250, 1500, 750));
        img.setProperty("SizeMode", 0);
        img.Move(0, 0, 6000, 1500); // the picture follows the item
        QCOMPARE(img.Look().pictureRect, QRectF(3000, 0, 3000, 1500));
    }

    void imageCodesAndEvents()
    {
        RptImage img;
        QCOMPARE(img.property("BorderStyle").toInt(), 5);
        img.setProperty("BorderStyle", 3); // any border draws solid
        QCOMPARE(img.property("BorderStyle").toInt(), 6);
        img.setProperty("SpecialEffect", 2); // pictures take no shadow
        QCOMPARE(img.property("SpecialEffect").toInt(), 0);
        QCOMPARE(img.property("PhotoSeq").toInt(), 1);

        QGraphicsScene scene;
        auto* pic = new RptImage;
        scene.addItem(pic);
        pic->Move(0, 0, 1500, 3000);
        pic->SetPicture(Picture80x40());
        pic->setProperty("Alignment", 2); // picture at (0, 1125)
        QSignalSpy down(pic, &RptItemControl::MouseDown), click(pic, &RptItemControl::Click);
        const auto press = [&](QPointF at) {
            Mouse(scene, pic, QEvent::GraphicsSceneMousePress, at);
            Mouse(scene, pic, QEvent::GraphicsSceneMouseRelease, at);
        };
        press(QPointF(100, 100)); // beside the picture
        QCOMPARE(down.size(), 0);
        QCOMPARE(click.size(), 0);
        press(QPointF(100, 1200));
        QCOMPARE(down.size(), 1);
        QCOMPARE(down[0].at(3).toFloat(), 75.0f); // in the picture's own coordinates
        QCOMPARE(click.size(), 1);
    }
};

QTEST_MAIN(TestItemControls)
#include "tst_itemcontrols.moc"
