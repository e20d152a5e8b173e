#pragma once
// The paint engine behind PdfWriter. Coordinates are mapped to device units here and written
// in a page whose base matrix turns device units (top-left origin) into PDF points; the clip
// lives in one saved graphics state level ("Q q" resets it).
#include "pdf/PdfFonts.h"
#include "pdf/PdfStream.h"
#include "render/PictureSink.h"

#include <QBrush>
#include <QHash>
#include <QPaintEngine>
#include <QPainterPath>
#include <QPen>
#include <QTransform>

class PdfWriter;

class PdfEngine : public QPaintEngine, public PictureSink {
public:
    explicit PdfEngine(QIODevice* out);

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

    void NewPage();
    int PageCount() const { return int(m_pageObjects.size()) + (m_pageOpen ? 1 : 0); }
    int PictureCount() const { return m_imageCount; }
    bool Failed() const { return m_writer.Failed(); }

    QString creator, title;
    bool compressPages = true;

private:
    void startPage();
    void finishPage();
    void applyClip();
    void resetCachedState();
    void point(QPointF device);
    void pathOps(const QPainterPath& devicePath);
    void setFill(const QColor& c);
    void setStroke();
    void paintOp(bool closed, bool oddEven);
    QByteArray imageObject(const QImage& image);         // "/ImN", written once per content
    QByteArray pictureObject(const PictureRef& picture); // "/ImN", written once per content
    QByteArray addXObject(int object);
    void drawXObject(const QByteArray& name, const QTransform& m, const QRectF& r);

    Pdf::Writer m_writer;
    Pdf::Fonts m_fonts;
    PdfWriter* m_device = nullptr;
    int m_catalog = 0, m_pages = 0, m_resources = 0, m_info = 0;
    std::vector<int> m_pageObjects;
    bool m_pageOpen = false;
    QSizeF m_pagePoints;
    QByteArray m_content;
    QByteArray m_xobjects;                  // "/Im1 7 0 R..." for the resources
    QHash<QByteArray, QByteArray> m_images; // content hash -> name
    int m_imageCount = 0;

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
