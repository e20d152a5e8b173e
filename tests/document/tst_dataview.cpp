#include "support_fakedata.h"
#include "support_surface.h"

#include "document/clsRptControl.h"
#include "entry/Prompts.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString kAgentExpr = QStringLiteral("(SELECT MemLastName + ', ' + MemFirstName FROM Members WHERE MemberId = Listings.ListAgentID)");

struct Fixture {
    DataHost host;
    FakeDictionary dic;
    TestSurface surface;
    clsRptControl doc;
    Fixture()
    {
        gHost = &host;
        dic.fields = {
            {1, "ListNum", 4, 0, "", "0"},
            {2, "City", 10},
            {3, "PropType", 10, 1},
            {4, "ListAgentName", 10, 0, kAgentExpr},
            {5, "MyListing", 10, 0, "IIF(ListAgentID = '~UserId~','Yes','No')"},
            {6, "LstStatus", 4, 2},
            {7, "BoardOk", 1, 0, "IIF(BoardKey = '~AccessKey~',True,False)"},
            {8, "SaleAgentName", 10, 0, "(SELECT MemLastName FROM Members WHERE MemberId = Listings.SaleAgentID)"},
            {9, "ListPrice", 5, 0, "", "Currency"},
        };
        dic.codes = {{"R", {"Res", "Residential"}}, {"2001", {"ACT", "Active"}}, {"C", {"Com", ""}}};
        doc.Init(&dic, &surface, nullptr);
        doc.SetSelectionManager(&surface);
    }
    ~Fixture() { gHost = nullptr; }
    TestControl* field(int dicId, const QString& name)
    {
        doc.AddNew(ObjType::Field, name, dicId);
        return ctl(doc.RptItemCount());
    }
    TestControl* add(int kind)
    {
        doc.AddNew(kind, "Unbound", 0);
        return ctl(doc.RptItemCount());
    }
    TestControl* ctl(int i) { return surface.control(doc.Item(i).control); }
    QString lastSql() const { return host.db.statements.isEmpty() ? QString() : host.db.statements.last(); }
};

Recordset row(const QStringList& cols, const QVariantList& values) { return Recordset(cols, {values}); }

} // namespace

class TestDataView : public QObject {
    Q_OBJECT
private slots:
    void dictionaryDefaultsOfANewField()
    {
        Fixture f;
        TestControl* price = f.field(9, "ListPrice");
        QCOMPARE(price->FormatClass, 1);
        QCOMPARE(price->Alignment, 1);
        QCOMPARE(price->DataFormat, QString("Currency"));
        QCOMPARE(price->BorderStyle, 5);
        QCOMPARE(price->Text, QString("ListPrice")); // template view shows the name
        QCOMPARE(f.doc.Item(1).DataField, QString("ListPrice"));
        TestControl* status = f.field(6, "LstStatus");
        QCOMPARE(status->FormatClass, 0); // numeric codes are not formatted
        QCOMPARE(f.doc.Item(2).CodeType, 2);
        TestControl* city = f.field(2, "City");
        QCOMPARE(city->FormatClass, 4);
        QVERIFY(f.doc.Item(3).Flags == 0);
        f.field(4, "ListAgentName");
        QVERIFY(f.doc.Item(4).HasExpression());
        QVERIFY(f.host.db.statements.isEmpty()); // no record chosen: nothing fetched
    }

    void composesTheWholeStatement()
    {
        Fixture f;
        f.field(2, "City");
        f.field(2, "City"); // the same column twice: selected once
        f.field(4, "ListAgentName");
        f.add(ObjType::Image); // unbound picture still asks for the version and the join
        f.add(ObjType::Label);
        QVERIFY(!f.doc.RefreshData("1001"));
        QCOMPARE(f.lastSql(), "SELECT City," + kAgentExpr + " AS ListAgentName,PhotoVersion FROM Listings"
                              " LEFT JOIN Photo ON Listings.Listnum = Photo.PhoListnum WHERE ListNum = 1001;");
        QCOMPARE(f.host.db.kinds.last(), 1);

        f.host.statusList = "2005,2006";
        f.doc.RefreshData("1001");
        QCOMPARE(f.lastSql(), "SELECT City," + kAgentExpr + " AS ListAgentName,PhotoVersion FROM Listings"
                              " LEFT JOIN Photo ON Listings.Listnum = Photo.PhoListnum WHERE ListNum = 1001"
                              " AND CLng(LstStatus) NOT IN (2005,2006);");
    }

    void tokensAreReplaced()
    {
        Fixture f;
        f.field(5, "MyListing");
        f.field(7, "BoardOk");
        f.doc.RefreshData("77");
        QCOMPARE(f.lastSql(), QString("SELECT IIF(ListAgentID = 'A100','Yes','No') AS MyListing,"
                                      "IIF(BoardKey = 'K9',True,False) AS BoardOk FROM Listings WHERE ListNum = 77;"));
    }

    void shortTextSecondColumn()
    {
        Fixture f;
        TestControl* a = f.field(3, "PropType");
        a->UseShortText = true;
        a->DataFormat = "PropSubType";
        TestControl* b = f.field(3, "PropType");
        b->UseShortText = true;
        b->DataFormat = "propsubtype"; // present already, in another case
        TestControl* c = f.field(2, "City");
        c->UseShortText = true;
        c->DataFormat = "Zip"; // not coded: no second column
        f.doc.RefreshData("5");
        QCOMPARE(f.lastSql(), QString("SELECT PropType,PropSubType,City FROM Listings WHERE ListNum = 5;"));
    }

    void rentalsAndTaxRolls()
    {
        Fixture f;
        f.host.statusList = "2005";
        f.dic.kind = 5;
        f.dic.table = "Rentals";
        f.dic.key = "Listnum";
        f.field(2, "City");
        f.add(ObjType::Image);
        f.doc.RefreshData("300");
        QCOMPARE(f.lastSql(), QString("SELECT City,PhotoVersion FROM Rentals LEFT JOIN Photo ON Rentals.Listnum = Photo.PhoListnum"
                                      " WHERE Listnum = 300;"));
        QCOMPARE(f.host.db.kinds.last(), 5);
        f.dic.kind = 2;
        f.dic.table = "TaxRolls";
        f.dic.key = "TaxId";
        f.doc.RefreshData("'12-345'");
        QCOMPARE(f.lastSql(), QString("SELECT City,PhotoVersion FROM TaxRolls WHERE TaxId = '12-345';"));
    }

    void itemRange()
    {
        Fixture f;
        f.field(1, "ListNum");
        f.field(2, "City");
        f.field(9, "ListPrice");
        f.add(ObjType::Image);
        f.field(6, "LstStatus");
        f.doc.RefreshData("9", 2, 3);
        QCOMPARE(f.lastSql(), QString("SELECT City,ListPrice FROM Listings WHERE ListNum = 9;"));
    }

    void noDataColumnsNoQuery()
    {
        Fixture f;
        f.add(ObjType::Label);
        TestControl* dt = f.add(ObjType::DateTime);
        f.doc.DataView = true;
        QVERIFY(f.doc.RefreshData("1"));
        QVERIFY(f.host.db.statements.isEmpty());
        QVERIFY(!f.doc.Item(2).Text.isEmpty());
        QCOMPARE(dt->Text, f.doc.Item(2).Text);
    }

    void fillsDecodedTexts()
    {
        Fixture f;
        f.doc.DataView = true;
        f.field(2, "City");
        TestControl* longCode = f.field(3, "PropType");
        TestControl* shortCode = f.field(3, "PropType");
        shortCode->UseShortText = true;
        TestControl* withSecond = f.field(6, "LstStatus");
        withSecond->UseShortText = true;
        withSecond->DataFormat = "StatusNote";
        withSecond->FormatClass = 3;
        TestControl* nullCoded = f.field(8, "SaleAgentName");
        f.doc.ItemRef(5).CodeType = 1;
        f.host.db.answer = [](const QString&) {
            return row({"City", "PropType", "LstStatus", "StatusNote", "SaleAgentName"},
                       {"Springfield", "R", qlonglong(2001), "since May", QVariant()});
        };
        QVERIFY(f.doc.RefreshData("1001"));
        QCOMPARE(f.ctl(1)->Text, QString("Springfield"));
        QCOMPARE(longCode->Text, QString("Residential"));
        QCOMPARE(shortCode->Text, QString("Res"));
        QCOMPARE(withSecond->Text, QString("Active, since May"));
        QCOMPARE(withSecond->FormatClass, 0);
        QCOMPARE(nullCoded->Text, QString(""));
        // Template view keeps the texts and shows names; data view shows them again.
        f.doc.SetView(0);
        QCOMPARE(f.ctl(1)->Text, QString("City"));
        QCOMPARE(f.doc.Item(1).Text, QString("Springfield"));
        f.doc.SetView(1);
        QCOMPARE(f.ctl(1)->Text, QString("Springfield"));
        f.doc.ClearDataView();
        QCOMPARE(f.ctl(1)->Text, QString());
        QCOMPARE(f.doc.Item(1).Text, QString());
    }

    // A host hands out typed values; a field shows them as the classic engine's text of them,
    // and a date-time stamp is in the General Date form, never ISO.
    void typedValuesShowAsTheClassicEngineShowsThem()
    {
        Fixture f;
        f.doc.DataView = true;
        f.dic.fields.push_back({10, "ListDate", 8});
        f.dic.fields.push_back({11, "Pool", 1});
        f.dic.fields.push_back({12, "Shown", 8});
        f.dic.fields.push_back({13, "OpenAt", 8});
        TestControl* date = f.field(10, "ListDate");
        TestControl* pool = f.field(11, "Pool");
        TestControl* stamp = f.field(12, "Shown");
        TestControl* time = f.field(13, "OpenAt");
        TestControl* now = f.add(ObjType::DateTime);
        f.host.db.answer = [](const QString&) {
            return row({"ListDate", "Pool", "Shown", "OpenAt"},
                       {QDate(2024, 6, 18), false, QDateTime(QDate(2026, 11, 23), QTime(19, 9, 45), Qt::UTC), QTime(9, 0)});
        };
        QVERIFY(f.doc.RefreshData("1001"));
        QCOMPARE(date->Text, QString("6/18/2024"));
        QCOMPARE(pool->Text, QString("False"));
        QCOMPARE(stamp->Text, QString("11/23/2026 7:09:45 PM"));
        QCOMPARE(time->Text, QString("9:00:00 AM"));
        QVERIFY2(QRegularExpression("^\\d{1,2}/\\d{1,2}/\\d{4}( \\d{1,2}:\\d\\d:\\d\\d [AP]M)?$").match(now->Text).hasMatch(),
                 qPrintable(now->Text));
    }

    void emptyLongDecodeTakesSecondColumn()
    {
        Fixture f;
        f.doc.DataView = true;
        TestControl* c = f.field(3, "PropType");
        c->UseShortText = true;
        c->DataFormat = "Other";
        f.host.db.answer = [](const QString&) { return row({"PropType", "Other"}, {"C", "Warehouse"}); };
        f.doc.RefreshData("1");
        QCOMPARE(c->Text, QString("Warehouse"));
        f.host.db.answer = [](const QString&) { return row({"PropType", "Other"}, {QVariant(), "Warehouse"}); };
        f.doc.RefreshData("1");
        QCOMPARE(c->Text, QString(""));
    }

    void notFoundChangesNothing()
    {
        Fixture f;
        f.doc.DataView = true;
        TestControl* c = f.field(2, "City");
        f.host.db.answer = [](const QString&) { return row({"City"}, {"Shelbyville"}); };
        QVERIFY(f.doc.RefreshData("1"));
        f.host.db.answer = [](const QString&) { return Recordset({"City"}, {}); };
        QVERIFY(!f.doc.RefreshData("2"));
        QCOMPARE(c->Text, QString("Shelbyville"));
        QCOMPARE(f.doc.Item(1).Text, QString("Shelbyville"));
    }

    void fieldValueForANewItem()
    {
        Fixture f;
        ScriptedPrompter p;
        f.doc.AutoFillId = "1001";
        f.doc.DataView = true;
        f.host.statusList = "2007";
        f.host.db.answer = [](const QString&) { return row({"ListAgentName"}, {"Smith, Ann"}); };
        TestControl* c = f.field(4, "ListAgentName");
        QCOMPARE(f.lastSql(), "SELECT " + kAgentExpr + " AS ListAgentName FROM Listings WHERE ListNum = 1001 AND CLng(LstStatus) NOT IN (2007);");
        QCOMPARE(c->Text, QString("Smith, Ann"));
        // A failure shows the fixed message and leaves the value empty.
        f.host.db.answer = [](const QString&) -> Recordset { throw HostError(3075, "Syntax error"); };
        TestControl* d = f.field(2, "City");
        QCOMPARE(d->Text, QString(""));
        QCOMPARE(p.asked.size(), size_t(1));
        QCOMPARE(p.asked[0].prompt, QString("Error - Unable to retrieve data for 1001"));
        QCOMPARE(p.asked[0].title, QString("Report design"));
        QCOMPARE(p.asked[0].buttons, Mb::OKOnly | Mb::Exclamation);
    }

    void boundPhotos()
    {
        Fixture f;
        f.doc.DataView = true;
        TestControl* photo = f.add(ObjType::Image);
        photo->DataBound = true;
        photo->PhotoSeq = 2;
        f.host.db.answer = [](const QString&) { return row({"PhotoVersion"}, {qlonglong(4)}); };
        QVERIFY(f.doc.RefreshData("1001"));
        QCOMPARE(photo->FileName, QString("/photos/1001_2.jpg"));
        // The version came with the record: the Photo table is not asked again.
        QCOMPARE(f.host.db.statements.size(), 1);
        QCOMPARE(f.host.photos.calls.last(), QString("listing 1001 2 4 0"));
        // Without a version the Photo table is asked.
        QCOMPARE(f.doc.GetBoundPhotoFile("1001", 3, "", 0), QString()); // status 1: no picture
        QCOMPARE(f.lastSql(), QString("SELECT PhotoVersion FROM Photo WHERE PhoListNum = 1001;"));
        f.doc.SetView(0);
        QVERIFY(!photo->Picture.isValid());
    }

    void agentPictures()
    {
        QTemporaryDir dir;
        Fixture f;
        f.host.appPath = dir.path() + "/";
        QDir(dir.path()).mkdir("Graphics");
        auto touch = [&](const QString& n) { QFile x(dir.filePath("Graphics/" + n)); QVERIFY(x.open(QIODevice::WriteOnly)); };
        touch("Smith, Ann.bmp");
        touch("Smith, Ann.jpg");
        touch("Lee, Bo.bmp");
        touch("demo.bmp");
        f.host.db.answer = [](const QString& sql) {
            if (sql.contains("ListNum = 1"))
                return row({"ListAgentName"}, {"Smith, Ann"});
            if (sql.contains("ListNum = 2"))
                return row({"ListAgentName"}, {"Lee, Bo"});
            return row({"ListAgentName"}, {QVariant()});
        };
        QCOMPARE(f.doc.GetBoundPhotoFile("1", 1, "", 1), dir.filePath("Graphics/Smith, Ann.jpg")); // .jpg wins
        QCOMPARE(f.lastSql(), "SELECT " + kAgentExpr + " AS ListAgentName FROM Listings WHERE ListNum = 1;");
        QCOMPARE(f.doc.GetBoundPhotoFile("2", 1, "", 1), dir.filePath("Graphics/Lee, Bo.bmp"));
        QCOMPARE(f.doc.GetBoundPhotoFile("3", 1, "", 1), QString()); // Null name: nothing
        QCOMPARE(f.doc.GetBoundPhotoFile("3", 1, "", 3), dir.filePath("Graphics/demo.bmp")); // the current user
        QVERIFY(f.host.photos.calls.isEmpty());
        QCOMPARE(f.doc.GetBoundPhotoFile("3", 1, "", 4), QString()); // no logo file: the roster service says none
        QCOMPARE(f.host.photos.calls.last(), QString("roster OF1 2 GetRosterPhoto"));
    }
};

QTEST_GUILESS_MAIN(TestDataView)
#include "tst_dataview.moc"
