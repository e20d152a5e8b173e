// The four item controls: their properties and rules, read and written by name as the
// document does, the events they raise, hit testing, and their failure messages.
#include "design/Rectangle.h"
#include "design/RptImage.h"
#include "design/RptLine.h"
#include "design/RptTextBox.h"
#include "entry/Host.h"
#include "entry/Prompts.h"

#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// Only AppPath matters to the controls.
class GraphicsHost : public TervaneCommon {
public:
    QString appPath;
    HostMainForm& MainForm() override { throw HostError(91, QStringLiteral("Object variable not set")); }
    ::Database& Database() override { throw HostError(91, QStringLiteral("Object variable not set")); }
    ::AppEvents& AppEvents() override { return events; }
    void CloseJob(const QVariant&) override {}
    QString AppPath() const override { return appPath; }
    QString UserPath() const override { return {}; }
    QString UserName() const override { return {}; }
    QString OfficeId() const override { return {}; }
    QString AgentId() const override { return {}; }
    int UserLevel() const override { return 0; }
    QString DataPath() const override { return {}; }
    QString AccessKey() const override { return {}; }
    int BoardId() const override { return 0; }
    QString StatusList() const override { return {}; }
    QString HelpFile() const override { return {}; }
    std::unique_ptr<FieldDictionary> NewFieldDictionary(int) override { return nullptr; }
    PhotoLibrary& PhotoService() override { throw HostError(91, QStringLiteral("Object variable not set")); }
    ::AppEvents events;
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

    void textNewElementShowsItsName();
    void textFormatsItsValue();
    void textFormatFailureIsReported();
    void textBorderWidthInPointsAndTwips();
    void textShadowMakesThreePoints();
    void textAlignmentCodes();
    void textAutoHeight();
    void textFontRoundTrip();
    void textMouseAndKeys();

    void lineOrientationAndThickness();
    void lineDashRule();
    void lineIgnoresOutline();

    void boxHitBand();
    void boxProperties();

    void imageGraphicsTokenWithoutHost();
    void imageGraphicsTokenFromHost();
    void imageLoadFailures();
    void imagePlaceholder();
    void imageLayout();
    void imageCodesAndEvents();
};

void TestItemControls::textNewElementShowsItsName()
{
    RptTextBox t;
    t.setObjectName(QStringLiteral("txtNewTextBox"));
    QCOMPARE(t.property("Text").toString(), QStringLiteral("txtNewTextBox"));
    QCOMPARE(t.property("Alignment").toInt(), 0);
    QCOMPARE(t.property("SpecialEffect").toInt(), 0);
    QCOMPARE(t.property("BorderStyle").toInt(), 5);
    QCOMPARE(t.BorderWidthTwips(), 1);
    QCOMPARE(t.property("BorderWidth").toInt(), 0);
    t.setProperty("Text", QStringLiteral("Label1"));
    t.setObjectName(QStringLiteral("other"));
    QCOMPARE(t.Text(), QStringLiteral("Label1"));
}

void TestItemControls::textFormatsItsValue()
{
    ScriptedPrompter prompts;
    RptTextBox t;
    t.setProperty("FormatClass", 1);
    t.setProperty("DataFormat", QStringLiteral("0."));
    t.setProperty("Text", QStringLiteral("12"));
    QCOMPARE(t.property("Text").toString(), QStringLiteral("12")); // "12." trimmed
    QCOMPARE(t.Value(), QStringLiteral("12"));

    t.setProperty("Text", QStringLiteral("1234.5"));
    t.setProperty("DataFormat", QStringLiteral("#,##0")); // shows the stored value again
    QCOMPARE(t.Text(), QStringLiteral("1,235"));
    t.setProperty("DataFormat", QString()); // no format: the raw value
    QCOMPARE(t.Text(), QStringLiteral("1234.5"));

    t.setProperty("FormatClass", 0);
    t.setProperty("DataFormat", QStringLiteral("#,##0")); // class 0: not re-shown, not formatted
    QCOMPARE(t.Text(), QStringLiteral("1234.5"));
    t.setProperty("Text", QStringLiteral("99.5"));
    QCOMPARE(t.Text(), QStringLiteral("99.5"));

    t.setProperty("FormatClass", 4);
    t.setProperty("DataFormat", QStringLiteral("m/d/yy"));
    t.setProperty("Text", QStringLiteral("2024-12-25"));
    QCOMPARE(t.Text(), QStringLiteral("12/25/"));
    QVERIFY(prompts.asked.empty());
}

void TestItemControls::textFormatFailureIsReported()
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

void TestItemControls::textBorderWidthInPointsAndTwips()
{
    RptTextBox t;
    t.setProperty("BorderWidth", 2.0f); // the document writes floats
    QCOMPARE(t.BorderWidthTwips(), 40);
    QCOMPARE(t.property("BorderWidth").toInt(), 2);

    // A request larger than half the height is cut to half of it.
    t.Move(0, 0, 1440, 300);
    t.setProperty("BorderStyle", 6);
    t.setProperty("BorderWidth", 20);
    QCOMPARE(t.LabelRect(), QRectF(150, 150, 1140, 0));
    // Border width 0 is one pixel.
    t.setProperty("BorderWidth", 0);
    QCOMPARE(t.LabelRect(), QRectF(15, 15, 1410, 270));
    // Without a border the label fills the item.
    t.setProperty("BorderStyle", 5);
    QCOMPARE(t.LabelRect(), QRectF(0, 0, 1440, 300));
}

void TestItemControls::textShadowMakesThreePoints()
{
    RptTextBox t;
    t.setProperty("BorderWidth", 1);
    t.setProperty("SpecialEffect", 2);
    QCOMPARE(t.property("BorderWidth").toInt(), 3);
    QCOMPARE(t.property("BorderStyle").toInt(), 6);
    QCOMPARE(t.Look().specialEffect, 2);
    t.setProperty("SpecialEffect", 0);
    QCOMPARE(t.property("BorderWidth").toInt(), 3); // leaving the shadow keeps the width

    RptTextBox u;
    u.setProperty("BorderWidth", 2);
    u.setProperty("SpecialEffect", 2);
    QCOMPARE(u.property("BorderWidth").toInt(), 2); // only exactly 1 point becomes 3
    QCOMPARE(u.property("BorderStyle").toInt(), 6);
}

void TestItemControls::textAlignmentCodes()
{
    RptTextBox t;
    t.setProperty("Alignment", 1);
    QCOMPARE(t.Look().alignment, ItemCode::AlignRight);
    t.setProperty("Alignment", 2);
    QCOMPARE(t.Look().alignment, ItemCode::AlignCenter);
    t.setProperty("Alignment", 7); // unknown: the label keeps its justification
    QCOMPARE(t.Look().alignment, ItemCode::AlignCenter);
    QCOMPARE(t.property("Alignment").toInt(), 7);
}

void TestItemControls::textAutoHeight()
{
    const QString longText = QStringLiteral("Charming colonial with a wrap-around porch, new roof and a two-car garage");
    RptTextBox grow;
    grow.Move(0, 0, 1440, 255);
    grow.setProperty("AllowGrow", true);
    grow.setProperty("Text", QStringLiteral("Short"));
    QCOMPARE(grow.Height(), 255.0f);
    grow.setProperty("Text", longText);
    QVERIFY2(grow.Height() > 4 * 230, qPrintable(QString::number(grow.Height())));
    QCOMPARE(grow.DesignHeight(), 255.0f);
    grow.setProperty("Text", QStringLiteral("Short")); // not greater than the design height: kept
    QVERIFY(grow.Height() > 4 * 230);

    // A border takes from the label, so the item grows by the same amount more.
    RptTextBox framed;
    framed.Move(0, 0, 1440, 255);
    framed.setProperty("BorderStyle", 6);
    framed.setProperty("BorderWidth", 1);
    framed.setProperty("AllowGrow", true);
    framed.setProperty("Text", longText);
    QCOMPARE(framed.Height() - framed.LabelRect().height(), 30.0);

    RptTextBox shrinkOnly;
    shrinkOnly.Move(0, 0, 1440, 255);
    shrinkOnly.setProperty("AllowShrink", true);
    shrinkOnly.setProperty("Text", longText);
    QCOMPARE(shrinkOnly.Height(), 255.0f);

    RptTextBox neither;
    neither.Move(0, 0, 1440, 255);
    neither.setProperty("Text", longText);
    QCOMPARE(neither.Height(), 255.0f);
}

void TestItemControls::textFontRoundTrip()
{
    RptTextBox t;
    QCOMPARE(t.property("FontName").toString(), QStringLiteral("Arial"));
    t.setProperty("FontName", QStringLiteral("Times New Roman"));
    t.setProperty("Fontsize", 14.5f);
    t.setProperty("FontBold", true);
    t.setProperty("FontItalic", true);
    t.setProperty("FontUnderline", true);
    t.setProperty("FontStrikethru", true);
    const QFont f = t.property("Font").value<QFont>();
    QCOMPARE(f.family(), QStringLiteral("Times New Roman"));
    QCOMPARE(f.pointSizeF(), 14.5);
    QVERIFY(f.bold() && f.italic() && f.underline() && f.strikeOut());

    RptTextBox u;
    u.setProperty("Font", f);
    QCOMPARE(u.property("Fontsize").toFloat(), 14.5f);
    QVERIFY(u.property("FontBold").toBool());
    QVERIFY(u.property("FontStrikethru").toBool());
    const ItemLook l = u.Look();
    QCOMPARE(l.fontName, QStringLiteral("Times New Roman"));
    QVERIFY(l.bold && l.italic && l.underline && l.strikeout);

    for (const char* kept : {"UseShortText", "AllowGrow", "AllowShrink", "ShowOutline", "Selected"}) {
        u.setProperty(kept, true);
        QVERIFY2(u.property(kept).toBool(), kept);
    }
    u.setProperty("FunctionType", 3);
    u.setProperty("Backstyle", 1);
    u.setProperty("ForeColor", 0x000000FFu);
    u.setProperty("BackColor", 0x00FF0000u);
    u.setProperty("BorderColor", 0x0000FF00u);
    u.setProperty("Tag", QStringLiteral("7"));
    QCOMPARE(u.property("FunctionType").toInt(), 3);
    QCOMPARE(u.property("ForeColor").toUInt(), 0x000000FFu);
    QCOMPARE(u.property("BackColor").toUInt(), 0x00FF0000u);
    QCOMPARE(u.property("BorderColor").toUInt(), 0x0000FF00u);
    QCOMPARE(u.property("Tag").toInt(), 7);
    QCOMPARE(u.Look().backStyle, 1);
}

void TestItemControls::textMouseAndKeys()
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
    QKeyEvent del(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier);
    scene.sendEvent(t, &del);
    QKeyEvent a(QEvent::KeyPress, Qt::Key_A, Qt::ShiftModifier, QStringLiteral("A"));
    scene.sendEvent(t, &a);
    QKeyEvent euro(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(QChar(0x20AC)));
    scene.sendEvent(t, &euro);
    QKeyEvent han(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(QChar(0x4E2D)));
    scene.sendEvent(t, &han);
    QCOMPARE(keyDown.size(), 4);
    QCOMPARE(keyDown[0], (QList<QVariant>{46, 0}));
    QCOMPARE(keyDown[1], (QList<QVariant>{65, 1}));
    QCOMPARE(keyPress.size(), 2); // "A" and the euro sign (0x80 in ANSI); not the CJK character
    QCOMPARE(keyPress[0].at(0).toInt(), 65);
    QCOMPARE(keyPress[1].at(0).toInt(), 0x80);
}

void TestItemControls::lineOrientationAndThickness()
{
    RptLine line;
    QCOMPARE(line.property("BorderStyle").toInt(), 6);
    QCOMPARE(line.property("Orientation").toInt(), 1);
    QCOMPARE(line.Height(), 45.0f);

    line.Move(0, 0, 2000, 600); // wider than tall: horizontal, height forced
    QCOMPARE(line.property("Orientation").toInt(), 1);
    QCOMPARE(line.property("Height").toFloat(), 45.0f);
    QCOMPARE(line.LineRect(), QRectF(0, 0, 2000, 15));

    line.Move(0, 0, 500, 500); // square: vertical
    QCOMPARE(line.property("Orientation").toInt(), 2);
    QCOMPARE(line.property("Width").toFloat(), 45.0f);
    QCOMPARE(line.property("Height").toFloat(), 500.0f);

    line.setProperty("Orientation", 1); // the aspect decides
    QCOMPARE(line.property("Orientation").toInt(), 2);

    line.setProperty("BorderWidth", 3.0f); // 60 twips = 4 pixels
    QCOMPARE(line.Thickness(), 60.0);
    QCOMPARE(line.Width(), 90.0f);
    line.setProperty("BorderWidth", 0.0f); // 0 counts as 1
    QCOMPARE(line.Thickness(), 15.0);
    QCOMPARE(line.Width(), 45.0f);

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

void TestItemControls::lineDashRule()
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

    line.setProperty("BorderColor", 0x00123456u);
    QCOMPARE(line.property("BorderColor").toUInt(), 0x00123456u);
    QCOMPARE(line.Look().borderColor, 0x00123456u);
}

void TestItemControls::lineIgnoresOutline()
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

void TestItemControls::boxHitBand()
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
    QVERIFY(!box->contains(QPointF(1000, 750)));
    QVERIFY(box->contains(QPointF(1975, 750)));

    box->setProperty("Backstyle", 1); // opaque: hit everywhere
    QCOMPARE(scene.items(QPointF(800, 700)).value(0), box);
    QVERIFY(box->contains(QPointF(1000, 750)));
}

void TestItemControls::boxProperties()
{
    Rectangle box;
    QCOMPARE(box.property("BorderStyle").toInt(), 6);
    QCOMPARE(box.property("Backstyle").toInt(), 0);
    QCOMPARE(box.property("BackColor").toUInt(), 0x00FFFFFFu);
    QCOMPARE(box.EdgeThickness(), 15.0); // one pixel each way
    box.setProperty("BorderWidth", 0.0f);
    QCOMPARE(box.EdgeThickness(), 15.0);
    box.setProperty("BorderWidth", 2.5f);
    QCOMPARE(box.EdgeThickness(), 45.0);
    QCOMPARE(box.property("BorderWidth").toFloat(), 2.5f);
    box.setProperty("BorderStyle", 3);
    box.setProperty("BorderColor", 0x000000FFu);
    const ItemLook l = box.Look();
    QCOMPARE(l.kind, ItemKind::Box);
    QCOMPARE(l.borderStyle, 3);
    QCOMPARE(l.borderColor, 0x000000FFu);
    QCOMPARE(l.rect, QRectF(0, 0, 1440, 720));
}

void TestItemControls::imageGraphicsTokenWithoutHost()
{
    QTemporaryDir dir;
    const QString folder = dir.path() + QStringLiteral("/");
    QVERIFY(Picture80x40().save(folder + QStringLiteral("logo.png")));
    RptImage::SetGraphicsFolder(folder);
    ScriptedPrompter prompts;
    RptImage img;
    img.setProperty("FileName", QStringLiteral("~Graphics~logo.png"));
    QCOMPARE(img.property("FileName").toString(), folder + QStringLiteral("logo.png"));
    QCOMPARE(img.Picture().size(), QSize(80, 40));
    QVERIFY(img.ImageVisible());
    QVERIFY(!img.HolderVisible());
    QVERIFY(prompts.asked.empty());
    RptImage::SetGraphicsFolder(QString());
}

void TestItemControls::imageGraphicsTokenFromHost()
{
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("graphics"))); // the host's case differs
    QVERIFY(Picture80x40().save(dir.path() + QStringLiteral("/graphics/Logo.PNG"), "PNG"));
    GraphicsHost host;
    host.appPath = dir.path() + QStringLiteral("\\");
    gHost = &host;
    ScriptedPrompter prompts;
    RptImage img;
    img.setProperty("FileName", QStringLiteral("~Graphics~logo.png"));
    QCOMPARE(img.FileName(), dir.path() + QStringLiteral("\\Graphics\\logo.png"));
    QVERIFY(!img.Picture().isNull());
    QVERIFY(prompts.asked.empty());

    // The token later in the path is no token: the name is used as it is, and fails.
    const QString literal = dir.path() + QStringLiteral("/x~Graphics~logo.png");
    img.setProperty("FileName", literal);
    QCOMPARE(img.FileName(), literal);
    QCOMPARE(prompts.asked.size(), size_t(1));
    gHost = nullptr;
}

void TestItemControls::imageLoadFailures()
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

void TestItemControls::imagePlaceholder()
{
    RptImage img;
    img.Move(0, 0, 1500, 900);
    QCOMPARE(img.HolderText(), QStringLiteral("  Picture 1"));
    img.setProperty("PhotoSeq", 3);
    img.setProperty("DataBound", true);
    QCOMPARE(img.HolderText(), QStringLiteral("  Picture 3"));
    QVERIFY(img.HolderVisible());
    QVERIFY(!img.ImageVisible());
    QCOMPARE(img.HolderRect(), QRectF(1, 1, 1500, 900));
    QCOMPARE(img.Look().placeholder, QStringLiteral("  Picture 3"));
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

void TestItemControls::imageLayout()
{
    RptImage img;
    img.Move(0, 0, 1500, 3000);
    img.SetPicture(Picture80x40()); // natural 1200 x 600 twips
    QCOMPARE(img.ImageRect(), QRectF(0, 0, 1500, 750)); // zoom: full width
    img.setProperty("Alignment", 2);
    QCOMPARE(img.ImageRect(), QRectF(0, 1125, 1500, 750));
    img.setProperty("SizeMode", 1);
    QCOMPARE(img.ImageRect(), QRectF(150, 1200, 1200, 600));
    img.setProperty("SizeMode", 9); // unknown: size in force stays
    img.setProperty("Alignment", 4);
    QCOMPARE(img.ImageRect(), QRectF(300, 2400, 1200, 600));
    img.setProperty("SizeMode", 2);
    QCOMPARE(img.ImageRect(), QRectF(0, 0, 1500, 3000));
    img.setProperty("SizeMode", 0);
    img.Move(0, 0, 6000, 1500); // wide item: full height
    QCOMPARE(img.ImageRect(), QRectF(3000, 0, 3000, 1500));
    QCOMPARE(img.Look().pictureRect, QRectF(3000, 0, 3000, 1500));
}

void TestItemControls::imageCodesAndEvents()
{
    RptImage img;
    QCOMPARE(img.property("BorderStyle").toInt(), 5);
    img.setProperty("BorderStyle", 3);
    QCOMPARE(img.property("BorderStyle").toInt(), 6);
    img.setProperty("SpecialEffect", 2);
    QCOMPARE(img.property("SpecialEffect").toInt(), 0);
    QCOMPARE(img.property("PhotoSeq").toInt(), 1);
    for (const char* kept : {"Embeded", "ShowOutline", "Selected", "DataBound"}) {
        img.setProperty(kept, true);
        QVERIFY2(img.property(kept).toBool(), kept);
    }
    img.setProperty("Category", 4);
    img.setProperty("BorderWidth", 2);
    QCOMPARE(img.property("Category").toInt(), 4);
    QCOMPARE(img.property("BorderWidth").toInt(), 2);

    QGraphicsScene scene;
    auto* pic = new RptImage;
    scene.addItem(pic);
    pic->Move(0, 0, 1500, 3000);
    pic->SetPicture(Picture80x40());
    pic->setProperty("Alignment", 2); // picture at (0, 1125)
    QSignalSpy down(pic, &RptItemControl::MouseDown), click(pic, &RptItemControl::Click);
    Mouse(scene, pic, QEvent::GraphicsSceneMousePress, QPointF(100, 100)); // beside the picture
    Mouse(scene, pic, QEvent::GraphicsSceneMouseRelease, QPointF(100, 100));
    QCOMPARE(down.size(), 0);
    QCOMPARE(click.size(), 0);
    Mouse(scene, pic, QEvent::GraphicsSceneMousePress, QPointF(100, 1200));
    Mouse(scene, pic, QEvent::GraphicsSceneMouseRelease, QPointF(100, 1200));
    QCOMPARE(down.size(), 1);
    QCOMPARE(down[0].at(3).toFloat(), 75.0f); // in the picture's own coordinates
    QCOMPARE(click.size(), 1);
}

QTEST_MAIN(TestItemControls)
#include "tst_itemcontrols.moc"
