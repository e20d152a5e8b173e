#include "design/RptItemControl.h"

#include "entry/Cp1252.h"
#include "render/ItemPainter.h"

#include <QCursor>
#include <QGraphicsSceneHoverEvent>
#include <QGraphicsSceneMouseEvent>
#include <QKeyEvent>
#include <QPainter>

namespace {

double gPixelTwips = 15; // 96 dpi



} // namespace

int RptItemControl::ButtonOf(Qt::MouseButtons b)
{
    int v = 0;
    if (b & Qt::LeftButton) v |= LeftButton;
    if (b & Qt::RightButton) v |= RightButton;
    if (b & Qt::MiddleButton) v |= MiddleButton;
    return v;
}

int RptItemControl::ShiftOf(Qt::KeyboardModifiers m)
{
    int v = 0;
    if (m & Qt::ShiftModifier) v |= ShiftMask;
    if (m & Qt::ControlModifier) v |= CtrlMask;
    if (m & Qt::AltModifier) v |= AltMask;
    return v;
}

RptItemControl::RptItemControl(QGraphicsItem* parent)
    : QGraphicsObject(parent)
{
    setFlag(ItemIsFocusable);
    setAcceptHoverEvents(true);
    setAcceptedMouseButtons(Qt::LeftButton | Qt::RightButton | Qt::MiddleButton);
}

double RptItemControl::PixelTwips() { return gPixelTwips; }
void RptItemControl::SetPixelTwips(double twips)
{
    if (twips > 0)
        gPixelTwips = twips;
}

QRectF RptItemControl::boundingRect() const { return {QPointF(0, 0), m_size}; }

void RptItemControl::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    // One device pixel as the painter sees it, so whole-pixel rules hold at any zoom.
    const double m = painter->worldTransform().m11();
    PaintItem(*painter, Look(), m > 0 ? 1 / m : PixelTwips());
}

void RptItemControl::Move(float left, float top, float width, float height)
{
    setPos(left, top);
    HeightGiven(height);
    Resize(width, height);
}

void RptItemControl::Resize(double width, double height)
{
    SetSizeQuiet(width, height);
    Layout();
    update();
}

void RptItemControl::SetSizeQuiet(double width, double height)
{
    const QSizeF s(std::max(0.0, width), std::max(0.0, height));
    if (s == m_size)
        return;
    prepareGeometryChange();
    m_size = s;
}

void RptItemControl::SetMousePointer(int v)
{
    m_mousePointer = v;
    static const Qt::CursorShape shapes[] = {
        Qt::ArrowCursor,     Qt::ArrowCursor,   Qt::CrossCursor,     Qt::IBeamCursor,  Qt::ArrowCursor,
        Qt::SizeAllCursor,   Qt::SizeBDiagCursor, Qt::SizeVerCursor, Qt::SizeFDiagCursor, Qt::SizeHorCursor,
        Qt::UpArrowCursor,   Qt::WaitCursor,    Qt::ForbiddenCursor, Qt::BusyCursor,   Qt::WhatsThisCursor,
        Qt::SizeAllCursor,
    };
    if (v <= 0 || v >= int(std::size(shapes)))
        unsetCursor();
    else
        setCursor(shapes[v]);
}

int RptItemControl::KeyCodeOf(int key)
{
    if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9))
        return key; // the same ASCII codes
    if (key >= Qt::Key_F1 && key <= Qt::Key_F16)
        return 112 + (key - Qt::Key_F1);
    switch (key) {
    case Qt::Key_Backspace: return 8;
    case Qt::Key_Tab: case Qt::Key_Backtab: return 9;
    case Qt::Key_Return: case Qt::Key_Enter: return 13;
    case Qt::Key_Shift: return 16;
    case Qt::Key_Control: return 17;
    case Qt::Key_Alt: return 18;
    case Qt::Key_Pause: return 19;
    case Qt::Key_CapsLock: return 20;
    case Qt::Key_Escape: return 27;
    case Qt::Key_Space: return 32;
    case Qt::Key_PageUp: return 33;
    case Qt::Key_PageDown: return 34;
    case Qt::Key_End: return 35;
    case Qt::Key_Home: return 36;
    case Qt::Key_Left: return 37;
    case Qt::Key_Up: return 38;
    case Qt::Key_Right: return 39;
    case Qt::Key_Down: return 40;
    case Qt::Key_Insert: return 45;
    case Qt::Key_Delete: return 46;
    default: return 0;
    }
}

std::optional<QPointF> RptItemControl::MousePart(QPointF, bool) const { return QPointF(0, 0); }

bool RptItemControl::ClickPart(QPointF) const { return true; }

void RptItemControl::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    m_lastScenePos = event->scenePos();
    // Accept even where no part reports the press, so the release (and Click) still come here.
    event->accept();
    const QPointF p = event->pos();
    m_pressPart = MousePart(p, false);
    m_pressClick = ClickPart(p);
    if (m_pressPart) {
        const QPointF at = p - *m_pressPart;
        emit MouseDown(ButtonOf(event->button()), ShiftOf(event->modifiers()), float(at.x()), float(at.y()));
    }
}

void RptItemControl::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    m_lastScenePos = event->scenePos();
    // While a button is held the part that took the press keeps reporting, as with capture.
    const QPointF p = event->pos();
    const std::optional<QPointF> part = m_pressPart ? m_pressPart : MousePart(p, true);
    if (part) {
        const QPointF at = p - *part;
        emit MouseMove(ButtonOf(event->buttons()), ShiftOf(event->modifiers()), float(at.x()), float(at.y()));
    }
}

void RptItemControl::mouseReleaseEvent(QGraphicsSceneMouseEvent* event)
{
    m_lastScenePos = event->scenePos();
    const QPointF p = event->pos();
    const std::optional<QPointF> part = m_pressPart;
    const bool click = m_pressClick && ClickPart(p) && contains(p);
    m_pressPart.reset();
    m_pressClick = false;
    if (part) {
        const QPointF at = p - *part;
        emit MouseUp(ButtonOf(event->button()), ShiftOf(event->modifiers()), float(at.x()), float(at.y()));
    }
    if (click)
        emit Click();
}

void RptItemControl::hoverMoveEvent(QGraphicsSceneHoverEvent* event)
{
    const QPointF p = event->pos();
    if (const std::optional<QPointF> part = MousePart(p, true)) {
        const QPointF at = p - *part;
        emit MouseMove(0, ShiftOf(event->modifiers()), float(at.x()), float(at.y()));
    }
}

void RptItemControl::keyPressEvent(QKeyEvent* event)
{
    emit KeyDown(KeyCodeOf(event->key()), ShiftOf(event->modifiers()));
    const QString text = event->text();
    if (!text.isEmpty()) {
        const QByteArray ansi = ToCp1252(text.left(1));
        // Characters outside the ANSI code page have no key code to report.
        const bool representable = !ansi.isEmpty() && (ansi != "?" || text.at(0) == QLatin1Char('?'));
        if (representable)
            emit KeyPress(quint8(ansi.at(0)));
    }
    event->accept();
}
