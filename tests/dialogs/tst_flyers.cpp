// The flyer manager: the listing check, the folder lists, the buttons with what they hand to the
// print form and the design window, deleting flyers with their pictures, and the copies box.
#include "support_demo.h"
#include "dialogs/frmFlyers.h"
#include "dialogs/frmListnumPrompt.h"
#include "entry/PrintForm.h"
#include "entry/Prompts.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QCheckBox>
#include <QTimer>
#include <QtTest>

namespace {

// A demo host whose application folder is a scratch tree and whose job closes are counted.
class FlyerHost : public DemoHost {
public:
    QString appPath;
    QList<QVariant> closedJobs;
    QString AppPath() const override { return appPath; }
    void CloseJob(const QVariant& j) override { closedJobs << j; }
};

struct FakePrintForm : PrintForm {
    QStringList calls;
    QString file;
    int copies = 1;
    bool templateOnly = false, preview = false;
    QWidget* PreviewPane(QWidget* parent) override { return new QWidget(parent); }
    bool LoadPreview(const QString& f) override { return calls << "preview " + f, true; }
    void SetReportFile(const QString& f) override { file = f; }
    QString ReportFile() const override { return file; }
    int GetCopies() const override { return copies; }
    void SetCopies(int n) override { copies = n, calls << QString("copies %1").arg(n); }
    void SetTemplateOnly(bool on) override { templateOnly = on; }
    bool TemplateOnly() const override { return templateOnly; }
    void SetPreview(bool on) override { preview = on; }
    bool Preview() const override { return preview; }
    void PrinterSetup(QWidget*) override { calls << "setup"; }
    bool PrintList(const QStringList& keys, int first, bool collate) override
    {
        calls << QString("print %1 [%2] %3 %4 template=%5 preview=%6")
                     .arg(file, keys.join('|')).arg(first).arg(collate).arg(templateOnly).arg(preview);
        return true;
    }
};

struct FakeDesign : DesignWindow {
    QStringList* log;
    QWidget widget;
    bool opens = true; // what SetReport answers: false for a file that cannot be read
    explicit FakeDesign(QStringList* l, bool o) : log(l), opens(o) {}
    QWidget* Widget() override { return &widget; }
    void Unload() override { *log << "unload"; widget.close(); }
    void Init(int job, int kind, bool fields) override { *log << QString("init %1 %2 %3").arg(job).arg(kind).arg(fields); }
    bool SetReport(const QString& f, const QString& t, const QString& id) override
    {
        *log << "report " + f + "|" + t + "|" + id;
        return opens;
    }
};

// Clicks the upper or lower end of a spinner, whatever draws its arrows.
void ClickArrow(QWidget* spinner, bool up)
{
    const QPoint at(spinner->width() / 2, up ? 2 : spinner->height() - 3);
    QWidget* target = spinner->childAt(at);
    QTest::mouseClick(target ? target : spinner, Qt::LeftButton, {}, target ? target->mapFrom(spinner, at) : at);
}

// Answers the listing number prompt that opens next with text (cancels when empty).
void AnswerListnumLater(const QString& text)
{
    QTimer::singleShot(0, [text] {
        auto* p = qobject_cast<frmListnumPrompt*>(QApplication::activeModalWidget());
        QVERIFY(p);
        if (text.isEmpty()) {
            p->cmdCancel->click();
            return;
        }
        p->txtPropertyId->setText(text);
        p->cmdOK->click();
    });
}

void Touch(const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
}

} // namespace

class TestFlyers : public QObject {
    Q_OBJECT

    QTemporaryDir m_tree;
    std::unique_ptr<FlyerHost> m_host;
    FakePrintForm* m_form = nullptr; // owned by the window under test
    std::vector<std::unique_ptr<FakeDesign>> m_designs;
    QStringList m_designLog;
    QString m_live, m_hidden;
    bool m_nextDesignFails = false;

    std::unique_ptr<frmFlyers> newWindow()
    {
        auto w = std::make_unique<frmFlyers>();
        w->setAttribute(Qt::WA_DeleteOnClose, false);
        w->Init(7);
        return w;
    }
    void select(frmFlyers& w, const QString& lookIn, const QString& entry)
    {
        w.cboLookIn->setCurrentText(lookIn);
        w.FillFileList();
        const QList<QListWidgetItem*> found = w.List1->findItems(entry, Qt::MatchExactly);
        QVERIFY(!found.isEmpty());
        w.List1->setCurrentItem(found.first());
    }

private slots:
    void initTestCase()
    {
        m_host = std::make_unique<FlyerHost>();
        m_host->appPath = m_tree.path() + "/";
        // The host spells the folder "users"; the tree has "Users", as the demo data does.
        const QString flyers = m_tree.path() + "/Users/%1/Reports/Flyers/";
        for (const char* f : {"Open House.rdf", "a.b.c.rdf", "Zeta.RDF", "notes.txt"})
            Touch(flyers.arg("Templates") + f);
        Touch(flyers.arg("Office") + "Office Special.rdf");
        for (const char* f : {"Mine.rdf", "[Odd].rdf"})
            Touch(flyers.arg("JCarter") + f);
        SetPrintFormFactory([this] {
            auto f = std::make_unique<FakePrintForm>();
            m_form = f.get();
            return f;
        });
        SetDesignWindowFactory([this] {
            m_designs.push_back(std::make_unique<FakeDesign>(&m_designLog, !m_nextDesignFails));
            return m_designs.back().get();
        });
        m_live = m_host->Column("SELECT ListNum FROM Listings WHERE CLng(LstStatus) NOT IN (2005,2006);").value(0);
        m_hidden = m_host->Column("SELECT ListNum FROM Listings WHERE CLng(LstStatus) IN (2005,2006);").value(0);
        QVERIFY(!m_live.isEmpty() && !m_hidden.isEmpty());
    }
    void cleanupTestCase()
    {
        SetPrintFormFactory({});
        SetDesignWindowFactory({});
        m_host.reset();
    }
    void init()
    {
        m_designLog.clear();
        for (auto& d : m_designs)
            d->widget.close();
    }

    void listingExists()
    {
        QCOMPARE(frmFlyers::ListingExistsSql("240001", ""), QString("SELECT Count(*) AS RecCount FROM Listings WHERE ListNum = 240001;"));
        QCOMPARE(frmFlyers::ListingExistsSql("240001", "2005,2006"),
                 QString("SELECT Count(*) AS RecCount FROM Listings WHERE ListNum = 240001 AND CLng(LstStatus) NOT IN (2005,2006);"));
        auto w = newWindow();
        QVERIFY(w->ListingExists(m_live));
        QCOMPARE(m_host->statements.last(), frmFlyers::ListingExistsSql(m_live, "2005,2006"));
        QVERIFY(!w->ListingExists(m_hidden));
        QVERIFY(!w->ListingExists("999999"));
        m_host->statusList.clear();
        QVERIFY(w->ListingExists(m_hidden));
        m_host->statusList = "2005,2006";
    }

    void fillFileList_data()
    {
        QTest::addColumn<QString>("lookIn");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("templates") << "Templates" << QStringList{"a.b.c", "Open House", "Zeta"};
        QTest::newRow("office") << "Office" << QStringList{"Office Special"};
        QTest::newRow("user") << "JCarter" << QStringList{"[Odd]", "Mine"};
    }
    void fillFileList()
    {
        QFETCH(QString, lookIn);
        QFETCH(QStringList, names);
        auto w = newWindow();
        QCOMPARE(w->windowTitle(), QString("Print Flyer"));
        QCOMPARE(w->FlyerRoot, m_host->appPath + "users\\~UserName~\\Reports\\Flyers\\");
        w->cboLookIn->setCurrentText(lookIn);
        w->SelectedFlyer = "stale.rdf";
        w->FillFileList();
        QCOMPARE(w->FlyerFolder, m_host->appPath + "users\\" + lookIn + "\\Reports\\Flyers\\");
        QStringList shown;
        for (int i = 0; i < w->List1->count(); ++i)
            shown << w->List1->item(i)->text();
        QCOMPARE(shown, names);
        QCOMPARE(w->SelectedFlyer, QString());
        // Choosing an entry previews it.
        w->List1->setCurrentRow(0);
        QCOMPARE(w->SelectedFlyer, names[0] + ".rdf");
        QCOMPARE(m_form->calls.last(), "preview " + QDir(m_tree.path()).filePath("Users/" + lookIn + "/Reports/Flyers/" + names[0] + ".rdf"));
    }

    void missingListingOpensNothing()
    {
        ScriptedPrompter prompter;
        auto w = newWindow();
        select(*w, "Templates", "Open House");
        for (QPushButton* b : {w->cmdCreateNew, w->cmdChangeNew, w->cmdMergePrint}) {
            AnswerListnumLater(m_hidden);
            b->click();
        }
        AnswerListnumLater(""); // cancelled: nothing at all
        w->cmdCreateNew->click();
        QCOMPARE(prompter.asked.size(), size_t(3));
        for (const auto& a : prompter.asked) {
            QCOMPARE(a.prompt, m_hidden + " Not Found");
            QCOMPARE(a.buttons, Mb::OKOnly);
            QCOMPARE(a.title, QString());
        }
        QVERIFY(m_designLog.isEmpty());
        QVERIFY(!m_form->calls.join(' ').contains("print"));
    }

    void openDesignWindows()
    {
        ScriptedPrompter prompter;
        m_host->MainForm().SetSwitch(2);
        auto w = newWindow();
        AnswerListnumLater(m_live);
        w->cmdCreateNew->click(); // needs no selection
        w->cmdChangeCurrent->click(); // needs one
        QCOMPARE(m_designLog, (QStringList{"init -1 2 0", "report ||" + m_live}));
        select(*w, "JCarter", "Mine");
        m_designLog.clear();
        const QString file = QDir(m_tree.path()).filePath("Users/JCarter/Reports/Flyers/Mine.rdf");
        QTest::keyClick(w->List1, Qt::Key_Return);
        AnswerListnumLater(m_live);
        w->cmdChangeNew->click();
        QCOMPARE(m_designLog, (QStringList{"init -1 2 0", "report " + file + "|Mine.rdf|", "init -1 2 0",
                                           "report " + file + "|Mine.rdf|" + m_live}));
        QVERIFY(prompter.asked.empty());
    }

    void designWindowsOutliveTheManager()
    {
        // A designer opened from the manager is the user's work in progress: closing the manager
        // leaves it open, and a host ends only once it is closed too.
        m_host->MainForm().SetSwitch(2);
        auto w = newWindow();
        w->show();
        select(*w, "Templates", "Open House");
        w->cmdChangeCurrent->click();
        QVERIFY(!m_designs.empty());
        QWidget& design = m_designs.back()->widget;
        QVERIFY(design.isVisible());
        QCOMPARE(OpenDesignWindows(), 1);
        w->cmdClose->click();
        QVERIFY(!w->isVisible());
        QVERIFY(design.isVisible());
        QCOMPARE(OpenDesignWindows(), 1);
        design.close();
        QCOMPARE(OpenDesignWindows(), 0);
        m_host->closedJobs.clear();
    }

    void unreadableFlyerOpensNoDesigner()
    {
        // The designer has already said why the file could not be read; an empty "Untitled"
        // window in its place would only mislead.
        m_host->MainForm().SetSwitch(2);
        auto w = newWindow();
        select(*w, "Templates", "Zeta");
        m_nextDesignFails = true;
        w->cmdChangeCurrent->click();
        m_nextDesignFails = false;
        QCOMPARE(m_designLog.size(), 3);
        QVERIFY(m_designLog[1].endsWith("|Zeta.rdf|"));
        QCOMPARE(m_designLog[2], QString("unload"));
        QVERIFY(!m_designs.back()->widget.isVisible());
        QCOMPARE(OpenDesignWindows(), 0);
    }

    void copiesArrowsCountAndTheBoxShowsWhatPrints()
    {
        auto w = newWindow();
        w->show();
        select(*w, "Templates", "Open House");
        m_form->calls.clear();
        ClickArrow(w->updCopies, true);
        ClickArrow(w->updCopies, true);
        QCOMPARE(w->txtCopies->text(), QString("3"));
        ClickArrow(w->updCopies, false);
        QCOMPARE(w->txtCopies->text(), QString("2"));
        QCOMPARE(m_form->copies, 2);
        ClickArrow(w->updCopies, false);
        ClickArrow(w->updCopies, false); // never below one
        QCOMPARE(w->txtCopies->text(), QString("1"));
        QCOMPARE(m_form->copies, 1);

        // "0" is an unfinished entry to the box's validator: leaving the box puts back the number
        // that prints instead of keeping a "0" on show.
        w->txtCopies->selectAll();
        QTest::keyClicks(w->txtCopies, "0");
        QCOMPARE(w->txtCopies->text(), QString("0"));
        QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
        QApplication::sendEvent(w->txtCopies, &out);
        QCOMPARE(w->txtCopies->text(), QString("1"));
        // Printing straight from the box takes what it shows.
        w->txtCopies->setText("4");
        w->cmdPrintCurrent->click();
        QCOMPARE(m_form->copies, 4);
        QVERIFY(m_form->calls.last().startsWith("print "));
    }

    void printing()
    {
        ScriptedPrompter prompter;
        auto w = newWindow();
        w->cmdPrintCurrent->click(); // nothing selected
        w->cmdMergePrint->click();
        QVERIFY(!m_form->calls.join(' ').contains("print"));
        select(*w, "Templates", "a.b.c");
        const QString file = QDir(m_tree.path()).filePath("Users/Templates/Reports/Flyers/a.b.c.rdf");
        w->chkPrintPreview->setChecked(true);
        AnswerListnumLater(m_live);
        w->cmdMergePrint->click();
        QCOMPARE(m_form->calls.last(), QString("print %1 [0%2] 1 0 template=0 preview=1").arg(file, m_live));
        w->chkPrintPreview->setChecked(false);
        const int queries = m_host->statements.size();
        w->cmdPrintCurrent->click();
        QCOMPARE(m_form->calls.last(), QString("print %1 [] 1 0 template=1 preview=0").arg(file));
        QCOMPARE(m_host->statements.size(), queries); // no listing check
        w->cmdPrintSetup->click();
        QCOMPARE(m_form->calls.last(), QString("setup"));
    }

    void deleteFlyer()
    {
        ScriptedPrompter prompter;
        const QString flyers = m_tree.path() + "/Users/JCarter/Reports/Flyers/";
        const QString graphics = m_tree.path() + "/Graphics/";
        Touch(flyers + "Doomed.rdf");
        const QStringList gone = {"Doomed~001.jpg", "doomed~A_b.JPG"};
        const QStringList kept = {"Doomed~01.jpg", "Doomed~0001.jpg", "Doomed.jpg", "Other~001.jpg", "Doomed~001.bmp"};
        for (const QString& g : gone + kept)
            Touch(graphics + g);
        auto w = newWindow();

        select(*w, "Templates", "Open House");
        QTest::keyClick(w->List1, Qt::Key_Delete);
        QCOMPARE(prompter.asked.size(), size_t(1));
        QCOMPARE(prompter.asked[0].prompt, QString("You cannot delete a system template file"));
        QCOMPARE(prompter.asked[0].title, QString("Flyer Delete"));
        QCOMPARE(prompter.asked[0].buttons, Mb::OKOnly | Mb::Exclamation);
        QVERIFY(QFile::exists(m_tree.path() + "/Users/Templates/Reports/Flyers/Open House.rdf"));

        select(*w, "JCarter", "Doomed");
        prompter.answers = {Mb::No, Mb::Yes};
        QTest::keyClick(w->List1, Qt::Key_Delete);
        QVERIFY(QFile::exists(flyers + "Doomed.rdf"));
        QCOMPARE(w->List1->count(), 3);
        QTest::keyClick(w->List1, Qt::Key_Delete);
        QCOMPARE(prompter.asked.size(), size_t(3));
        QCOMPARE(prompter.asked[2].prompt, QString("Are you sure you wish do delete 'Doomed'?"));
        QCOMPARE(prompter.asked[2].title, QString("Flyer - Confirm Delete"));
        QCOMPARE(prompter.asked[2].buttons, Mb::YesNo | Mb::Exclamation);
        QVERIFY(!QFile::exists(flyers + "Doomed.rdf"));
        QVERIFY(w->List1->findItems("Doomed", Qt::MatchExactly).isEmpty());
        QCOMPARE(w->List1->count(), 2);
        QCOMPARE(w->List1->currentRow(), -1);
        QCOMPARE(w->SelectedFlyer, QString());
        for (const QString& g : gone)
            QVERIFY2(!QFile::exists(graphics + g), qPrintable(g));
        for (const QString& g : kept)
            QVERIFY2(QFile::exists(graphics + g), qPrintable(g));
        // A name full of pattern characters deletes only its own pictures.
        Touch(graphics + "[Odd]~123.jpg");
        Touch(graphics + "O~123.jpg");
        select(*w, "JCarter", "[Odd]");
        prompter.answers = {Mb::Yes};
        w->DeleteFlyer();
        QVERIFY(!QFile::exists(graphics + "[Odd]~123.jpg"));
        QVERIFY(QFile::exists(graphics + "O~123.jpg"));
    }

    void copiesAndClosing()
    {
        auto w = newWindow();
        QCOMPARE(w->txtCopies->text(), QString("1"));
        emit m_form->Copies(5); // e.g. from the printer set-up
        QCOMPARE(w->txtCopies->text(), QString("5"));
        QCOMPARE(w->updCopies->value(), 5);
        m_form->calls.clear();
        w->txtCopies->setText("3");
        emit w->txtCopies->editingFinished();
        w->updCopies->setValue(4);
        QCOMPARE(w->txtCopies->text(), QString("4"));
        w->txtCopies->setText("");
        emit w->txtCopies->editingFinished();
        QCOMPARE(m_form->calls, (QStringList{"copies 3", "copies 4"}));
        QCOMPARE(w->txtCopies->text(), QString("4")); // an empty box goes back to the form's number

        w->show();
        QVERIFY(m_host->closedJobs.isEmpty());
        w->cmdClose->click(); // with nothing selected too
        QVERIFY(!w->isVisible());
        w->Unload();
        QCOMPARE(m_host->closedJobs, QList<QVariant>{7});
        auto u = newWindow(); // unloaded by the host: the host is not told again
        u->show();
        u->Unload();
        QVERIFY(!u->isVisible());
        QCOMPARE(m_host->closedJobs.size(), 1);
    }
};

QTEST_MAIN(TestFlyers)
#include "tst_flyers.moc"
