// The command line itself: --version, --help for the program and for every subcommand (on
// standard output, exit 0), and mistakes reported on standard error with exit code 2.
#include "AppRun.h"

#include <QtTest>

class TestCommandLine : public QObject {
    Q_OBJECT
private slots:
    void version()
    {
        const AppRun r = RunPagewright({"--version"});
        QCOMPARE(r.code, 0);
        QVERIFY2(QRegularExpression(QStringLiteral("^pagewright \\d+\\.\\d+(\\.\\d+)? \\(Qt 6\\.\\d+\\.\\d+, SQLite 3\\.\\d+\\.\\d+, libpq \\d+\\)\\n$"))
                     .match(r.out).hasMatch(), qPrintable(r.out));
        QVERIFY(r.err.isEmpty());
    }

    void helpOfEverySubcommand_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("usage");
        QTest::newRow("demo") << "demo" << "usage: pagewright demo [--data DIR] [--database URL] [--listings N] [--force]\n";
        QTest::newRow("sql") << "sql" << "usage: pagewright sql [--data DIR] [--database URL] --kind N \"STATEMENT\" [--sql-log FILE]\n";
        QTest::newRow("dump") << "dump" << "usage: pagewright dump ";
        QTest::newRow("resave") << "resave" << "usage: pagewright resave ";
        QTest::newRow("dataview") << "dataview" << "usage: pagewright dataview ";
        QTest::newRow("render") << "render" << "usage: pagewright render ";
    }
    void helpOfEverySubcommand()
    {
        QFETCH(QString, command);
        QFETCH(QString, usage);
        for (const QStringList& args : {QStringList{command, "--help"}, QStringList{"--help", command}, QStringList{command, "x.rdf", "-h"}}) {
            const AppRun r = RunPagewright(args);
            QCOMPARE(r.code, 0);
            QVERIFY2(r.out.startsWith(usage), qPrintable(r.out));
            QVERIFY(r.out.contains(QLatin1String("--database URL")));
            QVERIFY(r.err.isEmpty());
        }
    }

    void programHelpListsEverySubcommand()
    {
        const AppRun r = RunPagewright({"--help"});
        QCOMPARE(r.code, 0);
        for (const char* name : {"demo", "sql", "dump", "resave", "dataview", "render"})
            QVERIFY2(r.out.contains(QStringLiteral("\n  %1 ").arg(QLatin1String(name))), name);
        QVERIFY(r.out.contains(QLatin1String("exit codes: 0 done, 1 the work failed")));
    }

    void mistakesGoToStandardError()
    {
        AppRun r = RunPagewright({"frobnicate"});
        QCOMPARE(r.code, 2);
        QVERIFY(r.out.isEmpty());
        QVERIFY(r.err.startsWith(QLatin1String("pagewright: unknown subcommand 'frobnicate'\n")));
        r = RunPagewright({"sql", "--kind", "1", "SELECT 1", "--database"});
        QCOMPARE(r.code, 2);
        QCOMPARE(r.err, QStringLiteral("pagewright: --database needs a URL such as postgresql://USER@HOST:5432/DB\n"));
        // A server that is not there: the work fails (1), the password stays out of the message.
        // The folder still holds the identity (host.ini); the data is on the server.
        QTemporaryDir dir;
        QFile ini(dir.filePath("host.ini"));
        QVERIFY(ini.open(QIODevice::WriteOnly));
        ini.write("[Host]\nUserName=JCarter\n");
        ini.close();
        r = RunPagewright({"sql", "--data", dir.path(), "--database", "postgresql://agent:s3cret@/db?host=/nonexistent/pw", "--kind", "1", "SELECT 1"});
        QCOMPARE(r.code, 1);
        QVERIFY2(r.err.contains(QLatin1String("3151")) && r.err.contains(QLatin1String("postgresql://agent@/db?host=/nonexistent/pw")), qPrintable(r.err));
        QVERIFY(!r.err.contains(QLatin1String("s3cret")));
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
