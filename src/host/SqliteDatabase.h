#pragma once
// The host's data-access object on an SQLite file: each call translates one Jet statement and
// runs it on a read-only connection, returning every row at once.
#include "host/HostDatabase.h"

struct sqlite3;

class SqliteDatabase : public HostDatabase {
public:
    // Opens the file read-only; throws HostError when it cannot.
    explicit SqliteDatabase(const QString& file);
    ~SqliteDatabase() override;
    SqliteDatabase(const SqliteDatabase&) = delete;
    SqliteDatabase& operator=(const SqliteDatabase&) = delete;

    std::unique_ptr<Recordset> OpenRecordset(int kind, const QString& sql, int cursor = 3, int lock = 1,
                                             int options = 1) override;

    // Runs SQLite SQL as it is (the host's own catalogue queries); not logged, not translated.
    // Parameters bind to ?1, ?2, ...
    std::unique_ptr<Recordset> RunNative(const QString& sqliteSql, const QVariantList& params = {}) override;

    QString File() const { return m_file; }

private:
    std::unique_ptr<Recordset> run(const QString& sqliteSql, const QVariantList& params, const QString& original);

    QString m_file;
    sqlite3* m_db = nullptr;
};
