// Smart guides: the matching arithmetic on its own, then clsResize snapping real frames on a
// scene with and without Alt, for a drag and for one resized edge.
#include "design/DragBox.h"
#include "design/OffscreenPage.h"
#include "design/RptItemControl.h"
#include "design/SmartGuideLines.h"
#include "design/SmartGuides.h"
#include "design/clsResize.h"
#include "document/clsRptControl.h"
#include "support_selection.h"

#include <QtTest>
#include <memory>

using namespace SmartGuides;

namespace {

constexpr int L = RptItemControl::LeftButton;
constexpr int Alt = RptItemControl::AltMask;

// One item at 1200..2400 across, 1200..1800 down, in a section that takes the whole page.
Targets OneItem()
{
    return Collect({QRectF(1200, 1200, 1200, 600)}, {}, 10800, QRectF(0, 3000, 10, 10));
}

QRectF RectOf(const DragBox* f) { return {f->Left(), f->Top(), f->Width(), f->Height()}; }

} // namespace

class tst_smartguides : public QObject, private SelectionSurface {
    Q_OBJECT

    SmartGuideLines* lines = nullptr;

    RptItemControl* add(double l, double t, double w, double h)
    {
        doc->AddNew(ObjType::Box, QStringLiteral("Unbound"), 0);
        auto* c = qobject_cast<RptItemControl*>(doc->Item(doc->RptItemCount()).control);
        c->Move(float(l), float(t), float(w), float(h));
        return c;
    }

private slots:
    void matchesEdgesAndCentres_data()
    {
        QTest::addColumn<QRectF>("moving");
        QTest::addColumn<QPointF>("offset");
        QTest::addColumn<QList<double>>("linesX");
        QTest::addColumn<QList<double>>("linesY");
        // Edges x 1200, 2400 (item), 0, 10800 (margins), y 1200, 1800; centres x 1800, 5400, y 1500.
        QTest::newRow("left onto left") << QRectF(1230, 3000, 500, 300) << QPointF(-30, 0) << QList<double>{1200}
                                        << QList<double>{};
        QTest::newRow("right onto left") << QRectF(680, 3000, 500, 300) << QPointF(20, 0) << QList<double>{1200}
                                         << QList<double>{};
        QTest::newRow("centre onto centre") << QRectF(1560, 3000, 500, 300) << QPointF(-10, 0)
                                            << QList<double>{1800} << QList<double>{};
        QTest::newRow("top onto bottom") << QRectF(5000, 1830, 500, 300) << QPointF(0, -30) << QList<double>{}
                                         << QList<double>{1800};
        QTest::newRow("middle onto middle") << QRectF(5000, 1340, 500, 300) << QPointF(0, 10) << QList<double>{}
                                            << QList<double>{1500};
        QTest::newRow("both axes") << QRectF(2420, 1820, 500, 300) << QPointF(-20, -20) << QList<double>{2400}
                                   << QList<double>{1800};
        QTest::newRow("nearest edge wins") << QRectF(1230, 3000, 1180, 300) << QPointF(-10, 0)
                                           << QList<double>{2400} << QList<double>{};
        QTest::newRow("edges and centre land together") << QRectF(1230, 3000, 1200, 300) << QPointF(-30, 0)
                                                        << QList<double>{1200, 2400, 1800} << QList<double>{};
        // An edge passes by a centre line, and a centre by an edge line.
        QTest::newRow("right edge near a centre") << QRectF(1290, 3000, 500, 300) << QPointF(0, 0)
                                                  << QList<double>{} << QList<double>{};
        QTest::newRow("centre near an edge") << QRectF(5000, 1070, 300, 300) << QPointF(0, 0) << QList<double>{}
                                             << QList<double>{};
        QTest::newRow("right margin") << QRectF(10000, 3000, 775, 300) << QPointF(25, 0) << QList<double>{10800}
                                      << QList<double>{};
        QTest::newRow("left margin") << QRectF(30, 3000, 500, 300) << QPointF(-30, 0) << QList<double>{0}
                                     << QList<double>{};
        QTest::newRow("page centre") << QRectF(5170, 3000, 500, 300) << QPointF(-20, 0) << QList<double>{5400}
                                     << QList<double>{};
        QTest::newRow("exactly at the threshold") << QRectF(1245, 3000, 500, 300) << QPointF(-45, 0)
                                                  << QList<double>{1200} << QList<double>{};
        QTest::newRow("just past the threshold") << QRectF(1245.5, 3000, 500, 300) << QPointF(0, 0)
                                                 << QList<double>{} << QList<double>{};
        QTest::newRow("already aligned") << QRectF(2400, 3000, 500, 300) << QPointF(0, 0) << QList<double>{2400}
                                         << QList<double>{};
    }
    void matchesEdgesAndCentres()
    {
        QFETCH(QRectF, moving);
        QFETCH(QPointF, offset);
        QFETCH(QList<double>, linesX);
        QFETCH(QList<double>, linesY);
        const Snap s = Match(OneItem(), moving, AllEdges, 45);
        QCOMPARE(s.offset, offset);
        QCOMPARE(s.snappedX, !linesX.isEmpty());
        QCOMPARE(s.snappedY, !linesY.isEmpty());
        QList<double> gotX, gotY;
        for (const QLineF& l : s.linesX) {
            QCOMPARE(l.x1(), l.x2());
            gotX << l.x1();
        }
        for (const QLineF& l : s.linesY) {
            QCOMPARE(l.y1(), l.y2());
            gotY << l.y1();
        }
        QCOMPARE(gotX, linesX);
        QCOMPARE(gotY, linesY);
    }

    void linesCrossTheSectionAndReachTheMovedRectangle()
    {
        // A vertical line runs down the section; when the moved rectangle hangs below it, down to it.
        const Targets t = Collect({QRectF(1200, 2400, 600, 300)}, {{2220, 4000}}, 10800, QRectF(0, 3000, 10, 10));
        QCOMPARE(t.area, QRectF(0, 2220, 10800, 1780));
        const Snap down = Match(t, QRectF(1210, 3800, 400, 600), AllEdges, 45);
        QCOMPARE(down.linesX.size(), size_t(1));
        QCOMPARE(down.linesX.front(), QLineF(1200, 2220, 1200, 4400));
        // A horizontal line runs across the usable width.
        const Snap across = Match(t, QRectF(6000, 2420, 400, 200), AllEdges, 45);
        QCOMPARE(across.linesY.size(), size_t(1));
        QCOMPARE(across.linesY.front(), QLineF(0, 2400, 10800, 2400));
    }

    void onlyItemsOfTheSameSectionCount()
    {
        const std::vector<QRectF> items{QRectF(1000, 100, 600, 300), QRectF(3000, 3000, 600, 300),
                                        QRectF(7000, 15000, 600, 300)};
        const std::vector<Section> sections{{0, 2000}, {2220, 14000}, {14220, 20160}};
        // In the detail section the header and footer items are no targets: 7000 stays unmatched.
        const Targets detail = Collect(items, sections, 10800, QRectF(7020, 5000, 600, 300));
        QCOMPARE(detail.x, (std::vector<double>{3000, 3600, 0, 10800}));
        QCOMPARE(detail.centreX, (std::vector<double>{3300, 5400}));
        QCOMPARE(detail.y, (std::vector<double>{3000, 3300}));
        QCOMPARE(detail.centreY, (std::vector<double>{3150}));
        QVERIFY(!Match(detail, QRectF(7020, 5000, 600, 300), AllEdges, 45).snappedX);
        // The same rectangle in the footer lines up with the footer item.
        const Snap footer = Match(Collect(items, sections, 10800, QRectF(7020, 16000, 600, 300)),
                                  QRectF(7020, 16000, 600, 300), AllEdges, 45);
        QCOMPARE(footer.offset, QPointF(-20, 0));
        // A top on a section bar (between sections) counts as the first section.
        QCOMPARE(Collect(items, sections, 10800, QRectF(0, 2100, 10, 10)).y, (std::vector<double>{100, 400}));
    }

    void resizeMatchesOnlyItsOwnEdges()
    {
        const QRectF moving(1230, 3000, 1180, 300); // left 30 right of 1200, right 10 right of 2400
        QCOMPARE(Match(OneItem(), moving, HandleEdges(1), 45).offset, QPointF(-30, 0));
        QCOMPARE(Match(OneItem(), moving, HandleEdges(2), 45).offset, QPointF(-10, 0));
        // A top handle ignores the near left and right edges; a bottom-left corner takes both axes.
        QVERIFY(!Match(OneItem(), moving, HandleEdges(3), 45).snappedX);
        const Snap corner = Match(OneItem(), QRectF(1230, 1000, 560, 820), HandleEdges(7), 45);
        QCOMPARE(corner.offset, QPointF(-30, -20));
        QCOMPARE(HandleEdges(0), unsigned(AllEdges));
        QCOMPARE(HandleEdges(8), 0u);

        // Placing a left-edge resize moves the left edge alone: the grid had it at 1260, the
        // pointer is 15 twips further left, the item's left edge at 1200 takes it the other 45.
        const Placement p = Place(OneItem(), QRectF(1260, 3000, 600, 300), QPointF(-15, 0), Left, 45, {});
        QCOMPARE(p.offset, QPointF(-60, 0));
        QCOMPARE(MoveEdges(QRectF(1260, 3000, 600, 300), Left, p.offset), QRectF(1200, 3000, 660, 300));
        QCOMPARE(MoveEdges(QRectF(1260, 3000, 600, 300), AllEdges, p.offset), QRectF(1200, 3000, 600, 300));
    }

    void placeKeepsThePageAndWholeTwips()
    {
        Targets t;
        t.centreX = {150.5};
        t.area = QRectF(0, 0, 10800, 20160);
        // Centre 200 is 49.5 from 150.5: a snap that would take the left edge below 0 is refused.
        Placement p = Place(t, QRectF(0, 3000, 400, 300), {}, AllEdges, 60, QSizeF(12240, 20160));
        QCOMPARE(p.offset, QPointF(0, 0));
        QVERIFY(p.lines.empty());
        // Further right it is taken, in whole twips: the centre lands half a twip past the line.
        p = Place(t, QRectF(100, 3000, 100, 300), {}, AllEdges, 60, QSizeF(12240, 20160));
        QCOMPARE(p.offset, QPointF(1, 0));
        QCOMPARE(p.lines.size(), size_t(1));
        QCOMPARE(p.lines.front().x1(), 150.5);

        // The right page edge: allowed up to it, refused past it.
        t.centreX.clear();
        t.x = {10850};
        QCOMPARE(Place(t, QRectF(10000, 3000, 800, 300), {}, AllEdges, 60, QSizeF(10860, 20160)).offset,
                 QPointF(50, 0));
        QCOMPARE(Place(t, QRectF(10000, 3000, 800, 300), {}, AllEdges, 60, QSizeF(10820, 20160)).offset,
                 QPointF(0, 0));
        // A resize that would turn a selected frame inside out is refused.
        t.x = {1260};
        const std::vector<QRectF> frames{QRectF(1230, 3000, 600, 300), QRectF(1230, 3600, 20, 300)};
        QCOMPARE(Place(t, QRectF(1230, 3000, 600, 900), {}, Left, 45, {}, frames).offset, QPointF(0, 0));
        QCOMPARE(Place(t, QRectF(1230, 3000, 600, 900), {}, Left, 45, {}, {frames[0]}).offset, QPointF(30, 0));
    }

    // ---- clsResize with guides from the document's other items

    void init()
    {
        Make();
        lines = new SmartGuideLines;
        surface->Scene().addItem(lines);
        sel->SetSmartGuides(
            [this](const QRectF& moving) {
                std::vector<QRectF> others;
                for (int i = 1; i <= doc->RptItemCount(); ++i)
                    if (QObject* c = doc->Item(i).control; !sel->IsSelected(c))
                        others.push_back(DragBox::SourceRect(c));
                return Collect(others, {}, 10800, moving);
            },
            lines);
    }
    void cleanup() { Reset(); }

    void dragSnapsUnlessAltIsHeld()
    {
        RptItemControl* a = add(1200, 1200, 1200, 600);
        RptItemControl* b = add(3000, 2400, 660, 300); // right edge clear of a's centre line
        // The pointer takes b's left to 1245, 45 twips (3 pixels at 100 %) right of a's left.
        sel->MouseDown(b, L, 0, 10, 10);
        sel->MouseMove(10 - 1755, 10);
        QCOMPARE(RectOf(sel->Frame(b)), QRectF(1200, 2400, 660, 300));
        QVERIFY(lines->isVisible());
        QCOMPARE(lines->Lines().size(), size_t(1));
        QCOMPARE(lines->Lines().front().x1(), 1200.0);
        QCOMPARE(b->Left(), 3000.0f); // the item waits for the release

        // Further on the guide lets go: whole grid steps from where the drag began, as without it.
        sel->MouseMove(10 - 1355, 10);
        QCOMPARE(RectOf(sel->Frame(b)), QRectF(1620, 2400, 660, 300));
        QVERIFY(!lines->isVisible());
        sel->MouseMove(10 - 1755, 10);
        sel->MouseUp();
        QCOMPARE(b->Left(), a->Left());
        QCOMPARE(b->Top(), 2400.0f);
        QVERIFY(!lines->isVisible());

        // With Alt the grid alone decides: 1755 twips left is 29 whole steps.
        b->Move(3000, 2400, 660, 300);
        sel->RefreshDragToSource();
        sel->MouseDown(b, L, Alt, 10, 10); // b is the lone selected item: this drops it
        sel->MouseDown(b, L, Alt, 10, 10);
        sel->MouseMove(10 - 1755, 10, Alt);
        QVERIFY(!lines->isVisible());
        sel->MouseUp();
        QCOMPARE(b->Left(), 1260.0f);
    }

    void resizeSnapsTheMovedEdgeOnly()
    {
        add(1200, 1200, 1200, 600);
        RptItemControl* b = add(3000, 1230, 1200, 300); // top 30 below a's top: no resize of the left edge moves it
        sel->Select(b);
        // The left handle pulled to 2430 lands on a's right edge at 2400; the right edge stays.
        sel->ResizeHandle_MouseDown(1, L, 3000, 1300);
        sel->ResizeHandle_MouseMove(1, L, 2430, 1300);
        QCOMPARE(RectOf(sel->Frame(b)), QRectF(2400, 1230, 1800, 300));
        sel->ResizeHandleMouseUp(1);
        QCOMPARE(QRectF(b->Left(), b->Top(), b->Width(), b->Height()), QRectF(2400, 1230, 1800, 300));
        QVERIFY(!lines->isVisible());

        // With Alt: 570 twips is 9 whole steps.
        b->Move(3000, 1230, 1200, 300);
        sel->RefreshDragToSource();
        sel->ResizeHandle_MouseDown(1, L, 3000, 1300);
        sel->ResizeHandle_MouseMove(1, L, 2430, 1300, Alt);
        sel->ResizeHandleMouseUp(1);
        QCOMPARE(QRectF(b->Left(), b->Top(), b->Width(), b->Height()), QRectF(2460, 1230, 1740, 300));
    }
};

QTEST_MAIN(tst_smartguides)
#include "tst_smartguides.moc"
