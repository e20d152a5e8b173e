// Smart guides on the real window: items dragged and resized with the mouse through the view's
// viewport snap onto other items' edges and the page margins, at 100 % and 200 %, and not with Alt.
#include "support_windowhost.h"

#include "design/DragBox.h"
#include "design/SmartGuideLines.h"
#include "design/Zoom.h"
#include "design/clsResize.h"
#include "properties/frmRptProperties.h"

#include <QAction>
#include <QScrollBar>

namespace {

void Settle() { QCoreApplication::processEvents(); }

QObject* DrawBox(frmPagewright& w, QPointF from, QPointF to)
{
    Draw(w, "tbInsertRectangle", from, to);
    return Control(w, w.Document().RptItemCount());
}



// Press at `from`, move half way and then by `by` with the button held, and release there;
// `mods` are held throughout. The guide lines shown just before the release are returned.
std::vector<QLineF> Gesture(frmPagewright& w, QPointF from, QPointF by, Qt::KeyboardModifiers mods = {})
{
    QWidget* vp = Viewport(w);
    const QPoint a = w.Page().ViewportPixel(from), b = w.Page().ViewportPixel(from + by);
    QTest::mousePress(vp, Qt::LeftButton, mods, a);
    // QTest::mouseMove sends no modifiers; a user's Alt is in every move event.
    QTest::mouseEvent(QTest::MouseMove, vp, Qt::NoButton, mods, (a + b) / 2);
    QTest::mouseEvent(QTest::MouseMove, vp, Qt::NoButton, mods, b);
    const std::vector<QLineF> shown = w.GuideLines()->isVisible() ? w.GuideLines()->Lines() : std::vector<QLineF>{};
    QTest::mouseRelease(vp, Qt::LeftButton, mods, b);
    return shown;
}

QString SheetText(frmPagewright& w, const char* editor)
{
    auto* e = w.PropertySheet()->findChild<QLineEdit*>(QString::fromLatin1(editor));
    return e ? e->text() : QStringLiteral("<no %1>").arg(QString::fromLatin1(editor));
}

QString UndoText(frmPagewright& w) { return w.Commands().Action(u"miUndo")->text(); }

} // namespace

class tst_windowguides : public QObject {
    Q_OBJECT
private slots:
    void dragSnapsToAnotherItemsLeftEdge_data()
    {
        QTest::addColumn<int>("zoom");
        QTest::addColumn<double>("off");      // where the pointer leaves the left edge, right of A's
        QTest::addColumn<bool>("alt");
        QTest::addColumn<double>("expected"); // B's left after the release
        // 3 pixels are 45 twips at 100 % and 22.5 at 200 %; 30 twips are 2 pixels at 100 %, 4 at 200 %.
        QTest::newRow("100 %, 3 px") << 100 << 45.0 << false << 1200.0;
        QTest::newRow("100 %, 3 px, Alt") << 100 << 45.0 << true << 1260.0;
        QTest::newRow("200 %, 3 px") << 200 << 22.5 << false << 1200.0;
        QTest::newRow("200 %, 3 px, Alt") << 200 << 22.5 << true << 1260.0;
        QTest::newRow("200 %, 4 px: too far") << 200 << 30.0 << false << 1260.0;
        QTest::newRow("100 %, 2 px") << 100 << 30.0 << false << 1200.0;
    }
    void dragSnapsToAnotherItemsLeftEdge()
    {
        QFETCH(int, zoom);
        QFETCH(double, off);
        QFETCH(bool, alt);
        QFETCH(double, expected);
        WindowTestHost host;
        auto w = Open();
        w->activateWindow();
        QObject* a = DrawBox(*w, {1200, 1200}, {2400, 1800});
        QObject* b = DrawBox(*w, {3000, 2400}, {3660, 2700}); // its right edge clear of A's centre
        Tool(*w, "miProperties");
        w->Zoom().SetPercent(zoom);
        w->Page().View()->horizontalScrollBar()->setValue(0); // the items in sight
        w->Page().View()->verticalScrollBar()->setValue(0);
        Click(*w, Grip(b)); // drops the lone selection: the next press takes hold of b
        Settle();
        const QString undoBefore = UndoText(*w);

        // The pointer moves B's left edge to `off` twips right of A's left edge, whole pixels
        // apart (the grid alone would stop at the step below: 1260).
        const QPointF from = Grip(b), by(1200 + off - 3000, 0);
        QCOMPARE(Actual(*w, from + by) - Actual(*w, from), by);
        const std::vector<QLineF> shown = Gesture(*w, from, by, alt ? Qt::AltModifier : Qt::NoModifier);
        Settle();

        QCOMPARE(Geometry(b), QRectF(expected, 2400, 660, 300));
        QCOMPARE(SheetText(*w, "fpLeft"), QString::number(expected));
        if (expected == Geometry(a).left()) {
            // While the button was held a line ran down the page along the shared edge.
            QCOMPARE(shown.size(), size_t(1));
            QCOMPARE(shown.front().x1(), 1200.0);
            QCOMPARE(shown.front().x2(), 1200.0);
            QVERIFY(shown.front().y1() <= 1200 && shown.front().y2() >= 2700);
        } else {
            QVERIFY(shown.empty());
        }
        QVERIFY(!w->GuideLines()->isVisible());

        // One drag, one step of undo.
        QCOMPARE(UndoText(*w), QStringLiteral("&Undo Move"));
        Tool(*w, "miUndo");
        Settle();
        QCOMPARE(Geometry(b), QRectF(3000, 2400, 660, 300));
        QCOMPARE(UndoText(*w), undoBefore);
    }

    void multipleSelectionSnapsByItsBounds()
    {
        WindowTestHost host;
        auto w = Open();
        DrawBox(*w, {1200, 1200}, {2400, 1800});
        QObject* b = DrawBox(*w, {3000, 2400}, {3600, 2700});
        QObject* c = DrawBox(*w, {4200, 3000}, {4800, 3300});
        QTest::mouseClick(Viewport(*w), Qt::LeftButton, Qt::ShiftModifier, w->Page().ViewportPixel(Grip(b)));
        QCOMPARE(w->SelObj().Count(), 2);
        // The selection spans 3000..4800: its left edge is taken to 30 twips right of A's right
        // edge and snaps onto it; both items move by the same amount.
        Gesture(*w, Grip(c), QPointF(2430 - 3000, 0));
        QCOMPARE(Geometry(b).left(), 2400.0);
        QCOMPARE(Geometry(c).left(), 3600.0);
        QCOMPARE(Geometry(b).top(), 2400.0);
        QCOMPARE(Geometry(c).top(), 3000.0);
    }

    void handleSnapsItsOwnEdgeToTheMargin()
    {
        WindowTestHost host;
        auto w = Open();
        QObject* b = DrawBox(*w, {3000, 2400}, {3600, 2700});
        QVERIFY(w->SelObj().IsSelected(b));
        // The right handle pulled to 45 twips short of the right margin line (the usable width,
        // 10800 with the default margins): with Alt the grid stops it 60 short.
        const std::vector<QLineF> none = Gesture(*w, HandleGrip(*w, b, 2), QPointF(10755 - 3600, 0), Qt::AltModifier);
        QVERIFY(none.empty());
        QCOMPARE(Geometry(b), QRectF(3000, 2400, 7740, 300));
        // Without Alt, 2 pixels more take the right edge onto the margin; the left stays.
        const std::vector<QLineF> shown = Gesture(*w, HandleGrip(*w, b, 2), QPointF(30, 0));
        QCOMPARE(Geometry(b), QRectF(3000, 2400, 7800, 300));
        QCOMPARE(shown.size(), size_t(1));
        QCOMPARE(shown.front().x1(), 10800.0);
    }

    void itemsOfOtherSectionsAreNoTargets()
    {
        WindowTestHost host;
        auto w = Open();
        Tool(*w, "miPageHeader"); // page header 0..1440, detail from 1660
        QCOMPARE(w->Page().DetailHeaderBarOffset(), 220.f + 1440);
        DrawBox(*w, {1200, 300}, {2400, 900});              // in the page header
        QObject* d = DrawBox(*w, {3000, 2400}, {3600, 2700}); // in the detail
        Click(*w, Grip(d));
        // 30 twips from the header item's left edge: the grid decides.
        Gesture(*w, Grip(d), QPointF(1230 - 3000, 0));
        QCOMPARE(Geometry(d).left(), 1260.0);
        // A detail item there is a target.
        DrawBox(*w, {1200, 3600}, {2400, 4200}); // selected: the press on d takes d alone
        Gesture(*w, Grip(d), QPointF(-30, 0));
        QCOMPARE(Geometry(d).left(), 1200.0);
    }
};

QTEST_MAIN(tst_windowguides)
#include "tst_windowguides.moc"
