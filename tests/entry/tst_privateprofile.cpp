#include "entry/PrivateProfile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {
QByteArray readFile(const QString& p)
{
    QFile f(p);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}
void writeFile(const QString& p, const QByteArray& b)
{
    QFile f(p);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(b);
}
const QString S = QStringLiteral("Pagewright");
}

class TestPrivateProfile : public QObject {
    Q_OBJECT
private slots:
    void readsCaseInsensitivelyWithDefaults()
    {
        QTemporaryDir dir;
        const QString ini = dir.filePath("User.ini");
        writeFile(ini, "; host settings\r\n[Host]\r\nGrid=1,1\r\n[PAGEWRIGHT]\r\n  grid = 0,120  \r\nTitle=\"quoted value\"\r\n;Pagelength=9\r\nName=Caf\xe9 \x80\r\n");
        QCOMPARE(PrivateProfile::GetString(S, "Grid", "60,60", ini), QString("0,120"));
        QCOMPARE(PrivateProfile::GetString(S, "GRID", "60,60", ini), QString("0,120"));
        QCOMPARE(PrivateProfile::GetString("host", "grid", "x", ini), QString("1,1"));
        QCOMPARE(PrivateProfile::GetString(S, "Title", "", ini), QString("quoted value"));
        QCOMPARE(PrivateProfile::GetString(S, "Name", "", ini), QString::fromUtf8("Café €"));
        // A commented-out key is absent.
        QCOMPARE(PrivateProfile::GetString(S, "Pagelength", "14", ini), QString("14"));
        QCOMPARE(PrivateProfile::GetString("Missing", "Grid", "60,60", ini), QString("60,60"));
        QCOMPARE(PrivateProfile::GetString(S, "Grid", "60,60", dir.filePath("none.ini")), QString("60,60"));
    }

    void writeKeepsEveryOtherByte()
    {
        QTemporaryDir dir;
        const QString ini = dir.filePath("User.ini");
        const QByteArray before =
            "; written by the host\r\n"
            "[Host]\r\n"
            "Path=C:\\Tervane\\Data\\\r\n"
            "\r\n"
            "[Pagewright]\r\n"
            "   Grid   =   60,60   ; old\r\n"
            "Pagelength=14\r\n"
            "\r\n"
            "[Other]\r\n"
            "Grid=5\r\n";
        writeFile(ini, before);
        QVERIFY(PrivateProfile::WriteString(S, "grid", "0,120", ini));
        QByteArray expected = before;
        expected.replace("   Grid   =   60,60   ; old", "grid=0,120");
        QCOMPARE(readFile(ini), expected);
        QCOMPARE(PrivateProfile::GetString("Other", "Grid", "", ini), QString("5"));
        QVERIFY(!PrivateProfile::WriteString(S, "Grid", "1", dir.filePath("no/such/User.ini")));
    }

    void writes_data()
    {
        QTest::addColumn<QByteArray>("before"); // null: no file yet
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("key after the section's content") << QByteArray("[Pagewright]\nPagelength=14\n\n[Other]\nA=1") << "Grid" << "60,60"
                                                         << QByteArray("[Pagewright]\nPagelength=14\nGrid=60,60\n\n[Other]\nA=1");
        QTest::newRow("new section at the end, no last line end") << QByteArray("[Host]\r\nA=1") << "Grid" << "60,60"
                                                                  << QByteArray("[Host]\r\nA=1\r\n[Pagewright]\r\nGrid=60,60\r\n");
        QTest::newRow("missing file") << QByteArray() << "Grid" << "60,60" << QByteArray("[Pagewright]\r\nGrid=60,60\r\n");
        QTest::newRow("value replaced") << QByteArray("[Pagewright]\r\nGrid=60,60\r\n") << "Grid" << "120,120"
                                        << QByteArray("[Pagewright]\r\nGrid=120,120\r\n");
        QTest::newRow("Windows-1252") << QByteArray("[Pagewright]\r\nName=Caf\xe9 \x80\r\n") << "Owner" << QString::fromUtf8("Zoë")
                                      << QByteArray("[Pagewright]\r\nName=Caf\xe9 \x80\r\nOwner=Zo\xeb\r\n");
    }
    void writes()
    {
        QFETCH(QByteArray, before);
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(QByteArray, after);
        QTemporaryDir dir;
        const QString ini = dir.filePath("User.ini");
        if (!before.isNull())
            writeFile(ini, before);
        QVERIFY(PrivateProfile::WriteString(S, key, value, ini));
        QCOMPARE(readFile(ini), after);
        QCOMPARE(PrivateProfile::GetString(S, key, "", ini), value);
    }
};

QTEST_GUILESS_MAIN(TestPrivateProfile)
#include "tst_privateprofile.moc"
