#pragma once
// The files a printed report becomes: one PDF, one PDF per record, or one PNG or SVG per page.
// Every file is written under a temporary name beside its target, flushed and renamed into
// place only when whole, so a failed run never leaves a truncated file; a full disk is
// HostError 61 "Disk full", any other failure 75 (76 for a missing folder).
#include "output/ReportEngine.h"

#include <QPainter>
#include <QSet>
#include <QString>
#include <memory>

class QFileDevice;
class PdfWriter;
class QSaveFile;

// Test seam: the files behave as on a disk that fills up after this many bytes of one file.
struct OutputHooks {
    qint64 failAfterBytes = -1;
};

// The one mapping from a failed write to the error the user sees.
HostError OutputFileError(const QFileDevice& file, const QString& path, bool diskFull = false);

// A file written through a temporary and committed by Commit (or thrown away when destroyed
// first).
class OutputFile {
public:
    OutputFile(const QString& path, const OutputHooks& hooks);
    ~OutputFile();
    QIODevice& Device();
    void Commit();
    bool Failed() const; // a write has failed already
    [[noreturn]] void Fail(); // throws what went wrong; the temporary goes

private:
    class Sink;
    QString m_path;
    std::unique_ptr<QSaveFile> m_file;
    std::unique_ptr<Sink> m_sink;
};

// Every page into one PDF.
class PdfFileOutput : public PageOutput {
public:
    explicit PdfFileOutput(QString path, const OutputHooks& hooks = {});
    ~PdfFileOutput() override;
    void Begin(const QPageLayout& layout) override;
    QPainter* BeginPage(int page, int record, const QString& key) override;
    void EndPage() override;
    void Finish() override;
    double Dpi() const override;
    bool PaintsAnywhere() const override { return true; }
    std::unique_ptr<PageCanvas> NewCanvas(int page) override;
    void PutCanvas(int page, int record, const QString& key, std::unique_ptr<PageCanvas> canvas) override;
    bool NeedsPixels() const override { return false; }
    // A canvas for a page of a PDF with this layout (PdfFileOutput and PdfEachOutput).
    static std::unique_ptr<PageCanvas> NewPdfCanvas(const QPageLayout& layout);

private:
    QString m_path;
    OutputHooks m_hooks;
    std::unique_ptr<OutputFile> m_file;
    std::unique_ptr<PdfWriter> m_writer;
    QPainter m_painter;
    bool m_started = false;
    bool m_canvasPages = false;
};

// One PDF per record in a folder, named by the record's key ("240001.pdf"; a repeated key
// gets "240001-2.pdf"). A record's pages go to its file; with records sharing pages, a page
// goes to the file of its first record.
class PdfEachOutput : public PageOutput {
public:
    explicit PdfEachOutput(QString folder, const OutputHooks& hooks = {});
    ~PdfEachOutput() override;
    void Begin(const QPageLayout& layout) override;
    QPainter* BeginPage(int page, int record, const QString& key) override;
    void EndPage() override;
    void Finish() override;
    double Dpi() const override;
    bool PaintsAnywhere() const override { return true; }
    std::unique_ptr<PageCanvas> NewCanvas(int page) override;
    void PutCanvas(int page, int record, const QString& key, std::unique_ptr<PageCanvas> canvas) override;
    bool NeedsPixels() const override { return false; }
    int FileCount() const { return m_files; }
    // The file name for key: its letters, digits, "-", "_" and "."; anything else becomes "_".
    static QString FileNameFor(const QString& key);

private:
    PdfFileOutput& fileFor(int record, const QString& key);

    QString m_folder;
    OutputHooks m_hooks;
    QPageLayout m_layout;
    std::unique_ptr<PdfFileOutput> m_current;
    int m_record = -1;
    int m_page = 0;
    int m_files = 0;
    QSet<QString> m_used;
};

// One picture per page in a folder: "page-000001.png" (PNG, at dpi) or "page-000001.svg".
class PageImageOutput : public PageOutput {
public:
    enum Format { Png, Svg };
    PageImageOutput(QString folder, Format format, double dpi, const OutputHooks& hooks = {});
    ~PageImageOutput() override;
    void Begin(const QPageLayout& layout) override;
    QPainter* BeginPage(int page, int record, const QString& key) override;
    void EndPage() override;
    void Finish() override {}
    double Dpi() const override { return m_dpi; }
    bool PaintsAnywhere() const override { return true; }
    std::unique_ptr<PageCanvas> NewCanvas(int page) override;
    void PutCanvas(int page, int record, const QString& key, std::unique_ptr<PageCanvas> canvas) override;
    int PagesInFlight(int threads) const override;
    static QString FileNameFor(int page, Format format);

private:
    QSize pagePixels() const;
    void writeFile(int page, const QByteArray& bytes);

    QString m_folder;
    Format m_format;
    double m_dpi;
    OutputHooks m_hooks;
    QSizeF m_points;
    QImage m_image;
    std::unique_ptr<OutputFile> m_file;
    std::unique_ptr<QPaintDevice> m_svg;
    QPainter m_painter;
    int m_page = 0;
};

// Throws HostError 76 unless folder is an existing folder.
void RequireFolder(const QString& folder);
