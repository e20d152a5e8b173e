// The listing-number prompt and the record prompt: typed keys, checks, messages, the record
// they switch the report to, and the search behind Browse.
#include "support_doc.h"
#include "dialogs/frmListnumPrompt.h"
#include "dialogs/frmPropertyPrompt.h"
#include "entry/Prompts.h"

#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>

#include "dialogs/frmFindProperty.h"

namespace {
// Double-clicks the first match of the search window that opens next.
void PickFirstMatchLater(QString* picked)
{
    QTimer::singleShot(0, [picked] {
        auto* f = qobject_cast<frmFindProperty*>(QApplication::activeModalWidget());
        QVERIFY(f && f->List->topLevelItemCount() > 0);
        QCOMPARE(f->List->selectionMode(), QAbstractItemView::SingleSelection);
        QTreeWidgetItem* item = f->List->topLevelItem(0);
        *picked = item->text(0);
        const QPoint at = f->List->visualItemRect(item).center();
        QTest::mouseClick(f->List->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(f->List->viewport(), Qt::LeftButton, {}, at);
    });
}
} // namespace

class TestKeyPrompts : public QObject {
    Q_OBJECT
private slots:
    void listnumKeys()
    {
        for (const bool allowList : {false, true}) {
            frmListnumPrompt p;
            p.Load(allowList);
            QTest::keyClicks(p.txtPropertyId, "a1b2.3,4 -");
            QTest::keyClick(p.txtPropertyId, Qt::Key_Backspace);
            QTest::keyClick(p.txtPropertyId, Qt::Key_A, Qt::ControlModifier); // only Ctrl+C and Ctrl+V pass
            QTest::keyClick(p.txtPropertyId, Qt::Key_Left);                     // keys that type nothing pass
            QTest::keyClicks(p.txtPropertyId, "9");
            QCOMPARE(p.Text(), allowList ? QString("12.39,") : QString("12.93"));
        }
    }

    void listnumOkAndCancel()
    {
        ScriptedPrompter prompter;
        frmListnumPrompt p;
        p.Load(false);
        QCOMPARE(p.windowTitle(), QString("Select Listing"));
        p.cmdOK->click(); // empty is not a number either
        QGuiApplication::clipboard()->setText("12ab");
        QTest::keyClick(p.txtPropertyId, Qt::Key_V, Qt::ControlModifier); // pasting is not filtered
        QCOMPARE(p.Text(), QString("12ab"));
        p.cmdOK->click();
        QCOMPARE(prompter.asked.size(), size_t(2));
        for (const auto& a : prompter.asked) {
            QCOMPARE(a.prompt, QString("Invalid entry - must be numeric"));
            QCOMPARE(a.buttons, Mb::OKOnly | Mb::Critical);
            QCOMPARE(a.title, QString("Input Error"));
        }
        QCOMPARE(p.result(), int(QDialog::Rejected));
        p.txtPropertyId->setText(" 240001 "); // blanks of a paste are dropped
        p.cmdOK->click();
        QCOMPARE(p.result(), int(QDialog::Accepted));
        QCOMPARE(p.Text(), QString("240001"));
        p.cmdCancel->click();
        QCOMPARE(p.Text(), QString());
    }

    void listnumTakesOnlyKeysThatPrint_data()
    {
        QTest::addColumn<bool>("allowList");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("message"); // "" = accepted
        const QString digits = "Invalid entry - a listing number is written with digits only, such as 240001 (not \"%1\")";
        QTest::newRow("decimal") << false << "240001.0" << digits.arg("240001.0");
        QTest::newRow("thousands") << false << "240,001" << digits.arg("240,001");
        QTest::newRow("exponent") << false << "2.4e5" << digits.arg("2.4e5");
        QTest::newRow("dot") << false << "." << "Invalid entry - must be numeric";
        QTest::newRow("too long") << false << "1234567890123456789" << digits.arg("1234567890123456789");
        QTest::newRow("plain") << false << "240001" << "";
        QTest::newRow("list") << true << "240001, 240002" << "";
        QTest::newRow("list with decimal") << true << "240001,240002.5" << digits.arg("240002.5");
        QTest::newRow("list with empty") << true << "240001,," << "Invalid entry - must be numeric";
    }
    void listnumTakesOnlyKeysThatPrint()
    {
        // The rule the report engine applies to a record key, applied where the key is typed:
        // what the prompt takes prints, what it refuses is said in words.
        QFETCH(bool, allowList);
        QFETCH(QString, typed);
        QFETCH(QString, message);
        ScriptedPrompter prompter;
        frmListnumPrompt p;
        p.Load(allowList);
        p.txtPropertyId->setText(typed);
        p.cmdOK->click();
        if (message.isEmpty()) {
            QVERIFY(prompter.asked.empty());
            QCOMPARE(p.result(), int(QDialog::Accepted));
            for (const QString& key : p.Text().split(','))
                QVERIFY(clsRptControl::KeyIsSafe(1, key.trimmed()));
            return;
        }
        QCOMPARE(prompter.asked.size(), size_t(1));
        QCOMPARE(prompter.asked[0].prompt, message);
        QCOMPARE(prompter.asked[0].title, QString("Input Error"));
        QCOMPARE(p.result(), int(QDialog::Rejected));
    }

    void listnumBrowse()
    {
        DemoHost host;
        frmListnumPrompt p;
        p.Load(false);
        QString picked;
        PickFirstMatchLater(&picked);
        p.cmdBrowse->click();
        QCOMPARE(p.result(), int(QDialog::Accepted));
        QCOMPARE(p.Text(), picked);
        // My listings, all statuses, searched at once.
        QCOMPARE(host.statements.last(), QString("SELECT ListNum As SelectedId,StreetNumber,StreetDirection,StreetName,OwnerName FROM "
                                                    "Listings Where (ListAgentID = 'A1001') AND lstStatus IN ('2001','2002','2003','2004','2007');"));
    }

    void propertyPrompt_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("dicId");
        QTest::addColumn<QString>("key");     // given, as in SQL
        QTest::addColumn<QString>("typed");   // "=" keeps the shown text
        QTest::addColumn<bool>("result");
        QTest::addColumn<QString>("autoFill"); // afterwards
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("sqlEnd");   // end of the last statement, "" = none sent
        QTest::newRow("listing, bare") << 1 << 6 << "" << "240004" << true << "240004" << ""
                                       << " WHERE ListNum = 240004 AND CLng(LstStatus) NOT IN (2005,2006);";
        QTest::newRow("unchanged") << 1 << 6 << "240004" << "=" << false << "240004" << "" << "";
        QTest::newRow("not numeric") << 1 << 6 << "240004" << "24x" << false << "240004" << "Invalid entry - please try again" << "";
        QTest::newRow("not found") << 1 << 6 << "" << "240002" << false << "" << "240002 Not Found" << "NOT IN (2005,2006);";
        QTest::newRow("tax id, quoted") << 2 << 2 << "" << "T'1" << false << "" << "T'1 Not Found" << " WHERE TaxId = 'T''1';";
        QTest::newRow("office, shown without quotes") << 3 << 2 << "'OF01'" << "=" << false << "'OF01'" << "" << "";
        QTest::newRow("office") << 3 << 2 << "'OF01'" << "of02" << true << "'of02'" << "" << " WHERE OffOfficeId = 'of02';";
        QTest::newRow("rental") << 5 << 3 << "" << "500003" << true << "500003" << "" << " WHERE Listnum = 500003;";
        QTest::newRow("cleared") << 1 << 6 << "240004" << "" << true << "" << "" << "";
    }
    void propertyPrompt()
    {
        QFETCH(int, kind);
        QFETCH(int, dicId);
        QFETCH(QString, key);
        QFETCH(QString, typed);
        QFETCH(bool, result);
        QFETCH(QString, autoFill);
        QFETCH(QString, message);
        QFETCH(QString, sqlEnd);
        ScriptedPrompter prompter;
        DocFixture f(kind, dicId);
        f.doc.AutoFillId = key;
        f.doc.ItemRef(1).Text = "before";
        f.surface.controls.front()->Text = "before";
        frmPropertyPrompt p;
        p.Load(f.doc, key);
        QCOMPARE(p.txtPropertyId->selectedText(), p.txtPropertyId->text());
        if (typed != "=") {
            p.txtPropertyId->clear();
            QTest::keyClicks(p.txtPropertyId, typed);
        }
        p.cmdOK->click();
        QCOMPARE(p.Apply(), result);
        QCOMPARE(f.doc.AutoFillId, autoFill);
        QCOMPARE(prompter.asked.empty() ? QString() : prompter.asked.front().prompt, message);
        QCOMPARE(f.host.statements.isEmpty() ? QString() : f.host.statements.last().right(sqlEnd.size()), sqlEnd);
        if (result && !typed.isEmpty())
            QVERIFY(f.shown() != "before" && !f.shown().isEmpty());
        else
            QCOMPARE(f.shown(), typed.isEmpty() ? QString() : QString("before"));
        if (!sqlEnd.isEmpty())
            QCOMPARE(f.surface.pointers, QList<int>({11, 0}));
    }

    void promptTextsAndCancel()
    {
        const QStringList prompts{"Enter Listing Number:", "Enter Tax Id:", "Enter Office Code:", "Enter Agent Code:", "Enter Rental Number:"};
        for (int kind = 1; kind <= 5; ++kind) {
            DocFixture f(kind, 1);
            frmPropertyPrompt p;
            p.Load(f.doc, "");
            QCOMPARE(p.windowTitle() + p.lblPrompt->text(), "Report Design" + prompts[kind - 1]);
            p.txtPropertyId->setText(kind == 1 ? "240004" : "x");
            p.cmdCancel->click();
            QVERIFY(!p.Apply() && f.host.statements.isEmpty());
        }
    }

    void installedPromptBrowsesAndShowsTheRecord()
    {
        DocFixture f(1, 6);
        InstallDialogPrompts();
        QString picked;
        QTimer::singleShot(0, [&] {
            auto* p = qobject_cast<frmPropertyPrompt*>(QApplication::activeModalWidget());
            QVERIFY(p);
            PickFirstMatchLater(&picked);
            p->cmdBrowse->click(); // the chosen key closes the prompt as OK does
        });
        QVERIFY(PropertyPrompt(f.doc, ""));
        SetPropertyPrompt({});
        QVERIFY(!picked.isEmpty());
        QCOMPARE(f.doc.AutoFillId, picked);
        QCOMPARE(f.shown(), f.host.Column("SELECT OwnerName FROM Listings WHERE ListNum = " + picked + ";").value(0));
        QVERIFY(f.host.statements[0].contains("(LstStatus = '2001' And ListAgentID = 'A1001')")); // Active, my listings
    }
};

QTEST_MAIN(TestKeyPrompts)
#include "tst_keyprompts.moc"
