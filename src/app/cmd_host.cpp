// "demo" prepares a data folder; "sql" runs one Jet statement through the embedded host.
#include "Subcommands.h"

#include "DemoFlyers.h"
#include "document/RecordQuery.h"
#include "host/DataFolder.h"
#include "host/DemoData.h"
#include "host/EmbeddedHost.h"
#include "host/PgDatabase.h"
#include "host/PgDemo.h"

#include <QElapsedTimer>
#include <cstdio>

namespace {

void err(const QString& text)
{
    std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
}

bool takeCount(QStringList& args, const QString& name, int defaultValue, int& out)
{
    const QString v = TakeOption(args, name, QString::number(defaultValue));
    bool ok = false;
    out = v.toInt(&ok);
    if (!ok) {
        err(QStringLiteral("%1 needs a whole number, not '%2'").arg(name, v));
        return false;
    }
    return true;
}

bool noLeftovers(const QStringList& args, const char* command)
{
    if (args.isEmpty())
        return true;
    err(QStringLiteral("pagewright %1: unexpected argument '%2'").arg(QLatin1String(command), args.first()));
    return false;
}

int runDemo(const QStringList& argsIn)
{
    QStringList args = argsIn;
    const QString dir = DataFolder::ResolveDataFolder(args);
    const bool force = TakeFlag(args, QStringLiteral("--force"));
    int listings = 500;
    if (!takeCount(args, QStringLiteral("--listings"), 500, listings) || !noLeftovers(args, "demo"))
        return 2;
    // With a database server the folder keeps identity, reports and pictures, and the server gets
    // a copy of the folder's database: the same keys and the same catalogue.
    const QString server = EmbeddedHost::DatabaseSetting(dir);
    try {
        if (!server.isEmpty() && !PgDatabase::IsPostgresUrl(server)) {
            err(QStringLiteral("'%1' is not a database this program can open; name a PostgreSQL server as postgresql://USER@HOST:PORT/DB.")
                    .arg(PgDatabase::WithoutPassword(server)));
            return 2;
        }
        if (DemoDataExists(dir) && !force && (server.isEmpty() || PgDemo::HasDemo(server))) {
            std::printf("Demo data is already in %s (use --force to regenerate it).\n",
                        qPrintable(server.isEmpty() ? dir : PgDatabase::WithoutPassword(server)));
            return 0;
        }
        QElapsedTimer timer;
        timer.start();
        const bool generate = !DemoDataExists(dir) || force;
        if (generate)
            GenerateDemoData(dir, listings);
        if (!server.isEmpty()) {
            PgDemo::Load(dir + QLatin1Char('/') + QLatin1String(DataFolder::DatabaseName), server);
            std::printf("Demo database copied to %s.\n", qPrintable(PgDatabase::WithoutPassword(server)));
        }
        if (generate) {
            WriteDemoFlyers(dir); // through the host, so after the server has the data
            std::printf("Demo data with %d listings written to %s in %.1f s.\n", listings, qPrintable(dir), timer.elapsed() / 1000.0);
        }
    } catch (const HostError& e) {
        err(QStringLiteral("error %1: %2").arg(e.Number()).arg(e.Description()));
        return 1;
    }
    return 0;
}

QString cellText(const QVariant& v)
{
    if (v.isNull())
        return QStringLiteral("Null");
    // Dates and Booleans as the designer shows them; reals keep their digits, as the database holds them.
    QString s = v.typeId() == QMetaType::Double ? QString::number(v.toDouble(), 'g', 15) : RecordQuery::ValueText(v);
    s.replace(QLatin1String("\r\n"), QLatin1String(" "));
    s.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return s;
}

void printTable(Recordset& rs)
{
    const int cols = rs.FieldCount();
    QList<QStringList> rows;
    QList<int> widths;
    QStringList header;
    for (int c = 0; c < cols; ++c) {
        header << rs.FieldName(c);
        widths << int(header.last().size());
    }
    for (; !rs.Eof(); rs.MoveNext()) {
        QStringList row;
        for (int c = 0; c < cols; ++c) {
            row << cellText(rs.Fields(c));
            widths[c] = qMax(widths[c], int(row.last().size()));
        }
        rows << row;
    }
    auto line = [&](const QStringList& cells) {
        QString out;
        for (int c = 0; c < cols; ++c)
            out += (c ? QStringLiteral("  ") : QString()) + (c + 1 < cols ? cells[c].leftJustified(widths[c]) : cells[c]);
        std::printf("%s\n", out.toUtf8().constData());
    };
    line(header);
    QStringList rule;
    for (int c = 0; c < cols; ++c)
        rule << QString(widths[c], QLatin1Char('-'));
    line(rule);
    for (const QStringList& r : rows)
        line(r);
    std::printf(rows.size() == 1 ? "(%lld row)\n" : "(%lld rows)\n", static_cast<long long>(rows.size()));
}

int runSql(const QStringList& argsIn)
{
    QStringList args = argsIn;
    const QString dir = DataFolder::ResolveDataFolder(args);
    const QString log = TakeOption(args, QStringLiteral("--sql-log"));
    int kind = 1;
    if (!takeCount(args, QStringLiteral("--kind"), 1, kind))
        return 2;
    if (args.size() != 1) {
        err(QStringLiteral("usage: pagewright sql [--data DIR] --kind N \"STATEMENT\" [--sql-log FILE]"));
        return 2;
    }
    try {
        auto host = EmbeddedHost::Open(dir);
        if (!log.isEmpty() && !host->SetSqlLog(log)) {
            err(QStringLiteral("Cannot append to the log file '%1'.").arg(log));
            return 1;
        }
        auto rs = host->Database().OpenRecordset(kind, args.first(), 3, 1, 1);
        printTable(*rs);
    } catch (const HostError& e) {
        err(QStringLiteral("error %1: %2").arg(e.Number()).arg(e.Description()));
        return 1;
    }
    return 0;
}

} // namespace

PW_SUBCOMMAND("demo", "demo [--data DIR] [--database URL] [--listings N] [--force]", "generate the demo data folder (and load it into the database server)", runDemo);
PW_SUBCOMMAND("sql", "sql [--data DIR] [--database URL] --kind N \"STATEMENT\" [--sql-log FILE]", "run one Jet SELECT through the host's database", runSql);
