#pragma once

#include <QImage>

#include "LayerImage.h"

namespace kelvo {

/// The smallest run of whole tiles that fills whole device pixels at `ratio` pixels per point, up to eight tiles each
/// way: repeating it repeats the image without a gap, even where one tile ends within a pixel. Premultiplied; null for
/// an empty image.
QImage patternCell(const LayerImage& tile, double ratio);

}  // namespace kelvo
