#include "LayerPainter.h"

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

void prepare(QPainter& painter) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
}

void drawOwn(QPainter& painter, const Layer& layer) {
    layer.drawBackground(painter);
    if (!layer.contents().isEmpty()) {
        const QSizeF size = layer.contents().size();
        painter.save();
        painter.translate(layer.bounds().topLeft());
        painter.scale(layer.bounds().width() / size.width(), layer.bounds().height() / size.height());
        layer.contents().draw(painter);
        painter.restore();
    }
}

void cut(QPainter& painter, const Layer& layer, QSize size) {
    const QTransform toDevice = painter.transform();
    QPainterPath outside;
    outside.addRect(QRectF(QPointF(), QSizeF(size)));
    outside.addPath(toDevice.map(roundedRect(layer.bounds(), layer.cornerRadius())));
    painter.resetTransform();
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(outside, Qt::black);
}

// Whether the layer's mask takes anything away from a picture of the size: in its middle there is nothing to cut.
bool cuts(const QPainter& painter, const Layer& layer, QSize size) {
    if (!layer.masksToBounds()) {
        return false;
    }
    const double radius = layer.cornerRadius();
    const QRectF wide = layer.bounds().adjusted(radius, 0.0, -radius, 0.0);
    return !painter.transform().mapRect(wide).contains(QRectF(QPointF(), QSizeF(size)));
}

void paint(QPainter& painter, const Layer& layer, QSize size, const Layer* omitted) {
    const float opacity = layer.shownOpacity();
    const QRectF bounds = layer.bounds();
    if (&layer == omitted || !(opacity > 0.0F) || (layer.masksToBounds() && bounds.isEmpty())) {
        return;
    }
    const QTransform outer = painter.transform();
    const QPointF position = layer.shownPosition();
    painter.translate(position.x() - layer.anchorPoint().x() * bounds.width() - bounds.x(),
                      position.y() - layer.anchorPoint().y() * bounds.height() - bounds.y());

    const bool several = !layer.contents().isEmpty() || !layer.sublayers().empty();
    const bool cutsOff = cuts(painter, layer, size);
    if (cutsOff || (opacity < 1.0F && several)) {
        QImage group = blank(size);
        {
            QPainter inner(&group);
            prepare(inner);
            inner.setTransform(painter.transform());
            drawOwn(inner, layer);
            for (const Layer* const sublayer : layer.sublayers()) {
                paint(inner, *sublayer, size, omitted);
            }
            if (cutsOff) {
                cut(inner, layer, size);
            }
        }
        painter.resetTransform();
        painter.setOpacity(static_cast<double>(opacity));
        painter.drawImage(0, 0, group);
        painter.setOpacity(1.0);
    } else {
        painter.setOpacity(static_cast<double>(opacity));
        drawOwn(painter, layer);
        painter.setOpacity(1.0);
        for (const Layer* const sublayer : layer.sublayers()) {
            paint(painter, *sublayer, size, omitted);
        }
    }
    painter.setTransform(outer);
}

}  // namespace

QImage paintLayers(const Layer& layer, const LayerArea& area, const Layer* omitted) {
    QImage image = blank(area.size);
    QPainter painter(&image);
    prepare(painter);
    painter.translate(-area.origin);
    painter.scale(area.ratio, area.ratio);
    paint(painter, layer, area.size, omitted);
    return image;
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

void drawPattern(QPainter& painter, const QImage& cell, const QRectF& rect) {
    const QTransform toDevice = painter.transform();
    const QRectF target = toDevice.mapRect(rect);
    QBrush brush(cell);
    brush.setTransform(QTransform::fromTranslate(std::round(target.x()), std::round(target.y())));
    painter.resetTransform();
    painter.fillRect(target, brush);
    painter.setTransform(toDevice);
}

}  // namespace kelvo
