#include "LayerPainter.h"

#include <QLinearGradient>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "Layer.h"

namespace kelvo {
namespace {

QImage blank(QSize size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QBrush gradientBrush(const Layer::Gradient& colors, const QRectF& bounds) {
    QLinearGradient gradient(bounds.topLeft(), bounds.bottomLeft());
    const double steps = colors.size() > 1 ? static_cast<double>(colors.size() - 1) : 1.0;
    for (std::size_t i = 0; i < colors.size(); ++i) {
        gradient.setColorAt(static_cast<double>(i) / steps, colors[i]);
    }
    return gradient;
}

/// A length in whole pixels, rounded up and limited.
int pixels(double length) {
    constexpr double kRoundingError = 1e-6;
    constexpr double kMost = 16384.0;
    return static_cast<int>(std::min(std::ceil(length - kRoundingError), kMost));
}

/// The tile covers whole pixels, so that there is no gap between its repetitions.
QImage paintTile(const LayerImage& tile, double ratio) {
    const QSizeF size = tile.size();
    QImage image = blank({pixels(size.width() * ratio), pixels(size.height() * ratio)});
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.scale(image.width() / size.width(), image.height() / size.height());
    tile.draw(painter);
    return image;
}

bool isBlank(const Layer& layer) {
    const auto* const colors = std::get_if<Layer::Gradient>(&layer.background());
    const bool hasBackground = colors ? !colors->empty() : !std::get<LayerImage>(layer.background()).isEmpty();
    return !hasBackground && layer.contents().isEmpty();
}

/// `coverage` / 255 of `above` plus the rest of `below`.
QRgb mixed(QRgb above, QRgb below, int coverage) {
    const auto channel = [coverage](int a, int b) { return (a * coverage + b * (255 - coverage) + 127) / 255; };
    return qRgba(channel(qRed(above), qRed(below)), channel(qGreen(above), qGreen(below)),
                 channel(qBlue(above), qBlue(below)), channel(qAlpha(above), qAlpha(below)));
}

/// Blends `before` back into `image` where the mask or an opacity below 1 requires it. The mask is a rounded rectangle,
/// so all pixels between two fully covered ones of a row are fully covered too.
void mixBack(QImage& image, const QImage& before, const QRect& inside, const QImage& mask, float opacity) {
    const int fullCoverage = static_cast<int>(std::lround(opacity * 255.0F));
    for (int y = 0; y < inside.height(); ++y) {
        QRgb* const pixels = reinterpret_cast<QRgb*>(image.scanLine(inside.y() + y)) + inside.x();
        const QRgb* const old = reinterpret_cast<const QRgb*>(before.constScanLine(y));
        const uchar* const alpha = mask.constScanLine(y);
        const auto mixes = [&](int x) {
            const int coverage = alpha[x] * fullCoverage / 255;
            pixels[x] = coverage > 0 ? mixed(pixels[x], old[x], coverage) : old[x];
            return coverage < 255;
        };
        int left = 0;
        int right = inside.width() - 1;
        while (left <= right && mixes(left)) {
            ++left;
        }
        while (right > left && mixes(right)) {
            --right;
        }
    }
}

/// `superOrigin` is the superlayer's origin in pixels. Only pixels within `area` change.
void compose(QImage& image, const Layer& layer, QPointF superOrigin, double ratio, const QRect& area) {
    const float opacity = std::min(layer.shownOpacity(), 1.0F);
    const QRectF frame = layer.shownFrame();
    const QRectF shape(superOrigin + frame.topLeft() * ratio, frame.size() * ratio);
    const QRect inside = layer.masksToBounds() ? (shape & QRectF(area)).toAlignedRect() : area;
    if (!(opacity > 0.0F) || inside.isEmpty()) {
        return;
    }
    const bool isApart = layer.masksToBounds() || (opacity < 1.0F && !layer.sublayers().empty());
    const QImage before = isApart ? image.copy(inside) : QImage();
    if (const QImage& picture = layer.picture(ratio); !picture.isNull()) {
        QPainter painter(&image);
        painter.setClipRect(inside);
        painter.setOpacity(isApart ? 1.0 : static_cast<double>(opacity));
        painter.drawImage(shape.topLeft().toPoint(), picture);
    }
    for (const Layer* const sublayer : layer.sublayers()) {
        compose(image, *sublayer, shape.topLeft(), ratio, inside);
    }
    if (isApart) {
        mixBack(image, before, inside, layer.mask(inside.size(), shape.translated(-inside.topLeft()), ratio), opacity);
    }
}

}  // namespace

QImage composeLayers(const Layer& layer, QSize size, double ratio) {
    QImage image = blank(size);
    compose(image, layer, {}, ratio, image.rect());
    return image;
}

QImage paintMask(const Layer& layer, QSize size, const QRectF& shape, double ratio) {
    QImage mask(size, QImage::Format_Alpha8);
    if (!layer.masksToBounds()) {
        mask.fill(255);
        return mask;
    }
    mask.fill(0);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(roundedRect(shape, layer.cornerRadius() * ratio), Qt::black);
    return mask;
}

QImage paintPicture(const Layer& layer, double ratio) {
    const QRectF bounds = layer.bounds();
    if (isBlank(layer) || bounds.isEmpty()) {
        return {};
    }
    QImage picture = blank({pixels(bounds.width() * ratio), pixels(bounds.height() * ratio)});
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    if (const auto* const tile = std::get_if<LayerImage>(&layer.background()); tile && !tile->isEmpty()) {
        painter.fillRect(picture.rect(), QBrush(paintTile(*tile, ratio)));
    }
    painter.scale(ratio, ratio);
    if (const auto* const colors = std::get_if<Layer::Gradient>(&layer.background()); colors && !colors->empty()) {
        painter.fillPath(roundedRect(bounds, layer.cornerRadius()), gradientBrush(*colors, bounds));
    }
    if (const LayerImage& contents = layer.contents(); !contents.isEmpty()) {
        painter.scale(bounds.width() / contents.size().width(), bounds.height() / contents.size().height());
        contents.draw(painter);
    }
    return picture;
}

QPainterPath withFineCurves(const QPainterPath& path) {
    constexpr double kScale = 16.0;
    QPainterPath lines;
    for (const QPolygonF& polygon : path.toSubpathPolygons(QTransform::fromScale(kScale, kScale))) {
        lines.addPolygon(polygon);
    }
    return QTransform::fromScale(1.0 / kScale, 1.0 / kScale).map(lines);
}

QPainterPath roundedRect(const QRectF& rect, double radius) {
    QPainterPath path;
    const double used = std::min({radius, rect.width() / 2.0, rect.height() / 2.0});
    if (used > 0.0) {
        path.addRoundedRect(rect, used, used);
        return withFineCurves(path);
    }
    path.addRect(rect);
    return path;
}

}  // namespace kelvo
