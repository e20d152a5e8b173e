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

    // What one statement may cost before it is stopped with an error: wall-clock time and the
    // bytes of its result held in memory. A cross join in a sub-report must not hang the report.
    struct Budget {
        int timeLimitMs = 10000;
        qint64 maxResultBytes = qint64(256) << 20;
    };
    void SetBudget(const Budget& budget) { m_budget = budget; }
    Budget CurrentBudget() const { return m_budget; }

private:
    std::unique_ptr<Recordset> run(const QString& sqliteSql, const QVariantList& params, const QString& original);

    QString m_file;
    sqlite3* m_db = nullptr;
    Budget m_budget;
    qint64 m_deadline = 0; // msecs since the epoch when the running statement is stopped; 0: none
    static int progress(void* self);
};
