#pragma once
// A small field dictionary with field groups, for the field list and the field drop tests: the
// group field (entry 5) carries the group codes, every other entry is a field of one group.
#include "entry/Host.h"
#include "properties/FieldListOwner.h"

#include <QStringList>

class GroupDictionary : public FieldDictionary {
public:
    struct Field {
        int dicId;
        QString name, column;
        int dataType;
        QString group;
        QString format;
    };
    int kind = 1;
    bool groupFieldMissing = false;
    // Group codes and captions in display order (deliberately not alphabetical).
    QList<QPair<QString, QString>> groups = {{QStringLiteral("GEN"), QStringLiteral("General")},
                                             {QStringLiteral("FIN"), QStringLiteral("Financial")},
                                             {QStringLiteral("ADR"), QStringLiteral("Address")}};
    QList<Field> fields = {
        {1, QStringLiteral("List Number"), QStringLiteral("ListNum"), 4, QStringLiteral("GEN"), QStringLiteral("0")},
        {2, QStringLiteral("List Price"), QStringLiteral("ListPrice"), 5, QStringLiteral("FIN"), QStringLiteral("Currency")},
        {3, QStringLiteral("List Date"), QStringLiteral("ListDate"), 8, QStringLiteral("GEN"), QStringLiteral("Short Date")},
        {6, QStringLiteral("Street Name"), QStringLiteral("StreetName"), 10, QStringLiteral("ADR"), QString()},
        {7, QStringLiteral("Taxes"), QStringLiteral("Taxes"), 5, QStringLiteral("FIN"), QStringLiteral("Currency")},
    };
    QStringList groupCalls; // every SetFieldGroup argument, in order
    QList<int> selected;    // every SelectField argument, in order

    int DatabaseKind() const override { return kind; }
    QString TableName() const override { return QStringLiteral("Listings"); }
    QString KeyField() const override { return QStringLiteral("ListNum"); }
    void SelectField(int dicId) override
    {
        selected << dicId;
        if (dicId == 5 && !groupFieldMissing) {
            m_current = -1;
            return;
        }
        for (int i = 0; i < fields.size(); ++i)
            if (fields[i].dicId == dicId) {
                m_current = i;
                return;
            }
        throw HostError(3270, QStringLiteral("Property not found."));
    }
    void SelectFieldByName(const QString&) override { throw HostError(3270, QStringLiteral("Property not found.")); }
    int DicId() const override { return m_current < 0 ? 5 : fields[m_current].dicId; }
    QString FieldName() const override { return m_current < 0 ? QStringLiteral("Field Group") : fields[m_current].name; }
    QString FieldColumnName() const override { return m_current < 0 ? QStringLiteral("FieldGroup") : fields[m_current].column; }
    int FieldDataType() const override { return m_current < 0 ? 10 : fields[m_current].dataType; }
    int FieldCodeType() const override { return m_current < 0 ? 1 : 0; }
    QString FieldExpression() const override { return {}; }
    QString FieldFormat() const override { return m_current < 0 ? QString() : fields[m_current].format; }
    QString DecodeLong(const QString& code) const override { return code; }
    QString DecodeShort(const QString& code) const override { return code; }
    std::unique_ptr<Recordset> FieldCodes(bool, bool) const override
    {
        QList<QVariantList> rows;
        if (m_current < 0)
            for (const auto& g : groups)
                rows.append(QVariantList{g.first, g.second});
        return std::make_unique<Recordset>(QStringList{QStringLiteral("Code"), QStringLiteral("Description")}, rows);
    }
    std::vector<CodeListEntry> FillCodeList() const override { return {}; }
    void SetFieldGroup(const QString& code) override
    {
        groupCalls << code;
        m_group = code;
    }
    std::vector<FieldListEntry> FillFieldList() const override
    {
        std::vector<FieldListEntry> out;
        for (const Field& f : fields)
            if (m_group.isEmpty() || f.group == m_group)
                out.push_back({f.name, f.dicId});
        return out;
    }
    quint8 Version() const override { return 3; }
    void Reload() override {}

private:
    int m_current = -1;
    QString m_group;
};

// The design window as the field list sees it.
class RecordingOwner : public FieldListOwner {
public:
    bool dragField = false;
    QList<QPair<QString, int>> added;
    bool IsDragField() const override { return dragField; }
    void SetDragField(bool on) override { dragField = on; }
    void AddFieldFromList(const QString& name, int dicId) override { added.append({name, dicId}); }
};
