#include "host/EmbeddedHost.h"
#include "host/DataFolder.h"
#include "host/PgDatabase.h"
#include "host/PhotoService.h"
#include "host/SqliteDatabase.h"
#include "host/TableDictionary.h"
#include "entry/PrivateProfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

QString EmbeddedHost::DatabaseSetting(const QString& dataDir)
{
    const QString env = qEnvironmentVariable("PAGEWRIGHT_DATABASE").trimmed();
    if (!env.isEmpty())
        return env;
    const QString ini = QDir::cleanPath(QDir(dataDir).absolutePath()) + QLatin1Char('/') + QLatin1String(DataFolder::HostIniName);
    return PrivateProfile::GetString(QLatin1String(DataFolder::HostSection), QStringLiteral("Database"), QString(), ini).trimmed();
}

std::unique_ptr<EmbeddedHost> EmbeddedHost::Open(const QString& dataDir, const QString& databaseIn)
{
    const QString dir = QDir::cleanPath(QDir(dataDir).absolutePath());
    const QString ini = dir + QLatin1Char('/') + QLatin1String(DataFolder::HostIniName);
    const QString db = dir + QLatin1Char('/') + QLatin1String(DataFolder::DatabaseName);
    const QString database = databaseIn.isEmpty() ? DatabaseSetting(dir) : databaseIn;
    if (!database.isEmpty() && !PgDatabase::IsPostgresUrl(database))
        throw HostError(HostErr::ConnectFailed, QStringLiteral("'%1' is not a database this program can open; name a PostgreSQL server as postgresql://USER@HOST:PORT/DB.")
                                                    .arg(PgDatabase::WithoutPassword(database)));
    if (!QFileInfo(ini).isFile() || (database.isEmpty() && !QFileInfo(db).isFile()))
        throw HostError(HostErr::PathNotFound,
                        QStringLiteral("The data folder '%1' is not prepared (no %2 or %3); run 'pagewright demo --data \"%1\"' first.")
                            .arg(dir, QLatin1String(DataFolder::HostIniName), QLatin1String(DataFolder::DatabaseName)));
    return std::unique_ptr<EmbeddedHost>(new EmbeddedHost(dir, database));
}

EmbeddedHost::EmbeddedHost(const QString& dataDir, const QString& database) : m_dir(dataDir)
{
    const QString ini = m_dir + QLatin1Char('/') + QLatin1String(DataFolder::HostIniName);
    const QString section = QLatin1String(DataFolder::HostSection);
    auto get = [&](const char* key, const QString& def = QString()) { return PrivateProfile::GetString(section, QLatin1String(key), def, ini); };
    m_userName = get("UserName");
    if (m_userName.isEmpty())
        throw HostError(HostErr::BadFileFormat, QStringLiteral("'%1' names no UserName in its [Host] section.").arg(ini));
    m_agentId = get("AgentId");
    m_officeId = get("OfficeId");
    m_userLevel = get("UserLevel", QStringLiteral("0")).toInt();
    m_statusList = get("StatusList");
    m_accessKey = get("AccessKey");
    m_boardId = get("BoardId", QStringLiteral("0")).toInt();
    m_helpFile = get("HelpFile");
    if (database.isEmpty()) {
        m_db = std::make_unique<SqliteDatabase>(m_dir + QLatin1Char('/') + QLatin1String(DataFolder::DatabaseName));
    } else {
        m_db = std::make_unique<PgDatabase>(database);
        m_databaseName = PgDatabase::WithoutPassword(database);
    }
    m_db->SetStatementObserver([this](const QString& sql) { logStatement(sql); });
    m_photos = std::make_unique<::PhotoService>(*m_db, m_dir + QStringLiteral("/Photos"));
}

EmbeddedHost::~EmbeddedHost() = default;

SqliteDatabase& EmbeddedHost::Sqlite()
{
    if (auto* s = dynamic_cast<SqliteDatabase*>(m_db.get()))
        return *s;
    throw HostError(HostErr::ConnectFailed, QStringLiteral("This host runs on the database server '%1', not on SQLite.").arg(m_databaseName));
}

::Database& EmbeddedHost::Database()
{
    return *m_db;
}

PhotoLibrary& EmbeddedHost::PhotoService()
{
    return *m_photos;
}

void EmbeddedHost::CloseJob(const QVariant& jobIndex)
{
    const int job = jobIndex.toInt();
    m_closedJobs.append(job);
    emit jobClosed(job);
}

QString EmbeddedHost::AppPath() const
{
    return DataFolder::HostPathOf(m_dir) + QLatin1Char('\\');
}

QString EmbeddedHost::UserPath() const
{
    return AppPath() + QStringLiteral("Users\\") + m_userName;
}

QString EmbeddedHost::DataPath() const
{
    return DataFolder::HostPathOf(m_dir);
}

// A relative help file lies in the data folder.
QString EmbeddedHost::HelpFile() const
{
    if (m_helpFile.isEmpty() || m_helpFile.startsWith(QLatin1Char('\\')) || m_helpFile.startsWith(QLatin1Char('/')) || m_helpFile.contains(QLatin1Char(':')))
        return m_helpFile;
    return AppPath() + m_helpFile;
}

std::unique_ptr<FieldDictionary> EmbeddedHost::NewFieldDictionary(int databaseKind)
{
    return std::make_unique<TableDictionary>(*m_db, databaseKind);
}

bool EmbeddedHost::SetSqlLog(const QString& file)
{
    m_sqlLog.clear();
    if (file.isEmpty())
        return true;
    QFile f(file);
    if (!f.open(QIODevice::Append))
        return false;
    m_sqlLog = file;
    return true;
}

void EmbeddedHost::logStatement(const QString& sql)
{
    if (m_sqlLog.isEmpty())
        return;
    QFile f(m_sqlLog);
    if (f.open(QIODevice::Append))
        f.write(sql.toUtf8() + '\n');
}
