// The PostgreSQL host itself: the session is read-only and limited in time, one statement per
// call, failures keep the host's numbers, passwords never reach a message, and the demo data on
// the server answers exactly as the SQLite file it was copied from.
#include "host/EmbeddedHost.h"
#include "host/PgDatabase.h"
#include "host/SqliteDatabase.h"
#include "support_host.h"
#include "PgTest.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

int errorOf(const std::function<void()>& f, QString* description = nullptr)
{
    try {
        f();
    } catch (const HostError& e) {
        if (description)
            *description = e.Description();
        return e.Number();
    }
    return 0;
}

// Each value with its type, so 3 and 3.0 and "3" differ.
QStringList typedRows(Recordset& rs)
{
    QStringList out;
    for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext()) {
        QStringList cells;
        for (int c = 0; c < rs.FieldCount(); ++c) {
            const QVariant v = rs.Fields(c);
            cells << (v.isNull() ? QStringLiteral("Null") : QString::fromLatin1(v.typeName()) + QLatin1Char(':') + v.toString());
        }
        out << cells.join(QLatin1Char('|'));
    }
    return out;
}

} // namespace

class TestPgHost : public QObject {
    Q_OBJECT
    QString m_url;
    std::unique_ptr<PgDatabase> m_pg;
    std::unique_ptr<SqliteDatabase> m_lite;

private slots:
    void initTestCase()
    {
        QVERIFY2(OnTestServer(), "this test needs the PostgreSQL test cluster (PW_TEST_PG)");
        m_url = NewTestDatabase(QStringLiteral("demo"));
        PgDemo::Load(SmallDemoFolder() + QStringLiteral("/pagewright.db"), m_url);
        m_pg = std::make_unique<PgDatabase>(m_url);
        m_lite = std::make_unique<SqliteDatabase>(SmallDemoFolder() + QStringLiteral("/pagewright.db"));
    }

    void sessionIsReadOnly()
    {
        QCOMPARE(m_pg->CurrentRole(), QString::fromLatin1(PgDatabase::ReaderRole));
        QString d;
        QCOMPARE(errorOf([&] { m_pg->RunNative(QStringLiteral("INSERT INTO \"Photo\" VALUES (1, 'V1', 1)")); }, &d), HostErr::ReadOnly);
        QCOMPARE(errorOf([&] { m_pg->RunNative(QStringLiteral("CREATE TABLE pw_scratch (a int)")); }), HostErr::ReadOnly);
        // Even a login that may write cannot leave the read-only transaction from a statement.
        QCOMPARE(errorOf([&] { m_pg->RunNative(QStringLiteral("UPDATE \"Listings\" SET \"City\" = 'x'")); }), HostErr::ReadOnly);
        QCOMPARE(errorOf([&] { m_pg->OpenRecordset(1, QStringLiteral("DELETE FROM Listings")); }, &d), HostErr::SqlExecute);
        QCOMPARE(d, QStringLiteral("Only SELECT statements can run on this connection."));
        QCOMPARE(RowsOf(*m_pg->OpenRecordset(1, QStringLiteral("SELECT Count(*) FROM Listings"))), QStringList{QStringLiteral("60")});
    }

    void oneStatementPerCall()
    {
        QString d;
        QCOMPARE(errorOf([&] { m_pg->OpenRecordset(1, QStringLiteral("SELECT ListNum FROM Listings; SELECT 1")); }, &d), HostErr::MultipleStatements);
        QCOMPARE(d, QStringLiteral("Characters found after end of SQL statement."));
        // The server refuses a second statement on its own, whatever the text.
        QCOMPARE(errorOf([&] { m_pg->RunNative(QStringLiteral("SELECT 1; SELECT 2")); }), HostErr::SqlExecute);
        // Functions that reach outside the data are not in the dialect.
        QCOMPARE(errorOf([&] { m_pg->OpenRecordset(1, QStringLiteral("SELECT set_config('default_transaction_read_only', 'off', false)")); }, &d),
                 HostErr::SqlSyntax);
        QCOMPARE(d, QStringLiteral("Undefined function 'set_config' in expression."));
    }

    void statementsStopAtTheTimeLimit()
    {
        m_pg->SetStatementTimeout(50);
        QString d;
        const QString big = QStringLiteral("SELECT Count(*) FROM Listings A, Listings B, Listings C, Listings D, Listings E WHERE A.City & B.City <> C.City");
        QCOMPARE(errorOf([&] { m_pg->OpenRecordset(1, big); }, &d), HostErr::Timeout);
        QCOMPARE(d, QStringLiteral("The statement ran longer than the time limit and was stopped (statement: %1)").arg(big));
        m_pg->SetStatementTimeout(PgDatabase::DefaultTimeoutMs);
        QCOMPARE(RowsOf(*m_pg->OpenRecordset(1, QStringLiteral("SELECT OwnerName FROM Listings WHERE OwnerName = 'o''neil'"))),
                 QStringList{QStringLiteral("O'Neil")});
    }

    void failuresKeepTheHostsNumbers_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("hidden");
        QTest::newRow("no such socket folder") << "postgresql://agent:s3cret@/listings?host=/nonexistent/pw" << "s3cret";
        QTest::newRow("password as parameter") << "postgresql:///listings?host=/nonexistent/pw&password=hunter2&user=agent" << "hunter2";
        QTest::newRow("garbage") << "postgresql://[::1" << "";
    }
    void failuresKeepTheHostsNumbers()
    {
        QFETCH(QString, url);
        QFETCH(QString, hidden);
        QString d;
        QCOMPARE(errorOf([&] { PgDatabase db(url); }, &d), HostErr::ConnectFailed);
        QVERIFY2(d.startsWith(QStringLiteral("Could not connect to the database server '")), qPrintable(d));
        if (!hidden.isEmpty())
            QVERIFY2(!d.contains(hidden), qPrintable(d));
    }

    void wrongDatabaseSettingIsExplained()
    {
        QString d;
        QCOMPARE(errorOf([&] { EmbeddedHost::Open(SmallDemoFolder(), QStringLiteral("mysql://me:pw@db/listings")); }, &d), HostErr::ConnectFailed);
        QCOMPARE(d, QStringLiteral("'mysql://me:pw@db/listings' is not a database this program can open; name a PostgreSQL server as postgresql://USER@HOST:PORT/DB."));
        // host.ini names the server when nothing else does.
        QTemporaryDir dir;
        QFile::copy(SmallDemoFolder() + QStringLiteral("/host.ini"), dir.filePath(QStringLiteral("host.ini")));
        QFile ini(dir.filePath(QStringLiteral("host.ini")));
        QVERIFY(ini.open(QIODevice::Append));
        ini.write("Database=" + m_url.toUtf8() + "\r\n");
        ini.close();
        qunsetenv("PAGEWRIGHT_DATABASE");
        QCOMPARE(EmbeddedHost::DatabaseSetting(dir.path()), m_url);
        auto host = EmbeddedHost::Open(dir.path()); // no pagewright.db in that folder: the server is enough
        QCOMPARE(host->DatabaseName(), m_url);
        QCOMPARE(RowsOf(*host->Database().OpenRecordset(1, QStringLiteral("SELECT Min(ListNum) FROM Listings"))), QStringList{QStringLiteral("240001")});
        QCOMPARE(errorOf([&] { host->Sqlite(); }), HostErr::ConnectFailed);
        qputenv("PAGEWRIGHT_DATABASE", "postgresql:///nowhere?host=/nonexistent/pw");
        QCOMPARE(errorOf([&] { EmbeddedHost::Open(dir.path()); }), HostErr::ConnectFailed); // the environment wins
        qunsetenv("PAGEWRIGHT_DATABASE");
    }

    void passwordsLeaveDisplayUrls_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("shown");
        QTest::newRow("user and password") << "postgresql://agent:pw@db.example.com:5432/listings" << "postgresql://agent@db.example.com:5432/listings";
        QTest::newRow("no password") << "postgresql://agent@db:5432/listings" << "postgresql://agent@db:5432/listings";
        QTest::newRow("parameter last") << "postgres://db/listings?sslmode=require&password=x" << "postgres://db/listings?sslmode=require";
        QTest::newRow("parameter first") << "postgresql:///listings?password=x&host=/run/pg" << "postgresql:///listings?host=/run/pg";
    }
    void passwordsLeaveDisplayUrls()
    {
        QFETCH(QString, url);
        QFETCH(QString, shown);
        QCOMPARE(PgDatabase::WithoutPassword(url), shown);
        QVERIFY(PgDatabase::IsPostgresUrl(url));
    }

    // Every table of the demo data, row by row and type by type, as the SQLite file has it.
    void demoTablesAreIdentical()
    {
        const QStringList tables = {"Listings", "Photo", "Office", "Members", "TaxRolls", "Rentals", "DicKinds", "DicFields", "DicCodes"};
        for (const QString& table : tables) {
            const QString sql = QStringLiteral("SELECT * FROM %1 ORDER BY 1, 2, 3").arg(table);
            auto a = m_lite->OpenRecordset(1, sql);
            auto b = m_pg->OpenRecordset(1, sql);
            QCOMPARE(b->Columns(), a->Columns());
            const QStringList ra = typedRows(*a), rb = typedRows(*b);
            QVERIFY2(!ra.isEmpty(), qPrintable(table));
            QCOMPARE(rb, ra);
        }
    }

    // What the designer and the dictionary send: the same rows, the same types, the same order.
    void statementsAnswerAlike_data()
    {
        QTest::addColumn<QString>("sql");
        const char* const statements[] = {
            "SELECT ListNum, OwnerName FROM Listings WHERE OwnerName = 'o''neil'",
            "SELECT ListNum FROM Listings WHERE OwnerName Like 'o''n*' ORDER BY OwnerName",
            "SELECT OwnerName FROM Listings WHERE OwnerName Like '*[%]*' OR OwnerName Like '*[_]*' ORDER BY 1",
            "SELECT OwnerName FROM Listings WHERE OwnerName Like '[[]*' OR OwnerName Like '*[*]*'",
            "SELECT ListNum, StreetNumber & ' ' & IIF(IsNull(StreetDirection), '', StreetDirection & ' ') & StreetName AS FullAddress FROM Listings ORDER BY ListNum",
            "SELECT MemLastName + ', ' + MemFirstName + ' ' +  IIF(IsNull(MemMiddleInitial),'',MemMiddleInitial) AS N FROM Members ORDER BY N",
            "SELECT ListNum, IIF(SqFt > 0, ListPrice / SqFt, Null) AS PerFoot FROM Listings WHERE ListNum Between 240001 And 240020",
            "SELECT ListNum FROM Listings WHERE CLng(LstStatus) NOT IN (2005,2006) AND ListAgentID = 'a1001' ORDER BY ListNum",
            "SELECT Count(*) AS N, Sum(Bedrooms) AS B, Avg(ListPrice) AS P, Min(OwnerName) AS O, Max(ListDate) AS D FROM Listings",
            "SELECT City, Count(*) AS N FROM Listings GROUP BY City ORDER BY City",
            "SELECT OwnerName FROM Listings ORDER BY OwnerName DESC, ListNum",
            "SELECT TOP 5 StreetName, AddressNumber FROM Listings WHERE AddressNumber Between 1000 And 5000 ORDER BY StreetName, AddressNumber",
            "SELECT ListNum, (SELECT MemLastName + ', ' + MemFirstName FROM Members WHERE MemberId = Listings.ListAgentID) AS Agent FROM Listings ORDER BY 1",
            "SELECT ListNum, (SELECT PhotoCount FROM Photo WHERE PhoListnum = Listings.ListNum) AS NumPhotos FROM Listings ORDER BY 1",
            "SELECT Listings.ListNum, Photo.PhotoVersion FROM Listings LEFT JOIN Photo ON Listings.Listnum = Photo.PhoListnum WHERE Listings.ListNum < 240011 ORDER BY Listings.ListNum",
            "SELECT ListNum, ListDate, Year(ListDate) AS Y, Month(ListDate) AS M FROM Listings WHERE ListDate >= #6/1/2024# ORDER BY ListDate, ListNum",
            "SELECT OffOfficeId, (SELECT Count(*) FROM Members WHERE MemOfficeID = Office.OffOfficeId) AS Agents FROM Office ORDER BY OffName1",
            "SELECT Listnum, Rent, IIF(PetsAllowed, 'Yes', 'No') AS P FROM Rentals WHERE Listnum IN (SELECT PhoListnum FROM Photo) ORDER BY Listnum",
            "SELECT UCase(City) & '/' & LCase(Zip) & '/' & Len(OwnerName) & '/' & Left(OwnerName, 3) & '/' & Right(OwnerName, 2) & '/' & Mid(OwnerName, 2, 3) AS S FROM Listings ORDER BY ListNum",
            "SELECT Pool = True AS A, IsNull(SaleDate) AS B, Not (Pool = 0) AS C, CLng(Baths * 2) AS D, 7 \\ 2 AS E FROM Listings ORDER BY ListNum",
            "SELECT [List Agent].MemberId FROM Members AS [List Agent] WHERE [List Agent].MemLastName IN ('CARTER', 'o''brien')",
            "SELECT DISTINCT PropType FROM Listings ORDER BY PropType",
            "SELECT TaxId, TaxOwnerName FROM TaxRolls WHERE TaxOwnerName Like '*#*' OR TaxOwnerName < 'b' ORDER BY TaxOwnerName, TaxId",
        };
        for (const char* s : statements)
            QTest::newRow(s) << QString::fromLatin1(s);
    }
    void statementsAnswerAlike()
    {
        QFETCH(QString, sql);
        auto a = m_lite->OpenRecordset(1, sql);
        auto b = m_pg->OpenRecordset(1, sql);
        QCOMPARE(b->Columns(), a->Columns());
        QVERIFY(a->RecordCount() > 0);
        QCOMPARE(typedRows(*b), typedRows(*a));
    }
};

QTEST_GUILESS_MAIN(TestPgHost)
#include "tst_pghost.moc"
