// The batch commands, run as a user runs them: the real executable on real demo data.
#include "PgTest.h"
#include "AppRun.h"
#include "design/OffscreenPage.h"
#include "document/RdfFile.h"
#include "document/clsRptControl.h"
#include "host/DemoData.h"
#include "host/EmbeddedHost.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
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
        r = RunPagewright({"dump", dir.filePath("missing.rdf"), dump});
        QCOMPARE(r.code, 1);
        QVERIFY(r.err.contains("Report Designer File error: Error: 53"));
    }
};

QTEST_MAIN(TestBatch)
#include "tst_batch.moc"
