// One way into help from every window: the Help buttons and F1 open the program's own help
// viewer at the window's page, and never a "not found" message.
#include "dialogs/frmFlyers.h"
#include "dialogs/frmSaveRecall.h"
#include "entry/Prompts.h"
#include "help/HelpBook.h"
#include "help/HelpViewer.h"
#include "support_demo.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTextBrowser>
#include <QtTest>

namespace {
HelpViewer* viewerOf(QWidget& w)
{
    return w.findChild<HelpViewer*>(QString(), Qt::FindDirectChildrenOnly);
}
} // namespace

class TestHelpButtons : public QObject {
    Q_OBJECT

private slots:
    void reportFileDialogHelpOpensItsPage()
    {
        ScriptedPrompter prompter; // a message box would be recorded here
        frmSaveRecall d;
        d.show();
        QTest::mouseClick(d.cmdHelp, Qt::LeftButton);
        HelpViewer* v = viewerOf(d);
        QVERIFY(v && v->isVisible());
        QCOMPARE(v->CurrentPage(), QStringLiteral("report-files.html"));
        QCOMPARE(v->windowTitle(), QStringLiteral("Pagewright Help - Saving and opening reports"));
        QVERIFY(prompter.asked.empty());
        // A second press reuses the same viewer.
        QTest::mouseClick(d.cmdHelp, Qt::LeftButton);
        QCOMPARE(d.findChildren<HelpViewer*>().size(), 1);
    }

    void flyerManagerHelpOpensItsPage()
    {
        DemoHost host;
        ScriptedPrompter prompter;
        frmFlyers w;
        w.setAttribute(Qt::WA_DeleteOnClose, false);
        w.Init(3);
        w.show();
        QTest::mouseClick(w.cmdHelp, Qt::LeftButton);
        HelpViewer* v = viewerOf(w);
        QVERIFY(v && v->isVisible());
        QCOMPARE(v->CurrentPage(), QStringLiteral("flyers.html"));
        QVERIFY(prompter.asked.empty());
    }

    void f1OpensThePageOfTheWindowWithFocus()
    {
        InstallHelpKey();
        frmSaveRecall d;
        d.show();
        d.txtFileName->setFocus();
        QTest::keyClick(d.txtFileName, Qt::Key_F1);
        HelpViewer* v = viewerOf(d);
        QVERIFY(v);
        QCOMPARE(v->CurrentPage(), QStringLiteral("report-files.html"));
        // F1 inside the viewer does not open another one.
        QTest::keyClick(v->Browser(), Qt::Key_F1);
        QCOMPARE(d.findChildren<HelpViewer*>().size(), 1);
    }
};

QTEST_MAIN(TestHelpButtons)
#include "tst_helpbuttons.moc"
