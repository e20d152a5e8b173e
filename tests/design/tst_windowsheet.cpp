// The property sheet and the formatting tool bar beside the page: both must show the selection
// as it is after every change, whatever made it, and a wheel over the sheet only scrolls it.
#include "support_windowhost.h"

#include "design/DragBox.h"
#include "design/clsResize.h"
#include "properties/NumberEdit.h"
#include "properties/frmRptProperties.h"

#include <QComboBox>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QWheelEvent>

namespace {

QString SheetText(frmPagewright& w, const char* editor)
{
    QWidget* e = w.PropertySheet()->findChild<QWidget*>(QString::fromLatin1(editor));
    if (auto* edit = qobject_cast<QLineEdit*>(e))
        return edit->text();
    if (auto* list = qobject_cast<QComboBox*>(e))
        return list->currentText();
    return QStringLiteral("<no %1>").arg(QString::fromLatin1(editor));
}

// Left, top, width and height as the sheet shows them.
QRectF SheetRect(frmPagewright& w)
{
    return {SheetText(w, "fpLeft").toDouble(), SheetText(w, "fpTop").toDouble(), SheetText(w, "fpWidth").toDouble(),
            SheetText(w, "fpHeight").toDouble()};
}

void Gesture(frmPagewright& w, QPointF from, QPointF to)
{
    QWidget* vp = Viewport(w);
    QTest::mousePress(vp, Qt::LeftButton, {}, w.Page().ViewportPixel(from));
    QTest::mouseMove(vp, w.Page().ViewportPixel((from + to) / 2));
    QTest::mouseMove(vp, w.Page().ViewportPixel(to));
    QTest::mouseRelease(vp, Qt::LeftButton, {}, w.Page().ViewportPixel(to));
}

void Wheel(QWidget* target, int delta)
{
    const QPointF at(target->width() / 2.0, target->height() / 2.0);
    QWheelEvent e(at, target->mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                  Qt::NoScrollPhase, false);
    QApplication::sendEvent(target, &e);
}

} // namespace

class tst_windowsheet : public QObject {
    Q_OBJECT
private slots:
    void sheetFollowsEveryMoveAndResize()
    {
        WindowTestHost host;
        auto w = Open();
        Tool(*w, "miPageHeader"); // a page header: the detail bar can be dragged
        Draw(*w, "tbInsertRectangle", {600, 2400}, {1800, 3000});
        QObject* box = Control(*w, 1);
        Tool(*w, "miProperties");
        QVERIFY(w->PropertySheet()->isVisible());
        QCOMPARE(SheetRect(*w), Geometry(box));

        // Dragged with the mouse.
        Click(*w, Grip(box));
        Gesture(*w, Grip(box), Grip(box) + QPointF(240, 120));
        QCOMPARE(Geometry(box).topLeft(), QPointF(840, 2520));
        QCOMPARE(SheetRect(*w), Geometry(box));

        // Resized by a handle.
        const DragBox* f = w->SelObj().Frame(box);
        QVERIFY(f);
        const QPointF h = f->ResizeHandle(5)->PagePos() + QPointF(DragBox::HandleSize, DragBox::HandleSize) / 2;
        Gesture(*w, h, h + QPointF(120, 60));
        QCOMPARE(Geometry(box).size(), QSizeF(1320, 660));
        QCOMPARE(SheetRect(*w), Geometry(box));

        // Arrow and Shift+arrow keys.
        QTest::keyClick(Viewport(*w), Qt::Key_Right);
        QTest::keyClick(Viewport(*w), Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(Geometry(box), QRectF(900, 2520, 1320, 720));
        QCOMPARE(SheetRect(*w), Geometry(box));

        // The detail bar dragged down a step takes the box along.
        const double barY = w->Page().DetailHeaderBarOffset() - 110;
        Gesture(*w, {4000, barY}, {4000, barY + 600});
        QCOMPARE(Geometry(box).top(), 3120.0);
        QCOMPARE(SheetRect(*w), Geometry(box));
    }

    void sheetFollowsAnInPlaceEdit()
    {
        WindowTestHost host;
        auto w = Open();
        Draw(*w, "tbInsertLabel", {600, 600}, {2400, 900});
        TypeLabel(*w, QStringLiteral("Open House"));
        QObject* label = Control(*w, 1);
        Click(*w, Geometry(label).center());
        Tool(*w, "miProperties");
        QCOMPARE(SheetText(*w, "txtName"), QStringLiteral("Label1"));
        // Renamed in the sheet: the tool bar's name list follows.
        auto* name = w->PropertySheet()->findChild<QLineEdit*>(QStringLiteral("txtName"));
        name->setFocus();
        name->setText(QStringLiteral("Headline"));
        QTest::keyClick(name, Qt::Key_Return);
        QCOMPARE(w->Document().Item(1).Name, QStringLiteral("Headline"));
        auto* objects = w->findChild<QComboBox*>(QStringLiteral("miObjectName"));
        QVERIFY(objects);
        QCOMPARE(objects->findText(QStringLiteral("Label1")), -1);
        QVERIFY(objects->findText(QStringLiteral("Headline")) >= 0);

        // A second click on the lone selected label edits it in place; the sheet then shows
        // the item again (its position, and that it is still selected-free).
        Click(*w, Geometry(label).center());
        QVERIFY(w->TextEditor()->isVisible());
        QTest::keyClicks(w->TextEditor(), QStringLiteral("!"));
        QTest::keyClick(w->TextEditor(), Qt::Key_Return);
        QCOMPARE(clsRptControl::Prop(label, "Text").toString(), QStringLiteral("!"));
        QVERIFY(w->PropertySheet()->isVisible());
    }

    void wheelScrollsTheSheetAndEditsNothing()
    {
        WindowTestHost host;
        auto w = Open();
        Draw(*w, "tbInsertLabel", {600, 600}, {2400, 900});
        TypeLabel(*w, QStringLiteral("Price"));
        QObject* label = Control(*w, 1);
        Click(*w, Geometry(label).center());
        Tool(*w, "miProperties");
        frmRptProperties* sheet = w->PropertySheet();
        sheet->resize(sheet->width(), 200); // short enough to scroll
        QApplication::processEvents();
        auto* align = sheet->findChild<QComboBox*>(QStringLiteral("cboAlignment"));
        QVERIFY(align && align->isVisible());
        const QString before = align->currentText();
        QScrollBar* bar = sheet->findChild<QScrollArea*>()->verticalScrollBar();
        QVERIFY(bar->maximum() > 0);
        const int top = bar->value();
        Wheel(align, -120);
        Wheel(align, -120);
        QCOMPARE(align->currentText(), before);
        QCOMPARE(clsRptControl::Prop(label, "Alignment").toInt(), 0);
        QVERIFY(bar->value() > top);
    }

    void toolBarShowsTheSelection()
    {
        WindowTestHost host;
        auto w = Open();
        // A 36-point bold label, made with the tools.
        Draw(*w, "tbInsertLabel", {600, 600}, {4200, 1200});
        TypeLabel(*w, QStringLiteral("Open House"));
        QObject* title = Control(*w, 1);
        Click(*w, Geometry(title).center());
        Tool(*w, "fnBold");
        w->Commands().SetComboText(u"fnFontSize", QString());
        auto* size = w->findChild<QComboBox*>(QStringLiteral("fnFontSize"));
        QVERIFY(size);
        size->lineEdit()->setText(QStringLiteral("36"));
        QTest::keyClick(size->lineEdit(), Qt::Key_Return);
        QCOMPARE(clsRptControl::Prop(title, "Fontsize").toDouble(), 36.0);
        QVERIFY(clsRptControl::Prop(title, "FontBold").toBool());

        // The next item has its kind's font, and the tools say so.
        Draw(*w, "tbDateTime", {600, 1800}, {2400, 2100});
        QObject* stamp = Control(*w, 2);
        QCOMPARE(clsRptControl::Prop(stamp, "Fontsize").toDouble(), 10.0);
        QVERIFY(!clsRptControl::Prop(stamp, "FontBold").toBool());
        QCOMPARE(w->Commands().ComboText(u"fnFontSize"), QStringLiteral("10"));
        QVERIFY(!w->Commands().IsChecked(u"fnBold"));
        Draw(*w, "tbInsertLabel", {600, 2400}, {2400, 2700});
        TypeLabel(*w, QStringLiteral("Sunday"));
        QCOMPARE(clsRptControl::Prop(Control(*w, 3), "Fontsize").toDouble(), 10.0);
        QVERIFY(!clsRptControl::Prop(Control(*w, 3), "FontBold").toBool());

        // Choosing the title again shows its font; a shadowed item checks Shadow, a flat one Flat.
        Click(*w, Geometry(title).center());
        QCOMPARE(w->Commands().ComboText(u"fnFontSize"), QStringLiteral("36"));
        QVERIFY(w->Commands().IsChecked(u"fnBold"));
        Tool(*w, "miEffectShadow");
        QVERIFY(w->Commands().IsChecked(u"miEffectShadow"));
        Click(*w, {6000, 6000});
        Click(*w, Geometry(stamp).center());
        QVERIFY(w->Commands().IsChecked(u"miEffectFlat"));
        QVERIFY(!w->Commands().IsChecked(u"miEffectShadow"));
        Click(*w, {6000, 6000});
        Click(*w, Geometry(title).center());
        QVERIFY(w->Commands().IsChecked(u"miEffectShadow"));
        QVERIFY(!w->Commands().IsChecked(u"miEffectFlat"));
        // Nothing selected: no item's style is shown.
        Click(*w, {6000, 6000});
        QVERIFY(!w->Commands().IsChecked(u"fnBold") && !w->Commands().IsChecked(u"fnCenter"));
        QVERIFY(!w->Commands().IsChecked(u"miEffectShadow"));
        QCOMPARE(w->Commands().ComboText(u"fnFontSize"), QStringLiteral("10"));
    }

    void coloursHaveNamesAndSwatches()
    {
        WindowTestHost host;
        auto w = Open();
        // Named by the colour each shows (the table is BGR: number 1 is navy, 4 maroon).
        const QStringList names{"Black", "Navy", "Green", "Teal", "Maroon", "Purple", "Olive", "Silver",
                                "Gray", "Blue", "Lime", "Aqua", "Red", "Fuchsia", "Yellow", "White"};
        for (int i = 0; i < 16; ++i)
            QCOMPARE(w->Commands().Action(QStringLiteral("cpColor%1").arg(i))->text(), names[i]);

        Draw(*w, "tbInsertLabel", {600, 600}, {2400, 900});
        TypeLabel(*w, QStringLiteral("Price"));
        QObject* label = Control(*w, 1);
        Click(*w, Geometry(label).center());
        w->Commands().Menu(u"barForeColor")->aboutToShow(); // the palette the fore colour tool opens
        Tool(*w, "cpColor12");
        QCOMPARE(clsRptControl::Prop(label, "ForeColor").toUInt(), 0x0000FFu); // stored BGR: red
        Tool(*w, "miProperties");
        // The sheet names the colour in hex (RGB) beside a swatch; the stored number is unchanged.
        QCOMPARE(SheetText(*w, "fpForeColor"), QStringLiteral("#FF0000"));
        auto* swatch = w->PropertySheet()->findChild<QWidget*>(QStringLiteral("swForeColor"));
        QVERIFY(swatch && swatch->isVisible());
        const QImage shown = swatch->grab().toImage();
        QCOMPARE(shown.pixelColor(shown.rect().center()), QColor(255, 0, 0));
        QCOMPARE(SheetText(*w, "fpBackColor"), QStringLiteral("#FFFFFF"));
    }
};

QTEST_MAIN(tst_windowsheet)
#include "tst_windowsheet.moc"
