// Paper size and orientation in the page setup dialog, chosen with the keyboard as a user does.
#include "design/frmPageSetup.h"
#include "document/clsRptControl.h"

#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>
#include <functional>

namespace {

// Runs the modal dialog of document, driving it with act from inside its loop.
bool runDialog(clsRptControl& doc, const std::function<void(QDialog&)>& act)
{
    QTimer::singleShot(0, [act] {
        auto* d = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        QVERIFY(d);
        act(*d);
        if (d->isVisible())
            d->done(QDialog::Rejected);
    });
    return frmPageSetup::Start(doc, nullptr);
}

void choose(QDialog& d, const QString& size, bool landscape)
{
    auto* box = d.findChild<QComboBox*>("cboPaper");
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Home);
    while (box->currentText() != size && box->currentIndex() < box->count() - 1)
        QTest::keyClick(box, Qt::Key_Down);
    QTest::keyClick(d.findChild<QRadioButton*>(landscape ? "optLandscape" : "optPortrait"), Qt::Key_Space);
}

void clickOk(QDialog& d) { QTest::mouseClick(d.findChild<QPushButton*>("OKButton"), Qt::LeftButton); }

} // namespace

class TestPageSetupPaper : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void aChosenPaperIsKeptWithTheReport()
    {
        clsRptControl doc;
        QVERIFY(runDialog(doc, [](QDialog& d) {
            choose(d, "A4", true);
            clickOk(d);
        }));
        QCOMPARE(doc.Paper, (std::optional<RdfPaper>(RdfPaper{RdfPaper::A4, true})));
        QVERIFY(doc.DirtyFlag);

        // Opened again, the dialog shows it; a custom size is typed in inches.
        QVERIFY(runDialog(doc, [](QDialog& d) {
            QCOMPARE(d.findChild<QComboBox*>("cboPaper")->currentText(), QString("A4"));
            QVERIFY(d.findChild<QRadioButton*>("optLandscape")->isChecked());
            QVERIFY(!d.findChild<QDoubleSpinBox*>("fpPaperWidth")->isEnabled());
            choose(d, "Custom", false);
            auto* w = d.findChild<QDoubleSpinBox*>("fpPaperWidth");
            QVERIFY(w->isEnabled());
            w->setFocus();
            QTest::keyClick(w, Qt::Key_A, Qt::ControlModifier);
            QTest::keyClicks(w, "5.5");
            auto* h = d.findChild<QDoubleSpinBox*>("fpPaperHeight");
            h->setFocus();
            QTest::keyClick(h, Qt::Key_A, Qt::ControlModifier);
            QTest::keyClicks(h, "8.5");
            clickOk(d);
        }));
        QCOMPARE(doc.Paper, (std::optional<RdfPaper>(RdfPaper{RdfPaper::Custom, false, 7920, 12240})));
    }

    // OK on the default paper of a report without a setting stores nothing (its file stays as
    // it was); Letter chosen again after another paper is a setting.
    void theDefaultPaperStoresNothing()
    {
        clsRptControl doc;
        QVERIFY(runDialog(doc, [](QDialog& d) { clickOk(d); }));
        QVERIFY(!doc.Paper);
        QVERIFY(!doc.DirtyFlag);
        doc.Paper = RdfPaper{RdfPaper::Legal};
        QVERIFY(runDialog(doc, [](QDialog& d) {
            choose(d, "Letter", false);
            clickOk(d);
        }));
        QCOMPARE(doc.Paper, (std::optional<RdfPaper>(RdfPaper{RdfPaper::Letter})));
        // Cancel keeps the paper.
        QVERIFY(!runDialog(doc, [](QDialog& d) {
            choose(d, "Tabloid", true);
            QTest::mouseClick(d.findChild<QPushButton*>("CancelButton"), Qt::LeftButton);
        }));
        QCOMPARE(doc.Paper, (std::optional<RdfPaper>(RdfPaper{RdfPaper::Letter})));
    }
};

QTEST_MAIN(TestPageSetupPaper)
#include "tst_pagesetuppaper.moc"
