#include "design/DesignGeometry.h"

#include <QStringList>
#include <cmath>

namespace DesignGeometry {

namespace {

int GridPart(const QString& part)
{
    bool ok = false;
    const double v = part.trimmed().toDouble(&ok);
    // Non-numbers, zero and negative spacings would make snapping divide by zero or run backwards.
    if (!ok || !std::isfinite(v) || std::lround(v) <= 0 || v > 14400)
        return DefaultGrid;
    return int(std::lround(v));
}

} // namespace

GridSpacing ParseGrid(const QString& value)
{
    const QStringList parts = value.split(QLatin1Char(','));
    GridSpacing g;
    g.x = GridPart(parts.value(0));
    g.y = GridPart(parts.value(1));
    return g;
}

QString GridText(const GridSpacing& grid)
{
    return QString::number(grid.x) + QLatin1Char(',') + QString::number(grid.y);
}

double PageLengthTwips(const QString& inches)
{
    bool ok = false;
    const double v = inches.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(v) || v <= 0 || v > 200)
        return 14 * 1440.0;
    return v * 1440.0;
}

float Snap(float v, int inc)
{
    if (inc <= 0)
        return v;
    const long long whole = std::llround(double(v));
    return v - float(whole % inc);
}

QPointF Snap(QPointF p, const GridSpacing& grid)
{
    return {Snap(float(p.x()), grid.x), Snap(float(p.y()), grid.y)};
}

QRectF BandRect(QPointF anchor, QPointF pointer)
{
    return {std::min(anchor.x(), pointer.x()), std::min(anchor.y(), pointer.y()), std::abs(pointer.x() - anchor.x()),
            std::abs(pointer.y() - anchor.y())};
}

namespace {

void AddEighth(std::vector<RulerMark>& marks, double pos, int eighth, int inch)
{
    if (eighth == 8)
        marks.push_back({pos, 0, inch});
    else
        marks.push_back({pos, eighth == 4 ? 90 : 40, 0});
}

} // namespace

std::vector<RulerMark> HRulerMarks()
{
    std::vector<RulerMark> marks;
    double x = 0;
    for (int inch = 1; inch <= 21; ++inch)
        for (int eighth = 1; eighth <= 8; ++eighth) {
            x += 180;
            AddEighth(marks, x, eighth, inch);
        }
    return marks;
}

std::vector<RulerMark> VRulerMarks(double pageLength, double detailBarOffset, double pageFooterBarOffset,
                                   bool footerVisible)
{
    std::vector<RulerMark> marks;
    const double end = pageLength + BarHeight;
    double y = BarHeight;
    int eighth = 0, inch = 1;
    // A bar at the very top (no page header) needs no restart: the page already starts below it.
    bool detailDone = detailBarOffset <= 0;
    bool footerDone = !footerVisible || pageFooterBarOffset <= 0;
    while (true) {
        y += 180;
        if (!detailDone && y > detailBarOffset) {
            detailDone = true;
            y = detailBarOffset + BarHeight;
            eighth = 0;
            inch = 1;
            continue;
        }
        if (!footerDone && y > pageFooterBarOffset) {
            footerDone = true;
            y = pageFooterBarOffset + BarHeight;
            eighth = 0;
            inch = 1;
            continue;
        }
        if (y > end)
            break;
        ++eighth;
        AddEighth(marks, y, eighth, inch);
        if (eighth == 8) {
            eighth = 0;
            ++inch;
        }
    }
    return marks;
}

} // namespace DesignGeometry
