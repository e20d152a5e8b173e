#pragma once
// A small dictionary and a database that records every statement, for checking the exact
// SQL the document composes.
#include "entry/Host.h"
#include "entry/support_fakehost.h"

#include <QMap>
#include <QStringList>
#include <functional>

struct FakeField {
    FakeField(int id, const char* col, int type = 10, int code = 0, const QString& expr = {}, const QString& fmt = {})
        : dicId(id), column(QString::fromLatin1(col)), dataType(type), codeType(code), expression(expr), format(fmt) {}
    int dicId;
    QString column;
    int dataType;
    int codeType;
    QString expression;
    QString format;
};

class FakeDictionary : public FieldDictionary {
public:
    int kind = 1;
    QString table = QStringLiteral("Listings");
    QString key = QStringLiteral("ListNum");
    QList<FakeField> fields;
    QMap<QString, QPair<QString, QString>> codes; // code -> (short, long)
    int current = -1;
    quint8 version = 7;
    int reloads = 0;

    int DatabaseKind() const override { return kind; }
    QString TableName() const override { return table; }
    QString KeyField() const override { return key; }
    void SelectField(int id) override
    {
        for (int i = 0; i < fields.size(); ++i)
            if (fields[i].dicId == id) { current = i; return; }
        throw HostError(HostErr::NoSuchField, QStringLiteral("No field %1").arg(id));
    }
    void SelectFieldByName(const QString& name) override
    {
        for (int i = 0; i < fields.size(); ++i)
            if (fields[i].column.compare(name, Qt::CaseInsensitive) == 0) { current = i; return; }
        throw HostError(HostErr::NoSuchField, QStringLiteral("No field ") + name);
    }
    const FakeField& cur() const
    {
        if (current < 0)
            throw HostError(HostErr::NoSuchField, QStringLiteral("No current field"));
        return fields[current];
    }
    int DicId() const override { return cur().dicId; }
    QString FieldName() const override { return cur().column; }
    QString FieldColumnName() const override { return cur().column; }
    int FieldDataType() const override { return cur().dataType; }
    int FieldCodeType() const override { return cur().codeType; }
    QString FieldExpression() const override { return cur().expression; }
    QString FieldFormat() const override { return cur().format; }
    QString DecodeLong(const QString& c) const override { return codes.contains(c) ? codes[c].second : c; }
    QString DecodeShort(const QString& c) const override { return codes.contains(c) ? codes[c].first : c; }
    std::unique_ptr<Recordset> FieldCodes(bool, bool) const override { return std::make_unique<Recordset>(); }
    std::vector<CodeListEntry> FillCodeList() const override { return {}; }
    void SetFieldGroup(const QString&) override {}
    std::vector<FieldListEntry> FillFieldList() const override { return {}; }
    quint8 Version() const override { return version; }
    void Reload() override { ++reloads; }
};

class RecordingDatabase : public Database {
public:
    QStringList statements;
    QList<int> kinds;
    // Answers a statement; the default is an empty result.
    std::function<Recordset(const QString&)> answer = [](const QString&) { return Recordset(); };

    std::unique_ptr<Recordset> OpenRecordset(int kind, const QString& sql, int cursor, int lock, int options) override
    {
        Q_ASSERT(cursor == 3 && lock == 1 && options == 1);
        statements << sql;
        kinds << kind;
        return std::make_unique<Recordset>(answer(sql));
    }
};

class FakePhotos : public PhotoLibrary {
public:
    QStringList calls;
    PhotoResult GetPhotoFile(TervaneCommon&, const QString& listNum, int seq, const QString& version, int mode) override
    {
        calls << QStringLiteral("listing %1 %2 %3 %4").arg(listNum).arg(seq).arg(version).arg(mode);
        if (seq > 2)
            return {QString(), 1};
        return {QStringLiteral("/photos/%1_%2.jpg").arg(listNum).arg(seq), 0};
    }
    PhotoResult GetPhotoFile(TervaneCommon&, const QString& id, int kind, const QString& op) override
    {
        calls << QStringLiteral("roster %1 %2 %3").arg(id).arg(kind).arg(op);
        return {QString(), 1};
    }
};

// The entry tests' fixed host, with a recording database, a photo service and settable identity.
class DataHost : public FakeHost {
public:
    RecordingDatabase db;
    FakePhotos photos;
    QString appPath = QStringLiteral("/nowhere/");
    QString statusList;
    QString accessKey = QStringLiteral("'K9'");
    QString agentId = QStringLiteral("A100");

    ::Database& Database() override { return db; }
    QString AppPath() const override { return appPath; }
    QString UserPath() const override { return appPath + QStringLiteral("Users\\demo"); }
    QString AgentId() const override { return agentId; }
    QString DataPath() const override { return appPath; }
    QString AccessKey() const override { return accessKey; }
    QString StatusList() const override { return statusList; }
    PhotoLibrary& PhotoService() override { return photos; }
};
