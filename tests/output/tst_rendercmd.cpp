#include "AppRun.h"
#include "support_report.h"

#include <QtTest>

class TestRenderCommand : public QObject {
    Q_OBJECT
    QTemporaryDir m_tmp;
    QString m_report;
    QStringList m_keys;

private slots:
    void initTestCase()
    {
        m_report = m_tmp.filePath("sheet.rdf");
        ReportFixture f;
        f.buildListingReport(m_report, 0);
        m_keys = f.liveKeys(m_report, 2);
        QCOMPARE(m_keys.size(), 2);
    }

    void rendersPagesAndKeys()
    {
        const QString pdf = m_tmp.filePath("out.pdf");
        const AppRun r = RunPagewright({"render", m_report, "--key", m_keys[0], "--key", m_keys[1], "--pdf", pdf, "--data", DemoFolder()});
        QVERIFY2(r.code == 0, qPrintable(r.err));
        QVERIFY(r.out.startsWith("Pages: 2\nKeys: " + m_keys.join(' ') + "\n"));
        if (HavePdfToText())
            QCOMPARE(PdfPages(pdf).size(), 2);
    }

    void aMissingKeyDoesNotStopTheOthers()
    {
        const QString pdf = m_tmp.filePath("some.pdf");
        const AppRun r = RunPagewright({"render", m_report, "--key", "999999", "--key", m_keys[1], "--pdf", pdf, "--data", DemoFolder()});
        QVERIFY2(r.code == 0, qPrintable(r.err));
        QVERIFY2(r.out.startsWith("999999 Not Found\nPages: 1\nKeys: " + m_keys[1] + "\n"), qPrintable(r.out));
        QVERIFY(QFileInfo(pdf).size() > 0);
    }

    void failures_data()
    {
        QTest::addColumn<QString>("what");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("stdoutText");
        QTest::addColumn<QString>("stderrStart");
        QTest::newRow("missing record") << "missing" << 1 << "999999 Not Found\n" << "";
        QTest::newRow("damaged file") << "damaged" << 1 << "" << "Report Designer File error: Error: 321 - Bad file format: end of file in header at offset 4";
        QTest::newRow("no key") << "nokey" << 2 << "" << "usage: pagewright render";
        QTest::newRow("empty key") << "emptykey" << 2 << "" << "The key given with --key is empty";
        QTest::newRow("empty key after a good one") << "secondempty" << 2 << "" << "The key given with --key is empty";
    }
    void failures()
    {
        QFETCH(QString, what);
        QFETCH(int, code);
        QFETCH(QString, stdoutText);
        QFETCH(QString, stderrStart);
        QString report = m_report;
        if (what == "damaged") {
            report = m_tmp.filePath("damaged.rdf");
            QFile f(report);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("\x64\x00\x00\x00\x20", 5);
        }
        const QString pdf = m_tmp.filePath(what + ".pdf");
        QStringList args{"render", report, "--pdf", pdf, "--data", DemoFolder()};
        if (what == "emptykey")
            args << "--key" << "";
        else if (what == "secondempty")
            args << "--key" << m_keys[0] << "--key=";
        else if (what != "nokey")
            args << "--key" << (what == "missing" ? "999999" : m_keys[0]);
        const AppRun r = RunPagewright(args);
        QCOMPARE(r.code, code);
        QCOMPARE(r.out, stdoutText);
        bool found = false; // Qt may add its own warnings around the message
        for (const QString& line : r.err.split('\n'))
            found = found || line.startsWith(stderrStart);
        QVERIFY2(found, qPrintable(r.err));
        QVERIFY(!QFile::exists(pdf)); // nothing written on failure
    }
};

QTEST_MAIN(TestRenderCommand)
#include "tst_rendercmd.moc"
