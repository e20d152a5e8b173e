#include "document/RdfFile.h"
#include "document/VbPrint.h"
#include "support_bytes.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class TestVbPrint : public QObject {
    Q_OBJECT
private slots:
    void numbers_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("isSingle");
        QTest::addColumn<QString>("text");
        QTest::newRow("integer") << 5.0 << false << " 5";
        QTest::newRow("negative integer") << -32768.0 << false << "-32768";
        QTest::newRow("zero") << 0.0 << true << " 0";
        QTest::newRow("negative zero") << -0.0 << true << " 0";
        QTest::newRow("largest long") << 2147483647.0 << false << " 2147483647";
        QTest::newRow("single fraction") << 12.5 << true << " 12.5";
        QTest::newRow("no zero before the point") << 0.25 << true << " .25";
        QTest::newRow("negative fraction") << -0.5 << true << "-.5";
        QTest::newRow("single tenth") << 0.1 << true << " .1";
        QTest::newRow("single third") << 1.0 / 3 << true << " .3333333";
        QTest::newRow("single two thirds rounds") << 2.0 / 3 << true << " .6666667";
        QTest::newRow("double third") << 1.0 / 3 << false << " .333333333333333";
        QTest::newRow("seven digits") << 1234567.0 << true << " 1234567";
        QTest::newRow("ten million single") << 1e7 << true << " 1E+07";
        QTest::newRow("eight digits single") << 12345678.0 << true << " 1.234568E+07";
        QTest::newRow("rounds up to exponent") << 9999999.6 << true << " 1E+07";
        QTest::newRow("fifteen digits") << 123456789012345.0 << false << " 123456789012345";
        QTest::newRow("double 1E+15") << 1e15 << false << " 1E+15";
        QTest::newRow("small fixed") << 0.0001 << false << " .0001";
        QTest::newRow("small exponent") << 0.00001 << false << " 1E-05";
        QTest::newRow("small single") << -1.5e-7 << true << "-1.5E-07";
        QTest::newRow("three exponent digits") << 1e100 << false << " 1E+100";
    }
    void numbers()
    {
        QFETCH(double, value);
        QFETCH(bool, isSingle);
        QFETCH(QString, text);
        QCOMPARE(VbPrintNumber(value, isSingle), text);
    }

    void writerBytes()
    {
        VbPrintWriter w;
        QVERIFY(w.IsEmpty());
        w.Line("Report MyReport");
        w.Number("Items            = ", 2);
        w.Text("   Text          = ", QString::fromUtf8("Café €5"));
        w.Number("   Top           = ", -120.5, true);
        w.Boolean("   FontBold      = ", true);
        w.Boolean("   FontItalic    = ", false);
        w.Line("End");
        QCOMPARE(w.Bytes(), QByteArray("Report MyReport\r\n"
                                       "Items            =  2 \r\n"
                                       "   Text          = Caf\xE9 \x80" "5\r\n"
                                       "   Top           = -120.5 \r\n"
                                       "   FontBold      = True\r\n"
                                       "   FontItalic    = False\r\n"
                                       "End\r\n"));
    }

    void savesOnlyWhenThereIsSomething()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("dump.txt");
        QVERIFY(!VbPrintWriter().SaveFile(path));
        QVERIFY(!QFile::exists(path));

        QFile old(path);
        QVERIFY(old.open(QIODevice::WriteOnly));
        const QByteArray older("an older and much longer dump that must disappear entirely\r\n");
        old.write(older);
        old.close();
        QVERIFY(!VbPrintWriter().SaveFile(path));
        QCOMPARE(FileBytes(path), older); // an empty dump leaves an existing file alone

        VbPrintWriter w;
        w.Line("Report MyReport");
        QVERIFY(w.SaveFile(path));
        QCOMPARE(FileBytes(path), QByteArray("Report MyReport\r\n"));

        try {
            w.SaveFile(dir.filePath("missing/dump.txt"));
            QFAIL("no error");
        } catch (const RdfError& e) {
            QCOMPARE(e.Number(), HostErr::PathNotFound);
        }
    }
};

QTEST_GUILESS_MAIN(TestVbPrint)
#include "tst_vbprint.moc"
