// The page and grid setup dialogs driven through Start, as the window runs them, with keys.
#include "design/frmGridSetup.h"
#include "design/frmPageSetup.h"
#include "document/clsRptControl.h"

#include <QAbstractButton>
#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QSpinBox>
#include <QtTest>
#include <functional>

namespace {

struct Grid : GridTarget {
    int x = 60, y = 60, sets = 0;
    int GridIncX() const override { return x; }
    int GridIncY() const override { return y; }
    void SetGridSpacing(int nx, int ny) override { x = nx, y = ny, ++sets; }
};

// Runs `start`, which opens a modal dialog, while the actions drive that dialog from inside its
// loop: "field=text" types into a field, "Return"/"Escape" go to the focused field, any other
// name is a button or check box to click.
bool runModal(const std::function<bool()>& start, const QStringList& actions)
{
    QTimer::singleShot(0, [actions] {
        auto* d = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        QVERIFY(d);
        for (const QString& a : actions) {
            if (a.contains(u'=')) {
                auto* field = d->findChild<QWidget*>(a.section(u'=', 0, 0));
                field->setFocus();
                QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
                QTest::keyClick(field, Qt::Key_Backspace);
                QTest::keyClicks(field, a.section(u'=', 1));
            } else if (a == u"Return" || a == u"Escape") {
                QTest::keyClick(d->focusWidget() ? d->focusWidget() : d, a == u"Return" ? Qt::Key_Return : Qt::Key_Escape);
            } else {
                QTest::mouseClick(d->findChild<QAbstractButton*>(a), Qt::LeftButton);
            }
        }
        if (d->isVisible()) // a script that leaves the dialog open must not hang the test
            d->done(QDialog::Rejected);
    });
    return start();
}

} // namespace

class TestPageSetup : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    // Each row: the document (all four margins, HeaderFlags, columns, section spacing, new page),
    // the actions, and the outcome: margins T B L R, flags, columns, spacing, new page, dirty, OK.
    void pageSettings_data()
    {
        QTest::addColumn<QString>("document");
        QTest::addColumn<QString>("actions");
        QTest::addColumn<QString>("expected");
        auto row = [](const char* name, const char* doc, const char* actions, const char* expected) {
            QTest::newRow(name) << doc << actions << expected;
        };
        row("zero margins take defaults", "0 0 1 0 1", "OKButton", "1080 1080 720 720 0x0 1 0 1 1 1");
        row("negative margins too", "-5 0 1 0 1", "Return", "1080 1080 720 720 0x0 1 0 1 1 1");
        row("untouched keeps odd twips", "1000 0x32 3 0 0", "Return", "1000 1000 1000 1000 0x32 3 0 0 0 1");
        row("typed inches", "1000 0 1 0 1", "fpTopMargin=1.25 Return", "1800 1000 1000 1000 0x0 1 0 1 1 1");
        row("rounds to twips", "720 0 1 0 1", "fpLeftMargin=0.333 OKButton", "720 720 480 720 0x0 1 0 1 1 1");
        row("digit past 22.75 refused", "720 0 1 0 1", "fpTopMargin=99 Return", "12960 720 720 720 0x0 1 0 1 1 1");
        row("border off keeps other bits", "720 0x17F 2 0 1", "chkPageBorder OKButton",
            "720 720 720 720 0x13f 2 0 1 1 1");
        row("all three bits on", "720 0x3 1 0 1", "chkPageBorder chkPageNumber chkLeftToRight OKButton",
            "720 720 720 720 0x73 1 0 1 1 1");
        row("stored 0 columns is 1", "720 0 0 0 1", "OKButton", "720 720 720 720 0x0 1 0 1 1 1");
        row("200 columns clamp to 100", "720 0 200 0 1", "OKButton", "720 720 720 720 0x0 100 0 1 1 1");
        row("typed columns", "720 0 1 0 1", "fpNumColumns=12 Return", "720 720 720 720 0x0 12 0 1 1 1");
        row("typed zero columns refused", "720 0 4 0 1", "fpNumColumns=0 Return", "720 720 720 720 0x0 4 0 1 0 1");
        row("new page sticks on cancel", "720 0x70 1 0 0", "fpLeftMargin=2 chkPageNumber chkNewPage CancelButton",
            "720 720 720 720 0x70 1 0 1 1 0");
        row("escape cancels", "720 0x70 1 0 1", "fpTopMargin=2 chkPageBorder Escape", "720 720 720 720 0x70 1 0 1 0 0");
        row("spacing kept at full precision", "720 0 1 0.34722 1", "OKButton", "720 720 720 720 0x0 1 0.34722 1 0 1");
        row("spacing typed", "720 0 1 0.34722 1", "fpSectionSpacing=0.25 Return", "720 720 720 720 0x0 1 0.25 1 1 1");
        row("spacing escape takes back", "720 0 1 0.5 1", "fpSectionSpacing=1.5 Escape OKButton",
            "720 720 720 720 0x0 1 0.5 1 0 1");
        row("spacing second escape cancels", "720 0 1 0.5 1", "fpSectionSpacing=1.5 Escape Escape",
            "720 720 720 720 0x0 1 0.5 1 0 0");
        row("spacing emptied not taken", "720 0 1 0.5 1", "fpSectionSpacing= Return", "720 720 720 720 0x0 1 0.5 1 0 1");
    }
    void pageSettings()
    {
        QFETCH(QString, document);
        QFETCH(QString, actions);
        const QStringList d = document.split(u' ');
        clsRptControl doc;
        doc.TopMargin = doc.BottomMargin = doc.LeftMargin = doc.RightMargin = d[0].toInt();
        doc.HeaderFlags = d[1].toInt(nullptr, 0);
        doc.NumberOfColumns = d[2].toInt();
        doc.SetSectionSpacing(d[3].toFloat());
        doc.NewPage = d[4] == u"1";
        const bool ok = runModal([&] { return frmPageSetup::Start(doc, nullptr); }, actions.split(u' '));
        const QString got = QStringLiteral("%1 %2 %3 %4 0x%5 %6 %7 %8 %9 %10")
                                .arg(doc.TopMargin)
                                .arg(doc.BottomMargin)
                                .arg(doc.LeftMargin)
                                .arg(doc.RightMargin)
                                .arg(doc.HeaderFlags, 0, 16)
                                .arg(doc.NumberOfColumns)
                                .arg(QString::number(doc.SectionSpacing(), 'g', 6))
                                .arg(int(doc.NewPage))
                                .arg(int(doc.DirtyFlag))
                                .arg(int(ok));
        QTEST(got, "expected");
    }

    void grid_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("y");
        QTest::addColumn<QString>("actions");
        QTest::addColumn<QList<int>>("expected"); // x, y, times set, OK
        QTest::newRow("enter keeps") << 120 << 60 << "Return" << QList<int>{120, 60, 1, 1};
        QTest::newRow("typed") << 60 << 60 << "fpGridWidth=240 fpGridHeight=1000 cmdOK" << QList<int>{240, 1000, 1, 1};
        QTest::newRow("zero refused") << 60 << 60 << "fpGridHeight=0 Return" << QList<int>{60, 60, 1, 1};
        QTest::newRow("past 1000 refused") << 60 << 60 << "fpGridWidth=1001 Return" << QList<int>{100, 60, 1, 1};
        QTest::newRow("above 1000 clamps") << 5000 << 60 << "cmdOK" << QList<int>{1000, 60, 1, 1};
        QTest::newRow("escape cancels") << 60 << 60 << "fpGridWidth=240 Escape" << QList<int>{60, 60, 0, 0};
        QTest::newRow("cancel button") << 60 << 60 << "fpGridWidth=240 cmdCancel" << QList<int>{60, 60, 0, 0};
    }
    void grid()
    {
        QFETCH(QString, actions);
        Grid g;
        QFETCH(int, x);
        QFETCH(int, y);
        g.x = x, g.y = y;
        const bool ok = runModal([&] { return frmGridSetup::Start(g, nullptr); }, actions.split(u' '));
        QTEST((QList<int>{g.x, g.y, g.sets, int(ok)}), "expected");
    }

    void texts()
    {
        clsRptControl doc;
        frmPageSetup page(doc);
        Grid grid;
        frmGridSetup gridDialog(grid);
        QCOMPARE(page.windowTitle() + u'|' + gridDialog.windowTitle(), QStringLiteral("Page Setup|Grid Setup"));
        QStringList shown;
        for (const QObject* d : {static_cast<QObject*>(&page), static_cast<QObject*>(&gridDialog)}) {
            for (const auto* g : d->findChildren<QGroupBox*>())
                shown << g->title();
            for (const auto* l : d->findChildren<QLabel*>())
                shown << l->text();
            for (const auto* b : d->findChildren<QAbstractButton*>())
                shown << b->text();
        }
        for (const char* text :
             {"Margins (in Inches)", "Top", "Bottom", "Left", "Right", "Columns", "Number of:", "Fill Left to Right",
              "Show", "Page Border", "Page Numbers", "Sections", "Section Spacing (in inches)",
              "Force a new page between records", "OK", "Cancel", "Grid Units: Twips", "Width:", "Height:"})
            QVERIFY2(shown.contains(QLatin1String(text)), text);
        QCOMPARE(page.findChild<QWidget*>(QStringLiteral("fpSectionSpacing"))->toolTip(),
                 QStringLiteral("Space in inches between sections when printing more than one section per page"));
        QCOMPARE(page.findChild<QAbstractSpinBox*>(QStringLiteral("fpTopMargin"))->text(), QStringLiteral("0.750"));
    }
};

QTEST_MAIN(TestPageSetup)
#include "tst_pagesetup.moc"
