// The design window's print and preview path, with its progress window and messages.
#include "output/ReportEngine.h"

#include "entry/Prompts.h"
#include "output/PrintJob.h"
#include "output/PrinterSetupDialog.h"
#include "output/ReportRunMany.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QProgressDialog>

QAction* PreviewPrintAction(QPrintPreviewDialog& dialog)
{
    const QString print = QCoreApplication::translate("QPrintPreviewDialog", "Print");
    for (QAction* a : dialog.findChildren<QAction*>())
        if (a->text() == print)
            return a;
    return nullptr;
}

std::unique_ptr<QPrintPreviewDialog> NewReportPreview(ReportEngine& engine, QPrinter& printer, QWidget* parent,
                                                      const QString& title, const QString& key)
{
    auto dlg = std::make_unique<QPrintPreviewDialog>(&printer, parent);
    dlg->setWindowTitle(QStringLiteral("Print Preview"));
    // The preview itself: every page, once.
    QObject::connect(dlg.get(), &QPrintPreviewDialog::paintRequested, dlg.get(), [&engine](QPrinter* p) {
        try {
            engine.PrintTo(*p);
        } catch (const HostError& e) {
            MsgBox(e.Text(), Mb::OKOnly | Mb::Critical, QStringLiteral("Print"));
        }
    });
    // Its Print button takes the one print path: the printer dialog (copies, page range, the
    // page in view, a file named after the report) and the copies made for a PDF. The dialog's
    // own handler would print one copy and, for a file, ask in a way of its own.
    if (QAction* print = PreviewPrintAction(*dlg)) {
        QObject::disconnect(print, SIGNAL(triggered(bool)), nullptr, nullptr);
        QPrintPreviewDialog* d = dlg.get();
        QObject::connect(print, &QAction::triggered, d, [d, &engine, &printer, title, key] {
            const auto* view = d->findChild<QPrintPreviewWidget*>();
            PrintJob::Target target;
            target.title = title;
            target.key = key;
            target.dialog = true;
            target.pageCount = engine.PageCount();
            target.currentPage = view ? view->currentPage() : 0;
            if (PrintJob::ChooseTarget(printer, d, target) && PrintJob::Print(engine, printer, target.currentPage))
                d->accept();
        });
    }
    return dlg;
}

bool RunReport(QWidget* parent, const QString& reportFile, const QString& key, bool preview, const RunReportOptions& options)
{
    ReportEngine engine;
    QProgressDialog progress(QStringLiteral("Preparing the report..."), QStringLiteral("Cancel"), 0, 100, parent);
    progress.setWindowTitle(QStringLiteral("Print"));
    progress.setMinimumDuration(500);
    progress.setAutoClose(false);
    progress.setAutoReset(false);
    ReportOptions ro = options.report;
    if (!ro.progress)
        ro.progress = [&progress](int done, int total) {
            progress.setMaximum(std::max(1, total));
            progress.setValue(done);
            QApplication::processEvents();
            return !progress.wasCanceled();
        };
    engine.SetOptions(ro);
    try {
        engine.Load(reportFile);
    } catch (const HostError& e) {
        MsgBox(e.Text(), Mb::OKOnly | Mb::Critical, QStringLiteral("Report Designer File error"));
        return false;
    }
    try {
        if (!engine.Run({key}))
            return false;
    } catch (const HostError& e) {
        MsgBox(e.Text(), Mb::OKOnly | Mb::Critical, QStringLiteral("Print"));
        return false;
    }
    if (!engine.MissingKeys().isEmpty()) {
        MsgBox(key + QStringLiteral(" Not Found"), Mb::OKOnly | Mb::Exclamation, QStringLiteral("Print"));
        return false;
    }
    // Whatever could not be printed as designed is said before the pages are shown.
    if (!engine.Warnings().isEmpty())
        MsgBox(engine.Warnings().join(QLatin1Char('\n')), Mb::OKOnly | Mb::Exclamation, QStringLiteral("Print"));
    // The progress window belongs to fetching; painting the preview must not report to it
    // (closing it counts as cancelling, and its event loop would re-enter the preview).
    ro.progress = {};
    engine.SetOptions(ro);
    progress.close();

    const QString title = options.documentName.isEmpty() ? QFileInfo(reportFile).completeBaseName() : options.documentName;
    QPrinter printer(QPrinter::HighResolution);
    printer.setFullPage(true);
    printer.setDocName(title);
    PrintJob::Apply(PrintJob::DesignSettings(), printer);
    if (preview) {
        // The preview's own print button reaches the printer dialog.
        std::unique_ptr<QPrintPreviewDialog> dlg = NewReportPreview(engine, printer, parent, title, key);
        dlg->exec();
        return true;
    }
    PrintJob::Target target;
    target.title = title;
    target.key = key;
    target.dialog = options.printDialog;
    target.pageCount = engine.PageCount();
    if (!PrintJob::ChooseTarget(printer, parent, target))
        return false;
    // The printer (or file printing) chosen stays for the next print; copies and pages do not.
    PrintJob::Settings& kept = PrintJob::DesignSettings();
    const PrintJob::Settings chosen = PrintJob::Read(printer);
    kept.toFile = chosen.toFile;
    kept.printerName = chosen.printerName;
    return PrintJob::Print(engine, printer);
}

void InstallReportRunner()
{
    SetPrinterSetup([](QWidget* parent) {
        QPrinter printer(QPrinter::HighResolution);
        PrintJob::Apply(PrintJob::DesignSettings(), printer);
        PrinterSetupDialog dlg(printer, QStringLiteral("Print Setup"), parent);
        if (dlg.exec() == QDialog::Accepted)
            PrintJob::DesignSettings() = PrintJob::Read(printer);
    });
    SetReportRunner([](QWidget* parent, const ReportRunRequest& r) {
        if (r.many)
            return PrintReportMany(parent, r);
        RunReportOptions options;
        options.report.databaseKind = r.databaseKind;
        options.report.newPagePerRecord = r.newPagePerRecord;
        options.printDialog = r.printDialog;
        options.documentName = r.title;
        return RunReport(parent, r.file, r.key, r.preview, options);
    });
}
