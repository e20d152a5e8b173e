#include "design/DragBox.h"

#include "design/RptItemControl.h"
#include "design/Zoom.h"

#include <QCursor>
#include <QGraphicsSceneMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

namespace {

const QColor FrameColor(0, 0, 128);
const QColor MoveHandleColor(220, 0, 0);



float PropF(const QObject* o, const char* name)
{
    return o ? o->property(name).toFloat() : 0.0f;
}

} // namespace

// ---------------------------------------------------------------- DragBox

DragBox::DragBox(QGraphicsItem* parent)
    : QGraphicsObject(parent)
{
    // The frame lies over its item's border; clicks there belong to the item.
    setAcceptedMouseButtons(Qt::NoButton);
    setAcceptHoverEvents(false);
    m_thickX = m_thickY = 2 * RptItemControl::PixelTwips();
    for (int i = 0; i < HandleCount; ++i)
        m_handles[size_t(i)] = new ResizeHandleItem(i, this);
}

DragBox::~DragBox()
{
    if (m_source && m_source->property("MousePointer").isValid())
        m_source->setProperty("MousePointer", m_savedPointer);
}

void DragBox::Bind(QObject* source, int controlType)
{
    if (m_source && m_source != source)
        m_source->setProperty("MousePointer", m_savedPointer);
    m_source = source;
    m_controlType = controlType;
    m_savedPointer = source ? source->property("MousePointer").toInt() : 0;
    if (source)
        source->setProperty("MousePointer", ResizeHandleItem::PointerOf(0));
    MoveToSource();
    PositionHandles();
}

ResizeHandleItem* DragBox::ResizeHandle(int index) const
{
    if (index < 0 || index >= HandleCount)
        return nullptr;
    return m_handles[size_t(index)];
}

QRectF DragBox::SourceRect(const QObject* source)
{
    return {PropF(source, "Left"), PropF(source, "Top"), PropF(source, "Width"), PropF(source, "Height")};
}

int DragBox::orientation() const
{
    return m_source ? m_source->property("Orientation").toInt() : 0;
}

bool DragBox::HandleShown(int index, int controlType, int orientation)
{
    if (index < 0 || index >= HandleCount)
        return false;
    if (controlType != LineKind)
        return true;
    return orientation == 1 ? (index == 1 || index == 2) : (index == 3 || index == 6);
}

void DragBox::PositionHandles()
{
    const QRectF r = SourceRect(m_source);
    // Handles and frame keep their size on the screen at any zoom.
    const double zoom = ViewZoom::Of(this);
    const double hw = HandleSize / zoom;
    m_thickX = m_thickY = 2 * RptItemControl::PixelTwips() / zoom;
    for (ResizeHandleItem* h : m_handles)
        h->setScale(1 / zoom);
    const double left = r.left() - hw, right = r.left() + r.width();
    const double top = r.top() - hw, bottom = r.top() + r.height();
    // Middle handles centred on their edge's midpoint.
    const double midX = r.left() + (r.width() - hw) / 2, midY = r.top() + (r.height() - hw) / 2;
    const QPointF places[HandleCount] = {
        {left, top},     // 0 move
        {left, midY},    // 1 left edge
        {right, midY},   // 2 right edge
        {midX, top},     // 3 top edge
        {right, top},    // 4 top right
        {right, bottom}, // 5 bottom right
        {midX, bottom},  // 6 bottom edge
        {left, bottom},  // 7 bottom left
    };
    const int o = orientation();
    for (int i = 0; i < HandleCount; ++i) {
        if (!HandleShown(i, m_controlType, o))
            continue;
        m_handles[size_t(i)]->SetPagePos(QPointF(std::round(places[i].x()), std::round(places[i].y())));
    }
    ShowHandles();
}

void DragBox::ShowHandles()
{
    const int o = orientation();
    for (int i = 0; i < HandleCount; ++i)
        m_handles[size_t(i)]->SetShown(HandleShown(i, m_controlType, o));
    m_handlesVisible = true;
}

void DragBox::HideHandles()
{
    for (ResizeHandleItem* h : m_handles)
        h->SetShown(false);
    m_handlesVisible = false;
}

void DragBox::Move(double left, double top, double width, double height)
{
    setPos(left, top);
    const QSizeF s(std::max(0.0, width), std::max(0.0, height));
    if (s != m_size) {
        prepareGeometryChange();
        m_size = s;
    }
}

void DragBox::MoveToSource()
{
    const QRectF r = SourceRect(m_source);
    Move(r.left(), r.top(), r.width(), r.height());
}

QRectF DragBox::EdgeRect(Edge edge) const
{
    const double w = m_size.width(), h = m_size.height();
    switch (edge) {
    case TopEdge: return {0, 0, w, m_thickY};
    case BottomEdge: return {0, h - m_thickY, w, m_thickY};
    case LeftEdge: return {0, 0, m_thickX, h};
    case RightEdge: return {w - m_thickX, 0, m_thickX, h};
    }
    return {};
}

QRectF DragBox::boundingRect() const
{
    // Edges of an item thinner than the frame poke out on the far side.
    return QRectF(QPointF(0, 0), m_size).united(EdgeRect(BottomEdge)).united(EdgeRect(RightEdge));
}

QPainterPath DragBox::shape() const
{
    QPainterPath p;
    for (Edge e : {TopEdge, BottomEdge, LeftEdge, RightEdge})
        p.addRect(EdgeRect(e));
    return p;
}

void DragBox::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    for (Edge e : {TopEdge, BottomEdge, LeftEdge, RightEdge})
        painter->fillRect(EdgeRect(e), FrameColor);
}

// ---------------------------------------------------------------- ResizeHandleItem

ResizeHandleItem::ResizeHandleItem(int index, DragBox* frame)
    : QGraphicsObject(frame)
    , m_index(index)
    , m_frame(frame)
{
    setAcceptedMouseButtons(Qt::LeftButton | Qt::RightButton | Qt::MiddleButton);
    setCursor(CursorOf(index));
}

int ResizeHandleItem::PointerOf(int index)
{
    static constexpr int pointers[DragBox::HandleCount] = {5, 9, 9, 7, 6, 8, 7, 6};
    return index >= 0 && index < DragBox::HandleCount ? pointers[index] : 0;
}

Qt::CursorShape ResizeHandleItem::CursorOf(int index)
{
    switch (PointerOf(index)) {
    case 5: return Qt::SizeAllCursor;
    case 6: return Qt::SizeBDiagCursor; // north-east / south-west
    case 7: return Qt::SizeVerCursor;
    case 8: return Qt::SizeFDiagCursor; // north-west / south-east
    case 9: return Qt::SizeHorCursor;
    default: return Qt::ArrowCursor;
    }
}

Qt::CursorShape ResizeHandleItem::CursorShape() const { return CursorOf(m_index); }

void ResizeHandleItem::SetShown(bool shown)
{
    if (shown == m_shown)
        return;
    prepareGeometryChange(); // the shape changes
    m_shown = shown;
    if (shown)
        setZValue(1); // above the frame and its sibling handles' edges
    update();
}

void ResizeHandleItem::SetPagePos(QPointF p)
{
    setPos(m_frame->mapFromScene(p));
}

QRectF ResizeHandleItem::boundingRect() const { return {0, 0, DragBox::HandleSize, DragBox::HandleSize}; }

QPainterPath ResizeHandleItem::shape() const
{
    QPainterPath p;
    if (m_shown)
        p.addRect(boundingRect());
    return p;
}

void ResizeHandleItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (!m_shown)
        return;
    const QRectF r = boundingRect();
    if (m_index != 0) {
        painter->fillRect(r, Qt::black);
        return;
    }
    // The move handle: a red square with a four-way arrow.
    painter->fillRect(r, MoveHandleColor);
    const double c = r.width() / 2, a = r.width() * 0.38, head = r.width() * 0.14;
    QPen pen(Qt::white);
    pen.setWidthF(r.width() / 10);
    painter->setPen(pen);
    painter->drawLine(QPointF(c - a, c), QPointF(c + a, c));
    painter->drawLine(QPointF(c, c - a), QPointF(c, c + a));
    const QPointF tips[4] = {{c - a, c}, {c + a, c}, {c, c - a}, {c, c + a}};
    for (const QPointF& t : tips) {
        const double sx = t.x() < c ? 1 : t.x() > c ? -1 : 0;
        const double sy = t.y() < c ? 1 : t.y() > c ? -1 : 0;
        if (sx != 0) {
            painter->drawLine(t, t + QPointF(sx * head, -head));
            painter->drawLine(t, t + QPointF(sx * head, head));
        } else {
            painter->drawLine(t, t + QPointF(-head, sy * head));
            painter->drawLine(t, t + QPointF(head, sy * head));
        }
    }
}

void ResizeHandleItem::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    event->accept();
    const QPointF p = event->scenePos();
    emit m_frame->HandleMouseDown(m_index, RptItemControl::ButtonOf(event->button()), RptItemControl::ShiftOf(event->modifiers()), float(p.x()), float(p.y()));
}

void ResizeHandleItem::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    const QPointF p = event->scenePos();
    emit m_frame->HandleMouseMove(m_index, RptItemControl::ButtonOf(event->buttons()), RptItemControl::ShiftOf(event->modifiers()), float(p.x()), float(p.y()));
}

void ResizeHandleItem::mouseReleaseEvent(QGraphicsSceneMouseEvent* event)
{
    const QPointF p = event->scenePos();
    emit m_frame->HandleMouseUp(m_index, RptItemControl::ButtonOf(event->button()), RptItemControl::ShiftOf(event->modifiers()), float(p.x()), float(p.y()));
}
