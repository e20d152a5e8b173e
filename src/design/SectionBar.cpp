#include "design/SectionBar.h"

#include "design/DesignGeometry.h"
#include "design/RptItemControl.h"

#include <QCursor>
#include <QGraphicsSceneMouseEvent>
#include <QPainter>
#include <optional>

SectionBar::SectionBar(const QString& name, const QString& caption, QGraphicsItem* parent)
    : QGraphicsObject(parent)
    , m_name(name)
    , m_caption(caption)
{
    setObjectName(name);
    setAcceptedMouseButtons(Qt::LeftButton);
}

void SectionBar::SetWidth(double width)
{
    prepareGeometryChange();
    m_width = width;
}

void SectionBar::SetDraggable(bool on)
{
    m_draggable = on;
    if (on)
        setCursor(Qt::SizeVerCursor);
    else
        unsetCursor();
}

QRectF SectionBar::boundingRect() const
{
    return {0, 0, m_width, DesignGeometry::BarHeight};
}

void SectionBar::paint(QPainter* p, const QStyleOptionGraphicsItem*, QWidget*)
{
    const QRectF r = boundingRect();
    p->fillRect(r, QColor(192, 192, 192));
    const double px = RptItemControl::PixelTwips();
    p->setPen(QPen(QColor(128, 128, 128), px));
    p->drawLine(QPointF(0, r.bottom() - px / 2), QPointF(r.right(), r.bottom() - px / 2));
    p->setPen(QPen(Qt::white, px));
    p->drawLine(QPointF(0, px / 2), QPointF(r.right(), px / 2));
    QFont f(QStringLiteral("Arial"));
    f.setPixelSize(160); // 8 points, in the page's twips
    p->setFont(f);
    p->setPen(Qt::black);
    p->drawText(QRectF(90, 0, 4000, r.height()), Qt::AlignVCenter | Qt::AlignLeft, m_caption);
}

void SectionBar::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    if (!m_draggable || event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_grab = event->scenePos().y() - pos().y();
    event->accept();
}

void SectionBar::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    if (m_grab)
        emit dragMoved(m_name, event->scenePos(), event->scenePos().y() - *m_grab);
}

void SectionBar::mouseReleaseEvent(QGraphicsSceneMouseEvent* event)
{
    if (!m_grab)
        return;
    const double top = event->scenePos().y() - *m_grab;
    m_grab.reset();
    emit dropped(m_name, top);
}
