#pragma once

#include <QImage>
#include <QPainterPath>
#include <QPointF>
#include <QSize>

class QPainter;

namespace kelvo {

class Layer;

/// A part of the picture in device pixels: pixel (0, 0) of the result lies at `origin`, which may lie between pixels.
struct LayerArea {
    QPointF origin;
    QSize size;
    /// Device pixels per point.
    double ratio;
};

/// Paints the layer and its sublayers as they are shown now, from scratch. This is the slow and exact way: all edges
/// are antialiased, a layer that clips or fades its sublayers is painted apart and cut as a whole. `omitted` is left
/// out, with its sublayers. Returns a premultiplied image, transparent where there is nothing.
QImage paintLayers(const Layer& layer, const LayerArea& area, const Layer* omitted = nullptr);

/// The path with short lines for its curves, which the raster engine draws up to an eighth of a pixel too flat.
QPainterPath withFineCurves(const QPainterPath& path);

/// The rectangle with round corners of at most half the shorter side.
QPainterPath roundedRect(const QRectF& rect, double radius);

/// Repeats the pattern cell over the rectangle, from its upper left corner, which is moved to a whole device pixel.
void drawPattern(QPainter& painter, const QImage& cell, const QRectF& rect);

}  // namespace kelvo
