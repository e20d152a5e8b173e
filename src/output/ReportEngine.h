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

#include <QPageLayout>
#include <QPageRanges>
#include <QPageSize>
#include <QStringList>
#include <functional>
#include <deque>
#include <memory>
#include <optional>

class FieldDictionary;
class QPagedPaintDevice;
class QPaintDevice;
class QPainter;
class QPrinter;
class QWidget;
class ReportData;
class PageOutput;
struct RecordValues;

// Called now and then with the work done so far; returning false cancels.
using ReportProgress = std::function<bool(int done, int total)>;

struct ReportOptions {
    int databaseKind = 1;         // dictionary kind: 1 listings, 2 tax rolls, 3 offices, 4 agents, 5 rentals
    bool newPagePerRecord = true; // the document's NewPage; the file does not keep it
    // The paper: the report's own (Letter portrait when it keeps none) unless these override it.
    std::optional<QPageSize> paper;
    std::optional<bool> landscape;
    ReportProgress progress;
    // The layout without data: each key (ignored) gives one blank record - labels, boxes, lines,
    // fixed pictures and the date/time print; fields and bound pictures stay empty.
    bool templateOnly = false;
    // Records fetched with one statement; a long run holds about this many at a time.
    int chunkSize = 500;
    // Threads painting pages for an output that can take pages painted off this thread (PDF,
    // PNG, SVG): 0 one per core, 1 every page painted here, as it is laid out. The output is
    // the same byte for byte whatever the count.
    int threads = 0;
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

    // The paper the pages are laid out on, in points, as oriented.
    QSizeF PagePoints() const;
    QPageLayout PageLayout() const;

    // Fetches every key's record through gHost and lays all the pages out, keeping them for
    // PaintPage/PrintTo (the preview pages back and forth). Keys whose record does not exist are
    // left out and listed in MissingKeys(). Returns false when the progress callback cancelled.
    // Throws HostError for a failed query.
    bool Run(const QStringList& keys);
    // The same pages, printed as they are laid out: records are fetched a chunk at a time, each
    // page is painted on output as soon as it is complete (on Options().threads threads when the
    // output takes pages painted elsewhere, put back in page order), and a record's values and pictures
    // are let go once its last page is out, so memory does not grow with the number of keys.
    // Function-field totals take a first pass over the values (no pictures). False when
    // cancelled (output is then not finished). Throws HostError (failed query or output).
    bool Print(const QStringList& keys, PageOutput& output);

    QStringList MissingKeys() const { return m_missing; }
    QStringList PrintedKeys() const { return m_printed; }
    int PageCount() const { return m_pageCount; }
    // The most records Print held at once (laid out, waiting for their page to be painted).
    int HeldRecordsPeak() const { return m_heldPeak; }
    // What could not be printed as designed (an item taller than a page is cut), one line each.
    QStringList Warnings() const { return m_warnings; }

    // Paints a page kept by Run (0-based) with a painter whose unit is the device pixel at dpi.
    void PaintPage(QPainter& painter, int page, double dpi) const;
    // Paints the selected pages onto the device (one device page each), copies times over for a
    // device that cannot make copies itself. False when cancelled; throws HostError when the
    // selection names no page of the report.
    bool PrintTo(QPagedPaintDevice& device, int copies = 1, const PageSelection& selection = PageSelection());
    // Writes the pages kept by Run to a PDF. False when cancelled; throws HostError when the
    // file cannot be written (DiskFull 61 when the disk is full); no partial file is left.
    bool WritePdf(const QString& path);

private:
    struct Piece;
    struct Record;
    bool run(const QStringList& keys, const std::function<bool(const ReportLayout::Page&)>& pageDone, bool keep);
    Record layoutRecord(const QString& key, RecordValues&& values, double px);
    std::vector<ItemLook> bandLooks(const ReportLayout::Band& band, const RecordValues& values, double px) const;
    const Record& record(int index) const;
    void paintPage(QPainter& painter, const ReportLayout::Page& page, int number, double dpi) const;
    // Everything on a page, in twips from the paper's corner, in painting order; it holds its
    // own texts and pictures, so it can be painted after the records are let go.
    std::vector<ItemLook> pageLooks(const ReportLayout::Page& page, int number, double dpi) const;
    void prefetchPictures(const std::vector<std::optional<RecordValues>>& values, size_t from, size_t count);
    void releaseBefore(int index);
    bool report(int done, int total) const;
    void warn(const QString& text);

    ReportOptions m_options;
    RdfReport m_report;
    ReportLayout::Sections m_sections;
    std::deque<Record> m_records; // records still to be painted; the first is m_firstRecord
    int m_firstRecord = 0;
    std::vector<ReportLayout::Page> m_pages; // kept by Run
    int m_pageCount = 0;
    int m_heldPeak = 0;
    bool m_decodePrefetched = false; // the output wants pictures as pixels
    QStringList m_missing, m_printed, m_warnings;
    QSizeF m_pageTwips;
    std::unique_ptr<FieldDictionary> m_dictionary;
};

// A page an output lets any thread paint: painted on Device() (in device pixels at the
// output's Dpi(), origin at the paper's top left corner), then closed on the same thread.
class PageCanvas {
public:
    virtual ~PageCanvas() = default;
    virtual QPaintDevice* Device() = 0;
    // Render hints for the painter on Device().
    virtual int Hints() const { return 0; }
    // The slow part of finishing a page (compression, encoding), after the painter has ended.
    virtual void Close() {}
};

// Paints looks (twips from the paper's corner) with a painter in device pixels at dpi.
void PaintLooks(QPainter& painter, const std::vector<ItemLook>& looks, double dpi);

// Where Print puts pages: one painter per page, in device pixels at Dpi(), origin at the
// paper's top left corner.
class PageOutput {
public:
    virtual ~PageOutput() = default;
    // Before the first page: the paper the pages are laid out on.
    virtual void Begin(const QPageLayout& layout) = 0;
    // A painter for page (0-based), whose first record is the record-th printed (0-based) with
    // key; nullptr stops the run. Throws HostError when a file cannot be written.
    virtual QPainter* BeginPage(int page, int record, const QString& key) = 0;
    virtual void EndPage() = 0;
    // After the last page: every file in place, or HostError and nothing left behind.
    virtual void Finish() = 0;
    virtual double Dpi() const = 0;

    // Outputs that take pages painted on other threads: a canvas for page, made on the
    // printing thread (nullptr stops the run), and the painted page back, in page order, on
    // the printing thread. Throws HostError when a file cannot be written.
    virtual bool PaintsAnywhere() const { return false; }
    virtual std::unique_ptr<PageCanvas> NewCanvas(int /*page*/) { return nullptr; }
    virtual void PutCanvas(int /*page*/, int /*record*/, const QString& /*key*/, std::unique_ptr<PageCanvas> /*canvas*/) {}
    // How many pages painting threads may hold at once (painted or waiting to be).
    virtual int PagesInFlight(int threads) const { return 4 * threads; }
    // Whether pictures are drawn as pixels (a PDF takes a JPEG as it is).
    virtual bool NeedsPixels() const { return true; }
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
