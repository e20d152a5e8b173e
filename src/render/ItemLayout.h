#pragma once
// The arithmetic of each item kind's parts, in twips. "px" is one device pixel in twips
// (1440 / dpi): the screen's on the design page, the printer's or the PDF's in output.
// Nothing here touches widgets, so the controls and the report engine share it.
#include "render/ItemLook.h"

#include <QFont>
#include <QRectF>
#include <QSizeF>
#include <QString>

struct FormatError;

namespace ItemLayout {

constexpr double kLineSlack = 30;            // a line's control is this much thicker than the line
constexpr double kHitBand = 30;              // a transparent box is hit only this close to its edge
constexpr double kShadowMargin = 12;         // frame between a shadowed label and its border
constexpr double kPictureTwipsPerPixel = 15; // natural size of a picture: its pixels at 96 dpi
constexpr int kHorizontal = 1, kVertical = 2;

// --- lines and box edges
// w points (0 counts as 1) as twips, rounded down to whole pixels, at least one pixel.
double StrokeThickness(double borderWidthPoints, double px);
// Wider than tall is horizontal; a square counts as vertical.
int LineOrientation(QSizeF size);
// The control's size once the line has laid itself out: thickness + kLineSlack across it.
QSizeF LineControlSize(QSizeF size, double thickness);
// The line itself within the control: along the top or down the left side.
QRectF LineRect(QSizeF size, double thickness);
// A line thicker than one pixel always draws solid.
int LineDrawStyle(int style, double thickness, double px);

struct BoxEdges {
    QRectF top, bottom, left, right;
};
BoxEdges BoxEdgeRects(QSizeF size, double thicknessX, double thicknessY);
// A transparent box answers only within kHitBand of its outer edge, so clicks inside it
// reach the items beneath.
bool BoxHit(QSizeF size, QPointF point, bool transparent);

// --- text items
// borderTwips 0 is one pixel; otherwise cut to half the smaller side, rounded to whole
// pixels, at least one pixel.
double TextBorderThickness(double borderTwips, QSizeF size, double px);

struct TextParts {
    double bw = 0;     // border thickness in use (0 for a flat item without border)
    double margin = 0; // shadow layout: frame between label and border
    QRectF label;      // where the text goes
    QRectF frame;      // outer edge of the frame ring (the label is its hole)
    QRectF vShadow, hShadow;
    bool shadow = false;
    bool ring = false; // whether the frame ring is drawn
};
TextParts TextLayout(QSizeF size, double borderTwips, int borderStyle, int specialEffect, double px);

// The text a field shows for a value: with a format and a non-zero class the value is
// formatted; class 1 drops a trailing ".", class 4 is cut to the format's length.
// Throws FormatError when the value cannot be formatted.
QString ShownText(const QString& value, const QString& dataFormat, int formatClass);
// The message shown when ShownText failed.
QString FormatFailureMessage(const FormatError& error, const QString& value, const QString& dataFormat);

// The font of a text item, sized in twips (a point is 20 twips) for a twip-unit painter.
QFont ItemFont(const ItemLook& look);
int TextFlags(const ItemLook& look);
// Height the text needs at that width, as an auto-sizing, word-wrapping label measures it.
double TextHeight(const ItemLook& look, double width);
// How much of a label of that size the text may show: the lines that fit whole, laid out as
// drawText lays them out. At least the first line (cut by the label) when not even one fits.
double WholeLinesHeight(const ItemLook& look, QSizeF label);

// --- pictures
// "~Graphics~" at the very start stands for the graphics folder (every occurrence is then
// replaced); anywhere else the name is left alone.
QString ExpandGraphicsToken(const QString& fileName, const QString& graphicsFolder);
// Caption of a bound picture without a photo: two blanks, "Picture ", the photo number.
QString PlaceholderCaption(int photoSeq);
QSizeF PictureNaturalSize(const QImage& picture);
QSizeF PictureNaturalSize(const PictureRef& picture);
// Where the picture goes inside an item of that size. An unknown size mode keeps the size
// of `previous`, an unknown alignment its position.
QRectF PictureRect(QSizeF item, QSizeF picture, int sizeMode, int alignment, const QRectF& previous = {});

} // namespace ItemLayout
