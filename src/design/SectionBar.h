#pragma once
// A section bar of the design page ("Page Header", "Detail", "Page Footer"): a grey strip
// 220 twips high across the page. A draggable bar reports where the user drags and drops it.
#include <QGraphicsObject>
#include <optional>

class SectionBar : public QGraphicsObject {
    Q_OBJECT
public:
    SectionBar(const QString& name, const QString& caption, QGraphicsItem* parent = nullptr);

    QString Name() const { return m_name; }
    QString Caption() const { return m_caption; }
    void SetWidth(double width);
    bool Draggable() const { return m_draggable; }
    void SetDraggable(bool on);
    bool Dragging() const { return m_grab.has_value(); }

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

signals:
    // y: where the bar's top would be, in scene twips.
    void dragMoved(const QString& name, QPointF pointer, double barTop);
    void dropped(const QString& name, double barTop);

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;

private:
    QString m_name, m_caption;
    double m_width = 0;
    bool m_draggable = false;
    std::optional<double> m_grab; // pointer distance below the bar's top when the drag began
};
