#include "render/ItemLayout.h"

#include "render/Format.h"

#include <QFontMetricsF>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

namespace ItemLayout {

double StrokeThickness(double borderWidthPoints, double px)
{
    const double w = borderWidthPoints == 0 ? 1 : std::abs(borderWidthPoints);
    // A small epsilon keeps 3 pt at 4.8 twips per pixel (exactly 12.5 px) from flooring to 12.
    const double pixels = std::floor(w * 20 / px + 1e-9);
    return std::max(1.0, pixels) * px;
}

int LineOrientation(QSizeF size)
{
    return size.width() > size.height() ? kHorizontal : kVertical;
}

QSizeF LineControlSize(QSizeF size, double thickness)
{
    if (LineOrientation(size) == kHorizontal)
        return {size.width(), thickness + kLineSlack};
    return {thickness + kLineSlack, size.height()};
}

QRectF LineRect(QSizeF size, double thickness)
{
    if (LineOrientation(size) == kHorizontal)
        return {0, 0, size.width(), thickness};
    return {0, 0, thickness, size.height()};
}

int LineDrawStyle(int style, double thickness, double px)
{
    return thickness > px + 1e-9 ? ItemCode::BorderSolid : style;
}

BoxEdges BoxEdgeRects(QSizeF size, double tX, double tY)
{
    const double w = size.width(), h = size.height();
    return {QRectF(0, 0, w, tY), QRectF(0, h - tY, w, tY), QRectF(0, 0, tX, h), QRectF(w - tX, 0, tX, h)};
}

bool BoxHit(QSizeF size, QPointF p, bool transparent)
{
    if (p.x() < 0 || p.y() < 0 || p.x() > size.width() || p.y() > size.height())
        return false;
    if (!transparent)
        return true;
    return p.x() < kHitBand || p.x() > size.width() - kHitBand || p.y() < kHitBand
        || p.y() > size.height() - kHitBand;
}

double TextBorderThickness(double borderTwips, QSizeF size, double px)
{
    if (borderTwips == 0)
        return px;
    const double limited = std::min(std::abs(borderTwips), std::min(size.width(), size.height()) / 2);
    return std::max(1.0, std::round(limited / px)) * px;
}

TextParts TextLayout(QSizeF size, double borderTwips, int borderStyle, int specialEffect, double px)
{
    const double W = size.width(), H = size.height();
    TextParts t;
    t.bw = TextBorderThickness(borderTwips, size, px);
    if (specialEffect == ItemCode::EffectShadow) {
        const double bw = t.bw;
        const double s = 1.1 * bw;
        t.shadow = true;
        t.vShadow = QRectF(W - bw, s, bw, H - s - 1);
        t.hShadow = QRectF(s, H - bw, W - s - 1, bw);
        t.margin = std::round(kShadowMargin / px) * px;
        const double m = t.margin;
        t.label = QRectF(m, m, W - m - bw, H - m - bw);
        t.frame = QRectF(0, 0, t.label.width() + 2 * m, t.label.height() + 2 * m);
        t.ring = m > 0;
        return t;
    }
    if (borderStyle == ItemCode::BorderNone)
        t.bw = 0;
    t.label = QRectF(t.bw, t.bw, W - 2 * t.bw, H - 2 * t.bw);
    t.frame = QRectF(0, 0, W, H);
    t.ring = borderStyle != ItemCode::BorderNone;
    return t;
}

QString ShownText(const QString& value, const QString& dataFormat, int formatClass)
{
    if (dataFormat.isEmpty() || formatClass == 0)
        return value;
    QString shown = Format(QVariant(value), dataFormat);
    if (formatClass == 1) {
        if (shown.endsWith(QLatin1Char('.')))
            shown.chop(1);
    } else if (formatClass == 4) {
        shown.truncate(dataFormat.size());
    }
    return shown;
}

QString FormatFailureMessage(const FormatError& error, const QString& value, const QString& dataFormat)
{
    return QStringLiteral("Error: ") + QString::number(error.number) + QStringLiteral(" - ") + error.description
        + QStringLiteral("\nValue: ") + value + QStringLiteral("\nFormat: ") + dataFormat;
}

QFont ItemFont(const ItemLook& look)
{
    QFont f(look.fontName.isEmpty() ? QStringLiteral("Arial") : look.fontName);
    f.setPixelSize(std::max(1, int(std::lround(look.fontSize * 20))));
    f.setBold(look.bold);
    f.setItalic(look.italic);
    f.setUnderline(look.underline);
    f.setStrikeOut(look.strikeout);
    return f;
}

int TextFlags(const ItemLook& look)
{
    int flags = Qt::AlignTop;
    switch (look.alignment) {
    case ItemCode::AlignRight: flags |= Qt::AlignRight; break;
    case ItemCode::AlignCenter: flags |= Qt::AlignHCenter; break;
    default: flags |= Qt::AlignLeft; break;
    }
    if (look.wordWrap)
        flags |= Qt::TextWordWrap;
    return flags;
}

double TextHeight(const ItemLook& look, double width)
{
    const QFontMetricsF fm(ItemFont(look));
    const QRectF r = fm.boundingRect(QRectF(0, 0, std::max(width, 1.0), 1e7), TextFlags(look), look.text);
    // An auto-sizing label is never shorter than one line, even when empty.
    return std::max(r.height(), fm.height());
}

double WholeLinesHeight(const ItemLook& look, QSizeF label)
{
    const QFont font = ItemFont(look);
    // drawText's own layout: lines one below the other with the font's leading between them,
    // "\n" breaking a line.
    QString text = look.text;
    text.replace(QLatin1Char('\n'), QChar::LineSeparator);
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(look.wordWrap ? QTextOption::WordWrap : QTextOption::ManualWrap);
    layout.setTextOption(option);
    const double leading = QFontMetricsF(font).leading();
    double height = -leading, wholeBottom = 0;
    int whole = 0;
    bool cut = false;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(label.width(), 1.0));
        const double top = std::ceil(height + leading); // drawText puts each line on a whole unit
        const double bottom = top + line.height();
        if (bottom > label.height() + 1e-6) {
            cut = true;
            break;
        }
        wholeBottom = height = bottom;
        ++whole;
    }
    layout.endLayout();
    // Every line fits: the whole label. Not even one: the first line, cut by the label.
    if (!cut || whole == 0)
        return label.height();
    return wholeBottom;
}

QString ExpandGraphicsToken(const QString& fileName, const QString& graphicsFolder)
{
    static const QString token = QStringLiteral("~Graphics~");
    if (!fileName.startsWith(token)) // case matters: "~graphics~" is an ordinary name
        return fileName;
    QString expanded = fileName;
    expanded.replace(token, graphicsFolder);
    return expanded;
}

QString PlaceholderCaption(int photoSeq)
{
    return QStringLiteral("  Picture ") + QString::number(photoSeq);
}

QSizeF PictureNaturalSize(const QImage& picture)
{
    if (picture.isNull())
        return {};
    return {picture.width() * kPictureTwipsPerPixel, picture.height() * kPictureTwipsPerPixel};
}

QSizeF PictureNaturalSize(const PictureRef& picture)
{
    if (!picture)
        return {};
    const QSize s = picture->PixelSize();
    return {s.width() * kPictureTwipsPerPixel, s.height() * kPictureTwipsPerPixel};
}

QRectF PictureRect(QSizeF item, QSizeF picture, int sizeMode, int alignment, const QRectF& previous)
{
    const double W = item.width(), H = item.height();
    const double pw = picture.width(), ph = picture.height();
    QSizeF size = previous.size();
    switch (sizeMode) {
    case ItemCode::SizeZoom:
        if (pw > 0 && ph > 0) {
            const double w = H / ph * pw;
            size = w <= W ? QSizeF(w, H) : QSizeF(W, W / pw * ph);
        }
        break;
    case ItemCode::SizeClip: size = picture; break;
    case ItemCode::SizeStretch: return {0, 0, W, H};
    default: break;
    }
    const double w = size.width(), h = size.height();
    QPointF at = previous.topLeft();
    switch (alignment) {
    case ItemCode::PicTopLeft: at = {0, 0}; break;
    case ItemCode::PicTopRight: at = {W - w, 0}; break;
    case ItemCode::PicCenter: at = {(W - w) / 2, (H - h) / 2}; break;
    case ItemCode::PicBottomLeft: at = {0, H - h}; break;
    case ItemCode::PicBottomRight: at = {W - w, H - h}; break;
    default: break;
    }
    return {at, size};
}

} // namespace ItemLayout
