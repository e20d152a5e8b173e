#pragma once
// What the four item controls share: a scene item in twips with its position and size as
// properties, the Tag that names its item record, the mouse pointer, the Selected flag, and
// the mouse and key events it raises to the design page. Each control paints itself by
// filling an ItemLook and handing it to the shared painter.
#include "render/ItemLook.h"

#include <QGraphicsObject>
#include <optional>

class RptItemControl : public QGraphicsObject {
    Q_OBJECT
    Q_PROPERTY(float Left READ Left WRITE SetLeft)
    Q_PROPERTY(float Top READ Top WRITE SetTop)
    Q_PROPERTY(float Width READ Width WRITE SetWidth)
    Q_PROPERTY(float Height READ Height WRITE SetHeight)
    Q_PROPERTY(QString Tag READ Tag WRITE SetTag)
    Q_PROPERTY(int MousePointer READ MousePointer WRITE SetMousePointer)
    Q_PROPERTY(bool Selected READ Selected WRITE SetSelected)

public:
    // Mouse buttons and shift keys as the events report them.
    static constexpr int LeftButton = 1, RightButton = 2, MiddleButton = 4;
    static constexpr int ShiftMask = 1, CtrlMask = 2, AltMask = 4;

    explicit RptItemControl(QGraphicsItem* parent = nullptr);

    float Left() const { return float(pos().x()); }
    void SetLeft(float v) { setPos(v, pos().y()); }
    float Top() const { return float(pos().y()); }
    void SetTop(float v) { setPos(pos().x(), v); }
    float Width() const { return float(m_size.width()); }
    void SetWidth(float v) { Resize(v, Height()); }
    float Height() const { return float(m_size.height()); }
    void SetHeight(float v)
    {
        HeightGiven(v);
        Resize(Width(), v);
    }
    // Position and size in one step, so a line sees its final aspect only once.
    void Move(float left, float top, float width, float height);

    QString Tag() const { return m_tag; }
    void SetTag(const QString& v) { m_tag = v; }
    int MousePointer() const { return m_mousePointer; }
    void SetMousePointer(int v);
    bool Selected() const { return m_selected; }
    void SetSelected(bool v) { m_selected = v; }

    void Refresh() { update(); }
    // Where on the page the pointer was at the last mouse event this control reported.
    QPointF LastScenePos() const { return m_lastScenePos; }

    // How the control looks now, in its own coordinates.
    virtual ItemLook Look() const = 0;

    // One screen pixel in twips, for the whole-pixel rules of the design page.
    static double PixelTwips();
    static void SetPixelTwips(double twips);

    // Classic key code of a Qt key (letters and digits as upper-case ASCII).
    static int KeyCodeOf(int qtKey);
    // Classic button and shift masks of Qt's mouse buttons and modifiers.
    static int ButtonOf(Qt::MouseButtons buttons);
    static int ShiftOf(Qt::KeyboardModifiers modifiers);

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

signals:
    void Click();
    void MouseDown(int Button, int Shift, float X, float Y);
    void MouseUp(int Button, int Shift, float X, float Y);
    void MouseMove(int Button, int Shift, float X, float Y);
    void KeyPress(int KeyAscii);
    void KeyDown(int KeyCode, int Shift);
    // A stored property changed (its property-bag key).
    void PropertyChanged(const QString& bagKey);

protected:
    // Sets the size and runs the control's layout.
    void Resize(double width, double height);
    // The size without a layout: for a layout that adjusts its own control.
    void SetSizeQuiet(double width, double height);
    virtual void Layout() {}
    // The container (document, user) set the height; auto-sizing items remember it.
    virtual void HeightGiven(double) {}

    // The origin of the part that reports mouse events at `point`; none when no part there
    // forwards them. `moveOnly` asks for a plain mouse move.
    virtual std::optional<QPointF> MousePart(QPointF point, bool moveOnly) const;
    // Whether a click at `point` raises Click.
    virtual bool ClickPart(QPointF point) const;

    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;
    void hoverMoveEvent(QGraphicsSceneHoverEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QSizeF m_size;
    QString m_tag;
    int m_mousePointer = 0;
    bool m_selected = false;
    std::optional<QPointF> m_pressPart; // origin of the part the button went down on
    QPointF m_lastScenePos;
    bool m_pressClick = false;
};
