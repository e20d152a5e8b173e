#include "sqltext/clsSQLQuote.h"
#include "sqltext/clsTempFile.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>
#include <thread>

class TestSqlText : public QObject {
    Q_OBJECT
private slots:
    void quoteText_data()
    {
        QTest::addColumn<QString>("in");
        QTest::addColumn<QString>("out");
        QTest::newRow("plain") << "Smith" << "Smith";
        QTest::newRow("one quote") << "O'Neil" << "O''Neil";
        QTest::newRow("every quote") << "'a''b'" << "''a''''b''";
        QTest::newRow("empty") << "" << "";
        QTest::newRow("wildcards untouched") << "50%_off" << "50%_off";
    }
    void quoteText()
    {
        QFETCH(QString, in);
        QFETCH(QString, out);
        QCOMPARE(clsSQLQuote().QuoteText(in), out);
    }

    void quoteLike_data()
    {
        QTest::addColumn<QString>("in");
        QTest::addColumn<bool>("modern");
        QTest::addColumn<QString>("out");
        QTest::newRow("percent underscore") << "50%_off" << true << "50[%][_]off";
        QTest::newRow("quote") << "O'Neil" << true << "O''Neil";
        QTest::newRow("all bracketed") << "_%*?[#" << true << "[_][%][*][?][[][#]";
        QTest::newRow("dash old jet") << "A-1" << false << "A[-]1";
        QTest::newRow("dash modern jet") << "A-1" << true << "A-1";
        QTest::newRow("closing bracket copied") << "a]b" << false << "a]b";
        QTest::newRow("empty") << "" << false << "";
        QTest::newRow("non-latin kept") << QString::fromUtf8("Müller's") << true << QString::fromUtf8("Müller''s");
    }
    void quoteLike()
    {
        QFETCH(QString, in);
        QFETCH(bool, modern);
        QFETCH(QString, out);
        QCOMPARE(clsSQLQuote(modern).QuoteLike(in), out);
    }

    void allowedStatuses_data()
    {
        QTest::addColumn<QString>("excluded");
        QTest::addColumn<QString>("out");
        QTest::newRow("none excluded") << "" << "'2001','2002','2003','2004','2005','2006','2007'";
        QTest::newRow("two excluded") << "2005,2006" << "'2001','2002','2003','2004','2007'";
        QTest::newRow("all excluded") << "2001,2002,2003,2004,2005,2006,2007" << "'0000'";
        QTest::newRow("substring test") << "120015" << "'2002','2003','2004','2005','2006','2007'";
        QTest::newRow("quoted codes") << "'2007'" << "'2001','2002','2003','2004','2005','2006'";
        QTest::newRow("unrelated text") << "abc" << "'2001','2002','2003','2004','2005','2006','2007'";
    }
    void allowedStatuses()
    {
        QFETCH(QString, excluded);
        QFETCH(QString, out);
        QCOMPARE(clsAllowedStatuses::SQLAllowedStatuses(excluded), out);
    }

    void tempFiles()
    {
        QTemporaryDir dir;
        const QString a = clsTempFile::FileName2(QStringLiteral("~QR"), dir.path());
        const QString b = clsTempFile::FileName2(QStringLiteral("~QR"), dir.path());
        QVERIFY(a != b);
        for (const QString& f : {a, b}) {
            const QFileInfo fi(f);
            QVERIFY(fi.exists());
            QCOMPARE(fi.size(), 0);
            QCOMPARE(fi.absolutePath(), QDir(dir.path()).absolutePath());
            QVERIFY(fi.fileName().startsWith(QLatin1String("~QR")));
        }
        // The prefix keeps three characters; "X" cannot come from the hex digits that follow.
        const QString cut = QFileInfo(clsTempFile::FileName2(QStringLiteral("ABCXYZ"), dir.path())).fileName();
        QVERIFY2(cut.startsWith(QLatin1String("ABC")) && !cut.startsWith(QLatin1String("ABCX")), qPrintable(cut));

        // Failures give an empty name and create nothing.
        QCOMPARE(clsTempFile::FileName2(QStringLiteral("~QR"), dir.path() + QStringLiteral("/missing")), QString());
        QCOMPARE(clsTempFile::FileName2(QStringLiteral("~QR"), QString()), QString());
        QCOMPARE(clsTempFile::FileName2(QStringLiteral("~QR"), a), QString()); // a plain file is no folder
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files).size(), 3);

        const QString system = clsTempFile::FileName(QStringLiteral("~QR"));
        QCOMPARE(QFileInfo(system).absolutePath(), QDir(QDir::tempPath()).absolutePath());
        QVERIFY(QFile::remove(system));
    }

    void tempFilesUniqueUnderConcurrency()
    {
        QTemporaryDir dir;
        const QString path = dir.path();
        constexpr int perThread = 300;
        std::vector<QStringList> got(4);
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&, t] {
                for (int i = 0; i < perThread; ++i)
                    got[size_t(t)] << clsTempFile::FileName2(QStringLiteral("~QR"), path);
            });
        for (auto& th : threads)
            th.join();
        QSet<QString> all;
        for (const QStringList& l : got)
            for (const QString& f : l) {
                QVERIFY(!f.isEmpty());
                all.insert(f);
            }
        QCOMPARE(all.size(), 4 * perThread);
        QCOMPARE(QDir(path).entryList(QDir::Files).size(), 4 * perThread);
    }
};

QTEST_GUILESS_MAIN(TestSqlText)
#include "tst_sqltext.moc"
