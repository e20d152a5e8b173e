// The selection manager's handles (resizing the selection in grid steps) and the smart guides
// that drags and resizes share: the arithmetic is SmartGuides', this is where it meets the frames.
#include "design/clsResize.h"

#include "design/DragBox.h"
#include "design/RptItemControl.h"
#include "design/SmartGuideLines.h"
#include "design/Zoom.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
constexpr int LeftButton = RptItemControl::LeftButton;
}

// ---------------------------------------------------------------- smart guides

double clsResize::guideThreshold() const
{
    // Screen pixels, whatever the zoom.
    return SmartGuides::SnapPixels * RptItemControl::PixelTwips() / ViewZoom::Of(m_scene);
}

QPointF clsResize::guideOffset(const QRectF& grid, QPointF pending, int handle)
{
    if (!m_guideSource)
        return {};
    const unsigned edges = SmartGuides::HandleEdges(handle);
    const QRectF raw = SmartGuides::MoveEdges(grid, edges, pending);
    std::vector<QRectF> frames;
    for (DragBox* f : handle ? Frames() : QList<DragBox*>()) // a resize keeps every frame's size >= 0
        frames.emplace_back(f->Left(), f->Top(), f->Width(), f->Height());
    const SmartGuides::Placement p = SmartGuides::Place(m_guideSource(raw), grid, pending, edges, guideThreshold(),
                                                        QSizeF(m_pageWidth, m_pageHeight), frames);
    if (m_guideLines)
        m_guideLines->Show(p.lines);
    return p.offset;
}

// ---------------------------------------------------------------- handles

void clsResize::ResizeHandle_MouseDown(int Index, int Button, float X, float Y)
{
    if (Index < 0 || Index >= DragBox::HandleCount || !(Button & LeftButton) || m_busy || Dragging())
        return;
    endGesture();
    m_lastX = X;
    m_lastY = Y;
    if (Index == 0) {
        // The move handle drags the whole selection, page bounds and all.
        m_mouseDown = true;
        recomputeBounds();
    } else {
        m_resizeArmed = true;
    }
}

void clsResize::ResizeHandle_MouseMove(int Index, int Button, float X, float Y, int Shift)
{
    if (Index == 0) {
        if (Button & LeftButton)
            MouseMove(X, Y, Shift);
        return;
    }
    if (Index < 0 || Index >= DragBox::HandleCount || !m_resizeArmed || m_busy || !(Button & LeftButton))
        return;
    const int dx = gridStep(m_lastX - X, m_gridX);
    const int dy = gridStep(m_lastY - Y, m_gridY);
    m_lastX -= float(dx);
    m_lastY -= float(dy);
    const bool guides = m_guideSource && !(Shift & RptItemControl::AltMask);
    if (!dx && !dy && !guides && m_guide.isNull())
        return;
    m_busy = true;
    // Back to the grid's rectangles, one grid step, then the moving edges onto a guide if one is near.
    shiftEdges(Index, -m_guide);
    m_guide = QPointF();
    if (dx || dy) {
        hideAllHandles();
        for (DragBox* f : Frames())
            resizeStep(f, Index, dx, dy);
    }
    recomputeBounds();
    if (guides)
        m_guide = guideOffset(m_bounds, QPointF(X - m_lastX, Y - m_lastY), Index);
    else if (m_guideLines)
        m_guideLines->Clear();
    if (!m_guide.isNull()) {
        hideAllHandles();
        shiftEdges(Index, m_guide);
        recomputeBounds();
    }
    moveRulerLines();
    m_busy = false;
}

void clsResize::shiftEdges(int index, QPointF by)
{
    if (by.isNull())
        return;
    for (DragBox* f : Frames()) {
        const QRectF r = SmartGuides::MoveEdges(QRectF(f->Left(), f->Top(), f->Width(), f->Height()),
                                                SmartGuides::HandleEdges(index), by);
        f->Move(r.left(), r.top(), r.width(), r.height());
    }
}

void clsResize::resizeStep(DragBox* f, int index, double dx, double dy) const
{
    // Pointer moving left or up makes dx, dy positive. Each handle moves some of the four
    // edges; a moving edge stops at the opposite one (size 0) and at the page's edges.
    const double inf = std::numeric_limits<double>::infinity();
    double l = f->Left(), t = f->Top(), r = l + f->Width(), b = t + f->Height();
    const bool left = index == 1 || index == 7, right = index == 2 || index == 4 || index == 5;
    const bool top = index == 3 || index == 4, bottom = index == 5 || index == 6 || index == 7;
    if (left)
        l = std::clamp(l - dx, std::min(0.0, l), r);
    if (right)
        r = std::clamp(r - dx, l, m_pageWidth > 0 ? std::max<double>(m_pageWidth, r) : inf);
    if (top)
        t = std::clamp(t - dy, std::min(0.0, t), b);
    if (bottom)
        b = std::clamp(b - dy, t, m_pageHeight > 0 ? std::max<double>(m_pageHeight, b) : inf);
    f->Move(l, t, r - l, b - t);
}

void clsResize::ResizeHandleMouseUp(int Index)
{
    if (Index == 0) {
        MouseUp();
        return;
    }
    if (!m_resizeArmed)
        return;
    endGesture();
    writeBack();
}
