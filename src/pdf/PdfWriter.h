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
#include <QPagedPaintDevice>
#include <QString>
#include <memory>

class QIODevice;
class PdfEngine;

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
