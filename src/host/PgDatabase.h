#pragma once
// The host's data-access object on a PostgreSQL server (libpq). Each call translates one Jet
// statement with the PostgreSQL dialect and runs it on a read-only session: the session takes the
// role pagewright_reader when it may, every transaction is read-only, and each statement has a
// time limit. Values come back typed as the SQLite host gives them: whole numbers as qlonglong,
// other numbers as double, text, dates as ISO text, Booleans as -1/0.
#include "host/HostDatabase.h"
#include "host/JetSql.h"

typedef struct pg_conn PGconn;

class PgDatabase : public HostDatabase {
public:
    // The read-only role a server grants to the accounts the designer uses.
    static constexpr const char* ReaderRole = "pagewright_reader";
    static constexpr int DefaultTimeoutMs = 30000;

    // url: postgresql://USER@HOST:PORT/DB (or postgresql:///DB?host=/socket/folder). Throws
    // HostError(ConnectFailed) when the server cannot be reached or refuses the login.
    explicit PgDatabase(const QString& url);
    ~PgDatabase() override;
    PgDatabase(const PgDatabase&) = delete;
    PgDatabase& operator=(const PgDatabase&) = delete;

    std::unique_ptr<Recordset> OpenRecordset(int kind, const QString& sql, int cursor = 3, int lock = 1,
                                             int options = 1) override;
    std::unique_ptr<Recordset> RunNative(const QString& sql, const QVariantList& params = {}) override;

    // The time limit of one statement; 0 means none.
    void SetStatementTimeout(int milliseconds);
    // The URL without its password, for messages.
    QString DisplayUrl() const { return m_displayUrl; }
    // The role the statements run as.
    QString CurrentRole();

    // True for the URLs this class opens.
    static bool IsPostgresUrl(const QString& url);
    // The same URL without a password.
    static QString WithoutPassword(const QString& url);

private:
    void prepareSession();
    void loadCatalogue();
    std::unique_ptr<Recordset> run(const QString& sql, const QVariantList& params, const QString& original);
    void exec(const char* sql); // a session setting; throws on failure

    PGconn* m_conn = nullptr;
    QString m_displayUrl;
    JetSql::Catalogue m_catalogue;
};
