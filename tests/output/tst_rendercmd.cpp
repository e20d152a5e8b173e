#include "AppRun.h"
#include "support_report.h"

#include <QtTest>

namespace {

// Runs pagewright with input on its standard input.
AppRun RunWithInput(const QStringList& args, const QByteArray& input)
{
    QProcess p;
    p.start(QStringLiteral(PW_APP), args);
    p.write(input);
    p.closeWriteChannel();
    p.waitForFinished(120000);
    return {p.exitCode(), QString::fromLocal8Bit(p.readAllStandardOutput()), QString::fromLocal8Bit(p.readAllStandardError())};
}

QString keysLine(const AppRun& r)
{
    for (const QString& line : r.out.split('\n'))
        if (line.startsWith("Keys: "))
            return line.mid(6);
    return {};
}

QString pdfInfo(const QString& pdf)
{
    QProcess p;
    p.start("pdfinfo", {pdf});
    p.waitForFinished(60000);
    return QString::fromUtf8(p.readAllStandardOutput());
}

} // namespace

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

    // Keys from a file (or standard input), a condition, or every record; then a shard of them.
    void choosingTheRecords()
    {
        const QString pdf = m_tmp.filePath("chosen.pdf");
        const QStringList common{"render", m_report, "--pdf", pdf, "--data", DemoFolder(), "--quiet"};
        const AppRun fromStdin = RunWithInput(common + QStringList{"--keys-file", "-"}, (m_keys[1] + "\r\n\n  " + m_keys[0] + "  \n").toUtf8());
        QVERIFY2(fromStdin.code == 0, qPrintable(fromStdin.err));
        QCOMPARE(keysLine(fromStdin), m_keys[1] + ' ' + m_keys[0]);

        QFile file(m_tmp.filePath("keys.txt"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write((m_keys[0] + "\n999999\n" + m_keys[0] + "\n").toUtf8());
        file.close();
        const AppRun fromFile = RunPagewright(common + QStringList{"--keys-file", file.fileName()});
        QCOMPARE(fromFile.code, 0);
        QVERIFY2(fromFile.out.startsWith("999999 Not Found\nPages: 2\nKeys: " + m_keys[0] + ' ' + m_keys[0] + '\n'), qPrintable(fromFile.out));

        // Every record the user may see, in key order; hidden statuses stay hidden.
        ReportFixture f;
        QStringList visible;
        auto rs = gHost->Database().OpenRecordset(1, "SELECT ListNum FROM Listings WHERE CLng(LstStatus) NOT IN (" + gHost->StatusList() + ") ORDER BY ListNum;", 3, 1, 1);
        for (; !rs->Eof(); rs->MoveNext())
            visible << rs->Fields(0).toString();
        const AppRun all = RunPagewright(common + QStringList{"--all"});
        QCOMPARE(all.code, 0);
        QCOMPARE(keysLine(all), visible.join(' '));

        // Shards are contiguous slices in key order; together they are every key once.
        QStringList joined;
        for (int i = 1; i <= 3; ++i) {
            const AppRun shard = RunPagewright(common + QStringList{"--all", "--shard", QString("%1/3").arg(i)});
            QCOMPARE(shard.code, 0);
            joined << keysLine(shard);
        }
        QCOMPARE(joined.join(' '), visible.join(' '));

        // A condition in the report's dialect, with an order.
        auto town = gHost->Database().OpenRecordset(1, "SELECT City FROM Listings WHERE ListNum = " + visible[0] + ";", 3, 1, 1);
        const QString city = town->Fields(0).toString();
        QStringList expected;
        auto inTown = gHost->Database().OpenRecordset(
            1, "SELECT ListNum FROM Listings WHERE City = '" + city + "' AND ListPrice > 100000 AND CLng(LstStatus) NOT IN (" + gHost->StatusList() + ") ORDER BY ListPrice DESC, ListNum;", 3, 1, 1);
        for (; !inTown->Eof(); inTown->MoveNext())
            expected << inTown->Fields(0).toString();
        const AppRun where = RunPagewright(common + QStringList{"--where", "City = '" + city + "' AND ListPrice > 100000", "--order-by", "ListPrice DESC, ListNum"});
        QVERIFY2(where.code == 0, qPrintable(where.err));
        QCOMPARE(keysLine(where), expected.join(' '));

        // A condition cannot step outside its parentheses past the status filter.
        const AppRun escape = RunPagewright(common + QStringList{"--where", "1=1) OR (1=1"});
        QCOMPARE(escape.code, 1);
        QVERIFY2(escape.err.contains("Error: 3075 - "), qPrintable(escape.err));
        QVERIFY(!QFile::exists(pdf + ".x"));
    }

    void outputsAndPaper()
    {
        const QStringList common{"render", m_report, "--key", m_keys[0], "--key", m_keys[1], "--data", DemoFolder(), "--quiet"};
        const QString each = m_tmp.filePath("each");
        const QString png = m_tmp.filePath("png");
        QVERIFY(QDir().mkpath(each) && QDir().mkpath(png));
        QCOMPARE(RunPagewright(common + QStringList{"--pdf-each", each}).code, 0);
        QCOMPARE(QDir(each).entryList(QDir::Files), (QStringList{m_keys[0] + ".pdf", m_keys[1] + ".pdf"}));
        QCOMPARE(RunPagewright(common + QStringList{"--png", png, "--dpi", "20"}).code, 0);
        QCOMPARE(QDir(png).entryList(QDir::Files), (QStringList{"page-000001.png", "page-000002.png"}));
        QCOMPARE(QImage(png + "/page-000001.png").size(), QSize(170, 220));

        // The paper overridden on the command line; the SQL log accepted as everywhere else.
        const QString pdf = m_tmp.filePath("a4.pdf"), log = m_tmp.filePath("sql.log");
        const AppRun a4 = RunPagewright(common + QStringList{"--pdf", pdf, "--paper", "A4", "--landscape", "--sql-log", log});
        QVERIFY2(a4.code == 0, qPrintable(a4.err));
        QVERIFY(QFileInfo(log).size() > 0);
        if (!QStandardPaths::findExecutable("pdfinfo").isEmpty())
            QVERIFY2(pdfInfo(pdf).contains("842 x 595"), qPrintable(pdfInfo(pdf)));

        // One painter thread or several: the same file.
        const QString one = m_tmp.filePath("one.pdf"), three = m_tmp.filePath("three.pdf");
        QCOMPARE(RunPagewright(common + QStringList{"--pdf", one, "--threads", "1"}).code, 0);
        QCOMPARE(RunPagewright(common + QStringList{"--pdf", three, "--threads", "3"}).code, 0);
        QFile a(one), b(three);
        QVERIFY(a.open(QIODevice::ReadOnly) && b.open(QIODevice::ReadOnly));
        const QByteArray bytes = a.readAll();
        QCOMPARE(bytes.count("/Type/Page/"), 2);
        QCOMPARE(b.readAll(), bytes);
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
        QTest::newRow("empty key") << "emptykey" << 2 << "" << "The key given with --key is empty: give a record key, e.g. --key 240001.";
        QTest::newRow("two sources") << "twosources" << 2 << "" << "Give only one of --key, --keys-file, --where and --all";
        QTest::newRow("bad shard") << "badshard" << 2 << "" << "--shard wants I/N with 1 <= I <= N, e.g. --shard 2/8; not '4/3'";
        QTest::newRow("bad paper") << "badpaper" << 2 << "" << "Unknown paper 'B7'";
        QTest::newRow("bad threads") << "badthreads" << 2 << "" << "--threads wants a number from 1 to 64; not '0'";
        QTest::newRow("missing keys file") << "nokeysfile" << 1 << "" << "Error: 53 - Cannot read the keys file";
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
        else if (what == "nokeysfile")
            args << "--keys-file" << m_tmp.filePath("no-such-keys.txt");
        else if (what != "nokey")
            args << "--key" << (what == "missing" ? "999999" : m_keys[0]);
        if (what == "twosources")
            args << "--all";
        if (what == "badshard")
            args << "--shard" << "4/3";
        if (what == "badpaper")
            args << "--paper" << "B7";
        if (what == "badthreads")
            args << "--threads" << "0";
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
