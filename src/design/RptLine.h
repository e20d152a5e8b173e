#pragma once
// A report line: a bar of whole-pixel thickness along the top (horizontal) or down the left
// side (vertical) of the control, which is the line's thickness + 30 twips across.
#include "design/RptItemControl.h"

class RptLine : public RptItemControl {
    Q_OBJECT
    Q_PROPERTY(uint BorderColor READ BorderColor WRITE SetBorderColor)
    Q_PROPERTY(float BorderWidth READ BorderWidth WRITE SetBorderWidth)
    Q_PROPERTY(int BorderStyle READ BorderStyle WRITE SetBorderStyle)
    Q_PROPERTY(int Orientation READ Orientation WRITE SetOrientation)
    Q_PROPERTY(bool ShowOutline READ ShowOutline WRITE SetShowOutline)

public:
    explicit RptLine(QGraphicsItem* parent = nullptr);

    uint BorderColor() const { return m_color; }
    void SetBorderColor(uint v);
    float BorderWidth() const { return m_width; }
    void SetBorderWidth(float points);
    int BorderStyle() const { return m_style; }
    void SetBorderStyle(int code);
    int Orientation() const { return m_orientation; }
    void SetOrientation(int v);
    bool ShowOutline() const { return false; } // accepted and ignored
    void SetShowOutline(bool);

    // The line's thickness in twips and the style it is drawn with now.
    double Thickness() const;
    int DrawStyle() const { return m_drawStyle; }
    QRectF LineRect() const;

    ItemLook Look() const override;

protected:
    void Layout() override;

private:
    uint m_color = 0;
    float m_width = 1;
    int m_style = ItemCode::BorderSolid;
    int m_drawStyle = ItemCode::BorderSolid;
    int m_orientation = 0;
};
