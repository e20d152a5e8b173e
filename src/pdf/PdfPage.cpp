#include "pdf/PdfPage.h"

#include "pdf/PdfStream.h"

#include <QCryptographicHash>

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QTextItem>
#include <algorithm>
#include <climits>
#include <cmath>

using Pdf::AppendInt;
using Pdf::AppendNumber;

namespace {

const QPaintEngine::PaintEngineFeatures kFeatures =
    QPaintEngine::PaintEngineFeatures(QPaintEngine::AllFeatures) & ~(QPaintEngine::PorterDuff | QPaintEngine::PerspectiveTransform |
                                  QPaintEngine::ObjectBoundingModeGradients | QPaintEngine::ConicalGradientFill |
                                  QPaintEngine::RadialGradientFill | QPaintEngine::LinearGradientFill |
                                  QPaintEngine::BlendModes | QPaintEngine::RasterOpModes);

double Scale(const QTransform& m) { return std::sqrt(std::abs(m.m11() * m.m22() - m.m12() * m.m21())); }

void AppendColor(QByteArray& out, const QColor& c)
{
    const QRgb rgb = c.rgb();
    if (qRed(rgb) == qGreen(rgb) && qGreen(rgb) == qBlue(rgb)) {
        AppendNumber(out, qRed(rgb) / 255.0, 3);
        return;
    }
    AppendNumber(out, qRed(rgb) / 255.0, 3);
    out += ' ';
    AppendNumber(out, qGreen(rgb) / 255.0, 3);
    out += ' ';
    AppendNumber(out, qBlue(rgb) / 255.0, 3);
}

bool IsGray(QRgb rgb) { return qRed(rgb) == qGreen(rgb) && qGreen(rgb) == qBlue(rgb); }

} // namespace

PdfPageEngine::PdfPageEngine()
    : QPaintEngine(kFeatures)
{
}

bool PdfPageEngine::begin(QPaintDevice*)
{
    m_matrix = QTransform();
    m_pen = QPen();
    m_brush = QBrush();
    m_clips.clear();
    m_clipDirty = false;
    setActive(true);
    return true;
}

bool PdfPageEngine::end()
{
    setActive(false);
    return true;
}

void PdfPageEngine::StartPage(QSizeF points, int dpi)
{
    m_dpi = std::max(1, dpi);
    m_page = Pdf::PageContent();
    m_page.points = points;
    m_usedXObjects.clear();
    const double k = 72.0 / m_dpi;
    m_page.stream.reserve(8192);
    // Device units with the origin at the top left, as the painter sees the page.
    AppendNumber(m_page.stream, k, 6);
    m_page.stream += " 0 0 ";
    AppendNumber(m_page.stream, -k, 6);
    m_page.stream += " 0 ";
    AppendNumber(m_page.stream, points.height(), 3);
    m_page.stream += " cm\nq\n";
    resetCachedState();
    m_clipDirty = !m_clips.isEmpty();
    m_pageOpen = true;
}

Pdf::PageContent PdfPageEngine::TakePage(bool compress)
{
    Pdf::PageContent page = std::move(m_page);
    m_page = Pdf::PageContent();
    m_pageOpen = false;
    page.stream += "Q\n";
    if (compress) {
        page.stream = Pdf::Deflate(page.stream, 1);
        page.compressed = true;
    }
    return page;
}

void PdfPageEngine::resetCachedState()
{
    m_fillSet = m_strokeSet = false;
    m_strokeStyle.clear();
    m_font = nullptr;
    m_charSpacing = 0;
}

void PdfPageEngine::updateState(const QPaintEngineState& state)
{
    const DirtyFlags flags = state.state();
    if (flags & DirtyTransform)
        m_matrix = state.transform();
    if (flags & DirtyPen)
        m_pen = state.pen();
    if (flags & DirtyBrush)
        m_brush = state.brush();
    if (flags & (DirtyClipPath | DirtyClipRegion)) {
        QPainterPath path;
        if (flags & DirtyClipPath)
            path = state.clipPath();
        else
            path.addRegion(state.clipRegion());
        switch (state.clipOperation()) {
        case Qt::NoClip: m_clips.clear(); break;
        case Qt::ReplaceClip: m_clips = {m_matrix.map(path)}; break;
        case Qt::IntersectClip: m_clips.append(m_matrix.map(path)); break;
        }
        m_clipDirty = true;
    }
    if ((flags & DirtyClipEnabled) && !state.isClipEnabled()) {
        m_clips.clear();
        m_clipDirty = true;
    }
}

void PdfPageEngine::applyClip()
{
    if (!m_clipDirty)
        return;
    m_page.stream += "Q q\n";
    resetCachedState();
    for (const QPainterPath& c : std::as_const(m_clips)) {
        pathOps(c);
        m_page.stream += "W n\n";
    }
    m_clipDirty = false;
}

void PdfPageEngine::point(QPointF d)
{
    AppendNumber(m_page.stream, d.x());
    m_page.stream += ' ';
    AppendNumber(m_page.stream, d.y());
}

void PdfPageEngine::pathOps(const QPainterPath& path)
{
    const int n = path.elementCount();
    for (int i = 0; i < n; ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        switch (e.type) {
        case QPainterPath::MoveToElement:
            point(e);
            m_page.stream += " m\n";
            break;
        case QPainterPath::LineToElement:
            point(e);
            m_page.stream += " l\n";
            break;
        case QPainterPath::CurveToElement:
            if (i + 2 < n) {
                point(e);
                m_page.stream += ' ';
                point(path.elementAt(i + 1));
                m_page.stream += ' ';
                point(path.elementAt(i + 2));
                m_page.stream += " c\n";
                i += 2;
            }
            break;
        case QPainterPath::CurveToDataElement: break;
        }
    }
}

void PdfPageEngine::setFill(const QColor& c)
{
    const QRgb rgb = c.rgb();
    if (m_fillSet && m_fill == rgb)
        return;
    AppendColor(m_page.stream, c);
    m_page.stream += IsGray(rgb) ? " g\n" : " rg\n";
    m_fill = rgb;
    m_fillSet = true;
}

void PdfPageEngine::setStroke()
{
    const QRgb rgb = m_pen.color().rgb();
    if (!m_strokeSet || m_stroke != rgb) {
        AppendColor(m_page.stream, m_pen.color());
        m_page.stream += IsGray(rgb) ? " G\n" : " RG\n";
        m_stroke = rgb;
        m_strokeSet = true;
    }
    // Width, caps, joins and dashes in device units; a cosmetic pen keeps its width in pixels.
    const double w = m_pen.isCosmetic() ? m_pen.widthF() : m_pen.widthF() * Scale(m_matrix);
    QByteArray style;
    AppendNumber(style, w, 3);
    style += " w ";
    style += m_pen.capStyle() == Qt::RoundCap ? "1 J " : m_pen.capStyle() == Qt::SquareCap ? "2 J " : "0 J ";
    style += m_pen.joinStyle() == Qt::RoundJoin ? "1 j " : m_pen.joinStyle() == Qt::BevelJoin ? "2 j " : "0 j ";
    style += '[';
    if (m_pen.style() != Qt::SolidLine) {
        const double unit = std::max(w, 1.0);
        const QList<qreal> dashes = m_pen.dashPattern();
        for (qsizetype i = 0; i < dashes.size(); ++i) {
            if (i)
                style += ' ';
            AppendNumber(style, dashes[i] * unit, 3);
        }
        style += "] ";
        AppendNumber(style, m_pen.dashOffset() * unit, 3);
        style += " d\n";
    } else {
        style += "] 0 d\n";
    }
    if (style != m_strokeStyle) {
        m_page.stream += style;
        m_strokeStyle = style;
    }
}

void PdfPageEngine::paintOp(bool closed, bool oddEven)
{
    const bool fill = m_brush.style() != Qt::NoBrush;
    const bool stroke = m_pen.style() != Qt::NoPen;
    if (fill)
        setFill(m_brush.color());
    if (stroke)
        setStroke();
    if (fill && stroke)
        m_page.stream += closed ? (oddEven ? "b*\n" : "b\n") : (oddEven ? "B*\n" : "B\n");
    else if (fill)
        m_page.stream += oddEven ? "f*\n" : "f\n";
    else if (stroke)
        m_page.stream += closed ? "s\n" : "S\n";
    else
        m_page.stream += "n\n";
}

void PdfPageEngine::drawRects(const QRectF* rects, int count)
{
    if (m_brush.style() == Qt::NoBrush && m_pen.style() == Qt::NoPen)
        return;
    applyClip();
    const bool axisAligned = m_matrix.type() <= QTransform::TxScale;
    for (int i = 0; i < count; ++i) {
        if (axisAligned) {
            const QRectF r = m_matrix.mapRect(rects[i]);
            point(r.topLeft());
            m_page.stream += ' ';
            AppendNumber(m_page.stream, r.width());
            m_page.stream += ' ';
            AppendNumber(m_page.stream, r.height());
            m_page.stream += " re\n";
        } else {
            QPainterPath p;
            p.addRect(rects[i]);
            pathOps(m_matrix.map(p));
            m_page.stream += "h\n";
        }
        paintOp(false, false);
    }
}

void PdfPageEngine::drawLines(const QLineF* lines, int count)
{
    if (m_pen.style() == Qt::NoPen)
        return;
    applyClip();
    for (int i = 0; i < count; ++i) {
        point(m_matrix.map(lines[i].p1()));
        m_page.stream += " m ";
        point(m_matrix.map(lines[i].p2()));
        m_page.stream += " l\n";
    }
    setStroke();
    m_page.stream += "S\n";
}

void PdfPageEngine::drawPath(const QPainterPath& path)
{
    if (path.isEmpty() || (m_brush.style() == Qt::NoBrush && m_pen.style() == Qt::NoPen))
        return;
    applyClip();
    pathOps(m_matrix.map(path));
    paintOp(false, path.fillRule() == Qt::OddEvenFill);
}

void PdfPageEngine::drawPolygon(const QPointF* points, int count, PolygonDrawMode mode)
{
    if (count < 2)
        return;
    applyClip();
    for (int i = 0; i < count; ++i) {
        point(m_matrix.map(points[i]));
        m_page.stream += i == 0 ? " m\n" : " l\n";
    }
    if (mode == PolylineMode) {
        if (m_pen.style() == Qt::NoPen) {
            m_page.stream += "n\n";
            return;
        }
        setStroke();
        m_page.stream += "S\n";
        return;
    }
    paintOp(true, mode == OddEvenMode);
}

void PdfPageEngine::drawXObject(const QByteArray& name, const QTransform& m, const QRectF& r)
{
    if (name.isEmpty())
        return;
    // The image's unit square, its first row on top, onto r.
    const QPointF o = m.map(r.bottomLeft());
    const QPointF x = m.map(r.bottomRight()) - o;
    const QPointF y = m.map(r.topLeft()) - o;
    m_page.stream += "q ";
    AppendNumber(m_page.stream, x.x(), 3);
    m_page.stream += ' ';
    AppendNumber(m_page.stream, x.y(), 3);
    m_page.stream += ' ';
    AppendNumber(m_page.stream, y.x(), 3);
    m_page.stream += ' ';
    AppendNumber(m_page.stream, y.y(), 3);
    m_page.stream += ' ';
    point(o);
    m_page.stream += " cm ";
    m_page.stream += name;
    m_page.stream += " Do Q\n";
}

void PdfPageEngine::drawImage(const QRectF& r, const QImage& image, const QRectF& sr, Qt::ImageConversionFlags)
{
    if (image.isNull() || r.isEmpty() || sr.isEmpty())
        return;
    applyClip();
    const QByteArray name = useImage(image);
    if (sr == QRectF(image.rect())) {
        drawXObject(name, m_matrix, r);
        return;
    }
    // Part of the image: the whole one scaled so that sr lands on r, clipped to r.
    const double sx = r.width() / sr.width(), sy = r.height() / sr.height();
    const QRectF whole(r.left() - sr.left() * sx, r.top() - sr.top() * sy, image.width() * sx, image.height() * sy);
    m_page.stream += "q ";
    QPainterPath clip;
    clip.addRect(r);
    pathOps(m_matrix.map(clip));
    m_page.stream += "W n\n";
    drawXObject(name, m_matrix, whole);
    m_page.stream += "Q\n";
}

void PdfPageEngine::drawPixmap(const QRectF& r, const QPixmap& pm, const QRectF& sr)
{
    drawImage(r, pm.toImage(), sr, Qt::AutoColor);
}

void PdfPageEngine::DrawPicture(QPainter& painter, const QRectF& target, const PictureRef& picture)
{
    if (!picture || target.isEmpty())
        return;
    // The painter may not have handed its newest transform and clip to the engine yet.
    const QByteArray name = usePicture(picture);
    if (name.isEmpty())
        return;
    m_page.stream += "Q q\n";
    resetCachedState();
    const QTransform m = painter.deviceTransform();
    if (painter.hasClipping()) {
        pathOps(m.map(painter.clipPath()));
        m_page.stream += "W n\n";
    }
    drawXObject(name, m, target);
    m_clipDirty = true; // the engine's own clip goes back on before the next drawing
}

void PdfPageEngine::drawTextItem(const QPointF& p, const QTextItem& ti)
{
    const QString text = ti.text();
    if (text.isEmpty())
        return;
    applyClip();
    const QFont font = ti.font();
    const Pdf::FontResource& res = Pdf::FontRegistry::Global().For(font);
    if (std::find(m_page.fonts.begin(), m_page.fonts.end(), &res) == m_page.fonts.end())
        m_page.fonts.push_back(&res);
    // Per thread rather than per page: a page's labels are encoded once for every page.
    thread_local Pdf::TextCache texts;
    const Pdf::EncodedText& enc = texts.Encode(res, text);
    const double size = font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * m_dpi / 72.0;
    if (size <= 0)
        return;
    setFill(m_pen.color());
    m_page.stream += "BT ";
    if (m_font != &res) {
        m_page.stream += res.name;
        m_page.stream += " 1 Tf ";
        m_font = &res;
    }
    // Letters advance by the font's widths; one spacing per run makes the run as long as
    // the painter laid it out (kerning, hinting), so alignment and wrapping hold.
    double spacing = 0;
    if (enc.count > 1 && ti.width() > 0)
        spacing = (ti.width() / size - enc.width) / enc.count;
    if (std::abs(spacing) < 1e-4)
        spacing = 0;
    if (spacing != m_charSpacing) {
        AppendNumber(m_page.stream, spacing, 5);
        m_page.stream += " Tc ";
        m_charSpacing = spacing;
    }
    const QPointF o = m_matrix.map(p);
    AppendNumber(m_page.stream, size * m_matrix.m11(), 3);
    m_page.stream += ' ';
    AppendNumber(m_page.stream, size * m_matrix.m12(), 3);
    m_page.stream += ' ';
    AppendNumber(m_page.stream, -size * m_matrix.m21(), 3);
    m_page.stream += ' ';
    AppendNumber(m_page.stream, -size * m_matrix.m22(), 3);
    m_page.stream += ' ';
    point(o);
    m_page.stream += " Tm ";
    m_page.stream += enc.literal;
    m_page.stream += " Tj ET\n";
}

QByteArray PdfPageEngine::usePicture(const PictureRef& picture)
{
    QByteArray name = "/Im" + picture->Hash().toHex().left(16);
    if (!m_usedXObjects.contains(name)) {
        // A picture that does not decode draws nothing, as if it were not there.
        if (!picture->Jpeg() && picture->Image().isNull())
            return {};
        m_usedXObjects.insert(name, true);
        m_page.xobjects.push_back({name, picture, QImage()});
    }
    return name;
}

QByteArray PdfPageEngine::useImage(const QImage& image)
{
    QByteArray name = m_imageNames.value(image.cacheKey());
    if (name.isEmpty()) {
        // Named by the pixels, so the same image has the same name on every page and thread.
        QCryptographicHash h(QCryptographicHash::Sha1);
        const QImage img = image.convertToFormat(QImage::Format_ARGB32);
        const int size[2] = {img.width(), img.height()};
        h.addData(QByteArrayView(reinterpret_cast<const char*>(size), sizeof size));
        for (int y = 0; y < img.height(); ++y)
            h.addData(QByteArrayView(reinterpret_cast<const char*>(img.constScanLine(y)), qsizetype(img.width()) * 4));
        name = "/Iq" + h.result().toHex().left(16);
        if (m_imageNames.size() > 64)
            m_imageNames.clear();
        m_imageNames.insert(image.cacheKey(), name);
    }
    if (!m_usedXObjects.contains(name)) {
        m_usedXObjects.insert(name, true);
        m_page.xobjects.push_back({name, PictureRef(), image});
    }
    return name;
}

// ---- the page as a device --------------------------------------------------------------------

int Pdf::PageMetric(const QPageLayout& layout, int dpi, QPaintDevice::PaintDeviceMetric metric)
{
    const QRect pixels = layout.paintRectPixels(dpi);
    const QRectF mm = layout.paintRect(QPageLayout::Millimeter);
    switch (metric) {
    case QPaintDevice::PdmWidth: return pixels.width();
    case QPaintDevice::PdmHeight: return pixels.height();
    case QPaintDevice::PdmWidthMM: return qRound(mm.width());
    case QPaintDevice::PdmHeightMM: return qRound(mm.height());
    case QPaintDevice::PdmNumColors: return INT_MAX;
    case QPaintDevice::PdmDepth: return 32;
    case QPaintDevice::PdmDpiX:
    case QPaintDevice::PdmDpiY:
    case QPaintDevice::PdmPhysicalDpiX:
    case QPaintDevice::PdmPhysicalDpiY: return dpi;
    case QPaintDevice::PdmDevicePixelRatio: return 1;
    case QPaintDevice::PdmDevicePixelRatioScaled: return int(1 * QPaintDevice::devicePixelRatioFScale());
    default: return 0;
    }
}

PdfPage::PdfPage(const QPageLayout& layout, int dpi)
    : m_layout(layout)
    , m_dpi(std::max(1, dpi))
    , m_engine(std::make_unique<PdfPageEngine>())
{
    m_engine->StartPage(layout.fullRectPoints().size(), m_dpi);
}

PdfPage::~PdfPage() = default;

QPaintEngine* PdfPage::paintEngine() const { return m_engine.get(); }

int PdfPage::metric(PaintDeviceMetric metric) const { return Pdf::PageMetric(m_layout, m_dpi, metric); }

Pdf::PageContent PdfPage::Take(bool compress) { return m_engine->TakePage(compress); }
