#include "dialogs/frmListnumPrompt.h"

#include "dialogs/KeyEntry.h"
#include "dialogs/frmFindProperty.h"
#include "entry/Host.h"
#include "entry/Prompts.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

frmListnumPrompt::frmListnumPrompt(QWidget* parent) : KeyPromptDialog(QStringLiteral("Select Listing"), parent)
{
    m_keys = new NumberKeyFilter(this, false);
    txtPropertyId->installEventFilter(m_keys);

    connect(cmdOK, &QPushButton::clicked, this, &frmListnumPrompt::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmListnumPrompt::cmdCancel_Click);
    connect(cmdBrowse, &QPushButton::clicked, this, &frmListnumPrompt::cmdBrowse_Click);
}

void frmListnumPrompt::Load(bool allowList)
{
    m_allowList = allowList;
    m_keys->SetAllowList(allowList);
    lblPrompt->setText(allowList ? QStringLiteral("Enter Listing Numbers (separated by commas):")
                                 : QStringLiteral("Enter Listing Number:"));
    txtPropertyId->setFocus();
}

QString frmListnumPrompt::Text() const { return txtPropertyId->text(); }

void frmListnumPrompt::cmdOK_Click()
{
    // Blanks around a pasted number are no mistake of the user's.
    const QString text = txtPropertyId->text().trimmed();
    const QString problem = KeyEntry::ListingNumberProblem(text, m_allowList);
    if (problem.isEmpty()) {
        txtPropertyId->setText(text);
        accept();
        return;
    }
    MsgBox(problem, Mb::OKOnly | Mb::Critical, QStringLiteral("Input Error"));
    txtPropertyId->setFocus();
    txtPropertyId->selectAll();
}

void frmListnumPrompt::cmdCancel_Click() { reject(); }

void frmListnumPrompt::reject()
{
    // Closing the prompt any way but OK answers "".
    txtPropertyId->clear();
    QDialog::reject();
}

void frmListnumPrompt::cmdBrowse_Click()
{
    if (!gHost)
        return;
    std::unique_ptr<FieldDictionary> dic = gHost->NewFieldDictionary(1);
    QStringList keys;
    if (frmFindProperty::Search(keys, *dic, FindOption::SingleSelection | FindOption::SearchAtOnce, 2, 0) > 0) {
        txtPropertyId->setText(keys.first());
        cmdOK_Click();
    }
}

QString frmListnumPrompt::Display(bool allowList)
{
    frmListnumPrompt prompt(QApplication::activeWindow());
    prompt.Load(allowList);
    prompt.exec();
    return prompt.Text();
}
