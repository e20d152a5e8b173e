#pragma once
// A host without a database for the window benchmarks: identity and folders only.
#include "entry/Host.h"
#include "entry/HostError.h"

#include <QString>
#include <memory>

class BenchHost : public TervaneCommon {
public:
    explicit BenchHost(const QString& dir) : m_dir(dir) {}
    class Form : public HostMainForm {
    public:
        QVariant Switch() const override { return 1; }
        void SetSwitch(const QVariant&) override {}
        QWidget* Window() const override { return nullptr; }
    } form;
    class NoDb : public Database {
    public:
        std::unique_ptr<Recordset> OpenRecordset(int, const QString&, int, int, int) override
        {
            throw HostError(3078, QStringLiteral("no database"));
        }
    } db;
    ::AppEvents events;
    HostMainForm& MainForm() override { return form; }
    ::Database& Database() override { return db; }
    ::AppEvents& AppEvents() override { return events; }
    void CloseJob(const QVariant&) override {}
    QString AppPath() const override { return m_dir + QLatin1Char('/'); }
    QString UserPath() const override { return m_dir + QStringLiteral("/Users/bench"); }
    QString UserName() const override { return QStringLiteral("bench"); }
    QString OfficeId() const override { return {}; }
    QString AgentId() const override { return {}; }
    int UserLevel() const override { return 100; }
    QString DataPath() const override { return m_dir; }
    QString AccessKey() const override { return {}; }
    int BoardId() const override { return 0; }
    QString StatusList() const override { return {}; }
    QString HelpFile() const override { return {}; }
    std::unique_ptr<FieldDictionary> NewFieldDictionary(int) override { return nullptr; }
    PhotoLibrary& PhotoService() override { throw HostError(91, QStringLiteral("no photos")); }

private:
    QString m_dir;
};
