#include "design/RptLine.h"

#include "render/ItemLayout.h"

RptLine::RptLine(QGraphicsItem* parent)
    : RptItemControl(parent)
{
    Resize(1440, ItemLayout::kLineSlack);
}

double RptLine::Thickness() const { return ItemLayout::StrokeThickness(m_width, PixelTwips()); }

QRectF RptLine::LineRect() const { return ItemLayout::LineRect(boundingRect().size(), Thickness()); }

void RptLine::SetBorderColor(uint v)
{
    m_color = v;
    update();
    emit PropertyChanged(QStringLiteral("BorderColor"));
}

void RptLine::SetBorderWidth(float points)
{
    m_width = points;
    // Once thicker than a pixel the line is drawn solid, and stays so until a style is set again.
    if (Thickness() > PixelTwips())
        m_drawStyle = ItemCode::BorderSolid;
    Layout();
    update();
    emit PropertyChanged(QStringLiteral("BorderWidth"));
}

void RptLine::SetBorderStyle(int code)
{
    m_style = code;
    m_drawStyle = ItemLayout::LineDrawStyle(code, Thickness(), PixelTwips());
    update();
    emit PropertyChanged(QStringLiteral("BorderStyle"));
}

void RptLine::SetOrientation(int v)
{
    m_orientation = v;
    Layout(); // the aspect decides again
    update();
    emit PropertyChanged(QStringLiteral("Orientation"));
}

void RptLine::SetShowOutline(bool)
{
    emit PropertyChanged(QStringLiteral("ShowOutline"));
}

void RptLine::Layout()
{
    const QSizeF size = boundingRect().size();
    m_orientation = ItemLayout::LineOrientation(size);
    const QSizeF forced = ItemLayout::LineControlSize(size, Thickness());
    SetSizeQuiet(forced.width(), forced.height());
}

ItemLook RptLine::Look() const
{
    ItemLook l;
    l.kind = ItemKind::Line;
    l.rect = boundingRect();
    l.borderWidth = m_width;
    l.borderStyle = m_style;
    l.lineStyle = m_drawStyle;
    l.borderColor = m_color;
    return l;
}
