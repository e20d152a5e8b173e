#include "render/ItemPainter.h"

#include "entry/Prompts.h"
#include "render/ItemLayout.h"
#include "render/PictureSink.h"

#include <QPainter>
#include <QPen>
#include <cmath>

using namespace ItemLayout;

namespace {

QColor Bgr(quint32 bgr) { return ColorFromBgr(bgr); }

// The classic display's dash patterns, in pixels (one pen width, as the lines they apply to
// are one pixel thick).
QList<qreal> DashPattern(int style)
{
    switch (style) {
    case ItemCode::BorderDash: return {18, 6};
    case ItemCode::BorderDot: return {3, 3};
    case ItemCode::BorderDashDot: return {9, 6, 3, 6};
    case ItemCode::BorderDashDotDot: return {9, 3, 3, 3, 3, 3};
    default: return {};
    }
}

// A one-device-pixel line along the middle of a solid band. The band itself is painted at its true
// width; this line keeps it visible where the device shows it scaled down (a preview at 41 %
// replays the printer's pixels at a fraction of their size and would thin a band to nothing).
// A cosmetic pen is one pixel on whatever device finally draws it.
void Hairline(QPainter& p, const QRectF& band, const QColor& color)
{
    if (band.width() <= 0 || band.height() <= 0)
        return;
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false); // a whole pixel, not two half-tones
    QPen pen(color, 0, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    p.setPen(pen);
    p.setBrush(Qt::NoBrush);
    if (band.width() >= band.height())
        p.drawLine(QPointF(band.left(), band.center().y()), QPointF(band.right(), band.center().y()));
    else
        p.drawLine(QPointF(band.center().x(), band.top()), QPointF(band.center().x(), band.bottom()));
    p.restore();
}

// A solid stroke: the band at its width, never thinner than one pixel of the final device.
void FillStroke(QPainter& p, const QRectF& band, const QColor& color)
{
    p.fillRect(band, color);
    Hairline(p, band, color);
}

// A stroke of thickness t drawn as a line along the middle of `band`, with the style's dashes.
// The dashed styles are one pixel thick (thicker lines draw solid), so the pen is cosmetic: one
// pixel wide and dashed in pixels on the screen, the preview and paper alike.
void StrokeBand(QPainter& p, const QRectF& band, int style, quint32 color, double px)
{
    const bool horizontal = band.width() >= band.height();
    const double t = horizontal ? band.height() : band.width();
    QPen pen(Bgr(color), t <= px + 1e-9 ? 0 : t, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    const QList<qreal> dashes = DashPattern(style);
    if (!dashes.isEmpty())
        pen.setDashPattern(dashes);
    p.setPen(pen);
    p.setBrush(Qt::NoBrush);
    if (horizontal)
        p.drawLine(QPointF(band.left(), band.center().y()), QPointF(band.right(), band.center().y()));
    else
        p.drawLine(QPointF(band.center().x(), band.top()), QPointF(band.center().x(), band.bottom()));
}

// The part of `outer` that `hole` does not cover, as up to four strips.
void FillRing(QPainter& p, const QRectF& outer, const QRectF& hole, const QColor& color)
{
    const QRectF h = hole.intersected(outer);
    if (h.isEmpty()) {
        p.fillRect(outer, color);
        return;
    }
    const QRectF strips[] = {
        QRectF(outer.left(), outer.top(), outer.width(), h.top() - outer.top()),
        QRectF(outer.left(), h.bottom(), outer.width(), outer.bottom() - h.bottom()),
        QRectF(outer.left(), h.top(), h.left() - outer.left(), h.height()),
        QRectF(h.right(), h.top(), outer.right() - h.right(), h.height()),
    };
    for (const QRectF& s : strips)
        if (s.width() > 0 && s.height() > 0)
            FillStroke(p, s, color);
}

// A one-pixel frame just inside r (a cosmetic pen: one pixel on every device).
void PixelFrame(QPainter& p, const QRectF& r, double px, const QColor& color, Qt::PenStyle style = Qt::SolidLine)
{
    if (r.width() <= 0 || r.height() <= 0)
        return;
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    QPen pen(color, 0, style, Qt::SquareCap, Qt::MiterJoin);
    p.setPen(pen);
    p.setBrush(Qt::NoBrush);
    p.drawRect(r.adjusted(px / 2, px / 2, -px / 2, -px / 2));
    p.restore();
}

} // namespace

PictureSink* PictureSinkOf(QPainter& painter)
{
    QPaintEngine* engine = painter.paintEngine();
    return engine && engine->type() == PictureSink::EngineType ? dynamic_cast<PictureSink*>(engine) : nullptr;
}

double PixelTwipsForDpi(double dpi) { return 1440.0 / dpi; }

void PaintTextItem(QPainter& p, const ItemLook& look, double px)
{
    const QRectF r = look.rect;
    const TextParts parts = TextLayout(r.size(), look.borderWidth * 20, look.borderStyle, look.specialEffect, px);
    p.save();
    p.translate(r.topLeft());
    const QColor border = Bgr(look.borderColor);
    if (look.backStyle == ItemCode::BackOpaque && parts.label.isValid())
        p.fillRect(parts.label, Bgr(look.backColor));
    if (parts.ring)
        FillRing(p, parts.frame, parts.label, border);
    if (parts.shadow) {
        FillStroke(p, parts.vShadow, border);
        FillStroke(p, parts.hShadow, border);
    }
    if (!look.text.isEmpty() && parts.label.width() > 0 && parts.label.height() > 0) {
        // Only whole lines show: a wrapped line that does not fit is left out, not cut in half.
        QRectF shown = parts.label;
        shown.setHeight(WholeLinesHeight(look, parts.label.size()));
        p.save();
        p.setClipRect(shown, Qt::IntersectClip);
        p.setFont(ItemFont(look));
        p.setPen(Bgr(look.foreColor));
        p.drawText(parts.label, TextFlags(look), look.text);
        p.restore();
    }
    if (look.showOutline)
        PixelFrame(p, QRectF(QPointF(0, 0), r.size()), px, QColor(128, 128, 128), Qt::DotLine);
    p.restore();
}

void PaintBoxItem(QPainter& p, const ItemLook& look, double px)
{
    const QRectF r = look.rect;
    if (look.backStyle == ItemCode::BackOpaque)
        p.fillRect(r, Bgr(look.backColor));
    if (look.borderStyle == ItemCode::BorderNone)
        return;
    const double t = StrokeThickness(look.borderWidth, px);
    const BoxEdges e = BoxEdgeRects(r.size(), t, t);
    p.save();
    p.translate(r.topLeft());
    const int style = LineDrawStyle(look.borderStyle, t, px);
    if (style == ItemCode::BorderSolid || style == ItemCode::BorderSolidLine) {
        const QColor c = Bgr(look.borderColor);
        for (const QRectF& edge : {e.top, e.bottom, e.left, e.right})
            FillStroke(p, edge, c);
    } else if (style >= ItemCode::BorderDash && style <= ItemCode::BorderDashDotDot) {
        for (const QRectF& edge : {e.top, e.bottom, e.left, e.right})
            StrokeBand(p, edge, style, look.borderColor, px);
    }
    p.restore();
}

void PaintLineItem(QPainter& p, const ItemLook& look, double px)
{
    const QRectF r = look.rect;
    const double t = StrokeThickness(look.borderWidth, px);
    const QRectF line = LineRect(r.size(), t).translated(r.topLeft());
    const int style = LineDrawStyle(look.lineStyle, t, px);
    if (style == ItemCode::BorderSolid)
        FillStroke(p, line, Bgr(look.borderColor));
    else if (style >= ItemCode::BorderSolidLine && style <= ItemCode::BorderDashDotDot) {
        p.save();
        StrokeBand(p, line, style, look.borderColor, px);
        p.restore();
    }
    // Style 5 is an invisible line: nothing to draw.
}

void PaintPictureItem(QPainter& p, const ItemLook& look, double px)
{
    const QRectF r = look.rect;
    if (look.backStyle == ItemCode::BackOpaque)
        p.fillRect(r, Bgr(look.backColor));
    p.save();
    p.translate(r.topLeft());
    const QRectF whole(QPointF(0, 0), r.size());
    const QRectF pic = look.pictureRect.isEmpty()
        ? PictureRect(r.size(), PictureNaturalSize(look.picture), look.sizeMode, look.pictureAlignment)
        : look.pictureRect;
    const bool framed = look.borderStyle != ItemCode::BorderNone;
    const QColor frameColor(Qt::black);
    // The picture lies above the placeholder.
    if (look.placeholderVisible) {
        const QRectF holder = look.placeholderRect.isEmpty() ? whole : look.placeholderRect;
        ItemLook caption;
        caption.fontSize = 8;
        p.save();
        p.setClipRect(whole, Qt::IntersectClip);
        p.setFont(ItemFont(caption));
        p.setPen(Qt::black);
        p.drawText(holder, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, look.placeholder);
        p.restore();
        if (framed)
            PixelFrame(p, holder, px, frameColor);
    }
    if (look.pictureVisible) {
        if (look.picture && !pic.isEmpty()) {
            p.save();
            p.setClipRect(whole, Qt::IntersectClip);
            if (PictureSink* sink = PictureSinkOf(p)) {
                sink->DrawPicture(p, pic, look.picture);
            } else {
                // A screen draws a copy of the size it shows, not the whole picture each time.
                const QRectF device = p.deviceTransform().mapRect(pic);
                const QImage img = look.picture->ImageFor(QSize(int(std::ceil(device.width())), int(std::ceil(device.height()))));
                p.setRenderHint(QPainter::SmoothPixmapTransform);
                if (!img.isNull())
                    p.drawImage(pic, img);
            }
            p.restore();
        }
        if (framed)
            PixelFrame(p, pic.isEmpty() ? whole : pic, px, frameColor);
    }
    if (look.showOutline)
        PixelFrame(p, whole, px, frameColor);
    p.restore();
}

void PaintItem(QPainter& p, const ItemLook& look, double px)
{
    switch (look.kind) {
    case ItemKind::Text: PaintTextItem(p, look, px); break;
    case ItemKind::Box: PaintBoxItem(p, look, px); break;
    case ItemKind::Line: PaintLineItem(p, look, px); break;
    case ItemKind::Picture: PaintPictureItem(p, look, px); break;
    }
}
