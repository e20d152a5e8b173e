#pragma once
// A paint engine that takes a picture whole instead of its pixels: the PDF writer stores each
// distinct picture once and can pass a JPEG's bytes through. The item painter hands pictures
// to such an engine; every other device gets pixels.
#include "render/Picture.h"

#include <QPaintEngine>

class QPainter;

class PictureSink {
public:
    static constexpr QPaintEngine::Type EngineType = QPaintEngine::Type(QPaintEngine::User + 17);
    virtual ~PictureSink() = default;
    // Draws picture stretched into target (the painter's coordinates), with the painter's
    // current transform and clip.
    virtual void DrawPicture(QPainter& painter, const QRectF& target, const PictureRef& picture) = 0;
};

// The painter's engine as a sink, or null.
PictureSink* PictureSinkOf(QPainter& painter);
