#pragma once

#include <QImage>
#include <QPainterPath>
#include <QSize>

namespace kelvo {

class Layer;

/// Composes the layer and its sublayers as they are shown now, `ratio` pixels per point, from the pictures that they
/// keep. Each picture begins at a whole pixel. A layer that clips or fades its sublayers does so as a whole: a pixel at
/// its edge is covered once, however many layers lie there. Returns a premultiplied image.
QImage composeLayers(const Layer& layer, QSize size, double ratio);

/// Paints what a layer keeps: its background and contents, without sublayers. Premultiplied; null if there is nothing.
QImage paintPicture(const Layer& layer, double ratio);

/// Paints how much of each pixel the layer shows, as 8-bit alpha: all of it or, if it masks to its bounds, what lies
/// within them. `shape` is the bounds in pixels.
QImage paintMask(const Layer& layer, QSize size, const QRectF& shape, double ratio);

/// The path with short lines for its curves, which the raster engine draws up to an eighth of a pixel too flat.
QPainterPath withFineCurves(const QPainterPath& path);

/// The rectangle with round corners of at most half the shorter side.
QPainterPath roundedRect(const QRectF& rect, double radius);

}  // namespace kelvo
