#pragma once
// A materialised, static, read-only result: every row is read when the query runs.
#include <QStringList>
#include <QVariant>
#include <QList>

class Recordset {
public:
    Recordset() = default;
    Recordset(QStringList columns, QList<QVariantList> rows);

    int RecordCount() const { return m_closed ? 0 : int(m_rows.size()); }
    // EOF is a C macro, hence the spelling.
    bool Eof() const { return m_closed || m_pos >= m_rows.size(); }
    void MoveNext();
    void MoveFirst() { m_pos = 0; }
    void Close();

    int FieldCount() const { return int(m_columns.size()); }
    QString FieldName(int index) const;
    const QStringList& Columns() const { return m_columns; }
    // Field values of the current row; a null QVariant stands for SQL NULL.
    // Names are matched case-insensitively; an unknown name or position throws HostError 3265.
    QVariant Fields(int index) const;
    QVariant Fields(const QString& name) const;
    bool IsNull(const QString& name) const { return Fields(name).isNull(); }
    bool HasField(const QString& name) const { return columnIndex(name) >= 0; }

private:
    int columnIndex(const QString& name) const;
    const QVariantList& currentRow() const;

    QStringList m_columns;
    QList<QVariantList> m_rows;
    qsizetype m_pos = 0;
    bool m_closed = false;
};
