#pragma once
// The selection frame around one item: a 2-pixel outline and eight handles. Handle 0 (top
// left) moves the selection, the other seven resize it. The frame lets clicks through to its
// item; only the handles take the mouse, and they report in page (scene) coordinates.
#include <QGraphicsObject>
#include <QPointer>
#include <array>

class ResizeHandleItem;

class DragBox : public QGraphicsObject {
    Q_OBJECT
    Q_PROPERTY(float Left READ Left)
    Q_PROPERTY(float Top READ Top)
    Q_PROPERTY(float Width READ Width)
    Q_PROPERTY(float Height READ Height)

public:
    static constexpr int HandleCount = 8;
    static constexpr double HandleSize = 80; // twips; a fixed page size, like the items themselves
    static constexpr int LineKind = 4;       // item kind of a line: it shows only its two end handles

    // Edges of the outline, in the frame's own coordinates.
    enum Edge { TopEdge, BottomEdge, LeftEdge, RightEdge };

    explicit DragBox(QGraphicsItem* parent = nullptr);
    ~DragBox() override; // gives the source its mouse pointer back

    // Frames `source` (a control with Left/Top/Width/Height/MousePointer properties): keeps
    // its pointer and shows size-all (5) over it, creates the handles, places them.
    void Bind(QObject* source, int controlType);
    QObject* Source() const { return m_source; }
    int ControlType() const { return m_controlType; }
    int SavedMousePointer() const { return m_savedPointer; }

    // Handle 0..7; nullptr for any other index.
    ResizeHandleItem* ResizeHandle(int index) const;
    bool HandlesVisible() const { return m_handlesVisible; }

    // Places the handles around the source (whole twips) and shows them.
    void PositionHandles();
    void ShowHandles();
    void HideHandles();

    // The frame's rectangle on the page.
    float Left() const { return float(pos().x()); }
    float Top() const { return float(pos().y()); }
    float Width() const { return float(m_size.width()); }
    float Height() const { return float(m_size.height()); }
    void Move(double left, double top, double width, double height);
    void MoveBy(double dx, double dy) { setPos(pos().x() + dx, pos().y() + dy); }
    // Onto the source's current rectangle.
    void MoveToSource();

    QRectF EdgeRect(Edge edge) const;
    double ThicknessX() const { return m_thickX; }
    double ThicknessY() const { return m_thickY; }

    // The source's rectangle, read through its properties.
    static QRectF SourceRect(const QObject* source);
    // Which handles a framed item shows: all eight, or a line's two end handles.
    static bool HandleShown(int index, int controlType, int orientation);

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

signals:
    // A handle's mouse events; X, Y in page coordinates, Button/Shift as the item controls report them.
    void HandleMouseDown(int Index, int Button, int Shift, float X, float Y);
    void HandleMouseMove(int Index, int Button, int Shift, float X, float Y);
    void HandleMouseUp(int Index, int Button, int Shift, float X, float Y);

private:
    int orientation() const;

    QPointer<QObject> m_source;
    int m_controlType = 0;
    int m_savedPointer = 0;
    bool m_handlesVisible = false;
    QSizeF m_size;
    double m_thickX = 30, m_thickY = 30;
    std::array<ResizeHandleItem*, HandleCount> m_handles{}; // children: deleted with the frame
};

// One handle of a frame. A hidden handle keeps its place in the scene but paints nothing and
// cannot be hit: hiding it with setVisible() would drop the mouse grab of a resize under way.
class ResizeHandleItem : public QGraphicsObject {
    Q_OBJECT
public:
    ResizeHandleItem(int index, DragBox* frame);

    int Index() const { return m_index; }
    QString Tag() const { return QString::number(m_index); }
    Qt::CursorShape CursorShape() const;
    bool Shown() const { return m_shown; }
    void SetShown(bool shown);
    // The handle's top-left corner on the page.
    QPointF PagePos() const { return scenePos(); }
    void SetPagePos(QPointF p);

    // Pointer code and cursor of each handle index.
    static int PointerOf(int index);
    static Qt::CursorShape CursorOf(int index);

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;

private:
    int m_index;
    DragBox* m_frame;
    bool m_shown = false;
};
