// The demo reports on both hosts: `pagewright demo` prepares a folder and copies its database to
// the test cluster, then every demo flyer is filled (dataview) and merged to PDF (render) for
// the same listings on SQLite and on PostgreSQL, and the results must be the same, byte for byte
// in the data view and line for line in the printed text.
#include "AppRun.h"
#include "PgTest.h"

#include <QDirIterator>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

namespace {
// Date/time items show the moment of printing; the two runs may be a second apart.
QString withoutClock(QString text)
{
    static const QRegularExpression now(QStringLiteral("\\d{1,2}/\\d{1,2}/\\d{4} \\d{1,2}:\\d{2}:\\d{2} [AP]M"));
    return text.replace(now, QStringLiteral("<now>"));
}

QString pdfText(const QString& pdf)
{
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    p.waitForFinished(60000);
    return withoutClock(QString::fromUtf8(p.readAllStandardOutput()));
}
} // namespace

class TestCrossHost : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    QString m_data, m_url;
    QStringList m_reports;
    const QStringList m_keys{"240001", "240004", "240007", "240010", "240013"};

private slots:
    void initTestCase()
    {
        QVERIFY2(OnTestServer(), "this test needs the PostgreSQL test cluster (PW_TEST_PG)");
        qunsetenv("PAGEWRIGHT_DATABASE");
        m_data = m_dir.filePath(QStringLiteral("data"));
        m_url = NewTestDatabase(QStringLiteral("demo"));
        AppRun r = RunPagewright({"demo", "--data", m_data, "--listings", "30"});
        QVERIFY2(r.code == 0, qPrintable(r.err));
        // The folder is there already: only the server gets the data.
        r = RunPagewright({"demo", "--data", m_data, "--database", m_url});
        QVERIFY2(r.code == 0, qPrintable(r.err));
        QCOMPARE(r.out, QStringLiteral("Demo database copied to %1.\n").arg(m_url));
        r = RunPagewright({"demo", "--data", m_data, "--database", m_url});
        QVERIFY(r.out.startsWith(QStringLiteral("Demo data is already in %1").arg(m_url)));
        for (QDirIterator it(m_data + QStringLiteral("/Users"), {QStringLiteral("*.rdf")}, QDir::Files, QDirIterator::Subdirectories); it.hasNext();)
            m_reports << it.next();
        m_reports.sort();
        QCOMPARE(m_reports.size(), 3); // Open House, Just Listed, Featured Home
    }

    void dataViewIsTheSame()
    {
        int values = 0;
        for (const QString& report : m_reports)
            for (const QString& key : m_keys) {
                const AppRun lite = RunPagewright({"dataview", report, "--key", key, "--data", m_data});
                const AppRun pg = RunPagewright({"dataview", report, "--key", key, "--data", m_data, "--database", m_url});
                QVERIFY2(lite.code == 0, qPrintable(lite.err));
                QVERIFY2(pg.code == 0, qPrintable(pg.err));
                QCOMPARE(withoutClock(pg.out), withoutClock(lite.out));
                values += int(lite.out.count(QLatin1Char('\n')));
            }
        QVERIFY(values > 50);
    }

    void mergedPdfReadsTheSame()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
            QFAIL("pdftotext (poppler-utils) is missing");
        for (const QString& report : m_reports) {
            QStringList args{"render", report, "--pdf"};
            const QString a = m_dir.filePath(QStringLiteral("lite.pdf")), b = m_dir.filePath(QStringLiteral("pg.pdf"));
            QStringList keys;
            for (const QString& k : m_keys)
                keys << QStringLiteral("--key") << k;
            const AppRun lite = RunPagewright(QStringList{"render", report, "--pdf", a, "--data", m_data} + keys);
            const AppRun pg = RunPagewright(QStringList{"render", report, "--pdf", b, "--data", m_data, "--database", m_url} + keys);
            QVERIFY2(lite.code == 0, qPrintable(lite.err));
            QVERIFY2(pg.code == 0, qPrintable(pg.err));
            // Everything but the time taken.
            auto withoutTime = [](const QString& out) { return out.section(QStringLiteral("\nTime:"), 0, 0); };
            QCOMPARE(withoutTime(pg.out), withoutTime(lite.out));
            const QString text = pdfText(a);
            QVERIFY(text.size() > 100);
            QCOMPARE(pdfText(b), text);
        }
    }
};

QTEST_GUILESS_MAIN(TestCrossHost)
#include "tst_crosshost.moc"
