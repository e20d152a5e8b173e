#pragma once
// A combo-box tool (font name, font size, object name). One QWidgetAction may sit in several
// bands; each place gets its own QComboBox, and all of them show the same items and text.
#include <QStringList>
#include <QWidgetAction>

class QComboBox;

class ComboTool : public QWidgetAction {
    Q_OBJECT
public:
    // The combo boxes are named `name`. An editable combo takes typed values; a non-empty
    // pattern restricts what may be typed.
    ComboTool(const QString& name, bool editable, const QString& pattern, QObject* parent);

    void SetItems(const QStringList& items);
    QStringList Items() const { return m_items; }
    // Shows a value without reporting a change (the program keeps the tool in step).
    void SetText(const QString& text);
    QString Text() const { return m_text; }

signals:
    // The user picked an entry or typed a value and confirmed it.
    void committed(const QString& text);

protected:
    QWidget* createWidget(QWidget* parent) override;

private:
    void Commit(const QString& text, bool picked);
    void Sync(QComboBox* box) const;
    void SyncAll();

    QStringList m_items;
    QString m_text;
    QString m_pattern;
    bool m_editable;
};
