#include "design/Rectangle.h"

#include "render/ItemLayout.h"

Rectangle::Rectangle(QGraphicsItem* parent)
    : RptItemControl(parent)
{
    Resize(1440, 720);
}

double Rectangle::EdgeThickness() const { return ItemLayout::StrokeThickness(m_width, PixelTwips()); }

void Rectangle::SetBorderColor(uint v)
{
    m_borderColor = v;
    update();
    emit PropertyChanged(QStringLiteral("BorderColor"));
}

void Rectangle::SetBorderWidth(float points)
{
    m_width = points;
    update();
    emit PropertyChanged(QStringLiteral("BorderWidth"));
}

void Rectangle::SetBorderStyle(int code)
{
    m_style = code;
    update();
    emit PropertyChanged(QStringLiteral("BorderStyle"));
}

void Rectangle::SetBackstyle(int v)
{
    prepareGeometryChange(); // the hit shape depends on it
    m_backStyle = v;
    update();
    emit PropertyChanged(QStringLiteral("BackStyle"));
}

void Rectangle::SetBackColor(uint v)
{
    m_backColor = v;
    update();
    emit PropertyChanged(QStringLiteral("BackColor"));
}

void Rectangle::SetShowOutline(bool)
{
    emit PropertyChanged(QStringLiteral("ShowOutline"));
}

ItemLook Rectangle::Look() const
{
    ItemLook l;
    l.kind = ItemKind::Box;
    l.rect = boundingRect();
    l.borderWidth = m_width;
    l.borderStyle = m_style;
    l.borderColor = m_borderColor;
    l.backStyle = m_backStyle;
    l.backColor = m_backColor;
    return l;
}

QPainterPath Rectangle::shape() const
{
    QPainterPath path;
    const QRectF r = boundingRect();
    path.addRect(r);
    if (m_backStyle == ItemCode::BackTransparent) {
        const double b = ItemLayout::kHitBand;
        const QRectF inner = r.adjusted(b, b, -b, -b);
        if (inner.isValid()) {
            QPainterPath hole;
            hole.addRect(inner);
            path = path.subtracted(hole);
        }
    }
    return path;
}

bool Rectangle::contains(const QPointF& point) const
{
    return ItemLayout::BoxHit(boundingRect().size(), point, m_backStyle == ItemCode::BackTransparent);
}
