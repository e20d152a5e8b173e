#include "design/ComboTool.h"

#include <QComboBox>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>

ComboTool::ComboTool(const QString& name, bool editable, const QString& pattern, QObject* parent)
    : QWidgetAction(parent), m_pattern(pattern), m_editable(editable)
{
    setObjectName(name);
}

void ComboTool::SetItems(const QStringList& items)
{
    m_items = items;
    SyncAll();
}

void ComboTool::SetText(const QString& text)
{
    m_text = text;
    SyncAll();
}

QWidget* ComboTool::createWidget(QWidget* parent)
{
    auto* box = new QComboBox(parent);
    box->setObjectName(objectName());
    box->setToolTip(toolTip());
    box->setStatusTip(statusTip());
    box->setEditable(m_editable);
    box->setEnabled(isEnabled());
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(m_pattern.isEmpty() ? 18 : 4);
    if (m_editable && !m_pattern.isEmpty())
        box->setValidator(new QRegularExpressionValidator(QRegularExpression(m_pattern), box));
    Sync(box);
    connect(box, &QComboBox::textActivated, this, [this](const QString& text) { Commit(text, true); });
    if (QLineEdit* edit = box->lineEdit()) {
        connect(edit, &QLineEdit::editingFinished, this, [this, edit] { Commit(edit->text(), false); });
    }
    return box;
}

void ComboTool::Commit(const QString& text, bool picked)
{
    // An empty font name or size means nothing: show the last value again (the size pattern
    // accepts empty text so that confirming it comes here).
    // A typed value that was already reported (Enter, then leaving the box) is not reported twice.
    if (text.trimmed().isEmpty() || (!picked && text == m_text)) {
        SyncAll();
        return;
    }
    m_text = text;
    SyncAll();
    emit committed(text);
}

void ComboTool::Sync(QComboBox* box) const
{
    const QSignalBlocker block(box);
    QStringList shown;
    for (int i = 0; i < box->count(); ++i)
        shown << box->itemText(i);
    if (shown != m_items) {
        box->clear();
        box->addItems(m_items);
    }
    box->setCurrentIndex(box->findText(m_text, Qt::MatchFixedString | Qt::MatchCaseSensitive));
    if (box->isEditable())
        box->setEditText(m_text);
}

void ComboTool::SyncAll()
{
    for (QWidget* w : createdWidgets())
        if (auto* box = qobject_cast<QComboBox*>(w))
            Sync(box);
}
