#pragma once
// The "Available Fields" tool window: the report kind's fields, grouped by tabs, from which the
// user drags data fields onto the design page (or presses Enter to add one).
#include "properties/HostToolWindow.h"
#include <functional>

class FieldDictionary;
class FieldListOwner;
class QDrag;
class QListWidget;
class QMimeData;
class QTabBar;

class frmRptFields : public HostToolWindow {
    Q_OBJECT
public:
    // A top-level tool window owned by `parent` (the design window).
    explicit frmRptFields(QWidget* parent = nullptr);
    ~frmRptFields() override;

    // Builds the tabs, fills the list for the first one and listens to the host's events.
    // Either pointer may be null: the list then stays empty / no drag starts.
    void Init(FieldDictionary* dictionary, FieldListOwner* owner);

    // The selected entry: its field name and dictionary number ("" and 0 with none).
    QString FieldName() const;
    int DicId() const;

    QTabBar* TypeTabs() const { return m_tabs; }
    QListWidget* FieldList() const { return m_list; }


    // Runs a started drag to its end and returns what the target did; the default is
    // QDrag::exec. Tests replace it because exec waits for a real mouse.
    using DragRunner = std::function<Qt::DropAction(QDrag*)>;
    void SetDragRunner(DragRunner runner) { m_runDrag = std::move(runner); }

    // The drag payload: a field name and its dictionary number.
    static const QString MimeType;
    static QMimeData* NewFieldMime(const QString& name, int dicId);
    // False when the data is not a field of this program.
    static bool ReadFieldMime(const QMimeData* data, QString& name, int& dicId);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildTabs();
    void TabSelected(int index);
    void StartDrag();
    bool ListViewportEvent(QEvent* event);
    void AddSelected();

    QTabBar* m_tabs;
    QListWidget* m_list;
    FieldDictionary* m_dic = nullptr;
    FieldListOwner* m_owner = nullptr;
    DragRunner m_runDrag;
    QPoint m_pressPos;
    bool m_pressedOnEntry = false;
};
