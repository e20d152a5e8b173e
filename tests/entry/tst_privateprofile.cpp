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
        writeFile(ini, "; host settings\r\n[Host]\r\nGrid=1,1\r\n[PAGEWRIGHT]\r\n  grid = 0,120  \r\nTitle=\"quoted value\"\r\n;Pagelength=9\r\n");
        QCOMPARE(PrivateProfile::GetString(S, "Grid", "60,60", ini), QString("0,120"));
        QCOMPARE(PrivateProfile::GetString(S, "GRID", "60,60", ini), QString("0,120"));
        QCOMPARE(PrivateProfile::GetString("host", "grid", "x", ini), QString("1,1"));
        QCOMPARE(PrivateProfile::GetString(S, "Title", "", ini), QString("quoted value"));
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
    }

    void writeAddsKeyAfterSectionContent()
    {
        QTemporaryDir dir;
        const QString ini = dir.filePath("User.ini");
        writeFile(ini, "[Pagewright]\nPagelength=14\n\n[Other]\nA=1");
        QVERIFY(PrivateProfile::WriteString(S, "Grid", "60,60", ini));
        QCOMPARE(readFile(ini), QByteArray("[Pagewright]\nPagelength=14\nGrid=60,60\n\n[Other]\nA=1"));
    }

    void writeAddsSectionAtEndKeepingLineEnds()
    {
        QTemporaryDir dir;
        const QString ini = dir.filePath("User.ini");
        writeFile(ini, "[Host]\r\nA=1"); // no line end on the last line
        QVERIFY(PrivateProfile::WriteString(S, "Grid", "60,60", ini));
        QCOMPARE(readFile(ini), QByteArray("[Host]\r\nA=1\r\n[Pagewright]\r\nGrid=60,60\r\n"));
    }

    void writeCreatesMissingFile()
    {
        QTemporaryDir dir;
        const QString ini = dir.filePath("User.ini");
        QVERIFY(PrivateProfile::WriteString(S, "Grid", "60,60", ini));
        QCOMPARE(readFile(ini), QByteArray("[Pagewright]\r\nGrid=60,60\r\n"));
        QVERIFY(PrivateProfile::WriteString(S, "Grid", "120,120", ini));
        QCOMPARE(PrivateProfile::GetString(S, "Grid", "", ini), QString("120,120"));
        QCOMPARE(readFile(ini), QByteArray("[Pagewright]\r\nGrid=120,120\r\n"));
    }

    void writeIntoMissingFolderFailsCleanly()
    {
        QTemporaryDir dir;
        QVERIFY(!PrivateProfile::WriteString(S, "Grid", "1", dir.filePath("no/such/User.ini")));
    }

    void windows1252RoundTrip()
    {
        QTemporaryDir dir;
        const QString ini = dir.filePath("User.ini");
        writeFile(ini, "[Pagewright]\r\nName=Caf\xe9 \x80\r\n");
        QCOMPARE(PrivateProfile::GetString(S, "Name", "", ini), QString::fromUtf8("Café €"));
        QVERIFY(PrivateProfile::WriteString(S, "Owner", QString::fromUtf8("Zoë"), ini));
        QCOMPARE(readFile(ini), QByteArray("[Pagewright]\r\nName=Caf\xe9 \x80\r\nOwner=Zo\xeb\r\n"));
    }
};

QTEST_GUILESS_MAIN(TestPrivateProfile)
#include "tst_privateprofile.moc"
