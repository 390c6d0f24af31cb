#pragma once

#include <QImage>
#include <QPainterPath>
#include <QSize>

namespace kelvo {

class Layer;

/// Composes the layer and its sublayers as shown now, `ratio` pixels per point, from their kept pictures. Each picture
/// begins at a whole pixel. A layer is clipped and faded together with its sublayers, so that several layers do not
/// cover an edge pixel several times. Returns a premultiplied image.
QImage composeLayers(const Layer& layer, QSize size, double ratio);

/// Paints the layer's background and contents, without sublayers. Premultiplied; null if both are empty.
QImage paintPicture(const Layer& layer, double ratio);

/// Paints the layer's coverage of each pixel as 8-bit alpha: its rounded bounds if it masks to them, otherwise
/// everything. `shape` is the bounds in pixels.
QImage paintMask(const Layer& layer, QSize size, const QRectF& shape, double ratio);

/// The path with its curves replaced by short lines. The raster engine draws curves up to an eighth of a pixel too
/// flat.
QPainterPath withFineCurves(const QPainterPath& path);

/// A rectangle with rounded corners. The radius is limited to half the shorter side.
QPainterPath roundedRect(const QRectF& rect, double radius);

}  // namespace kelvo
