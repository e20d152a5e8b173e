#pragma once
// A PDF writer that the item painter paints onto like any paged device, built for printing
// thousands of pages: pages stream out as they are finished (only object offsets are kept),
// fonts and pictures are written once per file, a JPEG picture goes in as its own bytes, and
// texts are written as their letters so that a viewer's search finds them.
//
//   QFile f(path); f.open(QIODevice::WriteOnly);
//   PdfWriter pdf(&f);
//   pdf.setPageSize(QPageSize(QPageSize::Letter));
//   QPainter p(&pdf); ... pdf.newPage(); ... p.end();
//   if (pdf.Failed()) ...   // the device refused bytes (disk full)
//
// Pages can also be painted on other threads, each on a PdfPage, and added in order with
// AddPage (then Close writes the end of the file); the bytes are the same either way.
#include <QPagedPaintDevice>
#include <QString>
#include <memory>

class QIODevice;
class PdfEngine;
namespace Pdf {
struct PageContent;
}

class PdfWriter : public QPagedPaintDevice {
public:
    explicit PdfWriter(QIODevice* out); // not owned; open for writing
    ~PdfWriter() override;

    // Device pixels per inch, the unit the painter draws in (before painting starts).
    void SetResolution(int dpi);
    int Resolution() const { return m_dpi; }
    void SetCreator(const QString& creator);
    void SetTitle(const QString& title);
    // Page contents are Flate-compressed unless turned off (for tests that read them).
    void SetCompressPages(bool on);

    bool newPage() override;
    // A page painted on a PdfPage of this writer's layout and resolution, after those before it.
    void AddPage(const Pdf::PageContent& page);
    // Ends a file whose pages all came through AddPage.
    void Close();
    QPaintEngine* paintEngine() const override;

    int PageCount() const;
    int PictureCount() const; // distinct pictures written so far
    bool Failed() const;

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    int m_dpi = 1200;
    std::unique_ptr<PdfEngine> m_engine;
};
