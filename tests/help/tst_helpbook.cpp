// The help book compiled into the program: every page of the contents is there, every link leads
// to a page of the book, every window's context has a page, and the viewer's contents, index and
// search lead to the pages they name.
#include "help/HelpBook.h"
#include "help/HelpContexts.h"
#include "help/HelpViewer.h"

#include <QDialog>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QtTest>

class TestHelpBook : public QObject {
    Q_OBJECT
    const HelpBook& book = HelpBook::Instance();

private slots:
    void everyPageIsThereWithItsTitle()
    {
        QVERIFY(book.Contents().size() >= 15);
        QCOMPARE(book.Contents().first().page, book.HomePage());
        for (const HelpBook::Entry& e : book.Contents()) {
            QVERIFY2(!book.Title(e.page).isEmpty(), qPrintable(e.page));
            QCOMPARE(book.Title(e.page), e.title); // the contents and the page agree
            QVERIFY2(book.PlainText(e.page).size() > 200, qPrintable(e.page));
        }
    }

    void everyLinkLeadsToAPage()
    {
        static const QRegularExpression href(QStringLiteral("href=\"([^\"]+)\""));
        int links = 0;
        for (const QString& page : book.Pages()) {
            QFile f(QStringLiteral(":/help/") + page);
            QVERIFY(f.open(QIODevice::ReadOnly));
            const QString html = QString::fromUtf8(f.readAll());
            for (auto m = href.globalMatch(html); m.hasNext();) {
                const QString target = m.next().captured(1);
                QVERIFY2(book.Pages().contains(target), qPrintable(page + " -> " + target));
                ++links;
            }
        }
        QVERIFY(links > 40);
    }

    void everyWindowHasItsPage_data()
    {
        QTest::addColumn<int>("context");
        QTest::addColumn<QString>("page");
        QTest::newRow("design window") << HelpContext::DesignWindow << "design-window.html";
        QTest::newRow("flyer manager") << HelpContext::FlyerManager << "flyers.html";
        QTest::newRow("report files") << HelpContext::ReportFiles << "report-files.html";
        QTest::newRow("page setup") << HelpContext::PageSetup << "page-setup.html";
        QTest::newRow("grid setup") << HelpContext::GridSetup << "grid-setup.html";
        QTest::newRow("property sheet") << HelpContext::PropertySheet << "property-sheet.html";
        QTest::newRow("field list") << HelpContext::FieldList << "field-list.html";
        QTest::newRow("find property") << HelpContext::FindProperty << "find-property.html";
        QTest::newRow("listing prompt") << HelpContext::ListingPrompt << "listing-prompt.html";
        QTest::newRow("printing") << HelpContext::Printing << "printing.html";
    }
    void everyWindowHasItsPage()
    {
        QFETCH(int, context);
        QFETCH(QString, page);
        QCOMPARE(book.PageForContext(context), page);
        QDialog window;
        window.setProperty("HelpContextID", context);
        QLineEdit child(&window);
        QCOMPARE(book.PageForWindow(&child), page); // asked from inside the window
    }

    void unknownWindowsGetTheHomePage()
    {
        QCOMPARE(book.PageForContext(99999), QString());
        QDialog window;
        window.setProperty("HelpContextID", 99999);
        QCOMPARE(book.PageForWindow(&window), book.HomePage());
        QCOMPARE(book.PageForWindow(nullptr), book.HomePage());
    }

    void indexAndSearch()
    {
        QVERIFY(book.Index().value(QStringLiteral("merge printing")).contains(QStringLiteral("printing.html")));
        QVERIFY(book.Index().value(QStringLiteral("postgresql")).contains(QStringLiteral("database.html")));
        const QList<HelpBook::Hit> hits = book.Search(QStringLiteral("  MERGE   print "));
        QVERIFY(!hits.isEmpty());
        QCOMPARE(hits.first().page, QStringLiteral("printing.html"));
        for (const HelpBook::Hit& h : hits) // every word on every page found
            QVERIFY(book.PlainText(h.page).contains(QLatin1String("merge"), Qt::CaseInsensitive));
        QVERIFY(book.Search(QStringLiteral("merge zqxj")).isEmpty());
        QVERIFY(book.Search(QStringLiteral("   ")).isEmpty());
    }

    void viewerFindsPagesThroughContentsIndexAndSearch()
    {
        HelpViewer v(book);
        v.setAttribute(Qt::WA_DeleteOnClose, false);
        v.show();
        v.Open(QStringLiteral("flyers.html"));
        QCOMPARE(v.CurrentPage(), QStringLiteral("flyers.html"));
        QCOMPARE(v.windowTitle(), QStringLiteral("Pagewright Help - Flyers"));
        QVERIFY(v.Browser()->toPlainText().contains(QLatin1String("Merge and Print")));
        QCOMPARE(v.ContentsTree()->currentItem()->text(0), QStringLiteral("Flyers"));

        v.Tabs()->setCurrentIndex(1);
        QTest::keyClicks(v.IndexFilter(), QStringLiteral("grid"));
        QVERIFY(v.IndexList()->count() >= 1);
        for (int i = 0; i < v.IndexList()->count(); ++i)
            QVERIFY(v.IndexList()->item(i)->text().startsWith(QLatin1String("grid"), Qt::CaseInsensitive));
        QTest::keyClick(v.IndexFilter(), Qt::Key_Return);
        QCOMPARE(v.CurrentPage(), QStringLiteral("grid-setup.html"));

        v.Tabs()->setCurrentIndex(2);
        QTest::keyClicks(v.SearchText(), QStringLiteral("statement_timeout read-only"));
        QTest::keyClick(v.SearchText(), Qt::Key_Return);
        QCOMPARE(v.SearchResults()->count(), 1);
        QCOMPARE(v.SearchResults()->item(0)->text(), QStringLiteral("No topics found."));
        v.SearchText()->setText(QStringLiteral("pagewright_reader"));
        QTest::keyClick(v.SearchText(), Qt::Key_Return);
        QCOMPARE(v.SearchResults()->item(0)->text(), QStringLiteral("Using a database server"));
        QTest::mouseClick(v.SearchResults()->viewport(), Qt::LeftButton, {}, v.SearchResults()->visualItemRect(v.SearchResults()->item(0)).center());
        QCOMPARE(v.CurrentPage(), QStringLiteral("database.html"));

        v.Browser()->backward();
        QCOMPARE(v.CurrentPage(), QStringLiteral("grid-setup.html"));
    }
};

QTEST_MAIN(TestHelpBook)
#include "tst_helpbook.moc"
