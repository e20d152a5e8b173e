#pragma once
// Everything that decides how one report item looks, as plain data. The design page, the
// preview and the PDF all fill one of these and hand it to PaintItem, so they draw alike.
// Units: twips for positions and sizes, points for font sizes and border widths,
// colours as 32-bit 0x00BBGGRR.
#include "render/Picture.h"

#include <QRectF>
#include <QString>

enum class ItemKind : quint8 { Text, Box, Line, Picture };

// Stored property codes, as the report file and the property sheet use them.
namespace ItemCode {
// Text alignment.
constexpr int AlignLeft = 0, AlignRight = 1, AlignCenter = 2;
// Picture alignment.
constexpr int PicTopLeft = 0, PicTopRight = 1, PicCenter = 2, PicBottomLeft = 3, PicBottomRight = 4;
// Picture size mode.
constexpr int SizeZoom = 0, SizeClip = 1, SizeStretch = 2;
// Special effect.
constexpr int EffectFlat = 0, EffectShadow = 2;
// Border / line style.
constexpr int BorderSolidLine = 0, BorderDash = 1, BorderDot = 2, BorderDashDot = 3, BorderDashDotDot = 4,
              BorderNone = 5, BorderSolid = 6;
// Back style.
constexpr int BackTransparent = 0, BackOpaque = 1;
}

struct ItemLook {
    ItemKind kind = ItemKind::Text;
    QRectF rect; // the item's outer rectangle in the painter's (twip) coordinates

    // Border, edges, line.
    double borderWidth = 1;    // points; 0 counts as one pixel
    int borderStyle = ItemCode::BorderNone;
    quint32 borderColor = 0;
    int lineStyle = ItemCode::BorderSolid; // a line's drawing style (may differ from its stored style)

    // Background.
    int backStyle = ItemCode::BackTransparent;
    quint32 backColor = 0x00FFFFFF;

    // Text.
    QString text;
    QString fontName = QStringLiteral("Arial");
    double fontSize = 10; // points
    bool bold = false, italic = false, underline = false, strikeout = false;
    int alignment = ItemCode::AlignLeft;
    quint32 foreColor = 0;
    bool wordWrap = true;
    int specialEffect = ItemCode::EffectFlat;

    // Picture.
    PictureRef picture;          // null: no picture
    int sizeMode = ItemCode::SizeZoom;
    int pictureAlignment = ItemCode::PicTopLeft;
    QRectF pictureRect;          // relative to rect; when empty it is computed from sizeMode/alignment
    bool pictureVisible = true;
    QString placeholder;         // "  Picture n" caption of a bound picture without a photo
    QRectF placeholderRect;      // relative to rect; empty = the whole item
    bool placeholderVisible = false;

    // Design-page only.
    bool showOutline = false;
};
