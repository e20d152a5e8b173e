#pragma once
// A ruler beside the design page: eighth-inch ticks and inch numbers, drawn in twips and kept
// aligned with the scrolled view, plus the guide line that follows the pointer or selection.
#include "design/DesignGeometry.h"

#include <QWidget>

class QGraphicsView;

class PageRuler : public QWidget {
    Q_OBJECT
public:
    // A vertical ruler measures the viewport's coordinates: the page starts 220 below its top.
    PageRuler(Qt::Orientation orientation, QGraphicsView* view, QWidget* parent = nullptr);

    Qt::Orientation Orientation() const { return m_orientation; }
    void SetMarks(std::vector<DesignGeometry::RulerMark> marks);
    const std::vector<DesignGeometry::RulerMark>& Marks() const { return m_marks; }

    // Where the guide line is, in the ruler's twips; a negative value hides it.
    void SetGuide(double pos);
    double Guide() const { return m_guide; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double ToPixel(double pos) const;  // along the ruler
    double Thickness(double twips) const; // across the ruler

    Qt::Orientation m_orientation;
    QGraphicsView* m_view;
    std::vector<DesignGeometry::RulerMark> m_marks;
    double m_guide = -1;
};
