#pragma once
// What the two key prompts share: which typed keys a number box takes, when a text counts as a
// number, and how a record key moves between its SQL form and the text the user edits.
#include <QDialog>
#include <QObject>
#include <QString>

class clsSQLQuote;
class QLabel;
class QLineEdit;
class QPushButton;

// The face both key prompts share: the prompt, the key box and OK / Cancel / Browse.
class KeyPromptDialog : public QDialog {
public:
    KeyPromptDialog(const QString& caption, QWidget* parent);

    QLabel* lblPrompt = nullptr;
    QLineEdit* txtPropertyId = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdBrowse = nullptr;
};

// Drops typed characters other than digits and "." (and "," when lists are allowed).
// Backspace, Ctrl+C, Ctrl+V and keys that type nothing (arrows, Delete, Enter) pass; pasted
// text is not filtered, the OK check catches it.
class NumberKeyFilter : public QObject {
public:
    NumberKeyFilter(QObject* parent, bool allowList) : QObject(parent), m_allowList(allowList) {}
    void SetAllowList(bool allow) { m_allowList = allow; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool m_allowList;
};

namespace KeyEntry {
// A number as the classic IsNumeric sees it: sign, digits with "," separators, one ".",
// an exponent, surrounding blanks. "" and "." are not numbers.
bool IsNumeric(const QString& text);
// A key that may stand bare in SQL: digits only. The one rule for listing and rental numbers,
// the same the data view and the report engine apply, so a key the prompt takes also prints.
bool IsWholeNumber(const QString& text);
// What the listing prompt says about text that is not a listing number ("" when it is one).
// allowList: several numbers separated by commas.
QString ListingNumberProblem(const QString& text, bool allowList);
// The text shown for a key as it stands in SQL: a quoted key loses its quotes (and doubled
// inner quotes become single again).
QString DisplayText(const QString& sqlKey);
// The key for SQL of what the user typed: bare for listings and rentals, quoted otherwise.
QString SqlKey(int databaseKind, const QString& text, const clsSQLQuote& quote);
} // namespace KeyEntry
