#pragma once
// The embedded host: stands in for the host application on a prepared data folder (see
// DataFolder.h). It owns the database connection, the photo service, the event source and the
// main-form stand-in, and reads the user's identity from host.ini. The database is the folder's
// SQLite file, or a PostgreSQL server (see DatabaseSetting).
#include "entry/Host.h"

#include <QPointer>
#include <QWidget>
#include <memory>

class HostDatabase;
class SqliteDatabase;
class PhotoService;

class EmbeddedMainForm : public HostMainForm {
public:
    QVariant Switch() const override { return m_switch; }
    void SetSwitch(const QVariant& value) override { m_switch = value; }
    QWidget* Window() const override { return m_window.data(); }
    void SetWindow(QWidget* window) { m_window = window; }

private:
    QVariant m_switch;
    QPointer<QWidget> m_window;
};

class EmbeddedHost : public QObject, public TervaneCommon {
    Q_OBJECT
public:
    // Throws HostError when dataDir holds no host.ini or no database, or the server cannot be
    // reached. database: as DatabaseSetting; empty means the setting in force for dataDir.
    static std::unique_ptr<EmbeddedHost> Open(const QString& dataDir, const QString& database = QString());
    // Which database a data folder uses: $PAGEWRIGHT_DATABASE, else Database= in host.ini's [Host]
    // section, else "" (the folder's SQLite file). A server is named by a URL
    // postgresql://USER@HOST:PORT/DB or postgresql:///DB?host=/socket/folder.
    static QString DatabaseSetting(const QString& dataDir);
    ~EmbeddedHost() override;

    EmbeddedMainForm& MainForm() override { return m_mainForm; }
    ::Database& Database() override;
    ::AppEvents& AppEvents() override { return m_events; }
    void CloseJob(const QVariant& jobIndex) override;
    QString AppPath() const override;
    QString UserPath() const override;
    QString UserName() const override { return m_userName; }
    QString OfficeId() const override { return m_officeId; }
    QString AgentId() const override { return m_agentId; }
    int UserLevel() const override { return m_userLevel; }
    QString DataPath() const override;
    QString AccessKey() const override { return m_accessKey; }
    int BoardId() const override { return m_boardId; }
    QString StatusList() const override { return m_statusList; }
    QString HelpFile() const override;
    std::unique_ptr<FieldDictionary> NewFieldDictionary(int databaseKind) override;
    PhotoLibrary& PhotoService() override;

    // The data folder as a local path (no trailing "/").
    QString DataFolderPath() const { return m_dir; }
    // Appends every statement the database receives to file, one per line, exactly as received.
    // An empty name stops logging. Returns false when the file cannot be opened for appending.
    bool SetSqlLog(const QString& file);
    // The job indexes closed so far, in order.
    const QList<int>& ClosedJobs() const { return m_closedJobs; }
    // The database connection (for the host's own tools and tests).
    HostDatabase& Native() { return *m_db; }
    // The SQLite connection; throws HostError when the host runs on a server.
    SqliteDatabase& Sqlite();
    // "" for the folder's SQLite file, else the server's URL without its password.
    QString DatabaseName() const { return m_databaseName; }

signals:
    void jobClosed(int jobIndex);

private:
    EmbeddedHost(const QString& dataDir, const QString& database);
    void logStatement(const QString& sql);

    QString m_dir;
    QString m_userName, m_agentId, m_officeId, m_statusList, m_accessKey, m_helpFile;
    int m_userLevel = 0;
    int m_boardId = 0;
    EmbeddedMainForm m_mainForm;
    ::AppEvents m_events;
    std::unique_ptr<HostDatabase> m_db;
    QString m_databaseName;
    std::unique_ptr<::PhotoService> m_photos;
    QString m_sqlLog;
    QList<int> m_closedJobs;
};
