// Typed values from a host's database: the declared type decides, and nothing is lost.
#include "host/EmbeddedHost.h"
#include "host/HostValue.h"
#include "host/SqliteDatabase.h"
#include "support_host.h"

#include <QDateTime>
#include <QtTest>

using HostValue::ColumnType;

class TestHostValue : public QObject {
    Q_OBJECT

private slots:
    void declaredTypeNames_data()
    {
        QTest::addColumn<QString>("declared");
        QTest::addColumn<int>("type");
        const int date = int(ColumnType::DateTime), boolean = int(ColumnType::Boolean), other = int(ColumnType::Other);
        // SQLite declarations and the names PostgreSQL reports.
        for (const char* d : {"DATE", "date", "DateTime", "TIMESTAMP", "timestamp without time zone", "timestamptz",
                              "time", "TIME(6)", " smalldatetime "})
            QTest::newRow(d) << QString::fromLatin1(d) << date;
        for (const char* b : {"BOOLEAN", "bool", "Bit", "YESNO", "logical"})
            QTest::newRow(b) << QString::fromLatin1(b) << boolean;
        for (const char* o : {"", "TEXT", "INTEGER", "REAL", "varchar(20)", "numeric", "BITS", "UPDATED"})
            QTest::newRow(o[0] ? o : "empty") << QString::fromLatin1(o) << other;
    }
    void declaredTypeNames()
    {
        QFETCH(QString, declared);
        QFETCH(int, type);
        QCOMPARE(int(HostValue::TypeOfDeclared(declared)), type);
    }

    void datesFromTheirStoredText()
    {
        auto typed = [](const QVariant& raw) { return HostValue::Typed(raw, ColumnType::DateTime); };
        QCOMPARE(typed(QStringLiteral("2024-06-18")), QVariant(QDate(2024, 6, 18)));
        QCOMPARE(typed(QStringLiteral("2024-06-18 19:09:45")), QVariant(QDateTime(QDate(2024, 6, 18), QTime(19, 9, 45), Qt::UTC)));
        QCOMPARE(typed(QStringLiteral("2024-06-18T07:05")), QVariant(QDateTime(QDate(2024, 6, 18), QTime(7, 5), Qt::UTC)));
        // PostgreSQL's text of a timestamp with zone and fractions: the wall-clock time is kept.
        QCOMPARE(typed(QStringLiteral("2024-06-18 19:09:45.123+02")), QVariant(QDateTime(QDate(2024, 6, 18), QTime(19, 9, 45), Qt::UTC)));
        QCOMPARE(typed(QStringLiteral("07:30:00")), QVariant(QTime(7, 30)));
        // Whatever does not read as a date comes back as it was: never lost, never invented.
        for (const QVariant& keep : {QVariant(QStringLiteral("2024-02-30")), QVariant(QStringLiteral("18.6.2024")),
                                     QVariant(QStringLiteral("2024-06-18 25:00")), QVariant(QStringLiteral("")),
                                     QVariant(QStringLiteral("2024-06-18; DROP")), QVariant(45000.5), QVariant(qlonglong(7))})
            QCOMPARE(typed(keep), keep);
        QVERIFY(typed(QVariant()).isNull());
    }

    void booleansFromNumbersAndWords()
    {
        auto typed = [](const QVariant& raw) { return HostValue::Typed(raw, ColumnType::Boolean); };
        QCOMPARE(typed(qlonglong(-1)), QVariant(true));
        QCOMPARE(typed(qlonglong(0)), QVariant(false));
        QCOMPARE(typed(qlonglong(2)), QVariant(true));
        QCOMPARE(typed(0.0), QVariant(false));
        QCOMPARE(typed(QStringLiteral("t")), QVariant(true));   // PostgreSQL's text form
        QCOMPARE(typed(QStringLiteral("FALSE")), QVariant(false));
        QCOMPARE(typed(QStringLiteral("-1")), QVariant(true));
        QCOMPARE(typed(QStringLiteral("maybe")), QVariant(QStringLiteral("maybe")));
        QVERIFY(typed(QVariant()).isNull());
        // Other columns are never touched.
        QCOMPARE(HostValue::Typed(QStringLiteral("2024-06-18"), ColumnType::Other), QVariant(QStringLiteral("2024-06-18")));
    }

    // The demo database declares its date and yes/no columns: they arrive typed, also through
    // the Jet adapter; an expression over them has no declared type and stays as computed.
    void theDemoHostReturnsTypedValues()
    {
        auto host = EmbeddedHost::Open(SmallDemoFolder());
        auto rs = host->Database().OpenRecordset(1, QStringLiteral("SELECT ListDate, SaleDate, Pool, ListPrice FROM Listings WHERE ListNum = 240001;"));
        QCOMPARE(rs->Fields(QStringLiteral("ListDate")).typeId(), int(QMetaType::QDate));
        QVERIFY(rs->Fields(QStringLiteral("SaleDate")).isNull()); // active: never sold
        QCOMPARE(rs->Fields(QStringLiteral("Pool")).typeId(), int(QMetaType::Bool));
        QCOMPARE(rs->Fields(QStringLiteral("ListPrice")).typeId(), int(QMetaType::Double));
        auto raw = host->Sqlite().RunNative(QStringLiteral("SELECT ListDate || '', Pool + 0 FROM Listings WHERE ListNum = 240001"));
        QCOMPARE(rs->Fields(QStringLiteral("ListDate")).toDate(), QDate::fromString(raw->Fields(0).toString(), Qt::ISODate));
        QCOMPARE(rs->Fields(QStringLiteral("Pool")).toBool(), raw->Fields(1).toInt() != 0);
        auto rentals = host->Database().OpenRecordset(5, QStringLiteral("SELECT Furnished, PetsAllowed, AvailableDate FROM Rentals WHERE Listnum = 500001;"));
        QCOMPARE(rentals->Fields(0).typeId(), int(QMetaType::Bool));
        QCOMPARE(rentals->Fields(1).typeId(), int(QMetaType::Bool));
        QCOMPARE(rentals->Fields(2).typeId(), int(QMetaType::QDate));
    }
};

QTEST_MAIN(TestHostValue)
#include "tst_hostvalue.moc"
