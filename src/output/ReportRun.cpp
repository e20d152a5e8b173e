// The design window's print and preview path, with its progress window and messages.
#include "output/ReportEngine.h"

#include "entry/Prompts.h"
#include "output/ReportRunMany.h"

#include <QApplication>
#include <QFileInfo>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QProgressDialog>

std::unique_ptr<QPrintPreviewDialog> NewReportPreview(ReportEngine& engine, QPrinter& printer, QWidget* parent)
{
    auto dlg = std::make_unique<QPrintPreviewDialog>(&printer, parent);
    dlg->setWindowTitle(QStringLiteral("Print Preview"));
    QObject::connect(dlg.get(), &QPrintPreviewDialog::paintRequested, dlg.get(), [&engine](QPrinter* p) {
        try {
            engine.PrintTo(*p);
        } catch (const HostError& e) {
            MsgBox(e.Text(), Mb::OKOnly | Mb::Critical, QStringLiteral("Print"));
        }
    });
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

    QPrinter printer(QPrinter::HighResolution);
    printer.setFullPage(true);
    printer.setDocName(options.documentName.isEmpty() ? QFileInfo(reportFile).completeBaseName() : options.documentName);
    if (preview) {
        // The preview's own print button reaches the printer dialog.
        std::unique_ptr<QPrintPreviewDialog> dlg = NewReportPreview(engine, printer, parent);
        dlg->exec();
        return true;
    }
    // Without a printer the dialog is the way to a PDF file rather than a dead end.
    if (options.printDialog || QPrinterInfo::availablePrinters().isEmpty()) {
        QPrintDialog dlg(&printer, parent);
        if (dlg.exec() != QDialog::Accepted)
            return false;
    }
    try {
        return engine.PrintTo(printer);
    } catch (const HostError& e) {
        MsgBox(e.Text(), Mb::OKOnly | Mb::Critical, QStringLiteral("Print"));
        return false;
    }
}

void InstallReportRunner()
{
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
