// Selecting, dragging and resizing real item controls on a scene through clsResize, with a
// real report document told which item is current.
#include "design/DragBox.h"
#include "design/OffscreenPage.h"
#include "design/RptItemControl.h"
#include "design/clsResize.h"
#include "document/clsRptControl.h"
#include "support_selection.h"

#include <QApplication>
#include <QGraphicsLineItem>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsScene>
#include <QSignalSpy>
#include <QtTest>
#include <memory>

namespace {

constexpr int L = RptItemControl::LeftButton;
constexpr int Shift = RptItemControl::ShiftMask;
constexpr int Ctrl = RptItemControl::CtrlMask;

void SendMouse(QGraphicsScene& scene, QEvent::Type type, QPointF at, Qt::MouseButtons held)
{
    QGraphicsSceneMouseEvent e(type);
    e.setScenePos(at);
    e.setButton(type == QEvent::GraphicsSceneMouseMove ? Qt::NoButton : Qt::LeftButton);
    e.setButtons(held);
    e.setButtonDownScenePos(Qt::LeftButton, at);
    QApplication::sendEvent(&scene, &e);
}

QRectF RectOf(const RptItemControl* c) { return {c->Left(), c->Top(), c->Width(), c->Height()}; }
QRectF RectOf(const DragBox* f) { return {f->Left(), f->Top(), f->Width(), f->Height()}; }

} // namespace

class tst_selection : public QObject, private SelectionSurface {
    Q_OBJECT


    // A new item of `kind` at the given rectangle, through the document.
    RptItemControl* add(int kind, double l, double t, double w, double h)
    {
        doc->AddNew(kind, QStringLiteral("Unbound"), 0);
        auto* c = qobject_cast<RptItemControl*>(doc->Item(doc->RptItemCount()).control);
        c->Move(float(l), float(t), float(w), float(h));
        return c;
    }
    static QPointF handleAt(DragBox* f, int i) { return f->ResizeHandle(i)->PagePos(); }
    int framesInScene()
    {
        int n = 0;
        for (QGraphicsItem* i : surface->Scene().items())
            if (QGraphicsObject* o = i->toGraphicsObject())
                n += qobject_cast<DragBox*>(o) || qobject_cast<ResizeHandleItem*>(o);
        return n;
    }

private slots:
    void init()
    {
        Make();
    }
    void cleanup() { Reset(); }

    void clickRules()
    {
        RptItemControl* a = add(ObjType::Box, 600, 600, 1200, 600);
        RptItemControl* b = add(ObjType::Box, 2400, 600, 1200, 600);
        RptItemControl* c = add(ObjType::Box, 4200, 600, 1200, 600);
        QSignalSpy changed(sel.get(), &clsResize::selectionChanged);

        sel->MouseDown(a, L, 0, 10, 10);
        sel->MouseUp();
        QCOMPARE(sel->SelectedControls(), QList<QObject*>({a}));
        QVERIFY(a->Selected());
        QCOMPARE(doc->Index(), 1);
        QCOMPARE(doc->UserControl(), static_cast<QObject*>(a));
        QCOMPARE(RectOf(sel->Frame(a)), QRectF(600, 600, 1200, 600));
        QCOMPARE(changed.count(), 1);

        // A plain click on another item selects only that item.
        sel->MouseDown(b, L, 0, 10, 10);
        sel->MouseUp();
        QCOMPARE(sel->SelectedControls(), QList<QObject*>({b}));
        QVERIFY(!a->Selected());
        QCOMPARE(doc->Index(), 2);

        // Shift and Ctrl add, in selection order.
        sel->MouseDown(a, L, Shift, 10, 10);
        sel->MouseDown(c, L, Ctrl, 10, 10);
        QCOMPARE(sel->SelectedControls(), QList<QObject*>({b, a, c}));
        QCOMPARE(doc->Index(), 3);

        // A plain click on one of several keeps them all and makes it current.
        sel->MouseDown(a, L, 0, 10, 10);
        sel->MouseUp();
        QCOMPARE(sel->Count(), 3);
        QCOMPARE(doc->UserControl(), static_cast<QObject*>(a));

        // Shift-clicking a selected item among several removes only that one.
        sel->MouseDown(a, L, Shift, 10, 10);
        QCOMPARE(sel->SelectedControls(), QList<QObject*>({b, c}));
        QVERIFY(!a->Selected());
        QVERIFY(b->Selected() && c->Selected());
        QCOMPARE(sel->Frame(a), nullptr);
        QCOMPARE(doc->UserControl(), static_cast<QObject*>(c));

        // The right button selects nothing (it opens the property sheet instead).
        sel->MouseDown(a, RptItemControl::RightButton, 0, 10, 10);
        QCOMPARE(sel->Count(), 2);

        // Clicking the lone selected item drops it: the document has no current item.
        sel->ClearSelect();
        QVERIFY(!b->Selected() && !c->Selected());
        sel->MouseDown(b, L, 0, 10, 10);
        sel->MouseDown(b, L, 0, 10, 10);
        QCOMPARE(sel->Count(), 0);
        QCOMPARE(doc->Index(), 0);
        QCOMPARE(doc->UserControl(), nullptr);
    }

    void frameAndHandleLayout()
    {
        RptItemControl* a = add(ObjType::Box, 600, 900, 1201, 601);
        sel->Select(a);
        DragBox* f = sel->Frame(a);
        QVERIFY(f);
        QCOMPARE(f->EdgeRect(DragBox::BottomEdge), QRectF(0, 571, 1201, 30));
        QCOMPARE(f->EdgeRect(DragBox::RightEdge), QRectF(1171, 0, 30, 601));
        QCOMPARE(f->ResizeHandle(8), nullptr);
        QCOMPARE(f->ResizeHandle(-1), nullptr);

        // Corners outside the item, middles centred on their edges, all in whole twips.
        const QPointF expected[8] = {{520, 820}, {520, 1161}, {1801, 1161}, {1161, 820},
                                     {1801, 820}, {1801, 1501}, {1161, 1501}, {520, 1501}};
        const Qt::CursorShape shape[8] = {Qt::SizeAllCursor,   Qt::SizeHorCursor,   Qt::SizeHorCursor,
                                          Qt::SizeVerCursor,   Qt::SizeBDiagCursor, Qt::SizeFDiagCursor,
                                          Qt::SizeVerCursor,   Qt::SizeBDiagCursor};
        for (int i = 0; i < 8; ++i) {
            ResizeHandleItem* h = f->ResizeHandle(i);
            QCOMPARE(handleAt(f, i), expected[i]);
            QVERIFY(h->Shown());
            QCOMPARE(h->cursor().shape(), shape[i]);
        }
        QVERIFY(f->zValue() > a->zValue());
    }

    void lineShowsTwoHandles()
    {
        RptItemControl* h = add(ObjType::Line, 600, 1200, 2400, 0);
        RptItemControl* v = add(ObjType::Line, 3600, 1200, 0, 1800);
        sel->Select(h);
        sel->Select(v);

        DragBox* fh = sel->Frame(h);
        const double mid = std::round(h->Top() + (h->Height() - DragBox::HandleSize) / 2);
        QCOMPARE(handleAt(fh, 1), QPointF(520, mid));
        QCOMPARE(handleAt(fh, 2), QPointF(3000, mid));
        for (int i = 0; i < 8; ++i)
            QCOMPARE(fh->ResizeHandle(i)->Shown(), i == 1 || i == 2);

        DragBox* fv = sel->Frame(v);
        const double midX = std::round(v->Left() + (v->Width() - DragBox::HandleSize) / 2);
        QCOMPARE(handleAt(fv, 3), QPointF(midX, 1120));
        QCOMPARE(handleAt(fv, 6), QPointF(midX, 3000));
        for (int i = 0; i < 8; ++i)
            QCOMPARE(fv->ResizeHandle(i)->Shown(), i == 3 || i == 6);

        // Pulling the right end changes only the length; the line keeps its thickness.
        const float thickness = h->Height();
        sel->ClearSelect();
        sel->Select(h);
        sel->ResizeHandle_MouseDown(2, L, 3000, mid);
        sel->ResizeHandle_MouseMove(2, L, 3600, mid);
        sel->ResizeHandleMouseUp(2);
        QCOMPARE(RectOf(h), QRectF(600, 1200, 3000, thickness));
        QCOMPARE(handleAt(sel->Frame(h), 2), QPointF(3600, mid));
    }

    void dragInGridSteps()
    {
        RptItemControl* a = add(ObjType::Box, 600, 600, 1200, 600);
        RptItemControl* b = add(ObjType::Box, 2400, 1200, 600, 600);
        QGraphicsLineItem hLine, vLine;
        sel->SetRulerLines(&hLine, &vLine);
        sel->MouseDown(a, L, 0, 100, 100);
        sel->MouseDown(b, L, Shift, 100, 100);
        QSignalSpy moved(sel.get(), &clsResize::itemsMoved);
        QCOMPARE(hLine.x(), 600.0);
        QCOMPARE(vLine.y(), 820.0);

        // Less than one grid step: nothing moves, handles stay.
        sel->MouseMove(145, 55);
        QCOMPARE(RectOf(sel->Frame(a)), QRectF(600, 600, 1200, 600));
        QVERIFY(sel->Frame(a)->HandlesVisible());
        // Exactly one step right and one up: every frame moves, the items wait.
        sel->MouseMove(160, 40);
        QCOMPARE(RectOf(sel->Frame(a)), QRectF(660, 540, 1200, 600));
        QCOMPARE(RectOf(sel->Frame(b)), QRectF(2460, 1140, 600, 600));
        QCOMPARE(RectOf(a), QRectF(600, 600, 1200, 600));
        QVERIFY(!sel->Frame(a)->HandlesVisible());
        QVERIFY(!sel->Frame(b)->ResizeHandle(5)->Shown());
        QCOMPARE(hLine.x(), 660.0);
        QCOMPARE(vLine.y(), 760.0);
        // A delta that is not a whole multiple moves by the whole steps it holds, the rest
        // waits: 75 twips is one step and 15 to come, so 60 more make a second step.
        sel->MouseMove(235, 40);
        QCOMPARE(sel->Frame(a)->Left(), 720.0f);
        sel->MouseMove(265, 40);
        QCOMPARE(sel->Frame(a)->Left(), 720.0f);
        sel->MouseMove(280, 40);
        QCOMPARE(sel->Frame(a)->Left(), 780.0f);
        QCOMPARE(moved.count(), 0);

        sel->MouseUp();
        QCOMPARE(RectOf(a), QRectF(780, 540, 1200, 600));
        QCOMPARE(RectOf(b), QRectF(2580, 1140, 600, 600));
        QCOMPARE(moved.count(), 1);
        QVERIFY(sel->Frame(a)->HandlesVisible());
        QCOMPARE(handleAt(sel->Frame(a), 0), QPointF(700, 460));
        // Several selected: size-all over them.
        QCOMPARE(a->MousePointer(), 5);

        // Moves after the mouse went up are ignored.
        sel->MouseMove(400, 400);
        QCOMPARE(sel->Frame(a)->Left(), 780.0f);

        // One selected: the I-beam after a drag; the frame gives back the old pointer when it goes.
        sel->MouseDown(b, L, Shift, 0, 0);
        sel->MouseUp();
        QCOMPARE(a->MousePointer(), 3);
        sel->ClearSelect();
        QCOMPARE(a->MousePointer(), 0);
        QCOMPARE(moved.count(), 1);
    }

    void leftEdgeStopsAndResumes()
    {
        RptItemControl* a = add(ObjType::Box, 120, 600, 600, 600);
        RptItemControl* b = add(ObjType::Box, 300, 1500, 600, 600);
        sel->MouseDown(a, L, 0, 1000, 500);
        sel->MouseDown(b, L, Shift, 1000, 500);

        // Three steps left, but only 120 twips of room: the left edge lands on 0, shape kept.
        sel->MouseMove(820, 500);
        QCOMPARE(sel->Frame(a)->Left(), 0.0f);
        QCOMPARE(sel->Frame(b)->Left(), 180.0f);
        // Further left, and back but not yet past the stop: held.
        sel->MouseMove(700, 500);
        sel->MouseMove(760, 500);
        QCOMPARE(sel->Frame(a)->Left(), 0.0f);
        // Past the stop point: steps count from there again.
        sel->MouseMove(880, 500);
        QCOMPARE(sel->Frame(a)->Left(), 60.0f);
        QCOMPARE(sel->Frame(b)->Left(), 240.0f);
        sel->MouseUp();
        QCOMPARE(a->Left(), 60.0f);
        QCOMPARE(b->Left(), 240.0f);
    }

    void otherEdgesStop()
    {
        sel->SetPageSize(3000, 4000);
        RptItemControl* a = add(ObjType::Box, 2100, 3100, 600, 600); // right 2700, bottom 3700
        sel->MouseDown(a, L, 0, 0, 0);
        // Right and down by 600: 300 of room each way.
        sel->MouseMove(600, 600);
        QCOMPARE(RectOf(sel->Frame(a)), QRectF(2400, 3400, 600, 600));
        sel->MouseMove(900, 900);
        QCOMPARE(RectOf(sel->Frame(a)), QRectF(2400, 3400, 600, 600));
        // Back past the stop: moves again, and the top edge stops at 0.
        sel->MouseMove(540, 540);
        QCOMPARE(RectOf(sel->Frame(a)), QRectF(2340, 3340, 600, 600));
        sel->MouseMove(540, -6000);
        QCOMPARE(sel->Frame(a)->Top(), 0.0f);
        QCOMPARE(sel->Frame(a)->Height(), 600.0f);
        sel->MouseUp();
        QCOMPARE(RectOf(a), QRectF(2340, 0, 600, 600));
    }

    void resizeHandles_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QPointF>("by"); // pointer movement
        QTest::addColumn<QRectF>("result");
        QTest::addColumn<bool>("alike"); // the second item, far from the page edge, changes the same
        // Item at (600, 600) 1200 x 300.
        QTest::newRow("0 moves") << 0 << QPointF(120, 60) << QRectF(720, 660, 1200, 300) << true;
        QTest::newRow("1 left") << 1 << QPointF(120, 60) << QRectF(720, 600, 1080, 300) << true;
        QTest::newRow("2 right") << 2 << QPointF(120, 60) << QRectF(600, 600, 1320, 300) << true;
        QTest::newRow("3 top") << 3 << QPointF(120, 60) << QRectF(600, 660, 1200, 240) << true;
        QTest::newRow("4 top right") << 4 << QPointF(120, 60) << QRectF(600, 660, 1320, 240) << true;
        QTest::newRow("5 bottom right") << 5 << QPointF(120, 60) << QRectF(600, 600, 1320, 360) << true;
        QTest::newRow("6 bottom") << 6 << QPointF(120, 60) << QRectF(600, 600, 1200, 360) << true;
        QTest::newRow("7 bottom left") << 7 << QPointF(120, 60) << QRectF(720, 600, 1080, 360) << true;
        QTest::newRow("2 past the left edge") << 2 << QPointF(-1800, 0) << QRectF(600, 600, 0, 300) << true;
        QTest::newRow("1 past the right edge") << 1 << QPointF(1800, 0) << QRectF(1800, 600, 0, 300) << true;
        QTest::newRow("6 above the top") << 6 << QPointF(0, -600) << QRectF(600, 600, 1200, 0) << true;
        QTest::newRow("1 off the page") << 1 << QPointF(-1200, 0) << QRectF(0, 600, 1800, 300) << false;
        QTest::newRow("under a step") << 5 << QPointF(59, 30) << QRectF(600, 600, 1200, 300) << true;
    }
    void resizeHandles()
    {
        QFETCH(int, index);
        QFETCH(QPointF, by);
        QFETCH(QRectF, result);
        QFETCH(bool, alike);
        RptItemControl* a = add(ObjType::Box, 600, 600, 1200, 300);
        RptItemControl* b = add(ObjType::Box, 3000, 3000, 1200, 300);
        sel->Select(a);
        sel->Select(b);
        QSignalSpy moved(sel.get(), &clsResize::itemsMoved);
        const QPointF start = handleAt(sel->Frame(a), index) + QPointF(40, 40);
        sel->ResizeHandle_MouseDown(index, L, float(start.x()), float(start.y()));
        sel->ResizeHandle_MouseMove(index, 0, float(start.x() + by.x()), float(start.y() + by.y())); // no button
        QCOMPARE(RectOf(sel->Frame(a)), QRectF(600, 600, 1200, 300));
        sel->ResizeHandle_MouseMove(index, L, float(start.x() + by.x()), float(start.y() + by.y()));
        // The items wait for the button to come up; the handles hide but stay in the scene,
        // keeping any mouse grab.
        QCOMPARE(RectOf(a), QRectF(600, 600, 1200, 300));
        if (result != QRectF(600, 600, 1200, 300)) {
            QVERIFY(!sel->Frame(a)->HandlesVisible());
            QVERIFY(sel->Frame(a)->ResizeHandle(index)->shape().isEmpty());
            QVERIFY(sel->Frame(a)->ResizeHandle(index)->isVisible());
        }
        sel->ResizeHandleMouseUp(index);
        QCOMPARE(RectOf(a), result);
        // Every selected item changes alike.
        if (alike)
            QCOMPARE(RectOf(b).size(), result.size());
        QCOMPARE(moved.count(), result == QRectF(600, 600, 1200, 300) ? 0 : 1);
        QVERIFY(sel->Frame(a)->HandlesVisible());
        QCOMPARE(handleAt(sel->Frame(a), 5), QPointF(result.right(), result.bottom()));
    }

    void cancelDrag()
    {
        RptItemControl* a = add(ObjType::Box, 600, 600, 1200, 300);
        QSignalSpy moved(sel.get(), &clsResize::itemsMoved);
        sel->MouseDown(a, L, 0, 0, 0);
        sel->MouseMove(240, 0);
        QCOMPARE(sel->Frame(a)->Left(), 840.0f);
        sel->CancelDrag();
        QCOMPARE(RectOf(sel->Frame(a)), QRectF(600, 600, 1200, 300));
        QVERIFY(sel->Frame(a)->HandlesVisible());
        QVERIFY(!sel->Dragging());
        sel->MouseMove(480, 0);
        sel->MouseUp();
        QCOMPARE(RectOf(a), QRectF(600, 600, 1200, 300));

        sel->ResizeHandle_MouseDown(2, L, 1840, 700);
        sel->ResizeHandle_MouseMove(2, L, 2440, 700);
        sel->CancelDrag();
        sel->ResizeHandleMouseUp(2);
        QCOMPARE(RectOf(a), QRectF(600, 600, 1200, 300));
        QCOMPARE(RectOf(sel->Frame(a)), QRectF(600, 600, 1200, 300));
        QCOMPARE(moved.count(), 0);
    }

    void documentUsesTheSelection()
    {
        RptItemControl* a = add(ObjType::Label, 600, 600, 1200, 300);
        RptItemControl* b = add(ObjType::Box, 600, 1800, 1200, 600);
        RptItemControl* c = add(ObjType::Box, 6000, 6000, 600, 600);

        doc->SelectByArea(0, 0, 3000, 3000);
        QCOMPARE(sel->SelectedControls(), QList<QObject*>({a, b}));
        QVERIFY(a->Selected() && b->Selected());
        QCOMPARE(sel->Frame(a)->ControlType(), int(ObjType::Label));
        QCOMPARE(sel->Frame(b)->ControlType(), int(ObjType::Box));

        // Items moved by the document take their frames along.
        doc->MoveControls(0, 300);
        QCOMPARE(RectOf(sel->Frame(b)), QRectF(600, 2100, 1200, 600));
        QCOMPARE(handleAt(sel->Frame(a), 0), QPointF(520, 820));

        doc->DeleteSelected();
        QCOMPARE(sel->Count(), 0);
        QCOMPARE(doc->RptItemCount(), 1);
        QCOMPARE(framesInScene(), 0);

        // A control deleted while selected takes its frame along.
        sel->Select(c);
        QPointer<DragBox> f = sel->Frame(c);
        doc->Delete(1);
        QVERIFY(f.isNull());
        QCOMPARE(sel->Count(), 0);
    }

    void dropAllFramesKeepsFlags()
    {
        RptItemControl* a = add(ObjType::Box, 600, 600, 600, 600);
        sel->Select(a);
        QCOMPARE(a->MousePointer(), 5);
        sel->DropAllFrames();
        QCOMPARE(sel->Count(), 0);
        QVERIFY(a->Selected());
        QCOMPARE(a->MousePointer(), 0);
    }

    void keyboardMovesAndSizes()
    {
        RptItemControl* a = add(ObjType::Box, 30, 600, 600, 600);
        RptItemControl* b = add(ObjType::Box, 900, 600, 300, 600);
        sel->Select(a);
        sel->Select(b);
        QSignalSpy moved(sel.get(), &clsResize::itemsMoved);
        sel->MoveSelectionBy(-60, 60);
        QCOMPARE(RectOf(a), QRectF(0, 660, 600, 600));
        QCOMPARE(RectOf(b), QRectF(870, 660, 300, 600));
        sel->MoveSelectionBy(-60, 0); // already at the edge
        QCOMPARE(moved.count(), 1);
        sel->ResizeSelectionBy(-400, 60);
        QCOMPARE(RectOf(a), QRectF(0, 660, 200, 660));
        QCOMPARE(RectOf(b), QRectF(870, 660, 0, 660));
        sel->SetPageSize(1000, 0);
        sel->ResizeSelectionBy(500, 0);
        QCOMPARE(a->Width(), 700.0f);
        QCOMPARE(b->Width(), 130.0f);
        QCOMPARE(RectOf(sel->Frame(b)), RectOf(b));
    }

    void hostileInput()
    {
        RptItemControl* a = add(ObjType::Box, 600, 600, 600, 600);
        sel->MouseDown(nullptr, L, 0, 0, 0);
        sel->RemoveSelect(nullptr);
        sel->MouseUp();
        QCOMPARE(sel->Count(), 0);
        // A zero grid means free movement, not a division by zero.
        sel->SetGridX(0);
        sel->SetGridY(-5);
        sel->MouseDown(a, L, 0, 0, 0);
        sel->MouseMove(7, 3);
        sel->MouseUp();
        QCOMPARE(RectOf(a), QRectF(607, 603, 600, 600));
        // Bad handle indexes do nothing.
        sel->ResizeHandle_MouseDown(8, L, 0, 0);
        sel->ResizeHandle_MouseMove(8, L, 100, 100);
        sel->ResizeHandleMouseUp(8);
        sel->ResizeHandle_MouseDown(-1, L, 0, 0);
        QVERIFY(!sel->Dragging());
        QCOMPARE(RectOf(a), QRectF(607, 603, 600, 600));
        // The manager outliving its scene does not touch the deleted frames.
        sel->Select(a);
        QCOMPARE(sel->Count(), 1);
        doc.reset();
        surface.reset();
        QCOMPARE(sel->Count(), 0);
        sel->ClearSelect();
        sel->RefreshDragToSource();
    }

    void mouseOnTheScene()
    {
        // Real scene events: the handle keeps the mouse while hidden, and the item's own
        // press starts a drag of the selection.
        RptItemControl* a = add(ObjType::Box, 600, 600, 1200, 300);
        sel->Select(a);
        QGraphicsScene& scene = surface->Scene();
        SendMouse(scene, QEvent::GraphicsSceneMousePress, {1840, 940}, Qt::LeftButton);
        SendMouse(scene, QEvent::GraphicsSceneMouseMove, {1960, 1000}, Qt::LeftButton);
        QVERIFY(!sel->Frame(a)->HandlesVisible());
        SendMouse(scene, QEvent::GraphicsSceneMouseMove, {2080, 1060}, Qt::LeftButton);
        SendMouse(scene, QEvent::GraphicsSceneMouseRelease, {2080, 1060}, Qt::NoButton);
        QCOMPARE(RectOf(a), QRectF(600, 600, 1440, 420));

        connect(a, &RptItemControl::MouseDown, sel.get(),
                [this, a](int b, int sh, float x, float y) { sel->MouseDown(a, b, sh, x, y); });
        connect(a, &RptItemControl::MouseMove, sel.get(), [this](int, int, float x, float y) { sel->MouseMove(x, y); });
        connect(a, &RptItemControl::MouseUp, sel.get(), [this](int, int, float, float) { sel->MouseUp(); });
        sel->ClearSelect();
        // On the box's edge, under its frame: the frame lets the press through to the item.
        SendMouse(scene, QEvent::GraphicsSceneMousePress, {1200, 610}, Qt::LeftButton);
        QCOMPARE(sel->Count(), 1);
        SendMouse(scene, QEvent::GraphicsSceneMouseMove, {1320, 610}, Qt::LeftButton);
        QCOMPARE(a->Left(), 600.0f);
        SendMouse(scene, QEvent::GraphicsSceneMouseRelease, {1320, 610}, Qt::NoButton);
        QCOMPARE(RectOf(a), QRectF(720, 600, 1440, 420));
    }
};

QTEST_MAIN(tst_selection)
#include "tst_selection.moc"
