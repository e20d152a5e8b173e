#pragma once
// A report box: four edges of whole-pixel thickness and an optional background. A
// transparent box is hit only near its edges, so clicks inside reach the items beneath.
#include "design/RptItemControl.h"

#include <QPainterPath>

class Rectangle : public RptItemControl {
    Q_OBJECT
    Q_PROPERTY(uint BorderColor READ BorderColor WRITE SetBorderColor)
    Q_PROPERTY(float BorderWidth READ BorderWidth WRITE SetBorderWidth)
    Q_PROPERTY(int BorderStyle READ BorderStyle WRITE SetBorderStyle)
    Q_PROPERTY(int Backstyle READ Backstyle WRITE SetBackstyle)
    Q_PROPERTY(uint BackColor READ BackColor WRITE SetBackColor)
    Q_PROPERTY(bool ShowOutline READ ShowOutline WRITE SetShowOutline)

public:
    explicit Rectangle(QGraphicsItem* parent = nullptr);

    uint BorderColor() const { return m_borderColor; }
    void SetBorderColor(uint v);
    float BorderWidth() const { return m_width; }
    void SetBorderWidth(float points);
    int BorderStyle() const { return m_style; }
    void SetBorderStyle(int code);
    int Backstyle() const { return m_backStyle; }
    void SetBackstyle(int v);
    uint BackColor() const { return m_backColor; }
    void SetBackColor(uint v);
    bool ShowOutline() const { return false; } // accepted and ignored
    void SetShowOutline(bool);

    // Edge thickness in twips (the same across and down on square pixels).
    double EdgeThickness() const;

    ItemLook Look() const override;
    QPainterPath shape() const override;
    bool contains(const QPointF& point) const override;

private:
    uint m_borderColor = 0;
    float m_width = 1;
    int m_style = ItemCode::BorderSolid;
    int m_backStyle = ItemCode::BackTransparent;
    uint m_backColor = 0x00FFFFFF;
};
