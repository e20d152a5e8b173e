// The property search window: its layout per kind, its defaults, searching from the controls,
// the list it fills and the keys it returns. The modal Search is driven through the prompts' Browse.
#include "support_demo.h"
#include "dialogs/frmFindProperty.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QtTest>

namespace {
QStringList Texts(const QTreeWidget* list, int col) // col -1: the headers
{
    QStringList out;
    for (int i = 0; col < 0 ? i < list->columnCount() : i < list->topLevelItemCount(); ++i)
        out << (col < 0 ? list->headerItem()->text(i) : list->topLevelItem(i)->text(col));
    return out;
}
} // namespace

class TestFindProperty : public QObject {
    Q_OBJECT
private slots:
    void layoutPerKind_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("layout"); // caption|name tab ("" hidden)|street tab|status|Show: entries|street options 1 and 3
        QTest::newRow("listings") << 1 << "Find Property|Owners name|1|1|All listings,My listings,Listings from my office,Listings from my company|1";
        QTest::newRow("tax rolls") << 2 << "Find Property|Owners name|1|0||0";
        QTest::newRow("offices") << 3 << "Find Office|Office Name|0|0||1";
        QTest::newRow("agents") << 4 << "Find Agent|Agent Name|0|0|All,Agents from my office|1";
        QTest::newRow("rentals") << 5 << "Find Rental||1|0||1";
    }
    void layoutPerKind()
    {
        QFETCH(int, kind);
        QFETCH(QString, layout);
        DemoHost host;
        auto dic = host.NewFieldDictionary(kind);
        frmFindProperty f;
        f.Setup(*dic, 0, 1, 0);
        f.show();
        QStringList owners;
        for (int i = 0; f.cmbListingOwner->isVisible() && i < f.cmbListingOwner->count(); ++i)
            owners << f.cmbListingOwner->itemText(i);
        const QStringList got{f.windowTitle(), f.sstTab->isTabVisible(0) ? f.sstTab->tabText(0) : "",
                              QString::number(f.sstTab->isTabVisible(1)), QString::number(f.cmbStatus->isVisible()), owners.join(','),
                              QString::number(!f.optMatchMethodStreet[1]->isHidden() && !f.optMatchMethodStreet[3]->isHidden())};
        QCOMPARE(got.join('|'), layout);
        QCOMPARE(f.sstTab->currentIndex(), kind == 5 ? 1 : 0);
        QVERIFY(host.statements.isEmpty()); // no search without bit 1
    }

    void defaultsByUserLevel_data()
    {
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("where"); // "" = not searched at once
        QTest::newRow("agent") << 59 << "My listings" << "Where (LstStatus = '2001' And ListAgentID = 'A1001')";
        QTest::newRow("broker") << 89 << "Listings from my company"
                                << "Where (LstStatus = '2001' And (ListOfficeID = 'OF01' Or ListOfficeID = 'OF02' Or ListOfficeID = 'OF03'))";
        QTest::newRow("board staff") << 90 << "All listings" << "";
        QTest::newRow("administrator") << 100 << "All listings" << "";
    }
    void defaultsByUserLevel()
    {
        QFETCH(int, level);
        QFETCH(QString, shown);
        QFETCH(QString, where);
        DemoHost host;
        host.userLevel = level;
        host.boardId = 7;
        auto dic = host.NewFieldDictionary(1);
        frmFindProperty f;
        f.Setup(*dic, FindOption::SearchAtOnce, 5, 2);
        QCOMPARE(f.cmbListingOwner->currentText(), shown);
        QCOMPARE(f.cmbStatus->currentText(), QString("Active"));
        QCOMPARE(f.cmbStatus->count(), 8); // "All Statuses" and the seven codes
        QCOMPARE(f.BoardId(), level >= 90 && level < 100 ? 7 : 0);
        QVERIFY2(where.isEmpty() ? f.LastStatement().isEmpty() : f.LastStatement().contains(where), qPrintable(f.LastStatement()));
    }

    void searchFromTheControls()
    {
        DemoHost host;
        auto dic = host.NewFieldDictionary(1);
        frmFindProperty f;
        f.Setup(*dic, 0, 1, 0);
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        QTest::keyClicks(f.txtOwnerName, "o'neil");
        QTest::mouseClick(f.optMatchMethodOwner[1], Qt::LeftButton);
        QTest::keyClick(f.txtOwnerName, Qt::Key_Return); // Enter searches, it does not close
        QVERIFY(f.isVisible());
        QCOMPARE(f.LastStatement(), QString("SELECT ListNum As SelectedId,StreetNumber,StreetDirection,StreetName,OwnerName FROM Listings"
                                            " Where (OwnerName Like '%o''neil%') AND lstStatus IN ('2001','2002','2003','2004','2007');"));
        QCOMPARE(f.lblMatchCount->text(), QString("2"));
        QCOMPARE(Texts(f.List, -1), QStringList({"List #", "Owner", "Number", "Dir", "Street Name"}));
        QCOMPARE(Texts(f.List, 1), QStringList({"O'Neil", "O'Neill Family Trust"}));
        QCOMPARE(Texts(f.List, 0), QStringList({"240004", "240006"}));

        // The street tab has its own columns and sorts by street name.
        f.sstTab->setCurrentIndex(1);
        QCOMPARE(QApplication::focusWidget(), f.txtStreetName);
        f.txtOwnerName->clear();
        QTest::keyClicks(f.txtStreetName, "e");
        QTest::mouseClick(f.optMatchMethodStreet[1], Qt::LeftButton);
        QTest::keyClicks(f.fpAddrMax, "x9000"); // digits only
        f.cmdShowMatches->click();
        QVERIFY(f.LastStatement().contains("Where (StreetName Like '%e%' And AddressNumber Between 0 And 9000)"));
        QCOMPARE(Texts(f.List, -1), QStringList({"List #", "Number", " ", "Street Name", "Owner"}));
        const QStringList streets = Texts(f.List, 3);
        QVERIFY(streets.size() > 2);
        QVERIFY(std::is_sorted(streets.begin(), streets.end(), [](const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) < 0; }));
        f.List->sortByColumn(1, Qt::AscendingOrder); // numbers sort as numbers
        const QStringList numbers = Texts(f.List, 1);
        QVERIFY(std::is_sorted(numbers.begin(), numbers.end(), [](const QString& a, const QString& b) { return a.toInt() < b.toInt(); }));

        f.List->topLevelItem(0)->setSelected(true);
        f.List->topLevelItem(1)->setSelected(true); // several rows without bit 0
        QStringList keys;
        QCOMPARE(f.Result(keys), 2);
        QCOMPARE(keys, Texts(f.List, 0).mid(0, 2));
        f.txtStreetName->setText("No Such Street");
        f.cmdShowMatches->click();
        QCOMPARE(f.lblMatchCount->text() + QString::number(f.List->topLevelItemCount()), QString("00"));
        f.cmdCancel->click();
        QCOMPARE(f.Result(keys), 0);
    }
};

QTEST_MAIN(TestFindProperty)
#include "tst_findproperty.moc"
