#include "host/PgDatabase.h"
#include "host/HostValue.h"
#include "host/PgSession.h"

#include <libpq-fe.h>

#include <QRegularExpression>
#include <QUrl>

namespace {

constexpr qsizetype kMaxRows = 2000000;

// Type oids of the values the host decodes (pg_type.h is a server header).
enum : Oid { BoolOid = 16, ByteaOid = 17, Int8Oid = 20, Int2Oid = 21, Int4Oid = 23, OidOid = 26,
             Float4Oid = 700, Float8Oid = 701, NumericOid = 1700, DateOid = 1082, TimeOid = 1083,
             TimestampOid = 1114, TimestamptzOid = 1184 };

QString sqlState(const PGresult* r)
{
    const char* s = r ? PQresultErrorField(r, PG_DIAG_SQLSTATE) : nullptr;
    return s ? QString::fromLatin1(s) : QString();
}

// The host's number for a server error: the same failures give the same numbers on every host.
int errorNumber(const QString& state)
{
    if (state == QLatin1String("57014"))
        return HostErr::Timeout;
    if (state == QLatin1String("25006") || state == QLatin1String("42501"))
        return HostErr::ReadOnly;
    if (state.startsWith(QLatin1String("08")))
        return HostErr::ConnectFailed;
    return HostErr::SqlExecute;
}

QString firstLine(const char* message)
{
    return QString::fromUtf8(message ? message : "").section(QLatin1Char('\n'), 0, 0).trimmed();
}

QVariant decode(const PGresult* r, int row, int col)
{
    if (PQgetisnull(r, row, col))
        return QVariant();
    const char* v = PQgetvalue(r, row, col);
    const int len = PQgetlength(r, row, col);
    // As on SQLite, only a column of a table is typed by what it was declared: a date column
    // gives a Date, a Jet yes/no column (a 16-bit -1/0, smallint here) a Boolean.
    const bool tableColumn = PQftable(r, col) != InvalidOid;
    switch (PQftype(r, col)) {
    case DateOid: case TimeOid: case TimestampOid: case TimestamptzOid:
        return tableColumn ? HostValue::Typed(QString::fromUtf8(v, len), HostValue::ColumnType::DateTime)
                           : QVariant(QString::fromUtf8(v, len));
    case Int2Oid:
        if (tableColumn)
            return HostValue::Typed(QByteArray::fromRawData(v, len).toLongLong(), HostValue::ColumnType::Boolean);
        return QVariant(QByteArray::fromRawData(v, len).toLongLong());
    case Int4Oid: case Int8Oid: case OidOid:
        return QVariant(QByteArray::fromRawData(v, len).toLongLong());
    case Float4Oid: case Float8Oid:
        return QVariant(QByteArray::fromRawData(v, len).toDouble());
    case NumericOid: {
        // Sums of whole numbers stay whole, as they do on SQLite.
        const QByteArray b(v, len);
        bool ok = false;
        if (!b.contains('.')) {
            const qlonglong n = b.toLongLong(&ok);
            if (ok)
                return QVariant(n);
        }
        return QVariant(b.toDouble());
    }
    case BoolOid:
        return QVariant(qlonglong(v[0] == 't' ? -1 : 0));
    case ByteaOid: {
        size_t n = 0;
        unsigned char* raw = PQunescapeBytea(reinterpret_cast<const unsigned char*>(v), &n);
        const QByteArray out(reinterpret_cast<const char*>(raw), qsizetype(n));
        PQfreemem(raw);
        return QVariant(out);
    }
    default:
        return QVariant(QString::fromUtf8(v, len));
    }
}

// ?1, ?2, ... -> $1, $2, ... outside quotes.
QString dollarParams(const QString& sql)
{
    QString out;
    QChar quote;
    for (int i = 0; i < sql.size(); ++i) {
        const QChar c = sql[i];
        if (!quote.isNull()) {
            if (c == quote) quote = QChar();
        } else if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            quote = c;
        } else if (c == QLatin1Char('?') && i + 1 < sql.size() && sql[i + 1].isDigit()) {
            out += QLatin1Char('$');
            continue;
        }
        out += c;
    }
    return out;
}

} // namespace

bool PgDatabase::IsPostgresUrl(const QString& url)
{
    return url.startsWith(QLatin1String("postgresql://"), Qt::CaseInsensitive) || url.startsWith(QLatin1String("postgres://"), Qt::CaseInsensitive);
}

QString PgDatabase::WithoutPassword(const QString& url)
{
    // user:password@ -> user@ ; ?password=... -> removed
    QString s = url;
    s.replace(QRegularExpression(QStringLiteral("^(postgres(?:ql)?://[^:@/]*):[^@/]*@"), QRegularExpression::CaseInsensitiveOption), QStringLiteral("\\1@"));
    s.replace(QRegularExpression(QStringLiteral("([?&])password=[^&]*&?")), QStringLiteral("\\1"));
    if (s.endsWith(QLatin1Char('&')) || s.endsWith(QLatin1Char('?')))
        s.chop(1);
    return s;
}

PgDatabase::PgDatabase(const QString& url) : m_displayUrl(WithoutPassword(url))
{
    const QByteArray dbname = url.toUtf8();
    const char* keys[] = {"application_name", "connect_timeout", "dbname", "client_encoding", nullptr};
    const char* values[] = {"pagewright", "10", dbname.constData(), "UTF8", nullptr};
    m_conn = PQconnectdbParams(keys, values, 1);
    if (!m_conn || PQstatus(m_conn) != CONNECTION_OK) {
        const QString why = m_conn ? firstLine(PQerrorMessage(m_conn)) : QStringLiteral("out of memory");
        PQfinish(m_conn);
        m_conn = nullptr;
        throw HostError(HostErr::ConnectFailed, QStringLiteral("Could not connect to the database server '%1': %2").arg(m_displayUrl, why));
    }
    try {
        prepareSession();
    } catch (...) {
        PQfinish(m_conn);
        m_conn = nullptr;
        throw;
    }
}

PgDatabase::~PgDatabase()
{
    PQfinish(m_conn);
}

void PgDatabase::exec(const char* sql)
{
    PGresult* r = PQexec(m_conn, sql);
    const ExecStatusType st = PQresultStatus(r);
    if (st != PGRES_COMMAND_OK && st != PGRES_TUPLES_OK) {
        const QString why = firstLine(PQresultErrorMessage(r));
        const int number = errorNumber(sqlState(r));
        PQclear(r);
        throw HostError(number == HostErr::SqlExecute ? HostErr::ConnectFailed : number,
                        QStringLiteral("The database server '%1' refused the session: %2").arg(m_displayUrl, why));
    }
    PQclear(r);
}

void PgDatabase::prepareSession()
{
    exec("SET DateStyle = ISO, YMD; SET IntervalStyle = iso_8601; SET extra_float_digits = 1; SET search_path = \"$user\", public");
    // Drop to the reader role when this login may; its grants are SELECT only.
    exec(QStringLiteral("DO $$ BEGIN IF EXISTS (SELECT 1 FROM pg_catalog.pg_roles WHERE rolname = '%1') "
                        "AND pg_catalog.pg_has_role('%1', 'MEMBER') THEN SET ROLE %1; END IF; END $$")
             .arg(QLatin1String(ReaderRole)).toUtf8().constData());
    exec(PgSession::HelperFunctions());
    loadCatalogue();
    exec("SET SESSION CHARACTERISTICS AS TRANSACTION READ ONLY");
    SetStatementTimeout(DefaultTimeoutMs);
}

void PgDatabase::loadCatalogue()
{
    auto rs = run(QString::fromLatin1(PgSession::CatalogueQuery()), {}, QStringLiteral("catalogue"));
    for (; !rs->Eof(); rs->MoveNext()) {
        const QString table = rs->Fields(0).toString();
        const QString column = rs->Fields(1).toString();
        const QString category = rs->Fields(2).toString();
        if (!m_catalogue.names.contains(table.toLower()))
            m_catalogue.names.insert(table.toLower(), table);
        QHash<QString, QString>& own = m_catalogue.tableColumns[table.toLower()];
        if (!own.contains(column.toLower()))
            own.insert(column.toLower(), column);
        if (!m_catalogue.names.contains(column.toLower()))
            m_catalogue.names.insert(column.toLower(), column);
        if (!m_catalogue.columnKinds.contains(column.toLower())) {
            JetSql::ValueKind k = JetSql::ValueKind::Unknown;
            if (category == QLatin1String("S")) k = JetSql::ValueKind::Text;
            else if (category == QLatin1String("N")) k = JetSql::ValueKind::Number;
            else if (category == QLatin1String("D")) k = JetSql::ValueKind::Date;
            else if (category == QLatin1String("B")) k = JetSql::ValueKind::Bool;
            m_catalogue.columnKinds.insert(column.toLower(), k);
        }
    }
}

void PgDatabase::SetStatementTimeout(int milliseconds)
{
    exec(QStringLiteral("SET statement_timeout = %1").arg(qMax(0, milliseconds)).toUtf8().constData());
}

QString PgDatabase::CurrentRole()
{
    auto rs = run(QStringLiteral("SELECT current_user"), {}, QStringLiteral("current_user"));
    return rs->Eof() ? QString() : rs->Fields(0).toString();
}

std::unique_ptr<Recordset> PgDatabase::OpenRecordset(int, const QString& sql, int, int, int)
{
    if (m_observer)
        m_observer(sql);
    return run(JetSql::Translate(sql, JetSql::PostgresDialect(), &m_catalogue), {}, sql);
}

std::unique_ptr<Recordset> PgDatabase::RunNative(const QString& sql, const QVariantList& params)
{
    return run(dollarParams(sql), params, sql);
}

std::unique_ptr<Recordset> PgDatabase::run(const QString& sql, const QVariantList& params, const QString& original)
{
    if (PQstatus(m_conn) != CONNECTION_OK) {
        // A dropped connection comes back once; the session is prepared again.
        PQreset(m_conn);
        if (PQstatus(m_conn) != CONNECTION_OK)
            throw HostError(HostErr::ConnectFailed, QStringLiteral("The connection to the database server '%1' was lost: %2")
                                                        .arg(m_displayUrl, firstLine(PQerrorMessage(m_conn))));
        prepareSession();
    }
    const QByteArray text = sql.toUtf8();
    QList<QByteArray> values;
    std::vector<const char*> ptrs;
    for (const QVariant& v : params)
        values << (v.isNull() ? QByteArray() : v.toString().toUtf8());
    for (int i = 0; i < params.size(); ++i)
        ptrs.push_back(params[i].isNull() ? nullptr : values[i].constData());
    // The extended protocol runs exactly one statement.
    if (!PQsendQueryParams(m_conn, text.constData(), int(params.size()), nullptr, ptrs.data(), nullptr, nullptr, 0))
        throw HostError(HostErr::ConnectFailed, QStringLiteral("The database server '%1' did not take the statement: %2 (statement: %3)")
                                                    .arg(m_displayUrl, firstLine(PQerrorMessage(m_conn)), original));
    PQsetSingleRowMode(m_conn);

    QStringList names;
    QList<QVariantList> rows;
    QString error;
    int errorNo = 0;
    bool cancelled = false;
    while (PGresult* r = PQgetResult(m_conn)) {
        const ExecStatusType st = PQresultStatus(r);
        if (st == PGRES_SINGLE_TUPLE || st == PGRES_TUPLES_OK) {
            if (names.isEmpty())
                for (int c = 0; c < PQnfields(r); ++c)
                    names << QString::fromUtf8(PQfname(r, c));
            for (int row = 0; row < PQntuples(r) && !cancelled; ++row) {
                // Every row is held in memory; a runaway join must not take the machine with it.
                if (rows.size() >= kMaxRows) {
                    if (PGcancel* c = PQgetCancel(m_conn)) {
                        char buf[256];
                        PQcancel(c, buf, sizeof buf);
                        PQfreeCancel(c);
                    }
                    cancelled = true;
                    errorNo = HostErr::SqlExecute;
                    error = QStringLiteral("The result has more than %1 rows (statement: %2)").arg(kMaxRows).arg(original);
                    break;
                }
                QVariantList values;
                values.reserve(PQnfields(r));
                for (int c = 0; c < PQnfields(r); ++c)
                    values << decode(r, row, c);
                rows.append(std::move(values));
            }
        } else if (st == PGRES_COMMAND_OK) {
            // nothing to read
        } else if (!cancelled && error.isEmpty()) {
            errorNo = errorNumber(sqlState(r));
            const QString why = firstLine(PQresultErrorMessage(r));
            error = errorNo == HostErr::Timeout
                        ? QStringLiteral("The statement ran longer than the time limit and was stopped (statement: %1)").arg(original)
                        : QStringLiteral("The database could not run the statement: %1 (statement: %2)").arg(why, original);
        }
        PQclear(r);
    }
    if (!error.isEmpty())
        throw HostError(errorNo, error);
    return std::make_unique<Recordset>(names, rows);
}
