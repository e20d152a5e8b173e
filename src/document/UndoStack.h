#pragma once
// Undo and redo for one report document, kept as snapshots of the document's own state: each
// item as the file codec sees it (pictures by their file, so a picture is never copied), its
// place and stacking, the page settings and whatever the window adds (section bars, grid).
// Consecutive snapshots share every item that did not change, so a step costs one small
// entry per item plus the items it touched. Selection and view are remembered but never make
// a step of their own.
#include "document/RdfFile.h"

#include <QList>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

class clsRptControl;
class QObject;

// What the window keeps beside the document: section bars and grid.
struct SurfaceState {
    bool headerShown = false;
    float detailOffset = 0;
    bool footerShown = false;
    float footerOffset = 0;
    int gridX = 60, gridY = 60;
    bool operator==(const SurfaceState&) const = default;
};

// The window's part of undo; without one only the document is kept.
class UndoSurface {
public:
    virtual ~UndoSurface() = default;
    virtual SurfaceState CaptureSurface() const = 0;
    virtual void RestoreSurface(const SurfaceState& state) = 0;
};

class UndoStack {
public:
    // Default memory cap of the history; the oldest steps are dropped beyond it.
    static constexpr qint64 DefaultCap = 64LL * 1024 * 1024;

    explicit UndoStack(clsRptControl& doc, UndoSurface* surface = nullptr);
    ~UndoStack();

    // Forgets the history: the document as it stands is the start, and counts as saved when
    // the document has no unsaved changes.
    void Reset();
    // Compares the document with the last step; a difference becomes a new step named `name`
    // (or, without a name, after what changed: "Move", "Resize", "Delete", ...). Without a
    // difference only the remembered selection is brought up to date. Redo steps are dropped
    // by a new step. Returns whether a step was added.
    bool Checkpoint(const QString& name = QString());

    bool CanUndo() const { return m_cur > 0; }
    bool CanRedo() const { return m_cur + 1 < int(m_states.size()); }
    QString UndoName() const; // the action the next Undo takes back; "" when none
    QString RedoName() const;
    // Takes in what changed since the last step first, unless the caller knows nothing did.
    bool Undo(bool takeInChanges = true);
    bool Redo(bool takeInChanges = true);

    int Steps() const { return int(m_states.size()) - 1; }
    // Bytes held by the history (snapshots and the item states they alone hold).
    qint64 MemoryUsed() const;
    void SetMemoryCap(qint64 bytes);
    // Whether the document stands where it was last saved (or loaded).
    bool AtSavedState() const { return m_cur == m_saved; }

    // Called after every change the stack makes to the document (undo, redo).
    std::function<void()> restored;

    struct ItemBody;
    struct ItemState {
        std::shared_ptr<const ItemBody> body;
        quint32 uid = 0;
        float left = 0, top = 0, width = 0, height = 0;
        double z = 0; // stacking on the page
    };
    struct PageState {
        int top = 0, bottom = 0, left = 0, right = 0, columns = 1;
        float sectionSpacing = 0;
        bool newPage = true;
        int headerFlags = 0, reportOption = 0, fieldListFlag = 0;
        bool clearDataSource = false;
        bool operator==(const PageState&) const = default;
    };
    struct Snapshot {
        std::vector<ItemState> items;
        PageState page;
        SurfaceState surface;
        QList<quint32> selection;
        QString name; // the action that led here
        qint64 bytes = 0;
    };

private:
    Snapshot capture(const Snapshot* previous);
    QString describe(const Snapshot& from, const Snapshot& to) const;
    // Returns the indexes of the items it wrote to; -1 - index for those whose place alone changed.
    std::vector<int> restore(const Snapshot& from, const Snapshot& to);
    void settle(const std::vector<int>& touched);
    ItemState captureItem(int index, const ItemState* previous);
    QList<quint32> selectionNow() const;
    void enforceCap();
    quint32 uidOf(QObject* control);

    clsRptControl& m_doc;
    UndoSurface* m_surface;
    std::vector<Snapshot> m_states;
    int m_cur = 0;
    int m_saved = 0; // -1 when the saved state has been dropped or overwritten
    qint64 m_cap = DefaultCap;
    quint32 m_nextUid = 1;
    int m_fresh = 0; // items first seen by the capture under way
};
