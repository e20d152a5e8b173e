#pragma once
// The report engine: a report file and record keys become pages, painted with the same item
// painter as the design page onto any paged device (PDF, printer, preview).
//
//   ReportEngine engine;
//   engine.Load(file);                       // RdfError on a damaged file
//   engine.Run({"240001", "240002"});        // fetch, fit and paginate
//   engine.WritePdf("out.pdf");              // or Print(printer), or the preview
#include "document/RdfFile.h"
#include "output/ReportLayout.h"

#include <QPageRanges>
#include <QPageSize>
#include <QStringList>
#include <functional>
#include <memory>

class FieldDictionary;
class QPagedPaintDevice;
class QPainter;
class QPrinter;
class QWidget;
class ReportData;
struct RecordValues;

// Called now and then with the work done so far; returning false cancels.
using ReportProgress = std::function<bool(int done, int total)>;

struct ReportOptions {
    int databaseKind = 1;         // dictionary kind: 1 listings, 2 tax rolls, 3 offices, 4 agents, 5 rentals
    bool newPagePerRecord = true; // the document's NewPage; the file does not keep it
    QPageSize pageSize = QPageSize(QPageSize::Letter);
    ReportProgress progress;
    // The layout without data: each key (ignored) gives one blank record - labels, boxes, lines,
    // fixed pictures and the date/time print; fields and bound pictures stay empty.
    bool templateOnly = false;
};

// Which pages ReportEngine::PrintTo prints: the 1-based pages in ranges (empty: every page);
// collate puts whole sets one after the other, otherwise each page comes copies times in a row;
// lastPageFirst prints them in reverse order.
struct PageSelection {
    QPageRanges ranges;
    bool collate = true;
    bool lastPageFirst = false;
};

class ReportEngine {
public:
    ReportEngine();
    ~ReportEngine();

    void SetOptions(const ReportOptions& options) { m_options = options; }
    const ReportOptions& Options() const { return m_options; }

    // Reads the report file with the file codec. Throws RdfError (the codec's message).
    void Load(const QString& reportFile);
    void SetReport(const RdfReport& report);
    const RdfReport& Report() const { return m_report; }

    // Fetches every key's record through gHost and lays the pages out for the options' page
    // size. Keys whose record does not exist are left out and listed in MissingKeys(). Returns
    // false when the progress callback cancelled. Throws HostError for a failed query.
    bool Run(const QStringList& keys);
    QStringList MissingKeys() const { return m_missing; }
    QStringList PrintedKeys() const { return m_printed; }
    int PageCount() const { return int(m_pages.size()); }

    // Paints page (0-based) with a painter whose unit is the device pixel at dpi.
    void PaintPage(QPainter& painter, int page, double dpi) const;
    // Paints the selected pages onto the device (one device page each), copies times over for a
    // device that cannot make copies itself. False when cancelled; throws HostError when the
    // selection names no page of the report.
    bool PrintTo(QPagedPaintDevice& device, int copies = 1, const PageSelection& selection = PageSelection());
    // Writes a PDF. False when cancelled; throws HostError when the file cannot be written.
    bool WritePdf(const QString& path);

private:
    struct RecordLayout;
    std::vector<ItemLook> bandLooks(const ReportLayout::Band& band, const RecordValues& values, double px) const;
    bool report(int done, int total) const;

    ReportOptions m_options;
    RdfReport m_report;
    ReportLayout::Sections m_sections;
    std::vector<RecordValues> m_values;            // per printed record
    std::vector<std::vector<std::vector<ItemLook>>> m_detail; // record, band, fitted looks
    std::vector<ReportLayout::Page> m_pages;
    QStringList m_missing, m_printed;
    QSizeF m_pageTwips;
    std::unique_ptr<FieldDictionary> m_dictionary;
};

// The design window's print and preview path. Loads the report, fetches the record of key
// and either shows the preview (modal, with the printer dialog reachable from it) or prints
// to the default printer (with printDialog, or when no printer is installed: after the printer
// dialog, which also offers printing to a PDF file). Failures are shown
// with MsgBox: "Report Designer File error" for a damaged file, "KEY Not Found" for a key
// without a record. Returns true when pages were produced.
struct RunReportOptions {
    ReportOptions report;
    bool printDialog = false;
    QString documentName; // the print job's name; the file's base name when empty
};
bool RunReport(QWidget* parent, const QString& reportFile, const QString& key, bool preview,
               const RunReportOptions& options = {});

// Makes RunReport the engine behind the design window's print commands (entry/Prompts.h).
void InstallReportRunner();

// The preview of a laid-out engine; exposed so that tests can drive it without exec(). Its Print
// button prints through the printer dialog, offering a file named after title and key.
class QAction;
class QPrintPreviewDialog;
std::unique_ptr<QPrintPreviewDialog> NewReportPreview(ReportEngine& engine, QPrinter& printer, QWidget* parent,
                                                      const QString& title = QString(), const QString& key = QString());
// The preview's Print button.
QAction* PreviewPrintAction(QPrintPreviewDialog& dialog);
