#pragma once
// Painting report items onto any QPainter whose coordinates are twips: the design page,
// the preview, the PDF and the printer all come through here. pixelTwips is one device
// pixel in twips (1440 / dpi) and decides the whole-pixel rounding of thin parts.
#include "render/ItemLook.h"

class QPainter;

void PaintItem(QPainter& painter, const ItemLook& look, double pixelTwips);

void PaintTextItem(QPainter& painter, const ItemLook& look, double pixelTwips);
void PaintBoxItem(QPainter& painter, const ItemLook& look, double pixelTwips);
void PaintLineItem(QPainter& painter, const ItemLook& look, double pixelTwips);
void PaintPictureItem(QPainter& painter, const ItemLook& look, double pixelTwips);

// A painter transform that maps twips to the device's pixels at that resolution.
double PixelTwipsForDpi(double dpi);
