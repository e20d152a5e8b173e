// One print path for the design window, the flyer manager's print form and the preview's Print
// button: the file is asked for at every print (named after report and record, in the last
// folder), the copies and the page range chosen reach the PDF, the printer set-up is a set-up,
// and a preview keeps thin strokes visible at every zoom.
#include "support_printdialog.h"
#include "support_report.h"

#include "entry/Prompts.h"
#include "output/PrintJob.h"
#include "output/PrinterSetupDialog.h"
#include "output/ReportEngine.h"
#include "output/ReportPrintForm.h"

#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

class TestPrintPath : public QObject {
    Q_OBJECT
    QTemporaryDir m_tmp;
    QString m_report;
    QStringList m_keys;

    QString path(const QString& name) const { return m_tmp.filePath(name); }

    // The record each page of a PDF shows, in order.
    QStringList pageKeys(const QString& pdf) const
    {
        QStringList out;
        for (const QString& page : PdfPages(pdf)) {
            QString found = QStringLiteral("?");
            for (const QString& k : m_keys)
                if (page.contains(k))
                    found = k;
            out << found;
        }
        return out;
    }
    static QStringList elements(const QStringList& keys)
    {
        QStringList out;
        for (const QString& k : keys)
            out << QStringLiteral("0") + k;
        return out;
    }

private slots:
    void initTestCase()
    {
        if (!HavePdfToText())
            QSKIP("pdftotext is not installed");
        m_report = path("sheet.rdf");
        ReportFixture f;
        f.buildListingReport(m_report, 0);
        m_keys = f.liveKeys(m_report, 3);
        QCOMPARE(m_keys.size(), 3);
    }
    void init()
    {
        PrintJob::SetLastFolder(m_tmp.path());
        PrintJob::DesignSettings() = PrintJob::Settings();
    }

    void fileIsAskedAtEachPrintNamedAfterReportAndRecord()
    {
        ReportFixture f;
        ScriptedPrompter prompter;
        PrintDialogDriver dialogs;
        QDir().mkpath(path("elsewhere"));
        const QString first = path("elsewhere/first.pdf");
        dialogs.answers = {{first}, {}};
        ReportPrintForm form;
        form.SetReportFile(m_report);
        QVERIFY(form.PrintList({"0" + m_keys[0]}));
        // The second print does not go silently over the first one's file.
        QVERIFY(form.PrintList({"0" + m_keys[1]}));
        QCOMPARE(dialogs.offeredFiles,
                 (QStringList{path("sheet " + m_keys[0] + ".pdf"), path("elsewhere/sheet " + m_keys[1] + ".pdf")}));
        QCOMPARE(pageKeys(first), QStringList{m_keys[0]});
        QCOMPARE(pageKeys(dialogs.offeredFiles[1]), QStringList{m_keys[1]});
        // The design window's print remembers the folder too, and names the file after its title.
        RunReportOptions o;
        o.printDialog = true;
        o.documentName = "Open House";
        QVERIFY(RunReport(nullptr, m_report, m_keys[2], false, o));
        QCOMPARE(dialogs.offeredFiles.value(2), path("elsewhere/Open House " + m_keys[2] + ".pdf"));
        QCOMPARE(pageKeys(dialogs.offeredFiles[2]), QStringList{m_keys[2]});
        // Cancelled: nothing is written.
        dialogs.answers = {{path("never.pdf"), 0, {}, true, true}};
        QVERIFY(!RunReport(nullptr, m_report, m_keys[2], false, o));
        QVERIFY(!QFile::exists(path("never.pdf")));
        QVERIFY(prompter.asked.empty());
        QCOMPARE(PrintJob::SuggestedFileName("Office: 2/3", "'OF''01'"), QString("Office_ 2_3 OF'01.pdf"));
        QCOMPARE(PrintJob::SuggestedFileName("", ""), QString("Report.pdf"));
    }

    void copiesReachThePdfOnEveryPath()
    {
        ReportFixture f;
        ScriptedPrompter prompter;
        PrintDialogDriver dialogs;
        // File > Print: the printer dialog's copies.
        RunReportOptions o;
        o.printDialog = true;
        dialogs.answers = {{path("dialog.pdf"), 2}};
        QVERIFY(RunReport(nullptr, m_report, m_keys[0], false, o));
        QCOMPARE(pageKeys(path("dialog.pdf")), (QStringList{m_keys[0], m_keys[0]}));
        // The flyer manager: its copies, offered by the dialog.
        ReportPrintForm form;
        form.SetReportFile(m_report);
        form.SetCopies(3);
        dialogs.answers = {{path("form.pdf")}};
        QVERIFY(form.PrintList({"0" + m_keys[1]}));
        QCOMPARE(dialogs.offeredCopies.last(), 3);
        QCOMPARE(pageKeys(path("form.pdf")), (QStringList{m_keys[1], m_keys[1], m_keys[1]}));
        // The preview's Print button: the copies of the printer it previews for.
        ReportEngine engine;
        engine.Load(m_report);
        QVERIFY(engine.Run({m_keys[2]}));
        QPrinter printer(QPrinter::HighResolution);
        printer.setCopyCount(2);
        std::unique_ptr<QPrintPreviewDialog> dlg = NewReportPreview(engine, printer, nullptr, "sheet", m_keys[2]);
        dlg->show();
        QAction* print = PreviewPrintAction(*dlg);
        QVERIFY(print);
        dialogs.answers = {{path("preview.pdf")}};
        print->trigger();
        QCOMPARE(dialogs.offeredCopies.last(), 2);
        QCOMPARE(dialogs.offeredFiles.last(), path("sheet " + m_keys[2] + ".pdf"));
        QCOMPARE(pageKeys(path("preview.pdf")), (QStringList{m_keys[2], m_keys[2]}));
        QCOMPARE(dlg->result(), int(QDialog::Accepted)); // printed: the preview closes
        QVERIFY(prompter.asked.empty());
    }

    void pageRangeCollationAndCurrentPage()
    {
        ReportFixture f;
        ScriptedPrompter prompter;
        PrintDialogDriver dialogs;
        ReportPrintForm form;
        form.SetReportFile(m_report);
        dialogs.answers = {{path("range.pdf"), 0, "2-3"}};
        QVERIFY(form.PrintList(elements(m_keys)));
        QCOMPARE(pageKeys(path("range.pdf")), (QStringList{m_keys[1], m_keys[2]}));
        dialogs.answers = {{path("apart.pdf"), 2, "2-3", true}, {path("together.pdf"), 2, "1-2", false}};
        QVERIFY(form.PrintList(elements(m_keys)));
        QVERIFY(form.PrintList(elements(m_keys)));
        QCOMPARE(pageKeys(path("apart.pdf")), (QStringList{m_keys[1], m_keys[2], m_keys[1], m_keys[2]}));
        QCOMPARE(pageKeys(path("together.pdf")), (QStringList{m_keys[0], m_keys[0], m_keys[1], m_keys[1]}));
        PrintDialogDriver::Answer backwards(path("backwards.pdf"), 1); // the box kept the 2 chosen last
        backwards.reverse = true;
        dialogs.answers = {backwards};
        QVERIFY(form.PrintList(elements(m_keys)));
        QCOMPARE(pageKeys(path("backwards.pdf")), (QStringList{m_keys[2], m_keys[1], m_keys[0]}));
        // The page in view, printed from the preview.
        ReportEngine engine;
        engine.Load(m_report);
        QVERIFY(engine.Run(m_keys));
        QPrinter printer(QPrinter::HighResolution);
        std::unique_ptr<QPrintPreviewDialog> dlg = NewReportPreview(engine, printer, nullptr, "sheet");
        dlg->show();
        auto* view = dlg->findChild<QPrintPreviewWidget*>();
        QTRY_COMPARE(view->pageCount(), 3);
        view->setCurrentPage(2);
        dialogs.answers = {{path("current.pdf"), 0, "current"}};
        PreviewPrintAction(*dlg)->trigger();
        QCOMPARE(pageKeys(path("current.pdf")), QStringList{m_keys[1]});
        QVERIFY(prompter.asked.empty());
        QVERIFY(dialogs.messages.isEmpty());
    }

    void pagesOutsideTheReportAreRefusedInWords()
    {
        ReportEngine engine;
        ReportFixture f;
        engine.Load(m_report);
        QVERIFY(engine.Run({m_keys[0]}));
        QPdfWriter pdf(path("outside.pdf"));
        PageSelection pages;
        pages.ranges.addRange(4, 5);
        try {
            engine.PrintTo(pdf, 1, pages);
            QFAIL("printed pages that do not exist");
        } catch (const HostError& e) {
            QCOMPARE(e.Text(), QString("Error: 380 - Nothing to print in pages 4-5: the report has 1 page(s)"));
        }
    }

    void printerSetupIsASetupWithOk()
    {
        ReportPrintForm form;
        QSignalSpy copies(&form, &PrintForm::Copies);
        QStringList buttons;
        QTimer::singleShot(0, [&] {
            auto* d = qobject_cast<PrinterSetupDialog*>(QApplication::activeModalWidget());
            QVERIFY(d);
            QCOMPARE(d->windowTitle(), QString("Printer Setup"));
            for (QAbstractButton* b : d->findChildren<QAbstractButton*>())
                buttons << b->text().remove('&');
            d->spnCopies->setValue(4);
            d->cboPrinter->setCurrentText(PrinterSetupDialog::FileChoice());
            QTest::keyClick(d, Qt::Key_Return); // OK is the default
        });
        form.PrinterSetup(nullptr);
        QVERIFY(buttons.contains("OK"));
        QVERIFY(buttons.contains("Cancel"));
        QVERIFY(!buttons.join(' ').contains("Print"));
        QCOMPARE(form.GetCopies(), 4);
        QCOMPARE(copies.size(), 1);
        QCOMPARE(form.Printer().outputFormat(), QPrinter::PdfFormat);
        QCOMPARE(form.Printer().outputFileName(), QString()); // asked for at the print

        // The design window's Print Setup keeps its choices for the window's prints.
        InstallReportRunner();
        QVERIFY(HasPrinterSetup());
        QTimer::singleShot(0, [] {
            auto* d = qobject_cast<PrinterSetupDialog*>(QApplication::activeModalWidget());
            QVERIFY(d);
            QCOMPARE(d->windowTitle(), QString("Print Setup"));
            d->spnCopies->setValue(2);
            d->buttons->button(QDialogButtonBox::Ok)->click();
        });
        RunPrinterSetup(nullptr);
        QCOMPARE(PrintJob::DesignSettings().copies, 2);
        QTimer::singleShot(0, [] { qobject_cast<QDialog*>(QApplication::activeModalWidget())->reject(); });
        RunPrinterSetup(nullptr); // cancelled: kept as it was
        QCOMPARE(PrintJob::DesignSettings().copies, 2);
        ReportFixture f;
        ScriptedPrompter prompter;
        PrintDialogDriver dialogs;
        dialogs.answers = {{path("setup.pdf")}};
        RunReportOptions o;
        o.printDialog = true;
        QVERIFY(RunReport(nullptr, m_report, m_keys[0], false, o));
        QCOMPARE(dialogs.offeredCopies.last(), 2);
        QCOMPARE(pageKeys(path("setup.pdf")).size(), 2);
        SetReportRunner(nullptr);
        SetPrinterSetup(nullptr);
    }

    void previewKeepsHairlinesAtEveryZoom()
    {
        // A box and a line with the thinnest border: at 41 %, 55 % and 60 % the preview shows the
        // printer's pixels at a fraction of their size, and every edge must still show.
        ReportFixture f;
        f.page.SetHeaderFooter(940);
        f.page.MovePageFooterBar(3220);
        QObject* box = f.add(ObjType::Box, "", 0, 1000, 1440);
        clsRptControl::SetProp(box, "Width", 4320.f);
        clsRptControl::SetProp(box, "Height", 1440.f);
        clsRptControl::SetProp(box, "BorderWidth", 0);
        clsRptControl::SetProp(box, "BorderStyle", 6);
        QObject* line = f.add(ObjType::Line, "", 0, 2700, 1440);
        clsRptControl::SetProp(line, "Width", 4320.f);
        clsRptControl::SetProp(line, "BorderWidth", 0);
        const QString file = path("hairlines.rdf");
        QVERIFY(f.doc.SaveReport(file, false));
        ReportEngine engine;
        ReportOptions o;
        o.templateOnly = true;
        engine.SetOptions(o);
        engine.Load(file);
        QVERIFY(engine.Run({QString()}));
        QPrinter printer(QPrinter::HighResolution);
        std::unique_ptr<QPrintPreviewDialog> dlg = NewReportPreview(engine, printer, nullptr);
        dlg->resize(900, 1000);
        dlg->show();
        auto* view = dlg->findChild<QPrintPreviewWidget*>();
        QTRY_COMPARE(view->pageCount(), 1);
        for (double zoom : {0.41, 0.55, 0.60, 0.33}) {
            view->setZoomMode(QPrintPreviewWidget::CustomZoom);
            view->setZoomFactor(zoom);
            QTest::qWait(30);
            const QImage shot = view->grab().toImage();
            // The ink: black pixels on the white page (its shadow is not ink); their bounding box
            // is the box with the line under it.
            QRect page, ink;
            for (int y = 0; y < shot.height(); ++y)
                for (int x = 0; x < shot.width(); ++x)
                    if (qGray(shot.pixel(x, y)) == 255)
                        page |= QRect(x, y, 1, 1);
            for (int y = page.top(); y <= page.bottom(); ++y)
                for (int x = page.left(); x <= page.right(); ++x)
                    if (qGray(shot.pixel(x, y)) < 80)
                        ink |= QRect(x, y, 1, 1);
            int fullRows = 0, fullColumns = 0;
            const double inch = 96 * zoom;
            for (int y = ink.top(); y <= ink.bottom(); ++y) {
                int n = 0;
                for (int x = ink.left(); x <= ink.right(); ++x)
                    n += qGray(shot.pixel(x, y)) < 80;
                fullRows += n >= 0.8 * 3 * inch;
            }
            for (int x = ink.left(); x <= ink.right(); ++x) {
                int n = 0;
                for (int y = ink.top(); y <= ink.bottom(); ++y)
                    n += qGray(shot.pixel(x, y)) < 80;
                fullColumns += n >= 0.8 * inch;
            }
            // Top and bottom edge and the line; left and right edge.
            const QString at = QStringLiteral("%1 %: %2 rows, %3 columns").arg(zoom * 100).arg(fullRows).arg(fullColumns);
            QVERIFY2(fullRows >= 3, qPrintable(at));
            QVERIFY2(fullColumns >= 2, qPrintable(at));
        }
    }
};

QTEST_MAIN(TestPrintPath)
#include "tst_printpath.moc"
