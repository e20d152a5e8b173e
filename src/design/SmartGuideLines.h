#pragma once
// The smart guide lines on the design page: thin magenta lines along the positions the
// selection snapped to, shown while the mouse button is held and cleared on release.
#include <QGraphicsItem>
#include <QLineF>
#include <vector>

class SmartGuideLines : public QGraphicsItem {
public:
    SmartGuideLines();

    // Lines in page twips; an empty list hides them.
    void Show(const std::vector<QLineF>& lines);
    void Clear() { Show({}); }
    const std::vector<QLineF>& Lines() const { return m_lines; }

    QRectF boundingRect() const override { return m_bounds; }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    std::vector<QLineF> m_lines;
    QRectF m_bounds;
};
