#include "output/PrintJob.h"

#include "entry/HostError.h"
#include "entry/Prompts.h"
#include "output/ReportEngine.h"

#include <QDir>
#include <QFileInfo>
#include <QPrintDialog>
#include <QPrinterInfo>

namespace PrintJob {

namespace {
QString& lastFolder()
{
    static QString folder;
    return folder;
}
} // namespace

QString SuggestedFileName(const QString& title, const QString& key)
{
    // A quoted SQL key ('OF01') is shown bare; characters a file name cannot hold become "_".
    QString record = key;
    if (record.size() >= 2 && record.startsWith(QLatin1Char('\'')) && record.endsWith(QLatin1Char('\'')))
        record = record.mid(1, record.size() - 2).replace(QLatin1String("''"), QLatin1String("'"));
    QString name = title.trimmed().isEmpty() ? QStringLiteral("Report") : title.trimmed();
    if (!record.trimmed().isEmpty())
        name += QLatin1Char(' ') + record.trimmed();
    for (QChar& c : name)
        if (c == QLatin1Char('/') || c == QLatin1Char('\\') || c == QLatin1Char(':') || c == QLatin1Char('*') ||
            c == QLatin1Char('?') || c == QLatin1Char('"') || c == QLatin1Char('<') || c == QLatin1Char('>') ||
            c == QLatin1Char('|') || c.unicode() < 32)
            c = QLatin1Char('_');
    return name + QStringLiteral(".pdf");
}

QString LastFolder() { return lastFolder().isEmpty() ? QDir::homePath() : lastFolder(); }

void SetLastFolder(const QString& folder) { lastFolder() = folder; }

bool ChooseTarget(QPrinter& printer, QWidget* parent, const Target& target)
{
    const QString offered = QDir(LastFolder()).filePath(SuggestedFileName(target.title, target.key));
    const bool noPrinter = QPrinterInfo::availablePrinters().isEmpty();
    if (target.dialog || noPrinter) {
        // A file print offers this print's name; last time's file is never taken silently.
        if (noPrinter || printer.outputFormat() == QPrinter::PdfFormat)
            printer.setOutputFileName(offered);
        printer.setPrintRange(QPrinter::AllPages);
        printer.setPageRanges(QPageRanges());
        QPrintDialog dlg(&printer, parent);
        dlg.setWindowTitle(QStringLiteral("Print"));
        dlg.setMinMax(1, std::max(1, target.pageCount));
        QAbstractPrintDialog::PrintDialogOptions options = QAbstractPrintDialog::PrintToFile |
            QAbstractPrintDialog::PrintPageRange | QAbstractPrintDialog::PrintCollateCopies |
            QAbstractPrintDialog::PrintShowPageSize;
        if (target.currentPage > 0)
            options |= QAbstractPrintDialog::PrintCurrentPage;
        dlg.setOptions(options);
        if (dlg.exec() != QDialog::Accepted)
            return false;
    } else if (printer.outputFormat() == QPrinter::PdfFormat) {
        QString file = Prompts().ChooseSaveFile(QStringLiteral("Print to File"), offered, QStringLiteral("PDF Files (*.pdf)"));
        if (file.isEmpty())
            return false;
        if (QFileInfo(file).suffix().isEmpty())
            file += QStringLiteral(".pdf");
        printer.setOutputFileName(file);
    }
    if (printer.outputFormat() == QPrinter::PdfFormat && !printer.outputFileName().isEmpty())
        SetLastFolder(QFileInfo(printer.outputFileName()).absolutePath());
    return true;
}

bool Print(ReportEngine& engine, QPrinter& printer, int currentPage)
{
    PageSelection selection;
    selection.collate = printer.collateCopies();
    selection.lastPageFirst = printer.pageOrder() == QPrinter::LastPageFirst;
    switch (printer.printRange()) {
    case QPrinter::PageRange: selection.ranges = printer.pageRanges(); break;
    case QPrinter::CurrentPage:
        if (currentPage > 0)
            selection.ranges.addPage(currentPage);
        break;
    default: break; // every page (a report has no selection to print)
    }
    // A printer that makes its own copies gets one set; a PDF file gets every copy.
    const int copies = printer.supportsMultipleCopies() ? 1 : std::max(1, printer.copyCount());
    try {
        return engine.PrintTo(printer, copies, selection);
    } catch (const HostError& e) {
        MsgBox(e.Text(), Mb::OKOnly | Mb::Critical, QStringLiteral("Print"));
        return false;
    }
}

Settings& DesignSettings()
{
    static Settings settings;
    return settings;
}

void Apply(const Settings& s, QPrinter& printer)
{
    if (s.toFile) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(QString()); // asked for at each print
    } else if (!s.printerName.isEmpty()) {
        printer.setOutputFormat(QPrinter::NativeFormat);
        printer.setPrinterName(s.printerName);
    }
    printer.setCopyCount(std::max(1, s.copies));
    printer.setCollateCopies(s.collate);
    printer.setDuplex(s.duplex);
    printer.setColorMode(s.color);
}

Settings Read(const QPrinter& printer)
{
    Settings s;
    s.toFile = printer.outputFormat() == QPrinter::PdfFormat;
    s.printerName = s.toFile ? QString() : printer.printerName();
    s.copies = std::max(1, printer.copyCount());
    s.collate = printer.collateCopies();
    s.duplex = printer.duplex();
    s.color = printer.colorMode();
    return s;
}

} // namespace PrintJob
