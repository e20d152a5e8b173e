#pragma once
// A host with fixed answers, for testing the entry without a database.
#include "entry/Host.h"

#include <QStringList>

class FakeMainForm : public HostMainForm {
public:
    QVariant sw;
    QVariant Switch() const override { return sw; }
    void SetSwitch(const QVariant& v) override { sw = v; }
    QWidget* Window() const override { return nullptr; }
};

class FakeHost : public TervaneCommon {
public:
    FakeMainForm form;
    ::AppEvents events;
    QStringList calls; // operations in the order they were asked
    QString help = QStringLiteral("/help/pagewright.chm");
    QList<QVariant> closedJobs;

    HostMainForm& MainForm() override { calls << "MainForm"; return form; }
    ::Database& Database() override { throw HostError(91, QStringLiteral("Object variable not set")); }
    ::AppEvents& AppEvents() override { return events; }
    void CloseJob(const QVariant& j) override { closedJobs << j; }
    QString AppPath() const override { return QStringLiteral("/app/"); }
    QString UserPath() const override { return QStringLiteral("/app/Users/demo"); }
    QString UserName() const override { return QStringLiteral("demo"); }
    QString OfficeId() const override { return QStringLiteral("OF1"); }
    QString AgentId() const override { return QStringLiteral("AG1"); }
    int UserLevel() const override { return 100; }
    QString DataPath() const override { return QStringLiteral("/app"); }
    QString AccessKey() const override { return QStringLiteral("1"); }
    int BoardId() const override { return 0; }
    QString StatusList() const override { return {}; }
    QString HelpFile() const override { const_cast<FakeHost*>(this)->calls << "HelpFile"; return help; }
    std::unique_ptr<FieldDictionary> NewFieldDictionary(int) override { return nullptr; }
    PhotoLibrary& PhotoService() override { throw HostError(91, QStringLiteral("Object variable not set")); }
};
