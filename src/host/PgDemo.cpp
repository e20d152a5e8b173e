#include "host/PgDemo.h"
#include "host/PgDatabase.h"
#include "host/HostValue.h"
#include "entry/HostError.h"

#include <libpq-fe.h>
#include <sqlite3.h>

#include <QSet>
#include <QStringList>
#include <QUrl>
#include <QUrlQuery>

namespace {

QString quoted(const QString& name)
{
    QString s = name;
    return QLatin1Char('"') + s.replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
}

// A writable connection for loading; the host itself never writes.
class Writer {
public:
    explicit Writer(const QString& url) : m_url(PgDatabase::WithoutPassword(url))
    {
        const QByteArray u = url.toUtf8();
        const char* keys[] = {"application_name", "connect_timeout", "dbname", "client_encoding", nullptr};
        const char* values[] = {"pagewright demo", "10", u.constData(), "UTF8", nullptr};
        m_conn = PQconnectdbParams(keys, values, 1);
        if (!m_conn || PQstatus(m_conn) != CONNECTION_OK) {
            const QString why = m_conn ? QString::fromUtf8(PQerrorMessage(m_conn)).trimmed() : QStringLiteral("out of memory");
            PQfinish(m_conn);
            throw HostError(HostErr::ConnectFailed, QStringLiteral("Could not connect to the database server '%1': %2").arg(m_url, why));
        }
        exec(QStringLiteral("SET client_min_messages = warning; SET DateStyle = ISO, YMD"));
    }
    ~Writer() { PQfinish(m_conn); }

    void exec(const QString& sql)
    {
        PGresult* r = PQexec(m_conn, sql.toUtf8().constData());
        const ExecStatusType st = PQresultStatus(r);
        if (st != PGRES_COMMAND_OK && st != PGRES_TUPLES_OK && st != PGRES_COPY_IN) {
            const QString why = QString::fromUtf8(PQresultErrorMessage(r)).trimmed();
            PQclear(r);
            throw HostError(HostErr::SqlExecute, QStringLiteral("The database server '%1' refused the demo data: %2").arg(m_url, why));
        }
        PQclear(r);
    }
    bool exists(const QString& sql)
    {
        PGresult* r = PQexec(m_conn, sql.toUtf8().constData());
        const bool yes = PQresultStatus(r) == PGRES_TUPLES_OK && PQntuples(r) == 1 && QByteArray(PQgetvalue(r, 0, 0)) == "t";
        PQclear(r);
        return yes;
    }
    void copy(const QString& table, const QByteArray& data)
    {
        exec(QStringLiteral("COPY %1 FROM STDIN").arg(quoted(table)));
        if (PQputCopyData(m_conn, data.constData(), int(data.size())) != 1 || PQputCopyEnd(m_conn, nullptr) != 1)
            throw HostError(HostErr::SqlExecute, QStringLiteral("Copying %1 to '%2' failed: %3").arg(table, m_url, QString::fromUtf8(PQerrorMessage(m_conn)).trimmed()));
        while (PGresult* r = PQgetResult(m_conn)) {
            const bool ok = PQresultStatus(r) == PGRES_COMMAND_OK;
            const QString why = QString::fromUtf8(PQresultErrorMessage(r)).trimmed();
            PQclear(r);
            if (!ok)
                throw HostError(HostErr::SqlExecute, QStringLiteral("Copying %1 to '%2' failed: %3").arg(table, m_url, why));
        }
    }

private:
    PGconn* m_conn = nullptr;
    QString m_url;
};

class Reader {
public:
    explicit Reader(const QString& file)
    {
        if (sqlite3_open_v2(file.toUtf8().constData(), &m_db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
            sqlite3_close(m_db);
            throw HostError(HostErr::FileAccess, QStringLiteral("Could not open the demo database '%1'.").arg(file));
        }
    }
    ~Reader() { sqlite3_close(m_db); }
    // Runs sql; calls row(stmt) per row.
    template <typename F> void each(const QString& sql, F row)
    {
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(m_db, sql.toUtf8().constData(), -1, &st, nullptr) != SQLITE_OK) {
            sqlite3_finalize(st);
            throw HostError(HostErr::BadFileFormat, QStringLiteral("The demo database cannot be read: %1").arg(QString::fromUtf8(sqlite3_errmsg(m_db))));
        }
        while (sqlite3_step(st) == SQLITE_ROW)
            row(st);
        sqlite3_finalize(st);
    }

private:
    sqlite3* m_db = nullptr;
};

QString text(sqlite3_stmt* st, int c)
{
    return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, c)), sqlite3_column_bytes(st, c));
}

// One value in COPY's text format.
void copyValue(QByteArray& out, sqlite3_stmt* st, int c)
{
    switch (sqlite3_column_type(st, c)) {
    case SQLITE_NULL: out += "\\N"; return;
    case SQLITE_INTEGER: out += QByteArray::number(sqlite3_column_int64(st, c)); return;
    case SQLITE_FLOAT: out += QByteArray::number(sqlite3_column_double(st, c), 'g', 17); return;
    default: break;
    }
    const QByteArray raw(reinterpret_cast<const char*>(sqlite3_column_text(st, c)), sqlite3_column_bytes(st, c));
    for (char ch : raw) {
        switch (ch) {
        case '\\': out += "\\\\"; break;
        case '\t': out += "\\t"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        default: out += ch;
        }
    }
}

} // namespace

namespace PgDemo {

void Load(const QString& sqliteFile, const QString& url, const std::function<void(int, int)>& progress)
{
    Reader in(sqliteFile);
    QStringList tables;
    in.each(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite_%' ORDER BY name"),
            [&](sqlite3_stmt* st) { tables << text(st, 0); });
    // The catalogue says which columns hold dates (data type 8).
    QSet<QString> dateColumns;
    if (tables.contains(QLatin1String("DicFields")) && tables.contains(QLatin1String("DicKinds")))
        in.each(QStringLiteral("SELECT k.TableName, f.ColumnName FROM DicFields f JOIN DicKinds k ON k.Kind = f.Kind WHERE f.DataType = 8"),
                [&](sqlite3_stmt* st) { dateColumns << (text(st, 0) + QLatin1Char('.') + text(st, 1)).toLower(); });

    Writer out(url);
    out.exec(QStringLiteral("BEGIN"));
    int done = 0;
    for (const QString& table : tables) {
        QStringList columns, keys;
        in.each(QStringLiteral("PRAGMA table_info(%1)").arg(quoted(table)), [&](sqlite3_stmt* st) {
            const QString name = text(st, 1);
            const QString type = text(st, 2).toUpper();
            QString pgType = QStringLiteral("text");
            if (HostValue::TypeOfDeclared(type) == HostValue::ColumnType::Boolean)
                pgType = QStringLiteral("smallint"); // a Jet yes/no: 16-bit, -1 and 0
            else if (type.contains(QLatin1String("INT")))
                pgType = QStringLiteral("bigint");
            else if (type.contains(QLatin1String("REAL")) || type.contains(QLatin1String("FLOA")) || type.contains(QLatin1String("DOUB")))
                pgType = QStringLiteral("double precision");
            else if (dateColumns.contains((table + QLatin1Char('.') + name).toLower()))
                pgType = QStringLiteral("date");
            columns << quoted(name) + QLatin1Char(' ') + pgType + (sqlite3_column_int(st, 3) ? QStringLiteral(" NOT NULL") : QString());
            if (sqlite3_column_int(st, 5) > 0)
                keys << quoted(name);
        });
        if (!keys.isEmpty())
            columns << QStringLiteral("PRIMARY KEY (%1)").arg(keys.join(QStringLiteral(", ")));
        out.exec(QStringLiteral("DROP TABLE IF EXISTS %1 CASCADE").arg(quoted(table)));
        out.exec(QStringLiteral("CREATE TABLE %1 (%2)").arg(quoted(table), columns.join(QStringLiteral(", "))));
        QByteArray data;
        in.each(QStringLiteral("SELECT * FROM %1").arg(quoted(table)), [&](sqlite3_stmt* st) {
            for (int c = 0; c < sqlite3_column_count(st); ++c) {
                if (c) data += '\t';
                copyValue(data, st, c);
            }
            data += '\n';
        });
        out.copy(table, data);
        if (progress)
            progress(++done, int(tables.size()));
    }
    // The role the host's sessions take: it may read these tables and nothing else.
    const QString role = QLatin1String(PgDatabase::ReaderRole);
    out.exec(QStringLiteral("DO $$ BEGIN IF NOT EXISTS (SELECT 1 FROM pg_catalog.pg_roles WHERE rolname = '%1') THEN "
                            "CREATE ROLE %1 NOLOGIN; END IF; END $$").arg(role));
    out.exec(QStringLiteral("GRANT USAGE ON SCHEMA public TO %1").arg(role));
    for (const QString& table : tables)
        out.exec(QStringLiteral("GRANT SELECT ON %1 TO %2").arg(quoted(table), role));
    if (!out.exists(QStringLiteral("SELECT pg_catalog.pg_has_role('%1', 'MEMBER')").arg(role)))
        out.exec(QStringLiteral("GRANT %1 TO CURRENT_USER").arg(role));
    out.exec(QStringLiteral("COMMIT"));
}

bool HasDemo(const QString& url)
{
    Writer w(url);
    return w.exists(QStringLiteral("SELECT to_regclass('public.\"Listings\"') IS NOT NULL AND to_regclass('public.\"DicFields\"') IS NOT NULL"));
}

QString CreateDatabase(const QString& adminUrl, const QString& name)
{
    {
        Writer w(adminUrl);
        w.exec(QStringLiteral("DROP DATABASE IF EXISTS %1 WITH (FORCE)").arg(quoted(name)));
        w.exec(QStringLiteral("CREATE DATABASE %1").arg(quoted(name)));
    }
    QUrl u(adminUrl);
    u.setPath(QLatin1Char('/') + name);
    return u.toString();
}

} // namespace PgDemo
