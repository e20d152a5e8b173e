#include "dialogs/frmPropertyPrompt.h"

#include "dialogs/KeyEntry.h"
#include "dialogs/frmFindProperty.h"
#include "document/clsRptControl.h"
#include "entry/Host.h"
#include "entry/Prompts.h"
#include "sqltext/clsSQLQuote.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

frmPropertyPrompt::frmPropertyPrompt(QWidget* parent) : KeyPromptDialog(QStringLiteral("Report Design"), parent)
{
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &frmPropertyPrompt::reject);
    connect(cmdBrowse, &QPushButton::clicked, this, &frmPropertyPrompt::cmdBrowse_Click);
}

void frmPropertyPrompt::Load(clsRptControl& document, const QString& key)
{
    static const char* const prompts[] = {"Enter Listing Number:", "Enter Tax Id:", "Enter Office Code:", "Enter Agent Code:",
                                          "Enter Rental Number:"};
    m_doc = &document;
    m_dic = document.Dictionary();
    m_key = key;
    m_shown = KeyEntry::DisplayText(key);
    m_cancelled = false;
    const int kind = m_dic ? m_dic->DatabaseKind() : 1;
    lblPrompt->setText(kind >= 1 && kind <= 5 ? QLatin1String(prompts[kind - 1]) : QString());
    txtPropertyId->setText(m_shown);
    txtPropertyId->selectAll();
    txtPropertyId->setFocus();
}

void frmPropertyPrompt::reject()
{
    m_cancelled = true;
    QDialog::reject();
}

bool frmPropertyPrompt::Apply()
{
    if (m_cancelled || !m_doc)
        return false;
    const QString text = txtPropertyId->text();
    if (text == m_shown)
        return false; // unchanged (also: no key before and none now)
    if (text.isEmpty()) {
        m_doc->AutoFillId.clear();
        m_doc->ClearDataView();
        return true;
    }

    const int kind = m_dic ? m_dic->DatabaseKind() : 1;
    // Listing and rental numbers stand bare in SQL, so they must be plain whole numbers.
    if ((kind == 1 || kind == 5) && !KeyEntry::IsWholeNumber(text)) {
        MsgBox(QStringLiteral("Invalid entry - please try again"), Mb::OKOnly);
        return false;
    }
    const QString key = KeyEntry::SqlKey(kind, text, clsSQLQuote());
    bool found = false;
    try {
        BusyPointer busy(m_doc->Window());
        found = m_doc->RefreshData(key);
    } catch (const HostError& e) {
        MsgBox(e.Description(), Mb::OKOnly | Mb::Critical, windowTitle());
        return false;
    }
    if (!found) {
        MsgBox(text + QStringLiteral(" Not Found"), Mb::OKOnly);
        return false;
    }
    m_doc->AutoFillId = key;
    return true;
}

void frmPropertyPrompt::cmdBrowse_Click()
{
    if (!m_dic)
        return;
    int options = FindOption::SingleSelection | FindOption::SearchAtOnce;
    int owner = 2;
    switch (m_dic->DatabaseKind()) {
    case 2: options = FindOption::SingleSelection; break;
    case 3: owner = 1; break;
    case 5: options = 0; break;
    default: break;
    }
    QStringList keys;
    if (frmFindProperty::Search(keys, *m_dic, options, owner, 2) > 0) {
        txtPropertyId->setText(keys.first());
        accept();
    }
}

bool frmPropertyPrompt::Start(clsRptControl& document, const QString& key)
{
    frmPropertyPrompt prompt(gHost ? gHost->MainForm().Window() : nullptr);
    prompt.Load(document, key);
    if (prompt.exec() != QDialog::Accepted)
        return false;
    return prompt.Apply();
}

void InstallDialogPrompts()
{
    SetPropertyPrompt([](clsRptControl& document, const QString& key) { return frmPropertyPrompt::Start(document, key); });
}
