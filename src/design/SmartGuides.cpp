#include "design/SmartGuides.h"

#include <cmath>
#include <limits>

namespace SmartGuides {

namespace {

// Moved edges closer than this to a target lie on it (centres of odd sizes sit on half twips).
constexpr double OnLine = 0.5;
// The threshold comes from the view's scale: a pixel at 200 % may be 7.4999999 twips.
constexpr double Slack = 1e-6;

struct AxisMatch {
    bool found = false;
    double offset = 0;
};

// The moving rectangle's positions on one axis, in Edge order, with whether each takes part.
struct AxisEdges {
    double pos[3];
    bool used[3];
};

AxisEdges EdgesX(const QRectF& r, unsigned edges)
{
    return {{r.left(), r.center().x(), r.right()}, {bool(edges & Left), bool(edges & CentreX), bool(edges & Right)}};
}

AxisEdges EdgesY(const QRectF& r, unsigned edges)
{
    return {{r.top(), r.center().y(), r.bottom()}, {bool(edges & Top), bool(edges & CentreY), bool(edges & Bottom)}};
}

// The targets of edge i: the centre (1) meets centres, the two edges meet edges.
const std::vector<double>& Of(int i, const std::vector<double>& edges, const std::vector<double>& centres)
{
    return i == 1 ? centres : edges;
}

AxisMatch Nearest(const AxisEdges& e, const std::vector<double>& edges, const std::vector<double>& centres,
                  double threshold)
{
    AxisMatch best;
    double bestDistance = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 3; ++i) {
        if (!e.used[i])
            continue;
        for (double t : Of(i, edges, centres)) {
            const double d = std::abs(t - e.pos[i]);
            if (d <= threshold + Slack && d < bestDistance) {
                bestDistance = d;
                best = {true, t - e.pos[i]};
            }
        }
    }
    return best;
}

// Targets that one of the used edges now lies on, each once: edges first, then centres.
std::vector<double> Hits(const AxisEdges& e, const std::vector<double>& edges, const std::vector<double>& centres)
{
    std::vector<double> out;
    for (int pass = 0; pass < 2; ++pass)
        for (double t : pass ? centres : edges) {
            bool hit = false;
            for (int i = 0; i < 3; ++i)
                hit = hit || (e.used[i] && (i == 1) == (pass == 1) && std::abs(t - e.pos[i]) < OnLine);
            bool seen = false;
            for (double o : out)
                seen = seen || o == t;
            if (hit && !seen)
                out.push_back(t);
        }
    return out;
}

void AddRect(Targets& t, const QRectF& r)
{
    t.x.insert(t.x.end(), {r.left(), r.right()});
    t.y.insert(t.y.end(), {r.top(), r.bottom()});
    t.centreX.push_back(r.center().x());
    t.centreY.push_back(r.center().y());
}

} // namespace

Targets Collect(const std::vector<QRectF>& items, const std::vector<Section>& sections, double usableWidth,
                const QRectF& moving)
{
    Section section{-std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
    if (!sections.empty()) {
        section = sections.front();
        for (const Section& s : sections)
            if (moving.top() >= s.top && moving.top() < s.bottom) {
                section = s;
                break;
            }
    }
    Targets t;
    for (const QRectF& r : items)
        if (r.top() >= section.top && r.top() < section.bottom)
            AddRect(t, r);
    const double width = std::max(0.0, usableWidth);
    t.x.insert(t.x.end(), {0.0, width});
    t.centreX.push_back(width / 2);
    const double top = std::isfinite(section.top) ? section.top : moving.top();
    const double bottom = std::isfinite(section.bottom) ? section.bottom : moving.bottom();
    t.area = QRectF(0, top, width, bottom - top);
    return t;
}

unsigned HandleEdges(int handleIndex)
{
    switch (handleIndex) {
    case 0: return AllEdges;
    case 1: return Left;
    case 2: return Right;
    case 3: return Top;
    case 4: return Top | Right;
    case 5: return Right | Bottom;
    case 6: return Bottom;
    case 7: return Left | Bottom;
    default: return 0;
    }
}

QRectF MoveEdges(QRectF r, unsigned edges, QPointF by)
{
    if (edges == AllEdges)
        return r.translated(by);
    r.setLeft(r.left() + (edges & Left ? by.x() : 0));
    r.setRight(r.right() + (edges & Right ? by.x() : 0));
    r.setTop(r.top() + (edges & Top ? by.y() : 0));
    r.setBottom(r.bottom() + (edges & Bottom ? by.y() : 0));
    return r;
}

Snap Match(const Targets& targets, const QRectF& moving, unsigned edges, double threshold)
{
    Snap s;
    const AxisMatch mx = Nearest(EdgesX(moving, edges), targets.x, targets.centreX, threshold);
    const AxisMatch my = Nearest(EdgesY(moving, edges), targets.y, targets.centreY, threshold);
    s.snappedX = mx.found;
    s.snappedY = my.found;
    s.offset = QPointF(mx.offset, my.offset);

    const QRectF moved = MoveEdges(moving, edges, s.offset);
    const QRectF span = targets.area.normalized().united(moved.normalized());
    if (s.snappedX)
        for (double x : Hits(EdgesX(moved, edges), targets.x, targets.centreX))
            s.linesX.emplace_back(x, span.top(), x, span.bottom());
    if (s.snappedY)
        for (double y : Hits(EdgesY(moved, edges), targets.y, targets.centreY))
            s.linesY.emplace_back(span.left(), y, span.right(), y);
    return s;
}

Placement Place(const Targets& targets, const QRectF& grid, QPointF pending, unsigned edges, double threshold,
                QSizeF page, const std::vector<QRectF>& frames)
{
    const QRectF raw = MoveEdges(grid, edges, pending);
    const Snap snap = Match(targets, raw, edges, threshold);
    const QPointF want(std::round(pending.x() + snap.offset.x()), std::round(pending.y() + snap.offset.y()));
    bool keepX = snap.snappedX, keepY = snap.snappedY;

    // What already lies off the page may stay there, but a snap takes nothing further off.
    const double inf = std::numeric_limits<double>::infinity();
    const QRectF to = MoveEdges(grid, edges, want);
    const double right = std::max(grid.right(), page.width() > 0 ? page.width() : inf);
    const double bottom = std::max(grid.bottom(), page.height() > 0 ? page.height() : inf);
    keepX = keepX && to.left() >= std::min(0.0, grid.left()) && to.right() <= right;
    keepY = keepY && to.top() >= std::min(0.0, grid.top()) && to.bottom() <= bottom;
    for (const QRectF& f : frames) {
        const QRectF r = MoveEdges(f, edges, want);
        keepX = keepX && r.width() >= 0;
        keepY = keepY && r.height() >= 0;
    }

    Placement p;
    p.offset = QPointF(keepX ? want.x() : 0.0, keepY ? want.y() : 0.0);
    if (keepX)
        p.lines = snap.linesX;
    if (keepY)
        p.lines.insert(p.lines.end(), snap.linesY.begin(), snap.linesY.end());
    return p;
}

} // namespace SmartGuides
