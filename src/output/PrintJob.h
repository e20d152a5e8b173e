#pragma once
// One print, the same on every path (design window, flyer manager, print preview): where the
// pages go, asked once per print; the copies; the page range; collation.
#include <QPrinter>
#include <QString>

class QWidget;
class ReportEngine;

namespace PrintJob {

// The PDF file name offered for a print: the report's title and the record, "Open House 240001.pdf".
QString SuggestedFileName(const QString& title, const QString& key);
// The folder of the last print to a file in this session (the home folder before the first).
QString LastFolder();
void SetLastFolder(const QString& folder);

struct Target {
    QString title, key;  // name the offered file
    bool dialog = false; // show the printer dialog (printer or file, copies, page range)
    int pageCount = 0;   // the page range the dialog offers
    int currentPage = 0; // 1-based page in view (offers "current page"); 0 when there is none
};
// Asks where this print goes. With the dialog, or when no printer is installed: the printer
// dialog, offering a PDF file in the last folder named after report and record. Without it, a
// printer set to print to a file asks for the file, never reusing last time's silently.
// False when the user cancelled.
bool ChooseTarget(QPrinter& printer, QWidget* parent, const Target& target);

// Prints the engine's pages as the printer is set: its copies (made here when the device cannot
// make them), collation and page range ("current page" is currentPage). Failures are shown;
// true when pages were printed.
bool Print(ReportEngine& engine, QPrinter& printer, int currentPage = 0);

// The settings a printer set-up chooses, kept for the design windows' prints of this session.
struct Settings {
    QString printerName;  // empty: the default printer
    bool toFile = false;  // print to a PDF file (asked for at each print)
    int copies = 1;
    bool collate = true;
    QPrinter::DuplexMode duplex = QPrinter::DuplexNone;
    QPrinter::ColorMode color = QPrinter::Color;
};
Settings& DesignSettings();
void Apply(const Settings& settings, QPrinter& printer);
Settings Read(const QPrinter& printer);

} // namespace PrintJob
