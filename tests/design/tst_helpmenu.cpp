// The design window's Help menu and F1 open the help viewer at the design window's page.
#include "support_windowhost.h"

#include "help/HelpBook.h"
#include "help/HelpViewer.h"

#include <QAction>
#include <QMenuBar>

class tst_helpmenu : public QObject {
    Q_OBJECT
private slots:
    void helpMenuAndF1OpenTheDesignWindowPage()
    {
        WindowTestHost host;
        auto w = Open();
        QAction* help = w->Commands().Action(u"mnuHelp");
        QVERIFY(help);
        QVERIFY(help->isEnabled());
        QCOMPARE(help->shortcut(), QKeySequence(QKeySequence::HelpContents));
        help->trigger();
        auto* v = w->findChild<HelpViewer*>(QString(), Qt::FindDirectChildrenOnly);
        QVERIFY(v && v->isVisible());
        QCOMPARE(v->CurrentPage(), QStringLiteral("design-window.html"));
        v->close();
        QTRY_VERIFY(!w->findChild<HelpViewer*>(QString(), Qt::FindDirectChildrenOnly));

        // F1 on the page opens the same page (as in the program, which installs the help key).
        InstallHelpKey();
        w->activateWindow();
        QTest::keyClick(w->Page().View()->viewport(), Qt::Key_F1);
        v = w->findChild<HelpViewer*>(QString(), Qt::FindDirectChildrenOnly);
        QVERIFY(v);
        QCOMPARE(v->CurrentPage(), QStringLiteral("design-window.html"));
        QVERIFY(host.prompts.asked.empty());
    }
};

QTEST_MAIN(tst_helpmenu)
#include "tst_helpmenu.moc"
