#pragma once
// The selection manager: one DragBox frame per selected item, dragging the whole selection in
// grid steps within the page, and resizing it through the frames' handles; either snaps onto a
// smart guide when one is near (clsResizeHandles.cpp). The design window
// forwards the item controls' mouse events here; the handles' events are wired by the manager
// itself when it creates a frame. Items keep their places until the mouse goes up: only the
// frames move while the button is held.
#include "design/SmartGuides.h"
#include "document/DesignSurface.h"
#include "document/clsRptControl.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QRectF>
#include <functional>
#include <optional>

class DragBox;
class SmartGuideLines;
class QGraphicsItem;
class QGraphicsScene;

class clsResize : public QObject, public SelectionManager {
    Q_OBJECT
public:
    // Pointer codes used over the items.
    static constexpr int PointerIBeam = 3, PointerSizeAll = 5;
    // The vertical ruler starts 220 twips above the page (below the page header bar).
    static constexpr float RulerOffset = 220;

    explicit clsResize(QObject* parent = nullptr);
    ~clsResize() override;

    // --- set-up
    void SetRptControl(clsRptControl* rpt); // also registers this manager with the document
    clsRptControl* RptControl() const { return m_rpt; }
    // Where new frames go; without one a frame joins its item's scene.
    void SetScene(QGraphicsScene* scene) { m_scene = scene; }
    float GridX() const { return m_gridX; }
    float GridY() const { return m_gridY; }
    void SetGridX(float twips); // below 1 means 1: a grid of 0 would divide by zero
    void SetGridY(float twips);
    // The guide lines in the rulers; either may be null. The horizontal one gets x = selection
    // left, the vertical one y = selection top + RulerOffset.
    void SetRulerLines(QGraphicsItem* hLine, QGraphicsItem* vLine);
    // Page extent for the drag stop; 0 or less leaves that side unbounded.
    void SetPageSize(float scaleWidth, float scaleHeight);
    // Smart guides: what a moving rectangle (page twips) may line up with, and where the lines
    // are drawn. Without a source, moves and resizes go by the grid alone.
    using GuideSource = std::function<SmartGuides::Targets(const QRectF& moving)>;
    void SetSmartGuides(GuideSource source, SmartGuideLines* lines);

    // --- mouse, from the item controls (X, Y in any coordinates that stay fixed for the
    // length of one drag: the item's own, as its events report them, or the page's). Alt held
    // in Shift turns the smart guides off for that move.
    void MouseDown(QObject* source, int Button, int Shift, float X, float Y);
    void MouseMove(float X, float Y, int Shift = 0);
    void MouseUp();

    // --- mouse, from the handles (Index 0..7; 0 drags the whole selection)
    void ResizeHandle_MouseDown(int Index, int Button, float X, float Y);
    void ResizeHandle_MouseMove(int Index, int Button, float X, float Y, int Shift = 0);
    void ResizeHandleMouseUp(int Index);

    // Ends a drag or resize under way: frames go back onto their items, items stay unmoved.
    void CancelDrag();
    bool Dragging() const { return m_mouseDown || m_resizeArmed; }

    // --- selection
    void ClearSelect();              // every item deselected and refreshed, every frame removed
    void RemoveSelect(QObject* source);
    void DropAllFrames();            // frames removed, items' Selected flags untouched
    void Select(QObject* source);    // adds one item (no toggling)
    void RefreshDragToSource();      // frames back onto their items' current rectangles
    int Count() const;
    DragBox* Frame(QObject* source) const;
    QList<DragBox*> Frames() const;
    bool IsSelected(QObject* source) const { return Frame(source) != nullptr; }
    // Left, top, right, bottom of the selection (as the frames stand).
    QRectF SelectionBounds() const { return m_bounds; }

    // --- keyboard: the window binds the arrow keys (one grid step each). Both write the new
    // rectangles to the items at once; a move stops at the page edges, sizes stop at 0.
    void MoveSelectionBy(float dx, float dy);
    void ResizeSelectionBy(float dw, float dh);

    // --- SelectionManager, for the document
    QList<QObject*> SelectedControls() const override;
    void AddToSelection(QObject* control) override { Select(control); }
    void RemoveFromSelection(QObject* control) override { RemoveSelect(control); }
    void ClearSelection() override { ClearSelect(); }
    void RefreshHandles() override { RefreshDragToSource(); }

signals:
    void selectionChanged();
    // A drag, resize or key move wrote new rectangles to the items.
    void itemsMoved();

private:
    DragBox* addFrame(QObject* source);
    void removeFrame(int i, bool deselect);
    void deselect(QObject* source);
    void tellDocument(QObject* current);
    void recomputeBounds();
    void moveRulerLines();
    void hideAllHandles();
    void dragStep(float X, float Y, bool guides);
    void resizeStep(DragBox* frame, int index, double dx, double dy) const;
    void writeBack();
    void endGesture();
    void sourceGone();
    int gridStep(float delta, float grid) const;
    double guideThreshold() const;
    QPointF guideOffset(const QRectF& grid, QPointF pending, int handle);
    void shiftEdges(int handle, QPointF by);

    QPointer<clsRptControl> m_rpt;
    QGraphicsScene* m_scene = nullptr;
    QGraphicsItem* m_hLine = nullptr;
    QGraphicsItem* m_vLine = nullptr;
    float m_gridX = 60, m_gridY = 60;
    float m_pageWidth = 0, m_pageHeight = 0;
    QList<QPointer<DragBox>> m_frames; // selection order

    GuideSource m_guideSource;
    SmartGuideLines* m_guideLines = nullptr;

    QRectF m_bounds;            // selection bounds, kept in step with the frames during a drag
    // How far a smart guide has taken the frames from where the grid steps alone put them.
    QPointF m_guide;
    float m_lastX = 0, m_lastY = 0;
    float m_totalDx = 0, m_totalDy = 0;
    bool m_mouseDown = false;   // an item drag (or a move-handle drag) is under way
    bool m_resizeArmed = false; // a resize handle is held
    bool m_busy = false;        // re-entry guard while frames are being moved
    bool m_handlesHidden = false;
    // Pointer positions where the selection hit a page edge; that direction stays stopped
    // until the pointer comes back past it.
    std::optional<float> m_stopLeft, m_stopRight, m_stopTop, m_stopBottom;
};
