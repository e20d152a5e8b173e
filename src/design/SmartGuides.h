#pragma once
// Smart guides: while the selection is dragged or resized, an edge that comes within a few
// screen pixels of another item's edge (in the same section) or of a margin line, or a centre
// that comes as near another's centre or the page's, snaps onto it. This is the arithmetic only, free of widgets: the selection
// manager asks it for an offset and the lines to show; SmartGuideLines draws them.
#include <QLineF>
#include <QRectF>
#include <QSizeF>
#include <vector>

namespace SmartGuides {

// How close, in screen pixels, an edge must come to snap. Below one 60-twip grid step at 100 %
// (4 pixels), so a gap of one step next to an item stays reachable without holding Alt.
constexpr double SnapPixels = 3;

// The positions a moving rectangle may line up with. Edges meet edges and centres meet
// centres: an edge that stops on another item's middle is seldom what was meant.
struct Targets {
    std::vector<double> x, y;             // edges: lefts and rights (and the margin lines), tops and bottoms
    std::vector<double> centreX, centreY; // centres (and the middle between the margin lines)
    QRectF area;                          // where guide lines are drawn: the section, across the page
};

// A vertical band of the page, one section: top <= y < bottom.
struct Section {
    double top = 0;
    double bottom = 0;
};

// The targets for `moving`: the items whose top lies in the section holding moving's top
// (the first section when none does), their edges and centres, and the page's margin lines
// (x = 0 and x = usableWidth) and its centre. `items` must not hold the moving ones.
Targets Collect(const std::vector<QRectF>& items, const std::vector<Section>& sections, double usableWidth,
                const QRectF& moving);

// Which edges of the moving rectangle take part.
enum Edge : unsigned {
    Left = 1,
    CentreX = 2,
    Right = 4,
    Top = 8,
    CentreY = 16,
    Bottom = 32,
    AllEdges = 63,
};
// The edges a resize handle moves (0 is the move handle: all of them).
unsigned HandleEdges(int handleIndex);
// r with those edges moved by `by`; with all of them the whole rectangle moves.
QRectF MoveEdges(QRectF r, unsigned edges, QPointF by);

struct Snap {
    bool snappedX = false, snappedY = false;
    QPointF offset;             // to add to the moving edges (0 on an axis that did not snap)
    // One line per target the moved rectangle now lies on: vertical ones for x, horizontal for y.
    std::vector<QLineF> linesX, linesY;
};

// Per axis the nearest pair of moving edge and target within `threshold` (page units) wins;
// a tie goes to the first edge in Edge order, then to the first target. Lines span the
// targets' area, stretched to take in the moved rectangle.
Snap Match(const Targets& targets, const QRectF& moving, unsigned edges, double threshold);

// Where a guide takes a selection (or the moving edges of a resize) that the grid steps have
// put at `grid` while the pointer is `pending` ahead of them: the offset from `grid`, in whole
// twips, so a snapped edge lands exactly on its target, and the lines to show. An axis whose
// snap would take the selection off the page (0 .. page size; 0 or less: no limit that way)
// or leave one of `frames` with a negative size does not snap.
struct Placement {
    QPointF offset;
    std::vector<QLineF> lines;
};
Placement Place(const Targets& targets, const QRectF& grid, QPointF pending, unsigned edges, double threshold,
                QSizeF page, const std::vector<QRectF>& frames = {});

} // namespace SmartGuides
