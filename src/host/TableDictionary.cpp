#include "host/TableDictionary.h"
#include "host/HostDatabase.h"

#include <algorithm>

TableDictionary::TableDictionary(HostDatabase& db, int databaseKind) : m_db(db), m_kind(databaseKind)
{
    Reload();
}

void TableDictionary::Reload()
{
    auto kind = m_db.RunNative(QStringLiteral("SELECT \"TableName\", \"KeyField\", \"Version\" FROM \"DicKinds\" WHERE \"Kind\" = ?1"), {m_kind});
    if (kind->Eof())
        throw HostError(HostErr::NoSuchField, QStringLiteral("The catalogue has no database kind %1.").arg(m_kind));
    m_table = kind->Fields(0).toString();
    m_key = kind->Fields(1).toString();
    m_version = quint8(kind->Fields(2).toInt());

    m_fields.clear();
    auto f = m_db.RunNative(QStringLiteral("SELECT \"DicId\", \"FieldName\", \"ColumnName\", \"DataType\", \"CodeType\", \"FormatText\", \"GroupCode\", "
                                           "\"Listed\", \"Expression\" FROM \"DicFields\" WHERE \"Kind\" = ?1 ORDER BY \"DicId\""), {m_kind});
    for (; !f->Eof(); f->MoveNext())
        m_fields.push_back(Field{f->Fields(0).toInt(), f->Fields(1).toString(), f->Fields(2).toString(), f->Fields(8).toString(),
                                 f->Fields(5).toString(), f->Fields(6).toString(), f->Fields(3).toInt(), f->Fields(4).toInt(),
                                 f->Fields(7).toInt() != 0});
    m_codes.clear();
    auto c = m_db.RunNative(QStringLiteral("SELECT \"DicId\", \"Code\", \"ShortText\", \"LongText\" FROM \"DicCodes\" WHERE \"Kind\" = ?1 ORDER BY \"DicId\", \"SortOrder\""), {m_kind});
    for (; !c->Eof(); c->MoveNext())
        m_codes.push_back(Code{c->Fields(0).toInt(), c->Fields(1).toString(), c->Fields(2).toString(), c->Fields(3).toString()});
    m_current = -1;
}

const TableDictionary::Field& TableDictionary::current() const
{
    if (m_current < 0)
        throw HostError(HostErr::NoSuchField, QStringLiteral("No field is selected in the %1 dictionary.").arg(m_table));
    return m_fields[size_t(m_current)];
}

void TableDictionary::SelectField(int dicId)
{
    for (size_t i = 0; i < m_fields.size(); ++i)
        if (m_fields[i].dicId == dicId) {
            m_current = int(i);
            return;
        }
    throw HostError(HostErr::NoSuchField, QStringLiteral("Item not found in this collection: field %1 of %2.").arg(dicId).arg(m_table));
}

// The component passes column names; a display name is accepted as well.
void TableDictionary::SelectFieldByName(const QString& name)
{
    for (int pass = 0; pass < 2; ++pass)
        for (size_t i = 0; i < m_fields.size(); ++i)
            if ((pass == 0 ? m_fields[i].column : m_fields[i].name).compare(name, Qt::CaseInsensitive) == 0) {
                m_current = int(i);
                return;
            }
    throw HostError(HostErr::NoSuchField, QStringLiteral("Item not found in this collection: field '%1' of %2.").arg(name, m_table));
}

const TableDictionary::Code* TableDictionary::findCode(const QString& code) const
{
    const QString c = code.trimmed();
    for (const Code& k : m_codes)
        if (k.code.compare(c, Qt::CaseInsensitive) == 0)
            return &k;
    return nullptr;
}

QString TableDictionary::DecodeLong(const QString& code) const
{
    if (code.trimmed().isEmpty())
        return QString();
    const Code* k = findCode(code);
    return k ? k->longText : code;
}

QString TableDictionary::DecodeShort(const QString& code) const
{
    if (code.trimmed().isEmpty())
        return QString();
    const Code* k = findCode(code);
    return k ? k->shortText : code;
}

std::unique_ptr<Recordset> TableDictionary::FieldCodes(bool longText, bool sorted) const
{
    const int id = current().dicId;
    std::vector<const Code*> list;
    for (const Code& k : m_codes)
        if (k.dicId == id)
            list.push_back(&k);
    auto text = [longText](const Code* k) { return longText ? k->longText : k->shortText; };
    // Sorted: the catalogue's display order (m_codes keeps it); otherwise by code value.
    if (!sorted)
        std::stable_sort(list.begin(), list.end(), [](const Code* a, const Code* b) { return a->code < b->code; });
    QList<QVariantList> rows;
    for (const Code* k : list)
        rows.append(QVariantList{k->code, text(k)});
    return std::make_unique<Recordset>(QStringList{QStringLiteral("Code"), QStringLiteral("Description")}, rows);
}

std::vector<CodeListEntry> TableDictionary::FillCodeList() const
{
    const int id = current().dicId;
    std::vector<CodeListEntry> out;
    for (const Code& k : m_codes)
        if (k.dicId == id)
            out.push_back(CodeListEntry{k.longText, k.code});
    return out;
}

std::vector<FieldListEntry> TableDictionary::FillFieldList() const
{
    std::vector<FieldListEntry> out;
    for (const Field& f : m_fields)
        if (f.listed && (m_group.isEmpty() || f.group.compare(m_group, Qt::CaseInsensitive) == 0))
            out.push_back(FieldListEntry{f.name, f.dicId});
    return out;
}
