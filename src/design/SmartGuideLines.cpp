#include "design/SmartGuideLines.h"

#include <QPainter>

namespace {
// Above the items and their frames, below the section bars and the in-place editor.
constexpr double GuideZ = 1.5e7;
}

SmartGuideLines::SmartGuideLines()
{
    setZValue(GuideZ);
    setAcceptedMouseButtons(Qt::NoButton);
    setVisible(false);
}

void SmartGuideLines::Show(const std::vector<QLineF>& lines)
{
    if (lines == m_lines)
        return;
    prepareGeometryChange();
    m_lines = lines;
    QRectF b;
    for (const QLineF& l : m_lines)
        b |= QRectF(l.p1(), l.p2()).normalized().adjusted(-1, -1, 1, 1);
    m_bounds = b;
    setVisible(!m_lines.empty());
    update();
}

void SmartGuideLines::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    // One screen pixel wide at every zoom.
    QPen pen(QColor(255, 0, 255), 0);
    pen.setCosmetic(true);
    painter->setPen(pen);
    for (const QLineF& l : m_lines)
        painter->drawLine(l);
}
