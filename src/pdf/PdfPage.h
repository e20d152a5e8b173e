#pragma once
// One PDF page painted on its own, on any thread: the content stream (compressed by the
// painting thread) and the fonts and pictures it names. The file writer (PdfEngine) numbers
// objects when it takes the page, in page order, so a file comes out the same whichever
// thread painted which page. Resources are named by what they are (a font by family and
// style, a picture by its content hash), never by the order pages met them.
//
//   PdfPage page(layout, 1200);
//   QPainter p(&page); ... p.end();
//   Pdf::PageContent c = page.Take();      // then PdfWriter::AddPage(std::move(c))
#include "pdf/PdfFonts.h"
#include "render/PictureSink.h"

#include <QBrush>
#include <QHash>
#include <QPageLayout>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainterPath>
#include <QPen>
#include <QTransform>
#include <vector>

namespace Pdf {

// A picture or image the page draws, under its resource name.
struct PageXObject {
    QByteArray name;    // "/Im" + content hash for a picture, "/Iq" + pixel hash for an image
    PictureRef picture; // a picture; its bytes go in as they are when they are a JPEG
    QImage image;       // or pixels
};

struct PageContent {
    QSizeF points;            // the MediaBox
    QByteArray stream;        // the content stream
    bool compressed = false;  // Flate-compressed
    std::vector<const FontResource*> fonts; // in order of first use
    std::vector<PageXObject> xobjects;      // in order of first use
};

// The device metrics of a page of this layout at dpi, shared by the writer and the page so
// that text is laid out alike on both.
int PageMetric(const QPageLayout& layout, int dpi, QPaintDevice::PaintDeviceMetric metric);

} // namespace Pdf

// Paints into one page's content stream. Coordinates are mapped to device units here and
// written in a page whose base matrix turns device units (top-left origin) into PDF points;
// the clip lives in one saved graphics state level ("Q q" resets it).
class PdfPageEngine : public QPaintEngine, public PictureSink {
public:
    PdfPageEngine();

    bool begin(QPaintDevice* device) override;
    bool end() override;
    Type type() const override { return PictureSink::EngineType; }
    void updateState(const QPaintEngineState& state) override;

    void drawRects(const QRectF* rects, int count) override;
    void drawLines(const QLineF* lines, int count) override;
    void drawPath(const QPainterPath& path) override;
    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override;
    void drawPixmap(const QRectF& r, const QPixmap& pm, const QRectF& sr) override;
    void drawImage(const QRectF& r, const QImage& image, const QRectF& sr, Qt::ImageConversionFlags flags) override;
    void drawTextItem(const QPointF& p, const QTextItem& textItem) override;
    void DrawPicture(QPainter& painter, const QRectF& target, const PictureRef& picture) override;

    // Opens a page of this size (points) whose device unit is 1/dpi inch.
    void StartPage(QSizeF points, int dpi);
    // Closes the open page and hands it over, its stream compressed unless compress is off.
    Pdf::PageContent TakePage(bool compress);
    bool PageOpen() const { return m_pageOpen; }

private:
    void applyClip();
    void resetCachedState();
    void point(QPointF device);
    void pathOps(const QPainterPath& devicePath);
    void setFill(const QColor& c);
    void setStroke();
    void paintOp(bool closed, bool oddEven);
    QByteArray useImage(const QImage& image);
    QByteArray usePicture(const PictureRef& picture);
    void drawXObject(const QByteArray& name, const QTransform& m, const QRectF& r);

    Pdf::PageContent m_page;
    bool m_pageOpen = false;
    int m_dpi = 1200;
    QHash<QByteArray, bool> m_usedXObjects;    // names already in m_page.xobjects
    QHash<qint64, QByteArray> m_imageNames;     // QImage::cacheKey -> name

    QTransform m_matrix;
    QPen m_pen;
    QBrush m_brush;
    QList<QPainterPath> m_clips; // device coordinates, intersected
    bool m_clipDirty = false;

    // What the content stream has set since the last "Q q".
    QRgb m_fill = 0, m_stroke = 0;
    bool m_fillSet = false, m_strokeSet = false;
    QByteArray m_strokeStyle;
    const Pdf::FontResource* m_font = nullptr;
    double m_charSpacing = 0;
};

// A paint device for one page, for painting pages of a PdfWriter's file on other threads.
class PdfPage : public QPaintDevice {
public:
    PdfPage(const QPageLayout& layout, int dpi);
    ~PdfPage() override;
    QPaintEngine* paintEngine() const override;
    // The painted page (after the painter has ended), compressed on the calling thread.
    Pdf::PageContent Take(bool compress = true);

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    QPageLayout m_layout;
    int m_dpi;
    std::unique_ptr<PdfPageEngine> m_engine;
};
