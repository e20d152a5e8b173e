#include "dialogs/KeyEntry.h"

#include "document/clsRptControl.h"
#include "sqltext/clsSQLQuote.h"

#include <QKeyEvent>
#include <QRegularExpression>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

KeyPromptDialog::KeyPromptDialog(const QString& caption, QWidget* parent) : QDialog(parent)
{
    setWindowTitle(caption);
    lblPrompt = new QLabel(this);
    txtPropertyId = new QLineEdit(this);
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdBrowse = new QPushButton(QStringLiteral("Browse ..."), this);
    cmdOK->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdBrowse);
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* lay = new QGridLayout(this);
    lay->addWidget(lblPrompt, 0, 0);
    lay->addWidget(txtPropertyId, 1, 0);
    lay->addLayout(buttons, 2, 0);
}

bool NumberKeyFilter::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    const Qt::KeyboardModifiers mods = key->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
    if (mods & (Qt::ControlModifier | Qt::MetaModifier))
        return !(mods == Qt::ControlModifier && (key->key() == Qt::Key_V || key->key() == Qt::Key_C));
    const QString text = key->text();
    if (text.isEmpty() || key->key() == Qt::Key_Backspace || key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter ||
        key->key() == Qt::Key_Escape || key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab)
        return false;
    if (text.size() == 1) {
        const QChar c = text.front();
        if ((c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('.') || (m_allowList && c == QLatin1Char(',')))
            return false;
    }
    return true;
}

namespace KeyEntry {

bool IsNumeric(const QString& text)
{
    static const QRegularExpression re(QStringLiteral(R"(^\s*[+-]?(\d[\d,]*)?(\.\d*)?([eE][+-]?\d+)?\s*$)"));
    if (!re.match(text).hasMatch())
        return false;
    for (const QChar c : text)
        if (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
            return true;
    return false;
}

bool IsWholeNumber(const QString& text) { return clsRptControl::KeyIsSafe(1, text); }

QString ListingNumberProblem(const QString& text, bool allowList)
{
    const QStringList parts = allowList ? text.split(QLatin1Char(',')) : QStringList{text};
    for (const QString& part : parts) {
        const QString key = part.trimmed();
        if (IsWholeNumber(key))
            continue;
        if (!IsNumeric(key))
            return QStringLiteral("Invalid entry - must be numeric");
        // "240001.0", "2.4e5", "+240001": numbers, but not the way a listing is numbered.
        return QStringLiteral("Invalid entry - a listing number is written with digits only, such as 240001 (not \"")
            + key + QStringLiteral("\")");
    }
    return {};
}

QString DisplayText(const QString& sqlKey)
{
    if (sqlKey.size() >= 2 && sqlKey.startsWith(QLatin1Char('\'')) && sqlKey.endsWith(QLatin1Char('\'')))
        return sqlKey.mid(1, sqlKey.size() - 2).replace(QLatin1String("''"), QLatin1String("'"));
    return sqlKey;
}

QString SqlKey(int databaseKind, const QString& text, const clsSQLQuote& quote)
{
    if (databaseKind == 1 || databaseKind == 5)
        return text;
    return QLatin1Char('\'') + quote.QuoteText(text) + QLatin1Char('\'');
}

} // namespace KeyEntry
