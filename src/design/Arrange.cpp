#include "design/Arrange.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Arrange {

namespace {
double whole(double v) { return std::round(v); }
}

std::vector<Box> Apply(Op op, std::vector<Box> boxes)
{
    const bool spacing = op == Op::SpaceAcross || op == Op::SpaceDown;
    if (boxes.size() < (spacing ? 3u : 2u))
        return boxes;
    const QRectF ref = boxes.front().rect;
    if (spacing) {
        const bool across = op == Op::SpaceAcross;
        std::vector<size_t> order(boxes.size());
        std::iota(order.begin(), order.end(), size_t(0));
        const auto start = [&](size_t i) { return across ? boxes[i].rect.left() : boxes[i].rect.top(); };
        const auto extent = [&](size_t i) { return across ? boxes[i].rect.width() : boxes[i].rect.height(); };
        std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) { return start(a) < start(b); });
        double first = start(order.front());
        double last = 0;
        for (size_t i : order)
            last = std::max(last, start(i) + extent(i));
        double total = 0;
        for (size_t i : order)
            total += extent(i);
        const double gap = (last - first - total) / double(order.size() - 1);
        double at = first;
        for (size_t k = 0; k < order.size(); ++k) {
            QRectF& r = boxes[order[k]].rect;
            // The outermost items stay; the rest take their place in the even spacing.
            if (k > 0 && k + 1 < order.size()) {
                if (across)
                    r.moveLeft(whole(at));
                else
                    r.moveTop(whole(at));
            }
            at += extent(order[k]) + gap;
        }
        return boxes;
    }
    for (size_t i = 1; i < boxes.size(); ++i) {
        Box& b = boxes[i];
        QRectF& r = b.rect;
        switch (op) {
        case Op::AlignLefts: r.moveLeft(ref.left()); break;
        case Op::AlignRights: r.moveRight(ref.right()); break;
        case Op::AlignTops: r.moveTop(ref.top()); break;
        case Op::AlignBottoms: r.moveBottom(ref.bottom()); break;
        case Op::AlignCentres: r.moveLeft(whole(ref.center().x() - r.width() / 2)); break;
        case Op::AlignMiddles: r.moveTop(whole(ref.center().y() - r.height() / 2)); break;
        case Op::SameWidth:
            if (b.line != 2)
                r.setWidth(ref.width());
            break;
        case Op::SameHeight:
            if (b.line != 1)
                r.setHeight(ref.height());
            break;
        case Op::SameSize:
            if (b.line != 2)
                r.setWidth(ref.width());
            if (b.line != 1)
                r.setHeight(ref.height());
            break;
        default:
            break;
        }
    }
    return boxes;
}

double CentreOffset(const std::vector<Box>& boxes, double printableWidth)
{
    if (boxes.empty())
        return 0;
    double left = boxes.front().rect.left(), right = boxes.front().rect.right();
    for (const Box& b : boxes) {
        left = std::min(left, b.rect.left());
        right = std::max(right, b.rect.right());
    }
    const double target = std::max(0.0, whole((printableWidth - (right - left)) / 2));
    return target - left;
}

} // namespace Arrange
