#include "PatternCell.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

// Whole tiles along one side, and the pixels that they fill.
struct Run {
    int tiles;
    int pixels;
};

Run wholePixelRun(double tilePixels) {
    constexpr int kMostTiles = 8;
    constexpr double kWholeEnough = 1e-6;
    int tiles = 1;
    while (tiles < kMostTiles && std::abs(tiles * tilePixels - std::round(tiles * tilePixels)) > kWholeEnough) {
        ++tiles;
    }
    return {tiles, std::max(1, static_cast<int>(std::lround(tiles * tilePixels)))};
}

}  // namespace

QImage patternCell(const LayerImage& tile, double ratio) {
    if (tile.isEmpty()) {
        return {};
    }
    const QSizeF size = tile.size();
    const Run across = wholePixelRun(size.width() * ratio);
    const Run down = wholePixelRun(size.height() * ratio);

    // Where a tile ends within a pixel, two antialiased neighbours would leave the background showing between them.
    // Tiles are therefore drawn four times as large, where they end between pixels, and then averaged.
    const int scale = across.tiles == 1 && down.tiles == 1 ? 1 : 4;
    QImage image(across.pixels * scale, down.pixels * scale, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.scale(image.width() / (across.tiles * size.width()), image.height() / (down.tiles * size.height()));
    for (int row = 0; row < down.tiles; ++row) {
        for (int column = 0; column < across.tiles; ++column) {
            painter.save();
            painter.translate(column * size.width(), row * size.height());
            painter.setClipRect(QRectF(QPointF(), size));
            tile.draw(painter);
            painter.restore();
        }
    }
    return scale == 1 ? image
                      : image.scaled(across.pixels, down.pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}  // namespace kelvo
