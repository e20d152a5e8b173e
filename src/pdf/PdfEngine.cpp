#include "pdf/PdfEngine.h"

#include "pdf/PdfWriter.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QTextItem>
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

PdfEngine::PdfEngine(QIODevice* out)
    : QPaintEngine(kFeatures)
    , m_writer(out)
{
}

bool PdfEngine::begin(QPaintDevice* device)
{
    m_device = static_cast<PdfWriter*>(device);
    m_writer.Header();
    m_catalog = m_writer.Reserve();
    m_pages = m_writer.Reserve();
    m_resources = m_writer.Reserve();
    m_info = m_writer.Reserve();
    m_matrix = QTransform();
    m_pen = QPen();
    m_brush = QBrush();
    m_clips.clear();
    startPage();
    setActive(true);
    return true;
}

bool PdfEngine::end()
{
    finishPage();
    QByteArray kids = "<</Type/Pages/Kids[";
    for (size_t i = 0; i < m_pageObjects.size(); ++i) {
        if (i)
            kids += ' ';
        AppendInt(kids, m_pageObjects[i]);
        kids += " 0 R";
    }
    kids += "]/Count ";
    AppendInt(kids, qint64(m_pageObjects.size()));
    kids += ">>";
    m_writer.Object(m_pages, kids);
    m_writer.Object(m_resources, "<</ProcSet[/PDF/Text/ImageB/ImageC]/Font<<" + m_fonts.ResourceEntries() +
                                     ">>/XObject<<" + m_xobjects + ">>>>");
    QByteArray cat = "<</Type/Catalog/Pages ";
    AppendInt(cat, m_pages);
    cat += " 0 R>>";
    m_writer.Object(m_catalog, cat);
    QByteArray info = "<</Producer(Pagewright)";
    if (!creator.isEmpty()) {
        info += "/Creator";
        Pdf::AppendString(info, creator.toLatin1());
    }
    if (!title.isEmpty()) {
        info += "/Title";
        Pdf::AppendString(info, title.toLatin1());
    }
    info += ">>";
    m_writer.Object(m_info, info);
    m_writer.Finish(m_catalog, m_info);
    setActive(false);
    return !m_writer.Failed();
}

void PdfEngine::NewPage()
{
    finishPage();
    startPage();
}

void PdfEngine::startPage()
{
    m_pagePoints = m_device->pageLayout().fullRectPoints().size();
    const double k = 72.0 / m_device->Resolution();
    m_content.clear();
    m_content.reserve(8192);
    // Device units with the origin at the top left, as the painter sees the page.
    AppendNumber(m_content, k, 6);
    m_content += " 0 0 ";
    AppendNumber(m_content, -k, 6);
    m_content += " 0 ";
    AppendNumber(m_content, m_pagePoints.height(), 3);
    m_content += " cm\nq\n";
    resetCachedState();
    m_clipDirty = !m_clips.isEmpty();
    m_pageOpen = true;
}

void PdfEngine::finishPage()
{
    if (!m_pageOpen)
        return;
    m_content += "Q\n";
    const int contents = compressPages ? m_writer.Stream("/Filter/FlateDecode", Pdf::Deflate(m_content, 1))
                                       : m_writer.Stream(QByteArray(), m_content);
    QByteArray page = "<</Type/Page/Parent ";
    AppendInt(page, m_pages);
    page += " 0 R/MediaBox[0 0 ";
    AppendNumber(page, m_pagePoints.width(), 3);
    page += ' ';
    AppendNumber(page, m_pagePoints.height(), 3);
    page += "]/Resources ";
    AppendInt(page, m_resources);
    page += " 0 R/Contents ";
    AppendInt(page, contents);
    page += " 0 R>>";
    m_pageObjects.push_back(m_writer.Object(page));
    m_content.clear();
    m_pageOpen = false;
}

void PdfEngine::resetCachedState()
{
    m_fillSet = m_strokeSet = false;
    m_strokeStyle.clear();
    m_font = nullptr;
    m_charSpacing = 0;
}

void PdfEngine::updateState(const QPaintEngineState& state)
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

void PdfEngine::applyClip()
{
    if (!m_clipDirty)
        return;
    m_content += "Q q\n";
    resetCachedState();
    for (const QPainterPath& c : std::as_const(m_clips)) {
        pathOps(c);
        m_content += "W n\n";
    }
    m_clipDirty = false;
}

void PdfEngine::point(QPointF d)
{
    AppendNumber(m_content, d.x());
    m_content += ' ';
    AppendNumber(m_content, d.y());
}

void PdfEngine::pathOps(const QPainterPath& path)
{
    const int n = path.elementCount();
    for (int i = 0; i < n; ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        switch (e.type) {
        case QPainterPath::MoveToElement:
            point(e);
            m_content += " m\n";
            break;
        case QPainterPath::LineToElement:
            point(e);
            m_content += " l\n";
            break;
        case QPainterPath::CurveToElement:
            if (i + 2 < n) {
                point(e);
                m_content += ' ';
                point(path.elementAt(i + 1));
                m_content += ' ';
                point(path.elementAt(i + 2));
                m_content += " c\n";
                i += 2;
            }
            break;
        case QPainterPath::CurveToDataElement: break;
        }
    }
}

void PdfEngine::setFill(const QColor& c)
{
    const QRgb rgb = c.rgb();
    if (m_fillSet && m_fill == rgb)
        return;
    AppendColor(m_content, c);
    m_content += IsGray(rgb) ? " g\n" : " rg\n";
    m_fill = rgb;
    m_fillSet = true;
}

void PdfEngine::setStroke()
{
    const QRgb rgb = m_pen.color().rgb();
    if (!m_strokeSet || m_stroke != rgb) {
        AppendColor(m_content, m_pen.color());
        m_content += IsGray(rgb) ? " G\n" : " RG\n";
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
        m_content += style;
        m_strokeStyle = style;
    }
}

void PdfEngine::paintOp(bool closed, bool oddEven)
{
    const bool fill = m_brush.style() != Qt::NoBrush;
    const bool stroke = m_pen.style() != Qt::NoPen;
    if (fill)
        setFill(m_brush.color());
    if (stroke)
        setStroke();
    if (fill && stroke)
        m_content += closed ? (oddEven ? "b*\n" : "b\n") : (oddEven ? "B*\n" : "B\n");
    else if (fill)
        m_content += oddEven ? "f*\n" : "f\n";
    else if (stroke)
        m_content += closed ? "s\n" : "S\n";
    else
        m_content += "n\n";
}

void PdfEngine::drawRects(const QRectF* rects, int count)
{
    if (m_brush.style() == Qt::NoBrush && m_pen.style() == Qt::NoPen)
        return;
    applyClip();
    const bool axisAligned = m_matrix.type() <= QTransform::TxScale;
    for (int i = 0; i < count; ++i) {
        if (axisAligned) {
            const QRectF r = m_matrix.mapRect(rects[i]);
            point(r.topLeft());
            m_content += ' ';
            AppendNumber(m_content, r.width());
            m_content += ' ';
            AppendNumber(m_content, r.height());
            m_content += " re\n";
        } else {
            QPainterPath p;
            p.addRect(rects[i]);
            pathOps(m_matrix.map(p));
            m_content += "h\n";
        }
        paintOp(false, false);
    }
}

void PdfEngine::drawLines(const QLineF* lines, int count)
{
    if (m_pen.style() == Qt::NoPen)
        return;
    applyClip();
    for (int i = 0; i < count; ++i) {
        point(m_matrix.map(lines[i].p1()));
        m_content += " m ";
        point(m_matrix.map(lines[i].p2()));
        m_content += " l\n";
    }
    setStroke();
    m_content += "S\n";
}

void PdfEngine::drawPath(const QPainterPath& path)
{
    if (path.isEmpty() || (m_brush.style() == Qt::NoBrush && m_pen.style() == Qt::NoPen))
        return;
    applyClip();
    pathOps(m_matrix.map(path));
    paintOp(false, path.fillRule() == Qt::OddEvenFill);
}

void PdfEngine::drawPolygon(const QPointF* points, int count, PolygonDrawMode mode)
{
    if (count < 2)
        return;
    applyClip();
    for (int i = 0; i < count; ++i) {
        point(m_matrix.map(points[i]));
        m_content += i == 0 ? " m\n" : " l\n";
    }
    if (mode == PolylineMode) {
        if (m_pen.style() == Qt::NoPen) {
            m_content += "n\n";
            return;
        }
        setStroke();
        m_content += "S\n";
        return;
    }
    paintOp(true, mode == OddEvenMode);
}

void PdfEngine::drawXObject(const QByteArray& name, const QTransform& m, const QRectF& r)
{
    if (name.isEmpty())
        return;
    // The image's unit square, its first row on top, onto r.
    const QPointF o = m.map(r.bottomLeft());
    const QPointF x = m.map(r.bottomRight()) - o;
    const QPointF y = m.map(r.topLeft()) - o;
    m_content += "q ";
    AppendNumber(m_content, x.x(), 3);
    m_content += ' ';
    AppendNumber(m_content, x.y(), 3);
    m_content += ' ';
    AppendNumber(m_content, y.x(), 3);
    m_content += ' ';
    AppendNumber(m_content, y.y(), 3);
    m_content += ' ';
    point(o);
    m_content += " cm ";
    m_content += name;
    m_content += " Do Q\n";
}

void PdfEngine::drawImage(const QRectF& r, const QImage& image, const QRectF& sr, Qt::ImageConversionFlags)
{
    if (image.isNull() || r.isEmpty() || sr.isEmpty())
        return;
    applyClip();
    const QByteArray name = imageObject(image);
    if (sr == QRectF(image.rect())) {
        drawXObject(name, m_matrix, r);
        return;
    }
    // Part of the image: the whole one scaled so that sr lands on r, clipped to r.
    const double sx = r.width() / sr.width(), sy = r.height() / sr.height();
    const QRectF whole(r.left() - sr.left() * sx, r.top() - sr.top() * sy, image.width() * sx, image.height() * sy);
    m_content += "q ";
    QPainterPath clip;
    clip.addRect(r);
    pathOps(m_matrix.map(clip));
    m_content += "W n\n";
    drawXObject(name, m_matrix, whole);
    m_content += "Q\n";
}

void PdfEngine::drawPixmap(const QRectF& r, const QPixmap& pm, const QRectF& sr)
{
    drawImage(r, pm.toImage(), sr, Qt::AutoColor);
}

void PdfEngine::DrawPicture(QPainter& painter, const QRectF& target, const PictureRef& picture)
{
    if (!picture || target.isEmpty())
        return;
    // The painter may not have handed its newest transform and clip to the engine yet.
    const QByteArray name = pictureObject(picture);
    if (name.isEmpty())
        return;
    m_content += "Q q\n";
    resetCachedState();
    const QTransform m = painter.deviceTransform();
    if (painter.hasClipping()) {
        pathOps(m.map(painter.clipPath()));
        m_content += "W n\n";
    }
    drawXObject(name, m, target);
    m_clipDirty = true; // the engine's own clip goes back on before the next drawing
}

void PdfEngine::drawTextItem(const QPointF& p, const QTextItem& ti)
{
    const QString text = ti.text();
    if (text.isEmpty())
        return;
    applyClip();
    const QFont font = ti.font();
    const Pdf::FontResource& res = m_fonts.For(font, m_writer);
    const Pdf::EncodedText& enc = m_fonts.Encode(res, text);
    const double size = font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * m_device->Resolution() / 72.0;
    if (size <= 0)
        return;
    setFill(m_pen.color());
    m_content += "BT ";
    if (m_font != &res) {
        m_content += res.name;
        m_content += " 1 Tf ";
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
        AppendNumber(m_content, spacing, 5);
        m_content += " Tc ";
        m_charSpacing = spacing;
    }
    const QPointF o = m_matrix.map(p);
    AppendNumber(m_content, size * m_matrix.m11(), 3);
    m_content += ' ';
    AppendNumber(m_content, size * m_matrix.m12(), 3);
    m_content += ' ';
    AppendNumber(m_content, -size * m_matrix.m21(), 3);
    m_content += ' ';
    AppendNumber(m_content, -size * m_matrix.m22(), 3);
    m_content += ' ';
    point(o);
    m_content += " Tm ";
    m_content += enc.literal;
    m_content += " Tj ET\n";
}

QByteArray PdfEngine::addXObject(int object)
{
    QByteArray name = "/Im" + QByteArray::number(++m_imageCount);
    m_xobjects += name;
    m_xobjects += ' ';
    AppendInt(m_xobjects, object);
    m_xobjects += " 0 R";
    return name;
}

QByteArray PdfEngine::pictureObject(const PictureRef& picture)
{
    auto it = m_images.constFind(picture->Hash());
    if (it != m_images.cend())
        return *it;
    QByteArray name;
    if (const auto& j = picture->Jpeg()) {
        // The file's own DCT stream: no decode, no loss.
        QByteArray dict = "/Type/XObject/Subtype/Image/Width ";
        AppendInt(dict, j->width);
        dict += "/Height ";
        AppendInt(dict, j->height);
        dict += j->components == 1 ? "/ColorSpace/DeviceGray" : j->components == 4 ? "/ColorSpace/DeviceCMYK" : "/ColorSpace/DeviceRGB";
        dict += "/BitsPerComponent 8/Filter/DCTDecode";
        if (j->invertedCmyk)
            dict += "/Decode[1 0 1 0 1 0 1 0]";
        name = addXObject(m_writer.Stream(dict, picture->Bytes()));
    } else {
        const QImage img = picture->Image();
        if (img.isNull())
            return {};
        name = imageObject(img);
    }
    m_images.insert(picture->Hash(), name);
    return name;
}

QByteArray PdfEngine::imageObject(const QImage& source)
{
    const QByteArray key = "img:" + QByteArray::number(source.cacheKey());
    auto it = m_images.constFind(key);
    if (it != m_images.cend())
        return *it;
    const QImage img = source.convertToFormat(QImage::Format_ARGB32);
    const int w = img.width(), h = img.height();
    bool alpha = false, gray = true;
    for (int y = 0; y < h; ++y) {
        const QRgb* line = reinterpret_cast<const QRgb*>(img.constScanLine(y));
        for (int x = 0; x < w; ++x) {
            alpha |= qAlpha(line[x]) != 255;
            gray &= IsGray(line[x]);
        }
    }
    const int channels = gray ? 1 : 3;
    QByteArray pixels(qsizetype(w) * h * channels, Qt::Uninitialized);
    QByteArray mask(alpha ? qsizetype(w) * h : 0, Qt::Uninitialized);
    char* out = pixels.data();
    char* m = mask.data();
    for (int y = 0; y < h; ++y) {
        const QRgb* line = reinterpret_cast<const QRgb*>(img.constScanLine(y));
        for (int x = 0; x < w; ++x) {
            const QRgb c = line[x];
            *out++ = char(qRed(c));
            if (!gray) {
                *out++ = char(qGreen(c));
                *out++ = char(qBlue(c));
            }
            if (alpha)
                *m++ = char(qAlpha(c));
        }
    }
    QByteArray size = "/Width ";
    AppendInt(size, w);
    size += "/Height ";
    AppendInt(size, h);
    QByteArray dict = "/Type/XObject/Subtype/Image" + size + (gray ? "/ColorSpace/DeviceGray" : "/ColorSpace/DeviceRGB") +
                      "/BitsPerComponent 8/Filter/FlateDecode";
    if (alpha) {
        const int smask = m_writer.Stream("/Type/XObject/Subtype/Image" + size + "/ColorSpace/DeviceGray/BitsPerComponent 8/Filter/FlateDecode",
                                          Pdf::Deflate(mask, 6));
        dict += "/SMask ";
        AppendInt(dict, smask);
        dict += " 0 R";
    }
    const QByteArray name = addXObject(m_writer.Stream(dict, Pdf::Deflate(pixels, 6)));
    m_images.insert(key, name);
    return name;
}
