#pragma once
// What the report document asks of the window it lives in. The design window implements
// these; tests implement them with plain objects. The document never sees widgets: item
// controls are QObjects whose properties it reads and writes by name.
#include <QList>
#include <QString>
#include <QVariant>

class QObject;

// The selection manager as the document uses it: the selected controls, in selection order.
class SelectionManager {
public:
    virtual ~SelectionManager() = default;
    virtual QList<QObject*> SelectedControls() const = 0;
    virtual void AddToSelection(QObject* control) = 0;
    virtual void RemoveFromSelection(QObject* control) = 0;
    virtual void ClearSelection() = 0;
    virtual void RefreshHandles() = 0;
};

class DesignSurface {
public:
    virtual ~DesignSurface() = default;
    // A new element of the control array for that item kind (text box, box, line, image).
    virtual QObject* LoadItemControl(int objectType) = 0;
    virtual void UnloadItemControl(QObject* control) = 0;
    virtual void SendToBack(QObject* control) = 0;

    // Section bars, in twips from the top of the design page.
    virtual float DetailHeaderBarOffset() const = 0;
    virtual float PageFooterBarOffset() const = 0;
    virtual void HideHeaderFooter() = 0;
    virtual void SetHeaderFooter(float detailBarTop) = 0;
    virtual void MovePageFooterBar(float footerTop) = 0;
    virtual void ClearDrawing() = 0;

    virtual int GridIncX() const = 0;
    virtual int GridIncY() const = 0;
    virtual void SetMousePointer(int pointer) = 0; // 11 hourglass, 0 default

    // The menu and toolbar tools the document keeps in step (fnBold, miPaste, ...).
    virtual void SetToolText(const QString& tool, const QString& text) = 0;
    virtual void SetToolChecked(const QString& tool, bool checked) = 0;
    virtual void SetToolEnabled(const QString& tool, bool enabled) = 0;
};

// The hourglass over the design window for as long as a piece of work runs (none in batch work).
class BusyPointer {
public:
    static constexpr int Hourglass = 11;
    explicit BusyPointer(DesignSurface* surface) : m_surface(surface)
    {
        if (m_surface)
            m_surface->SetMousePointer(Hourglass);
    }
    ~BusyPointer()
    {
        if (m_surface)
            m_surface->SetMousePointer(0);
    }
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;

private:
    DesignSurface* m_surface;
};

// The property sheet as the document uses it.
class PropertySheetLink {
public:
    virtual ~PropertySheetLink() = default;
    virtual void RemoveItemName(const QString& name) = 0;
    virtual void ReplaceItemName(const QString& oldName, const QString& newName) = 0;
    // Shows a value in one of the sheet's boxes ("Left", "Top", "FileName", "DataFormat", "CustomSQL", ...).
    virtual void ShowValue(const QString& box, const QVariant& value) = 0;
};
