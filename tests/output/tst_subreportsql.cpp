// Record values in a sub-report's statement are literals, whatever the statement puts round them.
#include "output/ReportData.h"
#include "support_report.h"

#include "entry/Recordset.h"

#include <QtTest>

namespace {

QString substituted(const QString& sql, const QString& v)
{
    return SubReportStatement(sql, [&](const QString&) { return v; });
}

} // namespace

class TestSubReportSql : public QObject {
    Q_OBJECT
private slots:
    void valuesBecomeLiterals_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("expected");
        QTest::newRow("single quotes") << "SELECT A FROM T WHERE N = '%OwnerName%'" << "O'Neil"
                                       << "SELECT A FROM T WHERE N = 'O''Neil'";
        QTest::newRow("double quotes") << "SELECT A FROM T WHERE N = \"%OwnerName%\"" << "O'Neil"
                                       << "SELECT A FROM T WHERE N = \"O'Neil\"";
        QTest::newRow("double quote in double quotes") << "SELECT A FROM T WHERE N = \"%OwnerName%\"" << "Say \"hi\""
                                                       << "SELECT A FROM T WHERE N = \"Say \"\"hi\"\"\"";
        QTest::newRow("bare text is quoted") << "SELECT A FROM T WHERE S = '2001' AND N = %OwnerName%" << "0 OR ListNum > 0"
                                             << "SELECT A FROM T WHERE S = '2001' AND N = '0 OR ListNum > 0'";
        QTest::newRow("bare quote cannot close anything") << "SELECT A FROM T WHERE N = %OwnerName%" << "x' OR 'a'='a"
                                                          << "SELECT A FROM T WHERE N = 'x'' OR ''a''=''a'";
        QTest::newRow("bare number stays a number") << "SELECT A FROM T WHERE L = %ListNum%" << "240004"
                                                    << "SELECT A FROM T WHERE L = 240004";
        QTest::newRow("bare negative decimal") << "SELECT A FROM T WHERE P > %Price%" << "-12.5" << "SELECT A FROM T WHERE P > -12.5";
        QTest::newRow("bare exponent is text") << "SELECT A FROM T WHERE P > %Price%" << "1e5" << "SELECT A FROM T WHERE P > '1e5'";
        QTest::newRow("bare empty is Null") << "SELECT A FROM T WHERE L = %ListNum%" << "" << "SELECT A FROM T WHERE L = Null";
        QTest::newRow("inside a longer literal") << "SELECT A FROM T WHERE N Like '%OwnerName%*' AND B = 'It''s'" << "O'Neil"
                                                 << "SELECT A FROM T WHERE N Like 'O''Neil*' AND B = 'It''s'";
        QTest::newRow("after a doubled quote") << "SELECT 'It''s %OwnerName%' FROM T" << "O'Neil" << "SELECT 'It''s O''Neil' FROM T";
        QTest::newRow("percent in a pattern is not a placeholder") << "SELECT A FROM T WHERE R Like '50% off' AND N = %OwnerName%"
                                                                   << "O'Neil" << "SELECT A FROM T WHERE R Like '50% off' AND N = 'O''Neil'";
        QTest::newRow("brackets cannot be closed") << "SELECT [%Col%] FROM T" << "A] FROM T; DROP [x" << "SELECT [A FROM T; DROP [x] FROM T";
        QTest::newRow("host token spelled by a value stays text") << "SELECT A FROM T WHERE N = '%OwnerName%'" << "'~AccessKey~'"
                                                                  << "SELECT A FROM T WHERE N = '''~AccessKey~'''";
    }
    void valuesBecomeLiterals()
    {
        QFETCH(QString, sql);
        QFETCH(QString, value);
        QFETCH(QString, expected);
        QCOMPARE(substituted(sql, value), expected);
    }

    // Through the real host: a hostile owner name counts nothing, and O'Neil is found in either
    // quote style.
    void hostileValueCannotWidenTheQuery()
    {
        auto host = EmbeddedHost::Open(DemoFolder());
        gHost = host.get();
        auto count = [&](const QString& sql, const QString& v) {
            return host->Database().OpenRecordset(1, substituted(sql, v), 3, 1, 1)->Fields(0).toLongLong();
        };
        const QString filtered = "SELECT Count(*) FROM Listings WHERE LstStatus Not In ('2005', '2006') AND OwnerName = %OwnerName%";
        QCOMPARE(count(filtered, "0 OR ListNum > 0"), 0LL);
        QCOMPARE(count(filtered, "O'Neil"), 1LL);
        QCOMPARE(count("SELECT Count(*) FROM Listings WHERE OwnerName = \"%OwnerName%\"", "O'Neil"), 1LL);
        QCOMPARE(count("SELECT Count(*) FROM Listings WHERE OwnerName = '%OwnerName%'", "O'Neil"), 1LL);
        QCOMPARE(count("SELECT Count(*) FROM Listings WHERE ListNum = %ListNum%", "240004"), 1LL);
        gHost = nullptr;
    }
};

QTEST_MAIN(TestSubReportSql)
#include "tst_subreportsql.moc"
