#pragma once

#include <QPainter>
#include <QSizeF>

namespace kelvo {

/// Paints the progress bar's picture straight from its shapes, as a widget that keeps nothing between frames would:
/// trough, border, and within the fill's clip path gradient, stripes, highlight and tint. `stripesAt` is how far, in
/// points, the stripes have moved.
void paintWholeBar(QPainter& painter, QSizeF size, double value, double stripesAt);

}  // namespace kelvo
