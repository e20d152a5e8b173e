#include "entry/Recordset.h"
#include "entry/HostError.h"

Recordset::Recordset(QStringList columns, QList<QVariantList> rows)
    : m_columns(std::move(columns)), m_rows(std::move(rows)) {}

void Recordset::MoveNext()
{
    if (Eof())
        throw HostError(HostErr::NoCurrentRecord, QStringLiteral("Either BOF or EOF is True, or the current record has been deleted."));
    ++m_pos;
}

void Recordset::Close()
{
    m_closed = true;
    m_rows.clear();
}

QString Recordset::FieldName(int index) const
{
    if (index < 0 || index >= m_columns.size())
        throw HostError(HostErr::NoSuchColumn, QStringLiteral("Item cannot be found in the collection corresponding to the requested name or ordinal."));
    return m_columns.at(index);
}

int Recordset::columnIndex(const QString& name) const
{
    for (int i = 0; i < m_columns.size(); ++i)
        if (m_columns.at(i).compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

const QVariantList& Recordset::currentRow() const
{
    if (Eof())
        throw HostError(HostErr::NoCurrentRecord, QStringLiteral("Either BOF or EOF is True, or the current record has been deleted."));
    return m_rows.at(m_pos);
}

QVariant Recordset::Fields(int index) const
{
    FieldName(index); // range check
    const QVariantList& row = currentRow();
    return index < row.size() ? row.at(index) : QVariant();
}

QVariant Recordset::Fields(const QString& name) const
{
    const int i = columnIndex(name);
    if (i < 0)
        throw HostError(HostErr::NoSuchColumn, QStringLiteral("Item cannot be found in the collection corresponding to the requested name or ordinal."));
    return Fields(i);
}
