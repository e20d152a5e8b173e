// Arrange commands (align, same size, even spacing, centring), Select All, Duplicate, nudging
// and zoom: the arithmetic on its own, then each command through the window's menus and keys.
#include "support_windowhost.h"

#include "design/Arrange.h"
#include "design/DesignHistory.h"
#include "design/DragBox.h"
#include "design/Zoom.h"
#include "design/clsResize.h"
#include "document/UndoStack.h"
#include "entry/PrivateProfile.h"

#include <QMenu>
#include <QMenuBar>
#include <functional>
#include <QScrollBar>
#include <QToolBar>

using Arrange::Box;
using Arrange::Op;

namespace {
std::vector<QRectF> Rects(const std::vector<Box>& boxes)
{
    std::vector<QRectF> r;
    for (const Box& b : boxes)
        r.push_back(b.rect);
    return r;
}
void Settle() { QCoreApplication::processEvents(); }
void Key(frmPagewright& w, Qt::Key key, Qt::KeyboardModifiers mods = Qt::NoModifier)
{
    // Keys go where the user's keys go: the page has the focus.
    QTest::keyClick(w.Page().View(), key, mods);
    Settle();
}
} // namespace

class TestArrange : public QObject {
    Q_OBJECT
private slots:
    void alignAndSizeFollowTheFirstItem()
    {
        const std::vector<Box> in{{QRectF(600, 600, 1200, 300)}, {QRectF(1000, 1500, 600, 200)},
                                  {QRectF(60, 2400, 2000, 500)}};
        QCOMPARE(Rects(Arrange::Apply(Op::AlignLefts, in)),
                 (std::vector<QRectF>{{600, 600, 1200, 300}, {600, 1500, 600, 200}, {600, 2400, 2000, 500}}));
        QCOMPARE(Rects(Arrange::Apply(Op::AlignRights, in)),
                 (std::vector<QRectF>{{600, 600, 1200, 300}, {1200, 1500, 600, 200}, {-200, 2400, 2000, 500}}));
        QCOMPARE(Rects(Arrange::Apply(Op::AlignBottoms, in)).at(1), QRectF(1000, 700, 600, 200));
        QCOMPARE(Rects(Arrange::Apply(Op::AlignTops, in)).at(2), QRectF(60, 600, 2000, 500));
        QCOMPARE(Rects(Arrange::Apply(Op::AlignCentres, in)).at(1), QRectF(900, 1500, 600, 200));
        QCOMPARE(Rects(Arrange::Apply(Op::AlignMiddles, in)).at(1), QRectF(1000, 650, 600, 200));
        QCOMPARE(Rects(Arrange::Apply(Op::SameSize, in)).at(2), QRectF(60, 2400, 1200, 300));
        QCOMPARE(Rects(Arrange::Apply(Op::SameWidth, in)).at(1), QRectF(1000, 1500, 1200, 200));
        QCOMPARE(Rects(Arrange::Apply(Op::SameHeight, in)).at(1), QRectF(1000, 1500, 600, 300));
        // One item alone has nothing to line up with.
        QCOMPARE(Arrange::Apply(Op::AlignLefts, {in.at(1)}), std::vector<Box>{in.at(1)});
    }

    void linesKeepTheirDirection()
    {
        const std::vector<Box> in{{QRectF(0, 0, 1000, 800)}, {QRectF(0, 0, 3000, 30), 1}, {QRectF(0, 0, 30, 3000), 2}};
        const auto out = Rects(Arrange::Apply(Op::SameSize, in));
        QCOMPARE(out.at(1), QRectF(0, 0, 1000, 30)); // a horizontal line takes the width only
        QCOMPARE(out.at(2), QRectF(0, 0, 30, 800));  // a vertical line the height only
    }

    void spacingLeavesEqualGapsAndKeepsTheEnds()
    {
        // Selected out of position order: spacing goes by where they are, not by selection.
        const std::vector<Box> in{{QRectF(0, 0, 100, 100)}, {QRectF(2000, 0, 100, 100)}, {QRectF(300, 0, 400, 100)},
                                  {QRectF(1000, 0, 100, 100)}};
        const auto out = Rects(Arrange::Apply(Op::SpaceAcross, in));
        // Span 0..2100, items 700 wide: three gaps of 466.67.
        QCOMPARE(out.at(0), in.at(0).rect);
        QCOMPARE(out.at(1), in.at(1).rect);
        QCOMPARE(out.at(2).left(), 567.0);
        QCOMPARE(out.at(3).left(), 1433.0);
        const auto down = Rects(Arrange::Apply(Op::SpaceDown, {{QRectF(0, 0, 10, 100)}, {QRectF(0, 150, 10, 100)},
                                                               {QRectF(0, 1000, 10, 100)}}));
        QCOMPARE(down.at(1).top(), 500.0); // span 1100, gaps of 400
        // Two items cannot be spaced.
        QCOMPARE(Rects(Arrange::Apply(Op::SpaceAcross, {in.at(0), in.at(1)})), Rects({in.at(0), in.at(1)}));
    }

    void centringUsesTheWholeSelection()
    {
        const std::vector<Box> in{{QRectF(100, 0, 1000, 100)}, {QRectF(3100, 500, 1000, 100)}};
        // Selection 4000 wide on a 10800 printable width: left edge to 3400.
        QCOMPARE(Arrange::CentreOffset(in, 10800), 3300.0);
        // Wider than the page: it starts at the left edge.
        QCOMPARE(Arrange::CentreOffset(in, 2000), -100.0);
    }

    // Every command a menu offers shows a picture; only the titles of menus and sub-menus are words.
    void everyMenuCommandHasAnIcon()
    {
        WindowTestHost host;
        Window w = Open();
        QStringList missing;
        std::function<void(QMenu*)> walk = [&](QMenu* menu) {
            for (QAction* a : menu->actions()) {
                if (a->isSeparator())
                    continue;
                if (a->menu())
                    walk(a->menu());
                else if (a->icon().isNull())
                    missing << menu->title().remove(QLatin1Char('&')) + QStringLiteral(" > ") + a->text().remove(QLatin1Char('&'));
            }
        };
        const QList<QAction*> titles = w->menuBar()->actions();
        QVERIFY(titles.size() >= 5);
        for (QAction* title : titles)
            if (title->menu())
                walk(title->menu());
        QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QStringLiteral(", "))));
    }

    void toolsShowIconsAndMenuTitlesStayWords()
    {
        WindowTestHost host;
        Window w = Open();
        for (const char* tool : {"miUndo", "miRedo", "miZoomIn", "miAlignLefts", "tbInsertLabel", "fnBold", "miSave"}) {
            QAction* a = w->Commands().Action(QString::fromLatin1(tool));
            QVERIFY2(!a->icon().isNull(), tool);
            // Sharp on a screen of pixel ratio 2: the picture is drawn for the size asked.
            const QPixmap pm = a->icon().pixmap(QSize(24, 24), 2.0);
            QCOMPARE(pm.deviceIndependentSize().toSize(), QSize(24, 24));
            QCOMPARE(pm.size(), QSize(48, 48));
            QVERIFY2(!a->toolTip().isEmpty(), tool);
        }
        QAction* help = w->Commands().Action(u"mnuHelp");
        QVERIFY(help->icon().isNull());
        QCOMPARE(help->text(), QStringLiteral("&Help"));
        QCOMPARE(w->Commands().ToolBar(u"barToolbox")->toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
    }

    void zoomStepsAndTexts()
    {
        QCOMPARE(ViewZoom::StepIn(100), 125);
        QCOMPARE(ViewZoom::StepIn(800), 800);
        QCOMPARE(ViewZoom::StepOut(100), 75);
        QCOMPARE(ViewZoom::StepOut(25), 25);
        QCOMPARE(ViewZoom::StepIn(110), 125);
        QCOMPARE(ViewZoom::Text(200), QStringLiteral("200 %"));
        QCOMPARE(ViewZoom::Parse(QStringLiteral("150 %")), 150);
        QCOMPARE(ViewZoom::Parse(QStringLiteral("150%")), 150);
        QCOMPARE(ViewZoom::Parse(QStringLiteral(" 75 ")), 75);
        QCOMPARE(ViewZoom::Parse(QStringLiteral("abc")), 0);
        QCOMPARE(ViewZoom::Parse(QString()), 0);
    }

    void arrangeCommandsThroughTheMenus()
    {
        WindowTestHost host;
        Window w = Open();
        w->activateWindow();
        Draw(*w, "tbInsertRectangle", {600, 600}, {2400, 1200});
        Draw(*w, "tbInsertRectangle", {1800, 1800}, {2400, 2400});
        Draw(*w, "tbInsertLine", {600, 3000}, {4200, 3000});
        Settle();
        const int steps = w->History().Stack().Steps();
        w->SelObj().ClearSelect();
        for (int i : {1, 2, 3})
            w->SelObj().Select(Control(*w, i));
        const QRectF first = Geometry(Control(*w, 1));
        const QRectF line = Geometry(Control(*w, 3));
        QMenu* align = w->Commands().Menu(u"PopAlign");
        QVERIFY(align);
        QVERIFY(align->actions().contains(w->Commands().Action(u"miAlignRights")));
        w->Commands().Action(u"miAlignRights")->trigger();
        Settle();
        QCOMPARE(Geometry(Control(*w, 2)).right(), first.right());
        QCOMPARE(Geometry(Control(*w, 3)).right(), first.right());
        QCOMPARE(Geometry(Control(*w, 3)).width(), line.width());
        Tool(*w, "miSameSize");
        Settle();
        QCOMPARE(Geometry(Control(*w, 2)).size(), first.size());
        QCOMPARE(Geometry(Control(*w, 3)).width(), first.width());
        QCOMPARE(Geometry(Control(*w, 3)).height(), line.height()); // still a horizontal line
        QCOMPARE(clsRptControl::Prop(Control(*w, 3), "Orientation").toInt(), 1);
        QCOMPARE(w->History().Stack().Steps(), steps + 2);
        QCOMPARE(w->Commands().Action(u"miUndo")->text(), QStringLiteral("&Undo Same Size"));
        // The frames follow the items.
        QCOMPARE(w->SelObj().Frame(Control(*w, 2))->pos(), Geometry(Control(*w, 2)).topLeft());
        Tool(*w, "miCentreInPage");
        Settle();
        const QRectF all = Geometry(Control(*w, 1)).united(Geometry(Control(*w, 2))).united(Geometry(Control(*w, 3)));
        const double printable = 12240 - 720 - 720;
        QCOMPARE(all.left(), std::round((printable - all.width()) / 2));
        Tool(*w, "miUndo");
        Tool(*w, "miUndo");
        Tool(*w, "miUndo");
        QCOMPARE(Geometry(Control(*w, 1)), first);
        QCOMPARE(Geometry(Control(*w, 3)), line);
    }

    void selectAllDuplicateAndNudge()
    {
        WindowTestHost host;
        Window w = Open();
        w->activateWindow();
        Draw(*w, "tbInsertRectangle", {600, 600}, {1800, 1200});
        Draw(*w, "tbInsertLabel", {2400, 600}, {3600, 900});
        TypeLabel(*w, QStringLiteral("Sold"));
        Settle();
        Key(*w, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(w->SelObj().Count(), 2);
        const int steps = w->History().Stack().Steps();
        // Something copied before stays on the clipboard after Duplicate.
        w->SelObj().ClearSelect();
        w->SelObj().Select(Control(*w, 2));
        Tool(*w, "miCopy");
        const QByteArray copied = [&] {
            QFile f(w->Document().CopyBufferFile());
            return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
        }();
        Key(*w, Qt::Key_A, Qt::ControlModifier);
        Key(*w, Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(w->Document().RptItemCount(), 4);
        QCOMPARE(w->History().Stack().Steps(), steps + 1);
        QCOMPARE(w->Commands().Action(u"miUndo")->text(), QStringLiteral("&Undo Duplicate"));
        QCOMPARE(Geometry(Control(*w, 3)), Geometry(Control(*w, 1)).translated(60, 60));
        QCOMPARE(Geometry(Control(*w, 4)), Geometry(Control(*w, 2)).translated(60, 60));
        QStringList names;
        for (int i = 1; i <= 4; ++i)
            names << w->Document().Item(i).Name;
        QCOMPARE(QSet<QString>(names.begin(), names.end()).size(), 4);
        QCOMPARE(clsRptControl::Prop(Control(*w, 4), "Text").toString(), QStringLiteral("Sold"));
        QCOMPARE(w->SelObj().SelectedControls(), (QList<QObject*>{Control(*w, 3), Control(*w, 4)}));
        QFile buffer(w->Document().CopyBufferFile());
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        QCOMPARE(buffer.readAll(), copied);

        // Nudge: one screen pixel in twips, whatever the grid.
        const QRectF at = Geometry(Control(*w, 3));
        Key(*w, Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(Geometry(Control(*w, 3)).left(), at.left() + 15);
        Key(*w, Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(Geometry(Control(*w, 3)).top(), at.top() - 15);
        QCOMPARE(w->Commands().Action(u"miUndo")->text(), QStringLiteral("&Undo Nudge Up"));
        Tool(*w, "miZoom100");
        w->Zoom().SetPercent(200);
        Key(*w, Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(Geometry(Control(*w, 3)).left(), at.left() + 15 - 8);
    }

    void zoomCommandsKeepTwipsAndGridSteps()
    {
        WindowTestHost host;
        // Another program's settings in the same file stay as they are.
        const QString ini = host.UserIniPath();
        {
            QFile f(ini);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("; kept\r\n[Other]\r\nKey=1\r\n[Pagewright]\r\nGrid=60,60\r\n");
        }
        Window w = Open();
        w->activateWindow();
        QCOMPARE(w->Zoom().Percent(), 100);
        Draw(*w, "tbInsertRectangle", {600, 600}, {1800, 1200});
        Settle();
        const QRectF box = Geometry(Control(*w, 1));
        Key(*w, Qt::Key_Equal, Qt::ControlModifier);
        QCOMPARE(w->Zoom().Percent(), 125);
        Key(*w, Qt::Key_Minus, Qt::ControlModifier);
        Key(*w, Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(w->Zoom().Percent(), 75);
        Key(*w, Qt::Key_0, Qt::ControlModifier);
        QCOMPARE(w->Zoom().Percent(), 100);
        w->Zoom().SetPercent(5000);
        QCOMPARE(w->Zoom().Percent(), 800);
        QVERIFY(!w->Commands().IsEnabled(u"miZoomIn"));
        w->Zoom().SetPercent(1);
        QCOMPARE(w->Zoom().Percent(), 25);
        QVERIFY(!w->Commands().IsEnabled(u"miZoomOut"));
        w->Zoom().SetPercent(200);
        QCOMPARE(w->Commands().ComboText(u"miZoom"), QStringLiteral("200 %"));
        QCOMPARE(Geometry(Control(*w, 1)), box); // zoom never moves the page's contents

        // At 200 % the page point under a pixel is still where the item is, and a drag of one
        // grid step moves by 60 twips.
        w->SelObj().ClearSelect();
        w->SelObj().Select(Control(*w, 1));
        Key(*w, Qt::Key_Right);
        QCOMPARE(Geometry(Control(*w, 1)).left(), box.left() + 60);
        w->Page().View()->ensureVisible(QRectF(box.left(), box.top(), 10, 10));
        w->SelObj().ClearSelect(); // a press on the one selected item would drop it for editing
        Drag(*w, {box.left() + 300, box.top() + 3}, {box.left() + 300 + 60, box.top() + 3});
        Settle();
        QCOMPARE(Geometry(Control(*w, 1)).left(), box.left() + 120);
        // Handles keep their size on the screen.
        DragBox* frame = w->SelObj().Frame(Control(*w, 1));
        QVERIFY(frame);
        const auto handlePixels = [&] {
            QGraphicsItem* h = frame->ResizeHandle(5);
            return w->Page().View()->mapFromScene(h->mapToScene(h->boundingRect())).boundingRect().width();
        };
        const int at200 = handlePixels();
        w->Zoom().SetPercent(50);
        QCOMPARE(handlePixels(), at200);

        // Ctrl+wheel zooms around the pointer: the page point under it stays put.
        w->Zoom().SetPercent(200);
        w->Page().View()->horizontalScrollBar()->setValue(500);
        w->Page().View()->verticalScrollBar()->setValue(500);
        QWidget* vp = w->Page().View()->viewport();
        const QPoint pointer(200, 150);
        const QPointF under = w->Page().View()->mapToScene(pointer);
        QWheelEvent wheel(pointer, vp->mapToGlobal(pointer), {}, {0, 120}, Qt::NoButton, Qt::ControlModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(vp, &wheel);
        QCOMPARE(w->Zoom().Percent(), 300);
        const QPointF after = w->Page().View()->mapToScene(pointer);
        QVERIFY2(std::abs(after.x() - under.x()) <= 10 && std::abs(after.y() - under.y()) <= 10,
                 qPrintable(QStringLiteral("%1,%2 -> %3,%4").arg(under.x()).arg(under.y()).arg(after.x()).arg(after.y())));

        // Zooming from the box keeps the selection in sight, even from far out.
        w->SelObj().ClearSelect();
        w->SelObj().Select(Control(*w, 1));
        w->Zoom().SetPercent(25);
        emit w->Commands().comboChanged(QStringLiteral("miZoom"), QStringLiteral("800"));
        const QPoint centre = w->Page().ViewportPixel(Geometry(Control(*w, 1)).center());
        QVERIFY(w->Page().View()->viewport()->rect().contains(centre));

        // The zoom box takes a typed value.
        emit w->Commands().comboChanged(QStringLiteral("miZoom"), QStringLiteral("150 %"));
        QCOMPARE(w->Zoom().Percent(), 150);
        emit w->Commands().comboChanged(QStringLiteral("miZoom"), QStringLiteral("huge"));
        QCOMPARE(w->Zoom().Percent(), 150);
        QCOMPARE(w->Commands().ComboText(u"miZoom"), QStringLiteral("150 %"));

        // Remembered for the user, in a section of its own; nothing else in the file changed.
        QCOMPARE(PrivateProfile::GetString(QStringLiteral("Pagewright View"), QStringLiteral("Zoom"), {}, ini),
                 QStringLiteral("150"));
        QFile f(ini);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QByteArray text = f.readAll();
        QVERIFY(text.startsWith("; kept\r\n[Other]\r\nKey=1\r\n[Pagewright]\r\nGrid=60,60\r\n"));
        // Zooming is no step of the history.
        QCOMPARE(w->Commands().Action(u"miUndo")->text(), QStringLiteral("&Undo Move"));
        w.reset();
        Window again = Open();
        QCOMPARE(again->Zoom().Percent(), 150);
    }
};

QTEST_MAIN(TestArrange)
#include "tst_arrange.moc"
