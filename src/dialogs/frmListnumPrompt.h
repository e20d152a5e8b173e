#pragma once
// Asks for a listing number (or, when lists are allowed, several separated by commas).
#include "dialogs/KeyEntry.h"

class NumberKeyFilter;
class QLabel;
class QLineEdit;
class QPushButton;

class frmListnumPrompt : public KeyPromptDialog {
    Q_OBJECT
public:
    explicit frmListnumPrompt(QWidget* parent = nullptr);

    // Shows the prompt modal; the typed number(s), "" when cancelled.
    static QString Display(bool allowList);

    // The steps of Display, for driving the prompt without a modal loop.
    void Load(bool allowList);
    QString Text() const;

    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdBrowse_Click();
    void reject() override;


private:
    NumberKeyFilter* m_keys = nullptr;
    bool m_allowList = false;
};
