#include "design/clsResize.h"

#include "design/DragBox.h"
#include "design/RptItemControl.h"
#include "design/SmartGuideLines.h"

#include <QGraphicsObject>
#include <QGraphicsScene>
#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Frames and their handles stay above every item, whatever stacking numbers the items get.
constexpr double FrameZ = 1.0e7;
constexpr int LeftButton = RptItemControl::LeftButton;

void RefreshItem(QObject* source)
{
    if (auto* g = qobject_cast<QGraphicsObject*>(source))
        g->update();
}

int TagOf(const QObject* source)
{
    return source ? source->property("Tag").toInt() : 0;
}

} // namespace

clsResize::clsResize(QObject* parent)
    : QObject(parent)
{
}

clsResize::~clsResize()
{
    for (const QPointer<DragBox>& f : std::as_const(m_frames))
        delete f.data();
    m_frames.clear();
    if (m_rpt)
        m_rpt->SetSelectionManager(nullptr);
}

// ---------------------------------------------------------------- set-up

void clsResize::SetRptControl(clsRptControl* rpt)
{
    if (m_rpt && m_rpt != rpt)
        m_rpt->SetSelectionManager(nullptr);
    m_rpt = rpt;
    if (rpt)
        rpt->SetSelectionManager(this);
}

void clsResize::SetGridX(float twips) { m_gridX = std::max(1.0f, twips); }
void clsResize::SetGridY(float twips) { m_gridY = std::max(1.0f, twips); }

void clsResize::SetRulerLines(QGraphicsItem* hLine, QGraphicsItem* vLine)
{
    m_hLine = hLine;
    m_vLine = vLine;
    moveRulerLines();
}

void clsResize::SetPageSize(float scaleWidth, float scaleHeight)
{
    m_pageWidth = scaleWidth;
    m_pageHeight = scaleHeight;
}

void clsResize::SetSmartGuides(GuideSource source, SmartGuideLines* lines)
{
    m_guideSource = std::move(source);
    m_guideLines = lines;
}

// ---------------------------------------------------------------- selection

QList<DragBox*> clsResize::Frames() const
{
    QList<DragBox*> out;
    for (const QPointer<DragBox>& f : m_frames)
        if (f)
            out << f.data();
    return out;
}

int clsResize::Count() const { return int(Frames().size()); }

DragBox* clsResize::Frame(QObject* source) const
{
    if (!source)
        return nullptr;
    for (const QPointer<DragBox>& f : m_frames)
        if (f && f->Source() == source)
            return f.data();
    return nullptr;
}

QList<QObject*> clsResize::SelectedControls() const
{
    QList<QObject*> out;
    for (DragBox* f : Frames())
        if (QObject* s = f->Source())
            out << s;
    return out;
}

void clsResize::tellDocument(QObject* current)
{
    if (!m_rpt)
        return;
    m_rpt->SetIndex(current ? TagOf(current) : 0);
    m_rpt->SetUserControl(current);
}

void clsResize::deselect(QObject* source)
{
    if (!source)
        return;
    source->setProperty("Selected", false);
    RefreshItem(source);
}

DragBox* clsResize::addFrame(QObject* source)
{
    auto* f = new DragBox;
    f->setZValue(FrameZ);
    QGraphicsScene* scene = m_scene;
    if (!scene)
        if (auto* g = qobject_cast<QGraphicsObject*>(source))
            scene = g->scene();
    if (scene)
        scene->addItem(f);
    f->Bind(source, m_rpt ? m_rpt->ObjectType(TagOf(source)) : 0);
    connect(f, &DragBox::HandleMouseDown, this,
            [this](int i, int button, int, float x, float y) { ResizeHandle_MouseDown(i, button, x, y); });
    connect(f, &DragBox::HandleMouseMove, this,
            [this](int i, int button, int shift, float x, float y) { ResizeHandle_MouseMove(i, button, x, y, shift); });
    connect(f, &DragBox::HandleMouseUp, this, [this](int i, int, int, float, float) { ResizeHandleMouseUp(i); });
    // A control deleted behind our back (the document unloading it) takes its frame along.
    connect(source, &QObject::destroyed, this, &clsResize::sourceGone);
    m_frames << f;

    source->setProperty("Selected", true);
    RefreshItem(source);
    tellDocument(source);
    recomputeBounds();
    moveRulerLines();
    return f;
}

void clsResize::removeFrame(int i, bool deselectItem)
{
    QPointer<DragBox> f = m_frames.takeAt(i);
    if (!f)
        return;
    QObject* source = f->Source();
    if (source) {
        disconnect(source, &QObject::destroyed, this, &clsResize::sourceGone);
        if (deselectItem)
            deselect(source);
    }
    delete f.data(); // gives the source its pointer back
}

void clsResize::sourceGone()
{
    bool changed = false;
    for (int i = int(m_frames.size()) - 1; i >= 0; --i)
        if (!m_frames[i] || !m_frames[i]->Source()) {
            delete m_frames.takeAt(i).data();
            changed = true;
        }
    if (changed) {
        recomputeBounds();
        emit selectionChanged();
    }
}

void clsResize::Select(QObject* source)
{
    if (!source || Frame(source))
        return;
    addFrame(source);
    emit selectionChanged();
}

void clsResize::RemoveSelect(QObject* source)
{
    for (int i = 0; i < m_frames.size(); ++i)
        if (m_frames[i] && m_frames[i]->Source() == source) {
            removeFrame(i, true);
            const QList<QObject*> rest = SelectedControls();
            tellDocument(rest.isEmpty() ? nullptr : rest.last());
            recomputeBounds();
            emit selectionChanged();
            return;
        }
}

void clsResize::ClearSelect()
{
    const bool any = !m_frames.isEmpty();
    for (int i = int(m_frames.size()) - 1; i >= 0; --i)
        removeFrame(i, true);
    m_bounds = QRectF();
    tellDocument(nullptr);
    if (any)
        emit selectionChanged();
}

void clsResize::DropAllFrames()
{
    const bool any = !m_frames.isEmpty();
    for (int i = int(m_frames.size()) - 1; i >= 0; --i)
        removeFrame(i, false);
    m_bounds = QRectF();
    if (any)
        emit selectionChanged();
}

void clsResize::RefreshDragToSource()
{
    for (DragBox* f : Frames()) {
        f->MoveToSource();
        f->PositionHandles();
    }
    m_handlesHidden = false;
    recomputeBounds();
    moveRulerLines();
}

void clsResize::recomputeBounds()
{
    QRectF b;
    bool first = true;
    for (DragBox* f : Frames()) {
        const QRectF r(f->Left(), f->Top(), f->Width(), f->Height());
        if (first) {
            b = r;
            first = false;
        } else {
            // united() skips empty rectangles; a line of height 0 still counts here.
            b.setLeft(std::min(b.left(), r.left()));
            b.setTop(std::min(b.top(), r.top()));
            b.setRight(std::max(b.right(), r.right()));
            b.setBottom(std::max(b.bottom(), r.bottom()));
        }
    }
    m_bounds = b;
}

void clsResize::moveRulerLines()
{
    if (m_frames.isEmpty())
        return;
    if (m_hLine)
        m_hLine->setX(m_bounds.left());
    if (m_vLine)
        m_vLine->setY(m_bounds.top() + RulerOffset);
}

void clsResize::hideAllHandles()
{
    if (m_handlesHidden)
        return;
    for (DragBox* f : Frames())
        f->HideHandles();
    m_handlesHidden = true;
}

// ---------------------------------------------------------------- mouse on the items

void clsResize::MouseDown(QObject* source, int Button, int Shift, float X, float Y)
{
    if (!source || !(Button & LeftButton) || m_busy || m_resizeArmed)
        return;
    m_lastX = X;
    m_lastY = Y;
    m_totalDx = m_totalDy = 0;
    m_mouseDown = true;
    m_stopLeft.reset();
    m_stopRight.reset();
    m_stopTop.reset();
    m_stopBottom.reset();

    const bool toggle = Shift & (RptItemControl::ShiftMask | RptItemControl::CtrlMask);
    int at = -1;
    for (int i = 0; i < m_frames.size(); ++i)
        if (m_frames[i] && m_frames[i]->Source() == source)
            at = i;

    if (at < 0) {
        // A plain click on an unselected item selects only that item, as in any drawing tool;
        // Shift or Ctrl adds it to the selection.
        if (!toggle)
            for (int i = int(m_frames.size()) - 1; i >= 0; --i)
                removeFrame(i, true);
        addFrame(source);
        emit selectionChanged();
    } else if (Count() == 1 || toggle) {
        // Clicking the only selected item, or Shift/Ctrl-clicking any selected one, drops it
        // (a second click on a lone text item opens its text editor on mouse-up).
        removeFrame(at, true);
        const QList<QObject*> rest = SelectedControls();
        tellDocument(rest.isEmpty() ? nullptr : rest.last());
        recomputeBounds();
        emit selectionChanged();
    } else {
        // A plain click inside a multiple selection keeps it (to drag it) and makes this item current.
        tellDocument(source);
    }
    recomputeBounds();
}

int clsResize::gridStep(float delta, float grid) const
{
    // Whole twips only, so repeated steps never drift off the grid. A pointer that jumps several
    // steps between two events (a fast drag) moves by all of them; the part of a step left over
    // waits for the next event, so the item lands on the step nearest the pointer.
    const long d = std::lround(delta);
    const long g = std::max(1L, std::lround(grid));
    return int(d - d % g);
}

void clsResize::MouseMove(float X, float Y, int Shift)
{
    if (!m_mouseDown || m_busy)
        return;
    dragStep(X, Y, !(Shift & RptItemControl::AltMask));
}

void clsResize::dragStep(float X, float Y, bool guides)
{
    const double inf = std::numeric_limits<double>::infinity();
    const double pageW = m_pageWidth > 0 ? m_pageWidth : inf;
    const double pageH = m_pageHeight > 0 ? m_pageHeight : inf;
    double dx = 0, dy = 0;
    // The grid steps and page stops work on where the selection stands without a guide snap.
    QRectF grid = m_bounds.translated(-m_guide);
    bool heldX = true, heldY = true;

    // Horizontal: held at an edge until the pointer comes back past where it stopped.
    if (m_stopLeft && X < *m_stopLeft) {
    } else if (m_stopRight && X > *m_stopRight) {
    } else {
        heldX = false;
        m_stopLeft.reset();
        m_stopRight.reset();
        if (const int step = gridStep(m_lastX - X, m_gridX)) {
            dx = step;
            m_lastX -= float(step);
            if (dx > 0 && grid.left() - dx < 0) {
                dx = std::max(0.0, grid.left());
                m_stopLeft = X;
            } else if (dx < 0 && grid.right() - dx > pageW) {
                dx = -std::max(0.0, pageW - grid.right());
                m_stopRight = X;
            }
        }
    }
    if (m_stopTop && Y < *m_stopTop) {
    } else if (m_stopBottom && Y > *m_stopBottom) {
    } else {
        heldY = false;
        m_stopTop.reset();
        m_stopBottom.reset();
        if (const int step = gridStep(m_lastY - Y, m_gridY)) {
            dy = step;
            m_lastY -= float(step);
            if (dy > 0 && grid.top() - dy < 0) {
                dy = std::max(0.0, grid.top());
                m_stopTop = Y;
            } else if (dy < 0 && grid.bottom() - dy > pageH) {
                dy = -std::max(0.0, pageH - grid.bottom());
                m_stopBottom = Y;
            }
        }
    }
    grid.translate(-dx, -dy);
    m_totalDx += float(dx);
    m_totalDy += float(dy);
    // A guide near where the pointer would put the selection wins over the grid; an axis held
    // at a page edge has nothing pending.
    const QPointF pending(heldX ? 0.0 : X - m_lastX, heldY ? 0.0 : Y - m_lastY);
    const QPointF guide = guides ? guideOffset(grid, pending, 0) : QPointF();
    if (!guides && m_guideLines)
        m_guideLines->Clear();
    const QPointF by = QPointF(-dx, -dy) + guide - m_guide;
    m_guide = guide;
    if (by.isNull())
        return;

    m_busy = true;
    m_bounds = grid.translated(guide);
    moveRulerLines();
    hideAllHandles();
    // No event processing between frames: with hundreds selected it would crawl, and the
    // scene repaints once when control returns to the event loop anyway.
    for (DragBox* f : Frames())
        f->MoveBy(by.x(), by.y());
    m_busy = false;
}

void clsResize::writeBack()
{
    bool changed = false;
    for (DragBox* f : Frames()) {
        QObject* source = f->Source();
        const QRectF want(f->Left(), f->Top(), f->Width(), f->Height());
        if (source && DragBox::SourceRect(source) != want) {
            if (auto* item = qobject_cast<RptItemControl*>(source)) {
                item->Move(float(want.left()), float(want.top()), float(want.width()), float(want.height()));
            } else {
                source->setProperty("Left", float(want.left()));
                source->setProperty("Top", float(want.top()));
                source->setProperty("Width", float(want.width()));
                source->setProperty("Height", float(want.height()));
            }
            RefreshItem(source);
            changed = true;
        }
        // The item may adjust what it was given (a line keeps its own thickness).
        f->MoveToSource();
        f->PositionHandles();
    }
    m_handlesHidden = false;
    recomputeBounds();
    moveRulerLines();
    if (changed)
        emit itemsMoved();
}

void clsResize::endGesture()
{
    m_mouseDown = false;
    m_resizeArmed = false;
    m_totalDx = m_totalDy = 0;
    m_guide = QPointF();
    if (m_guideLines)
        m_guideLines->Clear();
    m_stopLeft.reset();
    m_stopRight.reset();
    m_stopTop.reset();
    m_stopBottom.reset();
}

void clsResize::MouseUp()
{
    if (!m_mouseDown)
        return;
    const bool moved = m_totalDx != 0 || m_totalDy != 0 || !m_guide.isNull();
    endGesture();
    if (moved || m_handlesHidden)
        writeBack();
    const QList<QObject*> sel = SelectedControls();
    const int pointer = sel.size() > 1 ? PointerSizeAll : PointerIBeam;
    for (QObject* s : sel)
        s->setProperty("MousePointer", pointer);
}

void clsResize::CancelDrag()
{
    if (!m_mouseDown && !m_resizeArmed)
        return;
    endGesture();
    RefreshDragToSource();
}

// ---------------------------------------------------------------- keyboard

void clsResize::MoveSelectionBy(float dx, float dy)
{
    if (Dragging() || m_busy || m_frames.isEmpty())
        return;
    recomputeBounds();
    double mx = dx, my = dy;
    if (mx < 0)
        mx = std::max(mx, -std::max(0.0, m_bounds.left()));
    else if (mx > 0 && m_pageWidth > 0)
        mx = std::min(mx, std::max(0.0, m_pageWidth - m_bounds.right()));
    if (my < 0)
        my = std::max(my, -std::max(0.0, m_bounds.top()));
    else if (my > 0 && m_pageHeight > 0)
        my = std::min(my, std::max(0.0, m_pageHeight - m_bounds.bottom()));
    if (mx == 0 && my == 0)
        return;
    for (DragBox* f : Frames())
        f->MoveBy(mx, my);
    writeBack();
}

void clsResize::ResizeSelectionBy(float dw, float dh)
{
    if (Dragging() || m_busy || m_frames.isEmpty())
        return;
    for (DragBox* f : Frames()) {
        double w = std::max(0.0, double(f->Width()) + dw);
        double h = std::max(0.0, double(f->Height()) + dh);
        // Growing stops at the page edge; an item already past it does not shrink.
        if (dw > 0 && m_pageWidth > 0)
            w = std::min(w, std::max<double>(f->Width(), m_pageWidth - f->Left()));
        if (dh > 0 && m_pageHeight > 0)
            h = std::min(h, std::max<double>(f->Height(), m_pageHeight - f->Top()));
        f->Move(f->Left(), f->Top(), w, h);
    }
    writeBack();
}
