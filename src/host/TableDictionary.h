#pragma once
// A field dictionary read from the catalogue tables of the host database (DicKinds, DicFields,
// DicCodes), so the fields, groups, codes and formats are data, not code.
#include "entry/Host.h"

#include <QHash>

class HostDatabase;

class TableDictionary : public FieldDictionary {
public:
    // Throws HostError when the kind is not in the catalogue.
    TableDictionary(HostDatabase& db, int databaseKind);

    int DatabaseKind() const override { return m_kind; }
    QString TableName() const override { return m_table; }
    QString KeyField() const override { return m_key; }

    void SelectField(int dicId) override;
    void SelectFieldByName(const QString& name) override;

    int DicId() const override { return current().dicId; }
    QString FieldName() const override { return current().name; }
    QString FieldColumnName() const override { return current().column; }
    int FieldDataType() const override { return current().dataType; }
    int FieldCodeType() const override { return current().codeType; }
    QString FieldExpression() const override { return current().expression; }
    QString FieldFormat() const override { return current().format; }

    QString DecodeLong(const QString& code) const override;
    QString DecodeShort(const QString& code) const override;
    std::unique_ptr<Recordset> FieldCodes(bool longText, bool sorted) const override;
    std::vector<CodeListEntry> FillCodeList() const override;

    void SetFieldGroup(const QString& groupCode) override { m_group = groupCode; }
    std::vector<FieldListEntry> FillFieldList() const override;

    quint8 Version() const override { return m_version; }
    void Reload() override;

private:
    struct Field {
        int dicId = 0;
        QString name, column, expression, format, group;
        int dataType = 10;
        int codeType = 0;
        bool listed = true;
    };
    struct Code {
        int dicId = 0;
        QString code, shortText, longText;
    };
    const Field& current() const;
    const Code* findCode(const QString& code) const;

    HostDatabase& m_db;
    int m_kind;
    QString m_table, m_key;
    quint8 m_version = 0;
    std::vector<Field> m_fields; // catalogue order (by DicId)
    std::vector<Code> m_codes;   // display order
    int m_current = -1;          // index into m_fields
    QString m_group;
};
