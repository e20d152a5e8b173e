// The statements of the property search, character for character, and what the demo host
// answers to each of them.
#include "support_demo.h"
#include "dialogs/FindPropertySql.h"
#include "sqltext/clsSQLQuote.h"

#include <QtTest>

Q_DECLARE_METATYPE(FindCriteria)

namespace {

const QString kListings = "SELECT ListNum As SelectedId,StreetNumber,StreetDirection,StreetName,OwnerName FROM Listings";
const QString kAllowed = ") AND lstStatus IN ('2001','2002','2003','2004','2007');"; // StatusList "2005,2006"
const QString kTaxRolls = "SELECT TaxId As SelectedId,TaxHouseNumber as StreetNumber,TaxStreetDir as StreetDirection,"
                          "TaxStreetName as StreetName,TaxOwnerName as OwnerName FROM TaxRolls";
const QString kAgentName = "(MemLastName + ', ' + MemFirstName + ' ' +  IIF(IsNull(MemMiddleInitial),'',MemMiddleInitial))";

// kind with its demo table; owner and street parts as given (method, name, direction, range).
FindCriteria make(int kind, const QString& owner, int ownerMethod = 0, const QString& street = {}, int streetMethod = 0,
                  const QString& dir = {}, qint64 lo = 0, qint64 hi = 0)
{
    static const char* const tables[][2] = {{"Listings", "ListNum"}, {"TaxRolls", "TaxId"}, {"Office", "OffOfficeId"},
                                            {"Members", "MemberId"}, {"Rentals", "Listnum"}};
    FindCriteria c;
    c.kind = kind;
    c.tableName = tables[kind - 1][0];
    c.keyField = tables[kind - 1][1];
    c.agentId = "A1001";
    c.officeId = "OF01";
    c.statusList = "2005,2006";
    c.listingOwner = kind == FindKind::Agents ? "All" : "All listings";
    c.ownerName = owner;
    c.ownerMethod = ownerMethod;
    c.streetName = street;
    c.streetMethod = streetMethod;
    c.direction = dir;
    c.addrMin = lo;
    c.addrMax = hi;
    return c;
}

FindCriteria with(FindCriteria c, const QString& listingOwner, const QString& status = {}, int board = 0)
{
    c.listingOwner = listingOwner;
    c.statusCode = status;
    c.boardId = board;
    return c;
}

} // namespace

class TestFindPropertySql : public QObject {
    Q_OBJECT
private slots:
    void statements_data()
    {
        QTest::addColumn<FindCriteria>("criteria");
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QStringList>("names"); // prefixes of the names the demo answers with; empty: not checked
        using namespace MatchMethod;
        FindCriteria company = with(make(1, ""), "Listings from my company");
        company.companyOffices = QStringList{"OF01", "OF02", "OF03"};
        FindCriteria noStatusList = make(1, "Smith");
        noStatusList.statusList.clear();
        FindCriteria agents = with(make(4, "O'Brien"), "Agents from my office");
        agents.officeId = "OF07";

        QTest::newRow("exact owner with a quote") << make(1, "O'Neil", Exact) << kListings + " Where (OwnerName = 'O''Neil'" + kAllowed
                                                  << QStringList{"O'Neil"};
        QTest::newRow("Like escapes") << make(1, "50%_", Beginning) << kListings + " Where (OwnerName Like '50[%][_]%'" + kAllowed
                                      << QStringList{"50%_Off-Realty LLC"};
        QTest::newRow("street anywhere, * and # literal") << make(1, "", 0, "*Light #", Anywhere, "", 0, 0)
                                       << kListings + " Where (StreetName Like '%[*]Light [#]%'" + kAllowed << QStringList{};
        QTest::newRow("every part in order, range turned round")
            << with(make(1, "Smith", Beginning, "Oak", End, "N", 200, 100), "My listings", "2001")
            << kListings + " Where (OwnerName Like 'Smith%' And StreetName Like '%Oak' And StreetDirection = 'N' And "
                           "AddressNumber Between 100 And 200 And LstStatus = '2001' And ListAgentID = 'A1001'" + kAllowed
            << QStringList{};
        QTest::newRow("equal numbers") << make(1, "", 0, "Oak St", Exact, "", 150, 150)
                                       << kListings + " Where (StreetName = 'Oak St' And AddressNumber = 150" + kAllowed << QStringList{};
        QTest::newRow("numbers without a street") << make(1, "", 0, "", 0, "N", 100, 200)
                                                  << kListings + " WHERE lstStatus IN ('2001','2002','2003','2004','2007');" << QStringList{};
        QTest::newRow("no status list") << noStatusList << kListings + " Where OwnerName Like 'Smith%';" << QStringList{};
        QTest::newRow("my office") << with(make(1, ""), "Listings from my office") << kListings + " Where (ListOfficeID = 'OF01'" + kAllowed
                                   << QStringList{};
        QTest::newRow("my company") << company
                                    << kListings + " Where ((ListOfficeID = 'OF01' Or ListOfficeID = 'OF02' Or ListOfficeID = 'OF03')" + kAllowed
                                    << QStringList{};
        company.companyOffices.reset();
        QTest::newRow("my company, no answer") << company << kListings + " WHERE lstStatus IN ('2001','2002','2003','2004','2007');"
                                               << QStringList{};
        QTest::newRow("board") << with(make(1, ""), "All listings", "", 2) << kListings + " Where (BoardId = 2" + kAllowed << QStringList{};
        QTest::newRow("tax rolls: own columns, no listing filters")
            << with(make(2, "O'Neil", Exact, "Maple", Beginning, "N", 1, 9999), "My listings", "2001")
            << kTaxRolls + " Where TaxOwnerName = 'O''Neil' And TaxStreetName Like 'Maple%' And TaxStreetDir = 'N' And "
                           "TaxAddrNumber Between 1 And 9999;"
            << QStringList{};
        QTest::newRow("tax rolls: typed column names stay") << make(2, "StreetName") << kTaxRolls + " Where TaxOwnerName Like 'StreetName%';"
                                                            << QStringList{};
        QTest::newRow("tax rolls: found") << make(2, "O'Neil", Exact) << kTaxRolls + " Where TaxOwnerName = 'O''Neil';" << QStringList{"O'Neil"};
        QTest::newRow("offices") << make(3, "Lakeside") << "SELECT OffOfficeId As SelectedId,OffName1 AS AgentName FROM Office Where OffName1 Like 'Lakeside%';"
                                 << QStringList{"Lakeside Realty - Downtown", "Lakeside Realty - North", "Lakeside Realty - West"};
        QTest::newRow("agents") << agents
                                << "SELECT MemberId As SelectedId," + kAgentName + " AS AgentName FROM Members Where " + kAgentName +
                                       " Like 'O''Brien%' And MemOfficeID = 'OF07';"
                                << QStringList{"O'Brien, "};
        QTest::newRow("rentals") << with(make(5, "", 0, "Elm St", Exact), "My listings")
                                 << "SELECT Listnum As SelectedId,StreetNumber,StreetDirection,StreetName FROM Rentals Where StreetName = 'Elm St' "
                                    "And ListAgentID = 'A1001';"
                                 << QStringList{};
    }

    void statements()
    {
        QFETCH(FindCriteria, criteria);
        QFETCH(QString, sql);
        QFETCH(QStringList, names);
        QCOMPARE(FindPropertySql::Statement(criteria, clsSQLQuote()), sql);

        DemoHost host; // the host must answer every one of them
        auto rs = host.OpenRecordset(criteria.kind, sql, 3, 1, 1);
        if (names.isEmpty())
            return;
        const QString column = criteria.kind == FindKind::Offices || criteria.kind == FindKind::Agents ? "AgentName" : "OwnerName";
        QStringList got;
        for (; !rs->Eof(); rs->MoveNext())
            got << rs->Fields(column).toString();
        got.sort();
        QCOMPARE(got.size(), names.size());
        for (int i = 0; i < names.size(); ++i)
            QVERIFY2(got[i].startsWith(names[i]), qPrintable(got.join(" / ")));
    }

    void companyQuestion()
    {
        const QString sql = FindPropertySql::CompanyOfficesSql(clsSQLQuote(), "OF01");
        QCOMPARE(sql, QString("Select OffOfficeId From Office Where offCompanyCode = (Select offCompanyCode From Office Where offOfficeId = 'OF01');"));
        DemoHost host;
        QStringList offices = host.Column(sql);
        offices.sort();
        QCOMPARE(offices, QStringList({"OF01", "OF02", "OF03"}));
    }
};

QTEST_GUILESS_MAIN(TestFindPropertySql)
#include "tst_findpropertysql.moc"
