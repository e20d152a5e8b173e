#pragma once
// The arithmetic of the arrange commands, free of widgets: rectangles in, rectangles out, in
// the order given. The first rectangle is the reference (the first item selected). Lines are
// marked so that a size command never turns a horizontal line vertical or the other way.
#include <QRectF>
#include <vector>

namespace Arrange {

enum class Op {
    AlignLefts, AlignRights, AlignTops, AlignBottoms, AlignCentres, AlignMiddles,
    SameWidth, SameHeight, SameSize,
    SpaceAcross, SpaceDown,
};

struct Box {
    QRectF rect;
    int line = 0; // 0 not a line, 1 horizontal line, 2 vertical line
    bool operator==(const Box&) const = default;
};

// Fewer than two boxes (three for the spacing commands) come back unchanged. Spacing keeps
// the outermost items where they are and leaves equal gaps between the others, in the order
// of their positions; positions are rounded to whole twips.
std::vector<Box> Apply(Op op, std::vector<Box> boxes);

// How far the whole selection moves so that it sits centred between the page's margins:
// `printableWidth` is the paper width less both margins; items are placed from 0.
double CentreOffset(const std::vector<Box>& boxes, double printableWidth);

} // namespace Arrange
