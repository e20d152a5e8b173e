// Selecting, moving and resizing with the mouse on the real window: every press and move goes
// through the view's viewport, the item controls and their frames as a user's does.
#include "support_windowhost.h"

#include "design/DragBox.h"
#include "design/clsResize.h"

namespace {

// Press at `from`, move through each point of `path` with the button held, release at the last.
// Points are on the page, in twips; what arrives is the nearest pixel, as for a real pointer.
void Gesture(frmPagewright& w, QPointF from, const QList<QPointF>& path)
{
    QWidget* vp = Viewport(w);
    QTest::mousePress(vp, Qt::LeftButton, {}, w.Page().ViewportPixel(from));
    for (const QPointF p : path)
        QTest::mouseMove(vp, w.Page().ViewportPixel(p));
    QTest::mouseRelease(vp, Qt::LeftButton, {}, w.Page().ViewportPixel(path.last()));
}

void ShiftClick(frmPagewright& w, QPointF at)
{
    QTest::mouseClick(Viewport(w), Qt::LeftButton, Qt::ShiftModifier, w.Page().ViewportPixel(at));
}



QObject* DrawBox(frmPagewright& w, QPointF from, QPointF to)
{
    Draw(w, "tbInsertRectangle", from, to);
    return Control(w, w.Document().RptItemCount());
}

} // namespace

class tst_windowdrag : public QObject {
    Q_OBJECT
private slots:
    void clickRulesAndGridStepMoves()
    {
        WindowTestHost host;
        auto w = Open();
        QObject* a = DrawBox(*w, {600, 600}, {1800, 1200});
        QObject* b = DrawBox(*w, {2400, 1500}, {3000, 2100});
        const QRectF a0 = Geometry(a), b0 = Geometry(b);

        Click(*w, Grip(a));
        QCOMPARE(w->SelObj().Count(), 1);
        ShiftClick(*w, Grip(b));
        QCOMPARE(w->SelObj().Count(), 2);
        ShiftClick(*w, Grip(b)); // Shift-click on a selected item takes it out
        QCOMPARE(w->SelObj().Count(), 1);
        QVERIFY(w->SelObj().IsSelected(a) && !w->SelObj().IsSelected(b));
        ShiftClick(*w, Grip(b));
        QCOMPARE(w->SelObj().Count(), 2);

        // Less than a grid step moves nothing; a release there leaves everything in place.
        const QPointF p = Grip(a);
        Gesture(*w, p, {p + QPointF(20, 0), p + QPointF(40, 20)});
        QCOMPARE(Geometry(a), a0);
        QCOMPARE(Geometry(b), b0);
        QCOMPARE(w->SelObj().Count(), 2);

        // One step right and two down: the whole selection goes, in whole steps.
        Gesture(*w, p, {p + QPointF(30, 60), p + QPointF(60, 120)});
        QCOMPARE(Geometry(a), a0.translated(60, 120));
        QCOMPARE(Geometry(b), b0.translated(60, 120));
        QVERIFY(w->Document().DirtyFlag);
        QVERIFY(w->SelObj().Frame(a)->HandlesVisible());

        // A click on the empty page clears the selection.
        Click(*w, {6000, 6000});
        QCOMPARE(w->SelObj().Count(), 0);
    }

    void leftEdgeStopsAndResumes()
    {
        WindowTestHost host;
        auto w = Open();
        QObject* a = DrawBox(*w, {120, 600}, {720, 1200});
        QCOMPARE(Geometry(a).left(), 120.0);
        // A click on the lone selected item drops it; pressing it again takes hold of it.
        Click(*w, Grip(a));
        QCOMPARE(w->SelObj().Count(), 0);
        const QPointF p = Grip(a);
        // Three steps left with two of room: stopped at the edge; back short of the stop point: held;
        // one step past it: moving again from there.
        Gesture(*w, p, {p - QPointF(180, 0), p - QPointF(300, 0), p - QPointF(240, 0), p - QPointF(120, 0)});
        QCOMPARE(Geometry(a).left(), 60.0);
    }

    void eachHandleResizes_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QPointF>("by");
        QTest::addColumn<QRectF>("change"); // added to left, top, width, height
        QTest::newRow("0 moves") << 0 << QPointF(120, 60) << QRectF(120, 60, 0, 0);
        QTest::newRow("1 left") << 1 << QPointF(120, 60) << QRectF(120, 0, -120, 0);
        QTest::newRow("2 right") << 2 << QPointF(120, 60) << QRectF(0, 0, 120, 0);
        QTest::newRow("3 top") << 3 << QPointF(120, 60) << QRectF(0, 60, 0, -60);
        QTest::newRow("4 top right") << 4 << QPointF(120, 60) << QRectF(0, 60, 120, -60);
        QTest::newRow("5 bottom right") << 5 << QPointF(120, 60) << QRectF(0, 0, 120, 60);
        QTest::newRow("6 bottom") << 6 << QPointF(120, 60) << QRectF(0, 0, 0, 60);
        QTest::newRow("7 bottom left") << 7 << QPointF(120, 60) << QRectF(120, 0, -120, 60);
        QTest::newRow("2 past the left edge: width 0") << 2 << QPointF(-1800, 0) << QRectF(0, 0, -1200, 0);
    }
    void eachHandleResizes()
    {
        QFETCH(int, index);
        QFETCH(QPointF, by);
        QFETCH(QRectF, change);
        WindowTestHost host;
        auto w = Open();
        QObject* a = DrawBox(*w, {1200, 1200}, {2400, 1500});
        const QRectF a0 = Geometry(a);
        QCOMPARE(a0.size(), QSizeF(1200, 300));
        QVERIFY(w->SelObj().IsSelected(a)); // a new item comes selected
        const QPointF h = HandleGrip(*w, a, index);
        Gesture(*w, h, {h + by / 2, h + by});
        QCOMPARE(Geometry(a), QRectF(a0.left() + change.left(), a0.top() + change.top(),
                                     a0.width() + change.width(), a0.height() + change.height()));
        QVERIFY(w->SelObj().Frame(a)->HandlesVisible());
    }

    void fastDragAppliesTheWholeStepsItHolds()
    {
        WindowTestHost host;
        auto w = Open();
        QObject* a = DrawBox(*w, {600, 600}, {1800, 1200});
        const QRectF a0 = Geometry(a);
        Click(*w, Grip(a)); // drops the lone selection: the next press takes hold of the item
        // The pointer jumps 50 pixels (750 twips) right and 14 (210) down in one event: twelve
        // steps across and three down are applied, the rest waits for the next event.
        const QPointF p = Grip(a);
        Gesture(*w, p, {p + QPointF(750, 210)});
        QCOMPARE(Geometry(a), a0.translated(720, 180));
        // The remainder is kept: two jumps of 45 twips make one and a half steps, so one step.
        Click(*w, Grip(a));
        const QPointF q = Grip(a);
        Gesture(*w, q, {q + QPointF(45, 0), q + QPointF(90, 0)});
        QCOMPARE(Geometry(a), a0.translated(780, 180));

        // A handle pulled in one jump resizes by the whole steps too.
        const QRectF a1 = Geometry(a);
        const QPointF h = HandleGrip(*w, a, 5);
        Gesture(*w, h, {h + QPointF(450, 300)});
        QCOMPARE(Geometry(a), QRectF(a1.topLeft(), a1.size() + QSizeF(420, 300)));
        QVERIFY(w->SelObj().Frame(a)->HandlesVisible());
    }

    void lineHasTwoHandles()
    {
        WindowTestHost host;
        auto w = Open();
        Draw(*w, "tbInsertLine", {600, 1200}, {3000, 1260});
        QObject* line = Control(*w, 1);
        const QRectF l0 = Geometry(line);
        QVERIFY(w->SelObj().IsSelected(line));
        const DragBox* f = w->SelObj().Frame(line);
        for (int i = 0; i < DragBox::HandleCount; ++i)
            QCOMPARE(f->ResizeHandle(i)->Shown(), i == 1 || i == 2);

        // Pulling the right end lengthens it and keeps its thickness; the left end shortens it.
        const QPointF right = HandleGrip(*w, line, 2);
        Gesture(*w, right, {right + QPointF(300, 0), right + QPointF(600, 0)});
        QCOMPARE(Geometry(line), QRectF(l0.left(), l0.top(), l0.width() + 600, l0.height()));
        const QPointF left = HandleGrip(*w, line, 1);
        Gesture(*w, left, {left + QPointF(240, 0)});
        QCOMPARE(Geometry(line), QRectF(l0.left() + 240, l0.top(), l0.width() + 360, l0.height()));
    }
};

QTEST_MAIN(tst_windowdrag)
#include "tst_windowdrag.moc"
