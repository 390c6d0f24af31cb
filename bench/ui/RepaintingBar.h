#pragma once

#include <QPainter>
#include <QSizeF>

namespace kelvo {

/// Paints the progress bar from its shapes, like a widget that keeps nothing between frames: trough and border, then
/// gradient, stripes, highlight and tint within the fill's clip path. `stripesAt` is the offset of the stripes in
/// points.
void paintWholeBar(QPainter& painter, QSizeF size, double value, double stripesAt);

}  // namespace kelvo
