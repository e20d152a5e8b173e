// The batch commands, run as a user runs them: the real executable on real demo data.
#include "PgTest.h"
#include "AppRun.h"
#include "design/OffscreenPage.h"
#include "document/RdfFile.h"
#include "document/clsRptControl.h"
#include "host/DemoData.h"
#include "host/EmbeddedHost.h"
#include "host/SqliteDatabase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {


QByteArray readAll(const QString& p)
{
    QFile f(p);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// name -> (kind, shown) from the dataview listing.
QMap<QString, QPair<QString, QString>> parse(const QString& out)
{
    QMap<QString, QPair<QString, QString>> m;
    for (const QString& line : out.split('\n', Qt::SkipEmptyParts)) {
        const QStringList f = line.split('\t');
        if (f.size() == 3)
            m[f[0]] = {f[1], f[2]};
    }
    return m;
}

} // namespace

class TestBatch : public QObject {
    Q_OBJECT
    QTemporaryDir dir;
    QString data, report;
    std::unique_ptr<EmbeddedHost> host;
    std::unique_ptr<FieldDictionary> dic;

    QVariant value(const QString& sql, const QString& column)
    {
        auto rs = host->Database().OpenRecordset(1, sql);
        return rs->RecordCount() ? rs->Fields(column) : QVariant();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(dir.isValid());
        data = dir.filePath("data");
        GenerateDemoData(data, 60);
        UseTestServerFor(data);
        host = EmbeddedHost::Open(data);
        dic = host->NewFieldDictionary(1);
        gHost = host.get();

        // A flyer: coded fields, a formatted price, expressions, a date stamp and bound photos.
        OffscreenPage page;
        clsRptControl doc;
        doc.Init(dic.get(), &page, nullptr);
        doc.SetSelectionManager(&page);
        auto set = [&](std::initializer_list<std::pair<const char*, QVariant>> props) {
            for (const auto& [name, v] : props)
                clsRptControl::SetProp(doc.UserControl(), name, v);
        };
        float top = 100;
        for (const auto& [id, name] : std::vector<std::pair<int, QString>>{
                 {12, "City"}, {4, "PropType"}, {7, "LstStatus"}, {2, "ListPrice"}, {16, "FullAddress"}, {31, "ListAgentName"}}) {
            doc.AddNew(ObjType::Field, name, id);
            set({{"Top", top}, {"Width", 3000.f}});
            top += 400;
        }
        doc.AddNew(ObjType::DateTime, "Unbound", 0);
        set({{"Top", top}});
        for (int seq = 1; seq <= 2; ++seq) {
            doc.AddNew(ObjType::Image, "Unbound", 0);
            set({{"DataBound", true}, {"PhotoSeq", seq}, {"Left", 4000.f * seq}, {"Top", 100.f}, {"Width", 2880.f}, {"Height", 2160.f}});
        }
        report = dir.filePath("flyer.rdf");
        QVERIFY(doc.SaveReport(report, false));
        const RdfReport stored = RdfLoadFile(report);
        QVERIFY(stored.header.detailFieldList.contains("PhotoVersion"));
        QVERIFY(stored.header.detailFieldList.startsWith("ListNum,"));
        doc.UnloadReport();
        gHost = nullptr;
    }

    void dataviewShowsThreeListings_data()
    {
        QTest::addColumn<QString>("key");
        QTest::newRow("240001") << "240001";
        QTest::newRow("240004 O'Neil") << "240004";
        QTest::newRow("240007") << "240007";
    }
    void dataviewShowsThreeListings()
    {
        QFETCH(QString, key);
        const QString log = dir.filePath("sql-" + key + ".log");
        const AppRun r = RunPagewright({"dataview", report, "--key", key, "--data", data, "--sql-log", log});
        QCOMPARE(r.code, 0);
        const auto items = parse(r.out);
        QCOMPARE(items.size(), 9);
        const QString where = " FROM Listings WHERE ListNum = " + key;
        QCOMPARE(items["City"].second, value("SELECT City" + where, "City").toString());
        const QString type = value("SELECT PropType" + where, "PropType").toString();
        dic->SelectField(4);
        QCOMPARE(items["PropType"].second, type.isEmpty() ? QString() : dic->DecodeLong(type));
        QCOMPARE(items["LstStatus"].second, dic->DecodeLong(value("SELECT LstStatus" + where, "LstStatus").toString()));
        QVERIFY2(items["ListPrice"].second.startsWith("$"), qPrintable(items["ListPrice"].second)); // Currency format
        QVERIFY(items["FullAddress"].second.contains(value("SELECT StreetName" + where, "StreetName").toString()));
        QVERIFY(items["ListAgentName"].second.contains(", "));
        QVERIFY2(QDateTime::fromString(items["DateTime1"].second, "M/d/yyyy h:mm:ss AP").isValid(), qPrintable(items["DateTime1"].second));
        for (const QString& img : {QStringLiteral("Image1"), QStringLiteral("Image2")}) {
            QCOMPARE(items[img].first, QString("Image"));
            const QString file = items[img].second;
            QVERIFY(!file.isEmpty() || key != "240001"); // 240001 has photos
            if (!file.isEmpty())
                QVERIFY2(QFileInfo::exists(file), qPrintable(file));
        }
        if (key == "240001")
            QVERIFY(items["Image1"].second != items["Image2"].second);
        // The composed statement, exactly as sent.
        const QString sent = QString::fromUtf8(readAll(log));
        QVERIFY2(sent.contains("SELECT City,PhotoVersion,PropType,LstStatus,ListPrice,"), qPrintable(sent));
        QVERIFY(sent.contains(" LEFT JOIN Photo ON Listings.Listnum = Photo.PhoListnum WHERE ListNum = " + key +
                              " AND CLng(LstStatus) NOT IN (2005,2006);"));
    }

    void hiddenStatusIsNotFound()
    {
        const AppRun r = RunPagewright({"dataview", report, "--key", "240002", "--data", data});
        QCOMPARE(r.code, 1);
        QCOMPARE(r.out.trimmed(), QString("240002 Not Found"));
        const AppRun missing = RunPagewright({"dataview", report, "--key", "999999", "--data", data});
        QCOMPARE(missing.code, 1);
        QCOMPARE(missing.out.trimmed(), QString("999999 Not Found"));
    }

    void unsafeKeysAreRefused()
    {
        const AppRun r = RunPagewright({"dataview", report, "--key", "1 OR 1=1", "--data", data});
        QCOMPARE(r.code, 2);
        QVERIFY(r.err.contains("Invalid entry"));
    }

    void dumpAndResave()
    {
        const QString dump = dir.filePath("flyer.txt");
        AppRun r = RunPagewright({"dump", report, dump});
        QCOMPARE(r.code, 0);
        const QByteArray text = readAll(dump);
        QVERIFY(text.startsWith("Report MyReport\r\nItems            =  9 \r\nBegin Field City\r\n   DicId         =  12 \r\n"));
        const QString again = dir.filePath("again.rdf");
        r = RunPagewright({"resave", report, again, "--data", data});
        QCOMPARE(r.code, 0);
        QCOMPARE(readAll(again), readAll(report));
        r = RunPagewright({"resave", report, dir.filePath("static.rdf"), "--static", "--data", data});
        QCOMPARE(r.code, 0);
        QCOMPARE(RdfLoadFile(dir.filePath("static.rdf")).items[0].kind, RdfKind::Label);
        // --sql-log is accepted by dump as by every subcommand.
        r = RunPagewright({"dump", report, dump, "--sql-log", dir.filePath("dump-sql.log")});
        QCOMPARE(r.code, 0);
        QCOMPARE(readAll(dump), text);
        r = RunPagewright({"dump", dir.filePath("missing.rdf"), dump});
        QCOMPARE(r.code, 1);
        QVERIFY(r.err.contains("Report Designer File error: Error: 53"));
    }

    // A box in system colours and a picture from the graphics folder: the dump prints colours
    // as a VB Long (signed) and the picture's expanded file; the data view lists that file as
    // a path of this system, never with backslashes.
    void dumpPrintsSignedColoursAndTheExpandedPictureFile()
    {
        gHost = host.get();
        const QString file = dir.filePath("colours.rdf");
        {
            OffscreenPage page;
            clsRptControl doc;
            doc.Init(dic.get(), &page, nullptr);
            doc.SetSelectionManager(&page);
            doc.AddNew(ObjType::Box, "Unbound", 0);
            clsRptControl::SetProp(doc.UserControl(), "BorderColor", 0x8000000Fu);
            clsRptControl::SetProp(doc.UserControl(), "BackColor", 0x80000005u);
            doc.AddNew(ObjType::Image, "Unbound", 0);
            clsRptControl::SetProp(doc.UserControl(), "FileName", QStringLiteral("~Graphics~OF02.bmp"));
            QVERIFY(doc.SaveReport(file, false));
            doc.UnloadReport();
        }
        gHost = nullptr;
        QCOMPARE(RdfLoadFile(file).items[1].formatOrFile, QStringLiteral("~Graphics~OF02.bmp")); // stored form kept

        const QString dump = dir.filePath("colours.txt");
        AppRun r = RunPagewright({"dump", file, dump, "--data", data});
        QVERIFY2(r.code == 0, qPrintable(r.err));
        const QString text = QString::fromLatin1(readAll(dump));
        QVERIFY2(text.contains("   BorderColor   = -2147483633 \r\n   BackColor     = -2147483643 \r\n"), qPrintable(text));
        const QString picture = QDir(data).filePath("Graphics/OF02.bmp");
        QVERIFY2(text.contains("   DataBound     = False\r\n   FileName      = " + picture + "\r\nEnd\r\n"), qPrintable(text));

        r = RunPagewright({"dataview", file, "--key", "240001", "--data", data});
        QVERIFY2(r.code == 0, qPrintable(r.err));
        QCOMPARE(parse(r.out)["Image1"], qMakePair(QString("Image"), picture));
    }

    // Unformatted, a Date column reads as a short date and a Boolean as True/False, as the
    // classic engine gives them; a date-time stamp without a format is in the General Date form.
    void dataviewShowsDatesAndBooleansAsTheClassicEngine()
    {
        gHost = host.get();
        const QString file = dir.filePath("typed.rdf");
        {
            OffscreenPage page;
            clsRptControl doc;
            doc.Init(dic.get(), &page, nullptr);
            doc.SetSelectionManager(&page);
            float top = 100;
            for (const auto& [id, name] : std::vector<std::pair<int, QString>>{{3, "ListDate"}, {26, "Pool"}}) {
                doc.AddNew(ObjType::Field, name, id);
                clsRptControl::SetProp(doc.UserControl(), "Top", top += 400);
                clsRptControl::SetProp(doc.UserControl(), "DataFormat", QString());
            }
            doc.AddNew(ObjType::DateTime, "Unbound", 0);
            clsRptControl::SetProp(doc.UserControl(), "Top", top += 400);
            clsRptControl::SetProp(doc.UserControl(), "DataFormat", QString());
            QVERIFY(doc.SaveReport(file, false));
            doc.UnloadReport();
        }
        gHost = nullptr;
        const QString key = "240001";
        // Typed as the host hands them out (a date, a yes/no), on whichever host runs the test.
        auto raw = host->Database().OpenRecordset(1, "SELECT ListDate, Pool FROM Listings WHERE ListNum = " + key);
        const QDate listed = raw->Fields(0).toDate();
        QVERIFY(listed.isValid());
        const AppRun r = RunPagewright({"dataview", file, "--key", key, "--data", data});
        QVERIFY2(r.code == 0, qPrintable(r.err));
        const auto items = parse(r.out);
        QCOMPARE(items["ListDate"].second, QStringLiteral("%1/%2/%3").arg(listed.month()).arg(listed.day()).arg(listed.year()));
        QCOMPARE(items["Pool"].second, raw->Fields(1).toBool() ? QString("True") : QString("False"));
        const QString stamp = items["DateTime1"].second;
        QVERIFY2(QRegularExpression("^\\d{1,2}/\\d{1,2}/\\d{4}( \\d{1,2}:\\d\\d:\\d\\d [AP]M)?$").match(stamp).hasMatch(), qPrintable(stamp));

        // The sql command shows the same typed values.
        const AppRun sql = RunPagewright({"sql", "--data", data, "--kind", "1", "SELECT ListDate, Pool FROM Listings WHERE ListNum = " + key});
        QVERIFY2(sql.code == 0, qPrintable(sql.err));
        QVERIFY2(sql.out.contains(items["ListDate"].second + " ") && sql.out.contains(items["Pool"].second), qPrintable(sql.out));
        QVERIFY2(sql.out.endsWith("\n(1 row)\n"), qPrintable(sql.out));
    }

    void anEmptyKeyIsNamedNotJustTheUsage()
    {
        for (const QString& key : {QString(), QStringLiteral("  ")}) {
            const AppRun r = RunPagewright({"dataview", report, "--key", key, "--data", data});
            QCOMPARE(r.code, 2);
            QVERIFY2(r.err.contains("The key given with --key is empty"), qPrintable(r.err));
            QVERIFY(!r.err.contains("usage:"));
        }
    }
};

QTEST_MAIN(TestBatch)
#include "tst_batch.moc"
