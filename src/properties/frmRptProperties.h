#pragma once
// The "Properties" tool window: one row per property of the selected report items, a caption
// and an editor each, on a panel that scrolls. Which rows show depends on the kinds selected;
// every edit goes through the document, which writes it to the whole selection.
#include "document/DesignSurface.h"
#include "properties/PropertyRows.h"

#include <QHash>
#include <QPointer>
#include "properties/HostToolWindow.h"

class clsRptControl;
class NumberEdit;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QScrollArea;

class frmRptProperties : public HostToolWindow, public PropertySheetLink {
    Q_OBJECT
public:
    // A top-level tool window owned by `parent` (the design window).
    explicit frmRptProperties(QWidget* parent = nullptr);
    ~frmRptProperties() override;

    // Binds the sheet to the document and the selection, fills the value lists, sizes the window
    // and listens to the host's events. Marks the document changed.
    void Init(clsRptControl* document, SelectionManager* selection);
    // Rebuilds the rows for the current selection; the window calls it whenever the selection or
    // the current item changes.
    void LoadProperties();
    // Loads the rows and brings the window up (the Properties command, a right-click on an item).
    void ShowProperties();

    // Commits the name box: refuses a blank name or one already in use.
    void ChangeName();
    // Selects the first entry whose stored code is `code`; no match leaves the list as it is.
    static void SelComboItem(QComboBox* list, int code);
    // The photo file's "..." button; the window also runs it when a linked picture is created.
    void cmdSetFileName_Click();
    void cmdSetColor_Click(SheetProp which); // ForeColor, BackColor or BorderColor

    // The rows the current selection shows (RowBit values).
    quint32 RowMask() const { return m_mask; }
    // The list of item names: the current item is selected in it, choosing one selects that item.
    QComboBox* ObjectList() const { return m_objects; }


    // PropertySheetLink: what the document tells the sheet.
    void RemoveItemName(const QString& name) override;
    void ReplaceItemName(const QString& oldName, const QString& newName) override;
    void ShowValue(const QString& box, const QVariant& value) override;

protected:
    void OnUnload() override
    {
        m_doc = nullptr;
        m_sel = nullptr;
    }
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Row {
        const SheetRow* def;
        QLabel* label;
        QWidget* editor;
        QPushButton* button;
    };
    struct EditorState {
        SheetProp prop = SheetProp::Name;
        EditorFamily family = EditorFamily::Text;
        int focusIndex = -1;  // list entry when the editor got the focus (Escape)
        QString focusText;    // text when it got the focus (the format list)
    };

    void BuildRows();
    QWidget* NewEditor(const SheetRow& row);
    void FillLists();
    void FillObjectList();
    void ObjectChosen(int index);
    void LayoutRows();
    void ShowCommonValues(const QList<QObject*>& selected);
    void ShowEditorValue(const Row& row, const QList<QObject*>& selected);
    void FillFontNames(QComboBox* list);
    static const char* ControlProperty(SheetProp prop);

    // frmRptPropertiesEdits.cpp
    void Commit(QWidget* editor, EditorState& state);
    void Escape(QWidget* editor, EditorState& state);
    void ReadBack(QWidget* editor, SheetProp prop);
    void WriteProperty(SheetProp prop, const QVariant& value);
    QVariant ReadProperty(SheetProp prop) const;
    void FixedListClicked(QComboBox* list);
    void FontListClicked(QComboBox* list);
    bool CanEdit() const;

    clsRptControl* m_doc = nullptr;
    SelectionManager* m_sel = nullptr;
    QComboBox* m_objects;
    QScrollArea* m_viewport;
    QWidget* m_panel;
    QList<Row> m_rows;
    QHash<QString, QWidget*> m_editors; // by object name, the hidden section rows too
    QHash<QObject*, EditorState> m_states;
    quint32 m_mask = 0;
    bool m_loading = false;    // no commits while the rows are rebuilt
    bool m_committing = false; // a message box must not commit a second time
};
