#include "host/SqliteDatabase.h"
#include "host/HostValue.h"
#include "host/JetSql.h"

#include <sqlite3.h>

#include <QDateTime>
#include <QFileInfo>
#include <vector>

namespace {
constexpr qsizetype kMaxRows = 2000000;
constexpr int kBusyTimeoutMs = 5000;        // a writer's brief lock is waited for, not an error
constexpr int kProgressSteps = 20000;       // VM instructions between two looks at the clock
constexpr qint64 kHeapLimit = qint64(1) << 30; // no statement may make SQLite itself take more

qint64 nowMs() { return QDateTime::currentMSecsSinceEpoch(); }
}

int SqliteDatabase::progress(void* self)
{
    auto* db = static_cast<SqliteDatabase*>(self);
    return db->m_deadline > 0 && nowMs() > db->m_deadline ? 1 : 0; // non-zero interrupts the statement
}

SqliteDatabase::SqliteDatabase(const QString& file) : m_file(file)
{
    if (!QFileInfo(file).isFile())
        throw HostError(HostErr::FileNotFound, QStringLiteral("Could not find the database file '%1'.").arg(file));
    // Read-write with query_only rather than read-only: a writer that died mid-transaction
    // leaves a hot journal (or WAL) that must be rolled back before anything can be read, and a
    // read-only connection cannot do that ("attempt to write a readonly database"). query_only
    // and the read-only check on every statement still keep the data unchanged. A file we may
    // not write is opened read-only, which is all that is possible then.
    const QByteArray local = file.toUtf8();
    int rc = sqlite3_open_v2(local.constData(), &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_FULLMUTEX, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_close(m_db);
        m_db = nullptr;
        rc = sqlite3_open_v2(local.constData(), &m_db, SQLITE_OPEN_READONLY | SQLITE_OPEN_FULLMUTEX, nullptr);
    }
    if (rc != SQLITE_OK) {
        const QString msg = m_db ? QString::fromUtf8(sqlite3_errmsg(m_db)) : QStringLiteral("out of memory");
        sqlite3_close(m_db);
        m_db = nullptr;
        throw HostError(HostErr::FileAccess, QStringLiteral("Could not open the database '%1': %2").arg(file, msg));
    }
    sqlite3_busy_timeout(m_db, kBusyTimeoutMs);
    sqlite3_exec(m_db, "PRAGMA query_only = 1", nullptr, nullptr, nullptr);
    sqlite3_progress_handler(m_db, kProgressSteps, &SqliteDatabase::progress, this);
    sqlite3_hard_heap_limit64(kHeapLimit);
    JetSql::RegisterJetFunctions(m_db);
}

SqliteDatabase::~SqliteDatabase()
{
    sqlite3_close(m_db);
}

std::unique_ptr<Recordset> SqliteDatabase::OpenRecordset(int, const QString& sql, int, int, int)
{
    if (m_observer)
        m_observer(sql);
    return run(JetSql::Translate(sql), {}, sql);
}

std::unique_ptr<Recordset> SqliteDatabase::RunNative(const QString& sqliteSql, const QVariantList& params)
{
    return run(sqliteSql, params, sqliteSql);
}

std::unique_ptr<Recordset> SqliteDatabase::run(const QString& sqliteSql, const QVariantList& params, const QString& original)
{
    const QByteArray text = sqliteSql.toUtf8();
    sqlite3_stmt* stmt = nullptr;
    const char* tail = nullptr;
    m_deadline = m_budget.timeLimitMs > 0 ? nowMs() + m_budget.timeLimitMs : 0;
    struct NoDeadline {
        qint64& d;
        ~NoDeadline() { d = 0; }
    } noDeadline{m_deadline};
    auto fail = [&](const QString& what) -> HostError {
        const int code = sqlite3_errcode(m_db);
        if (code == SQLITE_INTERRUPT)
            return HostError(HostErr::Timeout, QStringLiteral("The statement took longer than %1 s and was stopped (statement: %2)")
                                                      .arg(m_budget.timeLimitMs / 1000.0).arg(original));
        if (code == SQLITE_NOMEM)
            return HostError(HostErr::OutOfMemory, QStringLiteral("Out of memory: the statement needs more than the database may use (statement: %1)").arg(original));
        return HostError(HostErr::SqlExecute, QStringLiteral("%1: %2 (statement: %3)").arg(what, QString::fromUtf8(sqlite3_errmsg(m_db)), original));
    };
    if (sqlite3_prepare_v2(m_db, text.constData(), int(text.size()), &stmt, &tail) != SQLITE_OK)
        throw fail(QStringLiteral("The database could not prepare the statement"));
    struct Finalize {
        sqlite3_stmt* s;
        ~Finalize() { sqlite3_finalize(s); }
    } guard{stmt};
    if (!stmt)
        throw HostError(HostErr::SqlSyntax, QStringLiteral("The statement is empty."));
    if (tail && QByteArray(tail).trimmed().size() > 0)
        throw HostError(HostErr::MultipleStatements, QStringLiteral("Characters found after end of SQL statement."));
    if (!sqlite3_stmt_readonly(stmt))
        throw HostError(HostErr::SqlExecute, QStringLiteral("Only SELECT statements can run on this connection."));

    for (int i = 0; i < params.size(); ++i) {
        const QVariant& v = params[i];
        if (v.isNull())
            sqlite3_bind_null(stmt, i + 1);
        else if (v.typeId() == QMetaType::Int || v.typeId() == QMetaType::LongLong)
            sqlite3_bind_int64(stmt, i + 1, v.toLongLong());
        else if (v.typeId() == QMetaType::Double)
            sqlite3_bind_double(stmt, i + 1, v.toDouble());
        else {
            const QByteArray b = v.toString().toUtf8();
            sqlite3_bind_text(stmt, i + 1, b.constData(), int(b.size()), SQLITE_TRANSIENT);
        }
    }

    const int cols = sqlite3_column_count(stmt);
    QStringList names;
    std::vector<HostValue::ColumnType> types;
    for (int c = 0; c < cols; ++c) {
        names << QString::fromUtf8(sqlite3_column_name(stmt, c));
        // Dates are ISO text and Booleans -1/0 on disk; the declared type says which to hand out typed.
        types.push_back(HostValue::TypeOfDeclared(QString::fromUtf8(sqlite3_column_decltype(stmt, c))));
    }
    QList<QVariantList> rows;
    qint64 resultBytes = 0;
    for (;;) {
        const int rc = sqlite3_step(stmt);
        if (rc == SQLITE_DONE)
            break;
        if (rc != SQLITE_ROW)
            throw fail(QStringLiteral("The database could not run the statement"));
        // Every row is held in memory; a runaway join must not take the machine with it.
        if (rows.size() >= kMaxRows)
            throw HostError(HostErr::SqlExecute, QStringLiteral("The result has more than %1 rows (statement: %2)").arg(kMaxRows).arg(original));
        for (int c = 0; c < cols; ++c) {
            // The type first: asking a number for its bytes would convert it to text.
            const int type = sqlite3_column_type(stmt, c);
            resultBytes += 16 + (type == SQLITE_TEXT || type == SQLITE_BLOB ? 2 * qint64(sqlite3_column_bytes(stmt, c)) : 8);
        }
        if (m_budget.maxResultBytes > 0 && resultBytes > m_budget.maxResultBytes)
            throw HostError(HostErr::OutOfMemory, QStringLiteral("Out of memory: the result is larger than %1 MB (statement: %2)")
                                                      .arg(m_budget.maxResultBytes / 1048576.0).arg(original));
        QVariantList row;
        row.reserve(cols);
        for (int c = 0; c < cols; ++c) {
            switch (sqlite3_column_type(stmt, c)) {
            case SQLITE_INTEGER: row << QVariant(qlonglong(sqlite3_column_int64(stmt, c))); break;
            case SQLITE_FLOAT: row << QVariant(sqlite3_column_double(stmt, c)); break;
            case SQLITE_NULL: row << QVariant(); break;
            case SQLITE_BLOB:
                row << QVariant(QByteArray(static_cast<const char*>(sqlite3_column_blob(stmt, c)), sqlite3_column_bytes(stmt, c)));
                break;
            default:
                row << QVariant(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, c)), sqlite3_column_bytes(stmt, c)));
            }
            if (types[size_t(c)] != HostValue::ColumnType::Other)
                row.last() = HostValue::Typed(row.last(), types[size_t(c)]);
        }
        rows.append(std::move(row));
    }
    return std::make_unique<Recordset>(names, rows);
}
