// The Jet dialect on SQLite, and in the PostgreSQL run on the server: each construct against a
// small fixture table whose text columns carry no collation of their own, so case-insensitivity
// has to come from the translation. Both hosts must give exactly these answers.
#include "host/JetSql.h"
#include "host/PgDatabase.h"
#include "host/SqliteDatabase.h"
#include "PgTest.h"
#include "support_host.h"

#include <sqlite3.h>

#include <QTemporaryDir>
#include <QtTest>

class TestJetSql : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    std::unique_ptr<HostDatabase> m_db;

    QStringList run(const QString& sql) { return RowsOf(*m_db->OpenRecordset(1, sql)); }

    int errorOf(const QString& sql, QString* description = nullptr)
    {
        try {
            m_db->OpenRecordset(1, sql);
        } catch (const HostError& e) {
            if (description) *description = e.Description();
            return e.Number();
        }
        return 0;
    }

private slots:
    void initTestCase()
    {
        const QString file = m_dir.filePath(QStringLiteral("fixture.db"));
        sqlite3* db = nullptr;
        QCOMPARE(sqlite3_open(file.toUtf8().constData(), &db), SQLITE_OK);
        const char* sql =
            "CREATE TABLE People (Id INTEGER PRIMARY KEY, Name TEXT, Nick TEXT, Score REAL, Code TEXT);"
            "INSERT INTO People VALUES (1, 'O''Neil', 'Neil', 1.5, '2001');"
            "INSERT INTO People VALUES (2, '50%_Off-Realty LLC', NULL, 2.5, '2005');"
            "INSERT INTO People VALUES (3, 'Smith', 'smithy', NULL, '2002');"
            "INSERT INTO People VALUES (4, '50 Off', 'x', 3.5, '2006');"
            "INSERT INTO People VALUES (5, 'a[b]c', NULL, 4, ' 2003 ');"
            "INSERT INTO People VALUES (6, 'Star*Light #2', 'S', 2, '2007');"
            "INSERT INTO People VALUES (7, '500 Oak', 'o', 1, '2001');"
            "CREATE TABLE Pets (PetId INTEGER, OwnerId INTEGER, PetName TEXT);"
            "INSERT INTO Pets VALUES (1, 1, 'Rex'), (2, 1, 'Tom'), (3, 3, 'Kit');";
        QCOMPARE(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(db);
        if (OnTestServer()) {
            const QString url = NewTestDatabase(QStringLiteral("fixture"));
            PgDemo::Load(file, url);
            m_db = std::make_unique<PgDatabase>(url);
        } else {
            m_db = std::make_unique<SqliteDatabase>(file);
        }
    }

    void likeMatch_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<bool>("match");
        QTest::newRow("star run") << "O'Neil" << "o'n*" << true;
        QTest::newRow("case-insensitive") << "smith" << "SMITH" << true;
        QTest::newRow("underscore one") << "cat" << "c_t" << true;
        QTest::newRow("question one") << "cat" << "c?t" << true;
        QTest::newRow("one is not zero") << "ct" << "c_t" << false;
        QTest::newRow("digit") << "A7" << "A#" << true;
        QTest::newRow("digit rejects letter") << "AB" << "A#" << false;
        QTest::newRow("literal percent not wildcard") << "500" << "50[%]" << false;
        QTest::newRow("literal underscore not wildcard") << "axb" << "a[_]b" << false;
        QTest::newRow("literal open bracket") << "a[b" << "a[[]b" << true;
        QTest::newRow("literal star not wildcard") << "axxb" << "a[*]b" << false;
        QTest::newRow("literal question") << "why?" << "why[?]" << true;
        QTest::newRow("range other case") << "M" << "[a-z]" << true;
        QTest::newRow("negated class") << "x" << "[!x]" << false;
        QTest::newRow("negated class other") << "y" << "[!x]" << true;
        QTest::newRow("backtracking") << "abcabd" << "%abd" << true;
        QTest::newRow("empty pattern, empty value") << "" << "" << true;
        QTest::newRow("run matches empty") << "" << "%" << true;
        QTest::newRow("trailing text must match") << "abc" << "%b" << false;
    }
    void likeMatch()
    {
        QFETCH(QString, value);
        QFETCH(QString, pattern);
        QFETCH(bool, match);
        QCOMPARE(JetSql::LikeMatch(value, pattern), match);
    }

    void clng_data()
    {
        QTest::addColumn<QVariant>("in");
        QTest::addColumn<int>("out");
        QTest::newRow("half down to even") << QVariant(2.5) << 2;
        QTest::newRow("half up to even") << QVariant(3.5) << 4;
        QTest::newRow("negative half") << QVariant(-2.5) << -2;
        QTest::newRow("text with blanks") << QVariant(QStringLiteral(" 2003 ")) << 2003;
        QTest::newRow("integer") << QVariant(qlonglong(2005)) << 2005;
        QTest::newRow("text fraction") << QVariant(QStringLiteral("7.5")) << 8;
    }
    void clng()
    {
        QFETCH(QVariant, in);
        QFETCH(int, out);
        QCOMPARE(JetSql::CLng(in), out);
    }
    void junkRefused()
    {
        QVERIFY_THROWS_EXCEPTION(HostError, JetSql::CLng(QVariant(QStringLiteral("abc"))));
        QVERIFY_THROWS_EXCEPTION(HostError, JetSql::CLng(QVariant(3e10)));
        QVERIFY_THROWS_EXCEPTION(HostError, JetSql::LikeMatch(QStringLiteral("a"), QStringLiteral("a[bc")));
        QCOMPARE(errorOf(QStringLiteral("SELECT Id FROM People WHERE Name Like 'a[b'")), HostErr::SqlExecute);
    }

    void statements_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QStringList>("rows");
        auto ids = [](std::initializer_list<const char*> l) { QStringList s; for (auto x : l) s << QLatin1String(x); return s; };
        QTest::newRow("= ignores case, quote doubled") << "SELECT Id FROM People WHERE Name = 'o''neil'" << ids({"1"});
        QTest::newRow("<> ignores case") << "SELECT Id FROM People WHERE Name <> 'SMITH' AND Id < 4" << ids({"1", "2"});
        QTest::newRow("IN ignores case") << "SELECT Id FROM People WHERE Nick IN ('NEIL', 'SMITHY')" << ids({"1", "3"});
        QTest::newRow("Like ansi") << "SELECT Id FROM People WHERE Name Like 'O''N%'" << ids({"1"});
        QTest::newRow("Like bracketed % and _") << "SELECT Id FROM People WHERE Name Like '50[%][_]%'" << ids({"2"});
        QTest::newRow("Like unbracketed %") << "SELECT Id FROM People WHERE Name LIKE '50%' ORDER BY Id" << ids({"2", "4", "7"});
        QTest::newRow("Like bracketed -") << "SELECT Id FROM People WHERE Name Like '%[-]%'" << ids({"2"});
        QTest::newRow("Like bracketed [ and ]") << "SELECT Id FROM People WHERE Name Like 'a[[]b]c'" << ids({"5"});
        QTest::newRow("Like bracketed * and #") << "SELECT Id FROM People WHERE Name Like '%[*]%[#]#'" << ids({"6"});
        QTest::newRow("Like digits") << "SELECT Id FROM People WHERE Name Like '5##*'" << ids({"7"});
        QTest::newRow("Like class range") << "SELECT Id FROM People WHERE Name Like '[M-P]%'" << ids({"1"});
        QTest::newRow("Not Like") << "SELECT Id FROM People WHERE Name Not Like 's*' ORDER BY Id" << ids({"1", "2", "4", "5", "7"});
        QTest::newRow("Like Null is not true") << "SELECT Id FROM People WHERE Nick Like '%' ORDER BY Id" << ids({"1", "3", "4", "6", "7"});
        QTest::newRow("+ joins text") << "SELECT Name + ', ' + Nick AS J FROM People WHERE Id = 1" << ids({"O'Neil, Neil"});
        QTest::newRow("+ with Null is Null") << "SELECT Name + Nick AS J FROM People WHERE Id = 2" << ids({"<Null>"});
        QTest::newRow("& with Null keeps text") << "SELECT Name & Nick AS J FROM People WHERE Id = 2" << ids({"50%_Off-Realty LLC"});
        QTest::newRow("& of two Nulls") << "SELECT Nick & Nick AS J FROM People WHERE Id = 2" << ids({"<Null>"});
        QTest::newRow("+ adds numbers") << "SELECT Score + 1 AS S FROM People WHERE Id = 1" << ids({"2.5"});
        QTest::newRow("+ numeric text and number") << "SELECT '1' + 2 AS S FROM People WHERE Id = 1" << ids({"3"});
        QTest::newRow("& formats numbers") << "SELECT Id & '/' & Score AS S FROM People WHERE Id = 5" << ids({"5/4"});
        QTest::newRow("CLng of text column, NOT IN") << "SELECT Id FROM People WHERE CLng(Code) NOT IN (2005,2006) ORDER BY Id" << ids({"1", "3", "5", "6", "7"});
        QTest::newRow("IIF and IsNull") << "SELECT IIF(IsNull(Nick),'none',Nick) AS N FROM People WHERE Id IN (1, 2) ORDER BY Id" << ids({"Neil", "none"});
        QTest::newRow("IsNull is True") << "SELECT Id FROM People WHERE IsNull(Score) = True" << ids({"3"});
        QTest::newRow("agents' name expression")
            << "SELECT (Name + ', ' + Nick + ' ' +  IIF(IsNull(Nick),'',Nick)) AS AgentName FROM People WHERE Id = 3" << ids({"Smith, smithy smithy"});
        QTest::newRow("Between") << "SELECT Id FROM People WHERE Score Between 2 And 3 ORDER BY Id" << ids({"2", "6"});
        QTest::newRow("Count(*) As, lower case") << "select count(*) as RecCount from People where Id > 5" << ids({"2"});
        QTest::newRow("Is Not Null") << "SELECT Count(*) AS N FROM People WHERE Nick Is Not Null" << ids({"5"});
        QTest::newRow("LEFT JOIN") << "SELECT Name, PetName FROM People LEFT JOIN Pets ON People.Id = Pets.OwnerId WHERE People.Id IN (1, 2) ORDER BY People.Id, PetName"
                                   << ids({"O'Neil|Rex", "O'Neil|Tom", "50%_Off-Realty LLC|<Null>"});
        QTest::newRow("correlated subquery") << "SELECT Name, (SELECT Count(*) FROM Pets WHERE Pets.OwnerId = People.Id) AS NPets FROM People WHERE Id = 1"
                                             << ids({"O'Neil|2"});
        QTest::newRow("= subquery") << "Select Id From People Where Code = (Select Code From People Where Id = 7) ORDER BY Id" << ids({"1", "7"});
        QTest::newRow("literal with keywords kept") << "SELECT 'a + b & c Like [x] ; SELECT * FROM' AS T FROM People WHERE Id = 1"
                                                    << ids({"a + b & c Like [x] ; SELECT * FROM"});
        QTest::newRow("double-quoted literal") << "SELECT \"say \"\"hi\"\"\" AS T FROM People WHERE Id = 1" << ids({"say \"hi\""});
        QTest::newRow("bracket identifiers") << "SELECT [Name] FROM [People] WHERE [Id] = 4" << ids({"50 Off"});
        QTest::newRow("date literal") << "SELECT #1/15/2024# AS D FROM People WHERE Id = 1" << ids({"2024-01-15"});
        QTest::newRow("trailing semicolon and blanks") << "SELECT Id FROM People WHERE Id = 1;  \r\n " << ids({"1"});
        QTest::newRow("string functions") << "SELECT UCase(Nick) & Len(Name) & Left(Name, 2) & Right(Name, 3) AS X FROM People WHERE Id = 1"
                                          << ids({"NEIL6O'eil"});
        QTest::newRow("Nz") << "SELECT Nz(Nick, '-') AS X FROM People WHERE Id = 2" << ids({"-"});
        QTest::newRow("/ divides as reals, Mod") << "SELECT 7 / 2 AS A, 7 Mod 4 AS B, 7 \\ 2 AS C FROM People WHERE Id = 1" << ids({"3.5|3|3"});
        QTest::newRow("ORDER BY ignores case") << "SELECT Name FROM People WHERE Id IN (3, 5) ORDER BY Name" << ids({"a[b]c", "Smith"});
        QTest::newRow("ORDER BY position") << "SELECT Id, Nick FROM People WHERE Id < 3 ORDER BY 1 DESC" << ids({"2|<Null>", "1|Neil"});
        QTest::newRow("TOP and DISTINCT") << "SELECT DISTINCT TOP 2 Code FROM People ORDER BY Code" << ids({" 2003 ", "2001"});
        QTest::newRow("Or and Not") << "SELECT Id FROM People WHERE Not (Id > 2) Or Name = 'smith' ORDER BY Id" << ids({"1", "2", "3"});
    }
    void statements()
    {
        QFETCH(QString, sql);
        QFETCH(QStringList, rows);
        QCOMPARE(run(sql), rows);
    }

    void columnNames()
    {
        auto rs = m_db->OpenRecordset(1, QStringLiteral("SELECT Name, People.Id, Nick AS [Nick Name], Score * 2, Score As Points, Id + 1 FROM People"));
        QCOMPARE(rs->Columns(), QStringList({"Name", "Id", "Nick Name", "Expr1000", "Points", "Expr1001"}));
        QCOMPARE(rs->RecordCount(), 7);
        rs = m_db->OpenRecordset(1, QStringLiteral("SELECT * FROM Pets WHERE PetId = 1"));
        QCOMPARE(rs->Columns(), QStringList({"PetId", "OwnerId", "PetName"}));
    }

    void valueTypes()
    {
        auto rs = m_db->OpenRecordset(1, QStringLiteral("SELECT Id, Score, Name, Nick FROM People WHERE Id = 2"));
        QCOMPARE(rs->Fields(0).typeId(), int(QMetaType::LongLong));
        QCOMPARE(rs->Fields(1).typeId(), int(QMetaType::Double));
        QCOMPARE(rs->Fields(2).typeId(), int(QMetaType::QString));
        QVERIFY(rs->Fields(3).isNull());
        QVERIFY(!rs->Fields(3).isValid());
    }

    void refusals_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("description");
        QTest::newRow("two statements") << "SELECT Id FROM People; SELECT Name FROM People" << int(HostErr::MultipleStatements)
                                        << "Characters found after end of SQL statement.";
        QTest::newRow("statement after semicolon, no blank") << "SELECT Id FROM People;DELETE FROM People" << int(HostErr::MultipleStatements)
                                                             << "Characters found after end of SQL statement.";
        QTest::newRow("delete") << "DELETE FROM People" << int(HostErr::SqlExecute) << "Only SELECT statements can run on this connection.";
        QTest::newRow("drop") << "drop table People" << int(HostErr::SqlExecute) << "Only SELECT statements can run on this connection.";
        QTest::newRow("unknown function") << "SELECT Foo(Id) FROM People" << int(HostErr::SqlSyntax) << "Undefined function 'Foo' in expression.";
        QTest::newRow("IIF arguments") << "SELECT IIF(Id = 1, 2) FROM People" << int(HostErr::SqlSyntax)
                                       << "Wrong number of arguments used with function IIF in query expression.";
    }
    void refusals()
    {
        QFETCH(QString, sql);
        QFETCH(int, number);
        QFETCH(QString, description);
        QString got;
        QCOMPARE(errorOf(sql, &got), number);
        QCOMPARE(got, description);
        QCOMPARE(run(QStringLiteral("SELECT Count(*) AS N FROM People")), QStringList{QStringLiteral("7")});
    }

    void syntaxAndDatabaseErrors()
    {
        QString d;
        QCOMPARE(errorOf(QStringLiteral("SELECT FROM People"), &d), HostErr::SqlSyntax);
        QCOMPARE(errorOf(QStringLiteral("SELECT Id FROM"), &d), HostErr::SqlSyntax);
        QCOMPARE(d, QStringLiteral("Syntax error in query: missing table after FROM."));
        QCOMPARE(errorOf(QStringLiteral("SELECT Id FROM People WHERE Id = ;"), &d), HostErr::SqlSyntax);
        QCOMPARE(errorOf(QStringLiteral("SELECT Name FROM People WHERE Name = 'x"), &d), HostErr::SqlSyntax);
        QVERIFY(d.contains(QLatin1String("unterminated string")));
        QCOMPARE(errorOf(QStringLiteral("SELECT Id FROM People WHERE (Id = 1"), &d), HostErr::SqlSyntax);
        QCOMPARE(errorOf(QStringLiteral("SELECT Nope FROM People"), &d), HostErr::SqlExecute);
        QVERIFY2(d.contains(OnTestServer() ? QLatin1String("column \"Nope\" does not exist") : QLatin1String("no such column: Nope")), qPrintable(d));
        QCOMPARE(errorOf(QStringLiteral("SELECT CLng(Name) FROM People"), &d), HostErr::SqlExecute);
        QVERIFY2(d.contains(QLatin1String("not a number")), qPrintable(d));
        QCOMPARE(errorOf(QString(QStringLiteral("SELECT ") + QString(500, QLatin1Char('(')) + QStringLiteral("1"))), HostErr::SqlSyntax);
        QCOMPARE(errorOf(QString()), HostErr::SqlExecute);
    }

    // Broken and random statements end in HostError, never in a crash or a hang.
    void hostileStatements()
    {
        const QStringList fixed = {"(((", ")))", "SELECT", "SELECT ,", "SELECT a FROM (", "SELECT a FROM t WHERE a IN (",
                                   "SELECT a FROM t WHERE a BETWEEN 1", "SELECT #", "SELECT [", "SELECT a b c d", "SELECT Count(*",
                                   "SELECT a FROM t UNION", "SELECT a.", "SELECT -", "SELECT NOT", "SELECT a FROM t WHERE a Is",
                                   "SELECT IIF(", "SELECT Left(", "SELECT a FROM t ORDER BY", "SELECT a FROM t WHERE a NOT",
                                   "SELECT TOP", "SELECT a AS", "SELECT a FROM t LEFT JOIN", ";", "   "};
        const QStringList vocabulary = {"SELECT", "FROM", "WHERE", "People", "Id", "Name", "(", ")", ",", "AND", "OR", "NOT", "Like",
                                        "'x%'", "=", "+", "&", "-", "*", "IN", "Between", "Is", "Null", "IIF", "CLng", "AS", "[a b]",
                                        "#1/2/2024#", "1.5", "LEFT", "JOIN", "ON", "ORDER", "BY", ".", "Count", ";", "\\", "^", "Mod"};
        QStringList statements = fixed;
        quint32 seed = 12345;
        for (int i = 0; i < 3000; ++i) {
            QStringList words{QStringLiteral("SELECT")};
            const int n = 1 + int(seed % 12);
            for (int k = 0; k < n; ++k) {
                seed = seed * 1103515245u + 12345u;
                words << vocabulary[int((seed >> 8) % quint32(vocabulary.size()))];
            }
            statements << words.join(QLatin1Char(' '));
        }
        int refused = 0;
        for (const QString& sql : statements) {
            try {
                m_db->OpenRecordset(1, sql);
            } catch (const HostError& e) {
                ++refused;
                QVERIFY2(!e.Description().isEmpty(), qPrintable(sql));
            }
        }
        QVERIFY(refused >= fixed.size());
        QCOMPARE(run(QStringLiteral("SELECT Count(*) AS N FROM People")), QStringList{QStringLiteral("7")});
    }
};

QTEST_GUILESS_MAIN(TestJetSql)
#include "tst_jetsql.moc"
