#include "entry/PrivateProfile.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

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
        QTest::newRow("byte-order mark kept, section found behind it")
            << QByteArray("\xEF\xBB\xBF[Pagewright]\r\nGrid=60,60\r\n") << "Grid" << "120,120"
            << QByteArray("\xEF\xBB\xBF[Pagewright]\r\nGrid=120,120\r\n");
        QTest::newRow("byte-order mark, new key") << QByteArray("\xEF\xBB\xBF[Pagewright]\nGrid=60,60\n") << "Pagelength" << "11"
                                                  << QByteArray("\xEF\xBB\xBF[Pagewright]\nGrid=60,60\nPagelength=11\n");
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

    void readsThroughByteOrderMark()
    {
        QTemporaryDir dir;
        const QString ini = dir.filePath("User.ini");
        writeFile(ini, "\xEF\xBB\xBF[Pagewright]\r\nGrid=0,120\r\n");
        QCOMPARE(PrivateProfile::GetString(S, "Grid", "60,60", ini), QString("0,120"));
    }

    // Two programs changing one User.ini at the same time: every write of both survives and
    // the host's own lines are kept. Each writer is this test program run again as a child.
    void concurrentWritersLoseNothing()
    {
        QTemporaryDir dir;
        const QString ini = dir.filePath("User.ini");
        writeFile(ini, "; the host's\r\n[Host]\r\nPath=C:\\Data\r\n");
        constexpr int kWrites = 100;
        QProcess a, b;
        for (auto [p, prefix] : {std::pair{&a, "A"}, std::pair{&b, "B"}})
            p->start(QCoreApplication::applicationFilePath(), {"--hammer", ini, prefix, QString::number(kWrites)});
        QVERIFY(a.waitForFinished(60000) && b.waitForFinished(60000));
        QCOMPARE(a.exitCode(), 0);
        QCOMPARE(b.exitCode(), 0);
        for (const char* prefix : {"A", "B"})
            for (int i = 0; i < kWrites; ++i)
                QCOMPARE(PrivateProfile::GetString(S, QString("%1%2").arg(prefix).arg(i), "lost", ini), QString::number(i * 7));
        QCOMPARE(PrivateProfile::GetString("Host", "Path", "", ini), QString("C:\\Data"));
        QVERIFY(readFile(ini).startsWith("; the host's\r\n[Host]\r\nPath=C:\\Data\r\n[Pagewright]\r\n"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), (QStringList{"User.ini", "User.ini.lock"}));
    }

    void readOnlyFileIsNotReplaced()
    {
        QTemporaryDir dir;
        const QString ini = dir.filePath("User.ini");
        writeFile(ini, "[Pagewright]\r\nGrid=60,60\r\n");
        QVERIFY(QFile::setPermissions(ini, QFileDevice::ReadOwner));
        QVERIFY(!PrivateProfile::WriteString(S, "Grid", "1,1", ini));
        QCOMPARE(readFile(ini), QByteArray("[Pagewright]\r\nGrid=60,60\r\n"));
    }
};

int main(int argc, char** argv)
{
    // Child mode of concurrentWritersLoseNothing: write <count> keys <prefix>0.. as fast as possible.
    if (argc == 5 && qstrcmp(argv[1], "--hammer") == 0) {
        const QString ini = QString::fromLocal8Bit(argv[2]);
        const QString prefix = QString::fromLocal8Bit(argv[3]);
        for (int i = 0, n = atoi(argv[4]); i < n; ++i)
            if (!PrivateProfile::WriteString(S, prefix + QString::number(i), QString::number(i * 7), ini))
                return 1;
        return 0;
    }
    QCoreApplication app(argc, argv);
    TestPrivateProfile t;
    return QTest::qExec(&t, argc, argv);
}
#include "tst_privateprofile.moc"
