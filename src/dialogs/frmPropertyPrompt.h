#pragma once
// Asks for the key of the record a report shows (listing number, tax id, office code, agent
// code, rental number), checks it and shows that record in the report.
#include "dialogs/KeyEntry.h"

class FieldDictionary;
class QLabel;
class QLineEdit;
class QPushButton;
class clsRptControl;

class frmPropertyPrompt : public KeyPromptDialog {
    Q_OBJECT
public:
    explicit frmPropertyPrompt(QWidget* parent = nullptr);

    // key: the document's current key as it stands in SQL. True when a new record is shown or
    // the key was cleared; false when cancelled, unchanged, invalid or not found.
    static bool Start(clsRptControl& document, const QString& key);

    // The steps of Start, for driving the prompt without a modal loop: Load before showing,
    // Apply after the dialog closed (it does nothing when cancelled).
    void Load(clsRptControl& document, const QString& key);
    bool Apply();

    void cmdBrowse_Click();
    void reject() override;
    bool Cancelled() const { return m_cancelled; }


private:
    clsRptControl* m_doc = nullptr;
    FieldDictionary* m_dic = nullptr;
    QString m_key;   // as given, SQL form
    QString m_shown; // as first shown
    bool m_cancelled = false;
};

// Routes the designer's record prompt (PropertyPrompt in entry/Prompts.h) to frmPropertyPrompt.
// Called once when the GUI starts.
void InstallDialogPrompts();
