#pragma once
// The arithmetic of the design page, kept free of widgets: grid spacing and snapping, the page
// length setting, rubber bands and the ruler marks.
#include <QPointF>
#include <QRectF>
#include <QString>
#include <vector>

namespace DesignGeometry {

// Section bars, rulers and their corner are all this thick.
constexpr float BarHeight = 220;
constexpr int DefaultGrid = 60;

struct GridSpacing {
    int x = DefaultGrid;
    int y = DefaultGrid;
    bool operator==(const GridSpacing&) const = default;
};

// "X,Y" as stored in User.ini. A part that is missing, 0, negative or not a number becomes 60.
GridSpacing ParseGrid(const QString& value);
QString GridText(const GridSpacing& grid);

// The page length setting in inches, as twips; anything unusable gives the 14-inch default.
double PageLengthTwips(const QString& inches);

// v − (v mod inc), with v and inc rounded to whole twips for the remainder.
float Snap(float v, int inc);
QPointF Snap(QPointF p, const GridSpacing& grid);

// The band between an anchor and the pointer, drawn in any direction.
QRectF BandRect(QPointF anchor, QPointF pointer);

// One mark of a ruler: a tick of `length` twips starting 30 twips in, or (length 0) a number
// centred on `pos`. Positions are along the ruler, in twips from its origin.
struct RulerMark {
    double pos = 0;
    int length = 0;
    int number = 0;
    bool operator==(const RulerMark&) const = default;
};

// The horizontal ruler: 21 inches in eighths.
std::vector<RulerMark> HRulerMarks();
// The vertical ruler in the viewport's coordinates (the page starts 220 below the top). The
// numbering starts again at 1 below the detail bar (when it is not at the top) and below the
// page footer bar when that is visible. Marks run to the end of the page.
std::vector<RulerMark> VRulerMarks(double pageLength, double detailBarOffset, double pageFooterBarOffset,
                                   bool footerVisible);

} // namespace DesignGeometry
