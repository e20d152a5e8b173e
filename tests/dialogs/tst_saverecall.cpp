// The report file dialog: folders per look-in name, names without extensions, the initial path,
// saving over a file, opening a missing one, deleting with the Delete key, and the seam the
// design window calls (with cancelling).
#include "dialogs/frmSaveRecall.h"
#include "entry/Prompts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

namespace {
// AppPath\Users\<look-in>\Reports\Listings\ with a few files, as the host spells its paths.
struct Folders {
    QTemporaryDir dir;
    QString hostRoot; // "\tmp\...\"
    Folders()
    {
        hostRoot = dir.path().replace(QLatin1Char('/'), QLatin1Char('\\')) + QLatin1Char('\\');
        Put("bob", {"beta.RDF", "Alpha.rdf", "my.report.rdf", "notes.txt"});
        Put("Templates", {"Flyer.rdf"});
        Put("Default", {});
    }
    void Put(const QString& lookIn, const QStringList& files)
    {
        const QString folder = dir.path() + "/Users/" + lookIn + "/Reports/Listings/";
        QDir().mkpath(folder);
        for (const QString& f : files)
            QVERIFY(QFile(folder + f).open(QIODevice::WriteOnly));
    }
    QString Template() const { return hostRoot + "Users\\~UserName~\\Reports\\Listings\\"; }
    QString Local(const QString& lookIn, const QString& file) const { return dir.path() + "/Users/" + lookIn + "/Reports/Listings/" + file; }
};

QStringList Listed(const frmSaveRecall& d)
{
    QStringList out;
    for (int i = 0; i < d.List1->count(); ++i)
        out << d.List1->item(i)->text();
    return out;
}

bool Asked(const ScriptedPrompter::Asked& a, const QString& prompt, int buttons, const QString& title)
{
    return a.prompt == prompt && a.buttons == buttons && a.title == title;
}

void ClickEntry(frmSaveRecall& d, const QString& name, bool twice = false)
{
    const auto found = d.List1->findItems(name, Qt::MatchExactly);
    QVERIFY(!found.isEmpty());
    const QPoint at = d.List1->visualItemRect(found.first()).center();
    QTest::mouseClick(d.List1->viewport(), Qt::LeftButton, {}, at);
    if (twice)
        QTest::mouseDClick(d.List1->viewport(), Qt::LeftButton, {}, at);
}

const QStringList LookIns{"bob", "Templates", "Default"};
} // namespace

class TestSaveRecall : public QObject {
    Q_OBJECT
private slots:
    void listsEachLookIn()
    {
        Folders f;
        frmSaveRecall d;
        d.PrepareOpen(f.Template(), "rdf", LookIns, "*.rdf", "");
        QCOMPARE(QStringList({d.cmdOk->text(), d.lblLookIn->text(), d.chkTableLayout->text()}),
                 QStringList({"&Open", "Look in:", "Open with Table Layout"}));
        QCOMPARE(d.cboLookIn->currentText(), QString("bob"));
        // Pattern and order ignore case; only the last extension goes.
        QCOMPARE(Listed(d), QStringList({"Alpha", "beta", "my.report"}));
        QCOMPARE(d.Folder(), f.hostRoot + "Users\\bob\\Reports\\Listings\\");
        QVERIFY(!d.cmdOk->isEnabled());
        // The folder is shown as this system writes paths; Folder() keeps the host's form.
        QCOMPARE(d.lblCurFolder->text(), QDir::toNativeSeparators(f.dir.path() + "/Users/bob/Reports/Listings/"));

        d.cboLookIn->setCurrentIndex(1);
        QCOMPARE(Listed(d), QStringList{"Flyer"});
        QCOMPARE(d.lblCurFolder->text(), QDir::toNativeSeparators(f.dir.path() + "/Users/Templates/Reports/Listings/"));
        ClickEntry(d, "Flyer");
        QCOMPARE(d.txtFileName->text(), QString("Flyer"));
        QVERIFY(d.cmdOk->isEnabled());

        d.cboLookIn->setCurrentIndex(2); // an empty folder leaves Open disabled, typing or not
        QVERIFY(Listed(d).isEmpty());
        QTest::keyClicks(d.txtFileName, "x");
        QVERIFY(!d.cmdOk->isEnabled());
    }

    void initialPath_data()
    {
        QTest::addColumn<QStringList>("lookIns");
        QTest::addColumn<QString>("path"); // relative to the root; "" for none
        QTest::addColumn<QString>("lookIn");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("okEnabled");
        QTest::newRow("templates") << LookIns << "Users\\Templates\\Reports\\Listings\\Flyer.rdf" << "Templates" << "Flyer" << true;
        QTest::newRow("case-blind") << LookIns << "Users\\BOB\\Reports\\Listings\\beta.rdf" << "bob" << "beta" << true;
        QTest::newRow("slashes") << LookIns << "Users/Templates/Reports/Listings/New.one.rdf" << "Templates" << "New.one" << false;
        QTest::newRow("unknown look-in") << LookIns << "Users\\ann\\Reports\\Listings\\x.rdf" << "bob" << "x" << false;
        QTest::newRow("none") << LookIns << "" << "bob" << "" << false;
        QTest::newRow("empty Default") << QStringList{"Default", "Templates"} << "" << "Templates" << "" << false;
        QTest::newRow("named Default") << QStringList{"Default", "bob"} << "Users\\Default\\Reports\\Listings\\a.rdf" << "bob" << "a" << false;
        QTest::newRow("Default alone") << QStringList{"Default"} << "" << "Default" << "" << false;
    }
    void initialPath()
    {
        QFETCH(QStringList, lookIns);
        QFETCH(QString, path);
        Folders f;
        frmSaveRecall d;
        d.PrepareOpen(f.Template(), "rdf", lookIns, "*.rdf", path.isEmpty() ? path : f.hostRoot + path);
        QTEST(d.cboLookIn->currentText(), "lookIn");
        QTEST(d.txtFileName->text(), "name");
        QTEST(d.cmdOk->isEnabled(), "okEnabled");
    }

    void saveAsksBeforeReplacing()
    {
        Folders f;
        ScriptedPrompter prompter;
        frmSaveRecall d;
        d.PrepareSave(f.Template(), "rdf", LookIns, "*.rdf", "");
        QCOMPARE(QStringList({d.cmdOk->text(), d.lblLookIn->text(), d.chkTableLayout->text()}),
                 QStringList({"Save", "Save in:", "Save Table Layout"}));
        d.show();
        d.cmdOk->click(); // nothing while the name is empty
        QTest::keyClicks(d.txtFileName, "a*b:c?d.e/f\\g<h>i|j"); // refused keys are dropped
        QCOMPARE(d.txtFileName->text(), QString("abcdefghij"));
        d.txtFileName->clear();
        QTest::keyClicks(d.txtFileName, "ALPHA");
        prompter.answers = {Mb::No, Mb::Yes};
        QTest::keyClick(d.txtFileName, Qt::Key_Return);
        QVERIFY(d.isVisible()); // No: stays
        QVERIFY(Asked(prompter.asked[0], "ALPHA already exists.\nDo you want to replace it?", Mb::YesNo | Mb::Question, "Save As"));
        d.chkTableLayout->setChecked(true);
        d.cmdOk->click();
        QVERIFY(!d.isVisible());
        const auto c = d.Choice();
        QVERIFY(c);
        QCOMPARE(c->title, QString("ALPHA"));
        QCOMPARE(c->hostPath, f.hostRoot + "Users\\bob\\Reports\\Listings\\ALPHA.rdf");
        QCOMPARE(c->path, f.Local("bob", "Alpha.rdf")); // replaces the file that is there
        QVERIFY(c->tableLayout);
    }

    void openMissingName()
    {
        Folders f;
        ScriptedPrompter prompter;
        frmSaveRecall d;
        d.PrepareOpen(f.Template(), "rdf", LookIns, "*.rdf", "");
        d.show();
        QTest::keyClicks(d.txtFileName, "gamma");
        QTest::keyClick(d.txtFileName, Qt::Key_Return);
        QVERIFY(d.isVisible());
        QVERIFY(Asked(prompter.asked[0], "gamma was not found.\nPlease verify that the correct name was given.", Mb::OKOnly | Mb::Exclamation, "Open"));

        ClickEntry(d, "my.report", true); // a double click opens
        QVERIFY(!d.isVisible());
        QCOMPARE(d.Choice()->path, f.Local("bob", "my.report.rdf"));
        QCOMPARE(d.Choice()->title, QString("my.report"));
    }

    void deleteKey()
    {
        Folders f;
        ScriptedPrompter prompter;
        frmSaveRecall d;
        d.PrepareOpen(f.Template(), "rdf", LookIns, "*.rdf", "");
        d.show();
        QTest::keyClick(d.List1, Qt::Key_Delete); // nothing selected: nothing asked
        QVERIFY(prompter.asked.empty());
        ClickEntry(d, "beta");
        prompter.answers = {Mb::No, Mb::Yes};
        QTest::keyClick(d.List1, Qt::Key_Delete);
        QVERIFY(QFile::exists(f.Local("bob", "beta.RDF")));
        QTest::keyClick(d.List1, Qt::Key_Delete);
        QVERIFY(Asked(prompter.asked[1], "Are you sure you wish do delete 'beta'?", Mb::YesNo | Mb::Exclamation, "Confirm Delete"));
        QVERIFY(!QFile::exists(f.Local("bob", "beta.RDF"))); // the extension's case did not matter
        QCOMPARE(Listed(d), QStringList({"Alpha", "my.report"}));
        QCOMPARE(d.txtFileName->text(), QString());
        // The last file of an open listing takes Open with it; a file that will not go stays listed.
        d.cboLookIn->setCurrentIndex(1);
        ClickEntry(d, "Flyer");
        QTest::keyClick(d.List1, Qt::Key_Delete);
        QVERIFY(Listed(d).isEmpty());
        QVERIFY(!d.cmdOk->isEnabled());
        d.PrepareOpen(f.Template(), "rdf", LookIns, "*.txt", ""); // deletes notes.rdf: not there
        ClickEntry(d, "notes");
        QTest::keyClick(d.List1, Qt::Key_Delete);
        QVERIFY(prompter.asked.back().prompt.startsWith("'notes' could not be deleted.\n"));
        QCOMPARE(Listed(d), QStringList{"notes"});
    }

    void seam()
    {
        Folders f;
        SetReportFileDialog({});
        QVERIFY(!HasReportFileDialog());
        QVERIFY(!ReportFileDialog(false, "Open", f.Template(), "rdf", LookIns, "*.rdf"));

        InstallReportFileDialog();
        QVERIFY(HasReportFileDialog());
        QString caption;
        QTimer::singleShot(0, [&caption] {
            auto* d = qobject_cast<frmSaveRecall*>(QApplication::activeModalWidget());
            QVERIFY(d);
            caption = d->windowTitle();
            d->cboLookIn->setCurrentText("Fresh");
            QTest::keyClicks(d->txtFileName, "First");
            QTest::keyClick(d->txtFileName, Qt::Key_Return);
        });
        const auto c = ReportFileDialog(true, "Save", f.Template(), "rdf", {"bob", "Fresh"}, "*.rdf");
        QCOMPARE(caption, QString("Save"));
        QVERIFY(c);
        QCOMPARE(c->hostPath, f.hostRoot + "Users\\Fresh\\Reports\\Listings\\First.rdf");
        QVERIFY(QFileInfo(f.Local("Fresh", "")).isDir()); // ready for the first save

        // Escape cancels, even with a file picked.
        QTimer::singleShot(0, [] {
            auto* d = qobject_cast<frmSaveRecall*>(QApplication::activeModalWidget());
            QVERIFY(d && d->windowTitle() == "Save/Open" && d->cmdOk->isEnabled());
            QTest::keyClick(d->List1, Qt::Key_Escape);
        });
        QVERIFY(!ReportFileDialog(false, "", f.Template(), "rdf", LookIns, "*.rdf", f.Local("bob", "Alpha.rdf")));
        SetReportFileDialog({});
    }
};

QTEST_MAIN(TestSaveRecall)
#include "tst_saverecall.moc"
