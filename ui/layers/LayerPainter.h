#pragma once

#include <QColor>
#include <QImage>
#include <QPainterPath>
#include <QPointF>
#include <QSize>

#include "LayerImage.h"

class QPainter;

namespace kelvo {

class Layer;

/// A part of the picture in device pixels: pixel (0, 0) of the result lies at `origin`, which may lie between pixels.
struct LayerArea {
    QPointF origin;
    QSize size;
    /// Device pixels per point.
    double ratio = 1.0;
};

/// What is painted otherwise than the layers say.
struct LayerVariation {
    /// Left out, with its sublayers.
    const Layer* omitted = nullptr;
    /// Shown with the plain colour instead of its own background.
    const Layer* recolored = nullptr;
    QColor color{};
};

/// Paints the layer and its sublayers as they are shown now, from scratch. This is the slow and exact way: all edges
/// are antialiased, a layer that clips or fades its sublayers is painted apart and cut as a whole. Returns a
/// premultiplied image, transparent where there is nothing.
QImage paintLayers(const Layer& layer, const LayerArea& area, const LayerVariation& variation = {});

/// The path with short lines for its curves, which the raster engine draws up to an eighth of a pixel too flat.
QPainterPath withFineCurves(const QPainterPath& path);

/// The rectangle with round corners of at most half the shorter side.
QPainterPath roundedRect(const QRectF& rect, double radius);

/// Repeats the image over the rectangle, from its upper left corner, which is moved to a whole device pixel.
void drawPattern(QPainter& painter, const LayerImage& tile, const QRectF& rect);

}  // namespace kelvo
