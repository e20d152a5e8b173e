#pragma once
// The demo database (60 listings, made once per program) behind a host whose identity a test
// may change; every statement sent is recorded. Sets gHost for its lifetime.
#include "entry/Host.h"
#include "host/DemoData.h"
#include "host/EmbeddedHost.h"
#include "PgTest.h"

#include <QStringList>
#include <QTemporaryDir>

class DemoHost : public TervaneCommon, public Database {
public:
    DemoHost() : real(EmbeddedHost::Open(folder()))
    {
        agentId = real->AgentId();
        officeId = real->OfficeId();
        gHost = this;
    }
    ~DemoHost() override { gHost = nullptr; }

    std::unique_ptr<EmbeddedHost> real;
    QStringList statements;
    QString agentId, officeId, statusList = QStringLiteral("2005,2006");
    int userLevel = 100, boardId = 0;

    std::unique_ptr<Recordset> OpenRecordset(int kind, const QString& sql, int cursor, int lock, int options) override
    {
        statements << sql;
        return real->Database().OpenRecordset(kind, sql, cursor, lock, options);
    }
    HostMainForm& MainForm() override { return real->MainForm(); }
    ::Database& Database() override { return *this; }
    ::AppEvents& AppEvents() override { return real->AppEvents(); }
    void CloseJob(const QVariant& j) override { real->CloseJob(j); }
    QString AppPath() const override { return real->AppPath(); }
    QString UserPath() const override { return real->UserPath(); }
    QString UserName() const override { return real->UserName(); }
    QString OfficeId() const override { return officeId; }
    QString AgentId() const override { return agentId; }
    int UserLevel() const override { return userLevel; }
    QString DataPath() const override { return real->DataPath(); }
    QString AccessKey() const override { return real->AccessKey(); }
    int BoardId() const override { return boardId; }
    QString StatusList() const override { return statusList; }
    QString HelpFile() const override { return real->HelpFile(); }
    std::unique_ptr<FieldDictionary> NewFieldDictionary(int kind) override { return real->NewFieldDictionary(kind); }
    PhotoLibrary& PhotoService() override { return real->PhotoService(); }

    // The first column of every row, unrecorded.
    QStringList Column(const QString& sql)
    {
        QStringList out;
        for (auto rs = real->Database().OpenRecordset(1, sql, 3, 1, 1); !rs->Eof(); rs->MoveNext())
            out << rs->Fields(0).toString();
        return out;
    }

private:
    static QString folder()
    {
        static QTemporaryDir dir;
        static const bool made = (GenerateDemoData(dir.path(), 60), UseTestServerFor(dir.path()), true);
        Q_UNUSED(made);
        return dir.path();
    }
};
