#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "SBProgressBar.h"

namespace kelvo {
namespace {

void drawRing(QPainter& painter, QSizeF size, const RingLook& look, bool innerShadow) {
    const double line = look.borderWidth;
    if (!(line > 0.0)) {
        return;
    }
    // Half of the whole height, though the line lies further in; a ring narrower than high is round like its layer's
    // clip.
    const double radius = std::min(size.height(), size.width() - line) / 2.0;
    QPainterPath middle;
    middle.addRoundedRect({line / 2.0, line / 2.0, size.width() - line, size.height() - line}, radius, radius);
    // As a filled outline: the raster engine draws thin lines by a quicker and coarser way.
    QPainterPathStroker stroker;
    stroker.setWidth(line);
    stroker.setCurveThreshold(0.02);
    const QPainterPath ring = stroker.createStroke(middle);
    if (innerShadow) {
        constexpr float kShadowAlpha = 0.6F;
        const QColor shadow = QColor::fromRgbF(1.0F, 1.0F, 1.0F, kShadowAlpha * look.borderColor.alphaF());
        painter.fillPath(ring.translated(0.0, look.shadowWidth), shadow);
    }
    painter.fillPath(ring, look.borderColor);
}

bool isEmpty(QSizeF size) {
    return !(size.width() > 0.0 && size.height() > 0.0);
}

}  // namespace

LayerImage SBProgressBar::stripesImageWithSize(QSizeF size) {
    return {size, [size](QPainter& painter) {
                const double w = size.width();
                const double h = size.height();
                painter.fillRect(QRectF(0.0, 0.0, w, h), Qt::white);
                painter.setBrush(Qt::black);
                painter.drawPolygon(QPolygonF({{w, 0.0}, {w, h / 2.0}, {w / 2.0, h}, {0.0, h}}));
                painter.drawPolygon(QPolygonF({{0.0, 0.0}, {w / 2.0, 0.0}, {0.0, h / 2.0}}));
            }};
}

std::optional<LayerImage> SBProgressBar::borderImageForSize_withInnerShadow(QSizeF size, bool innerShadow) const {
    if (isEmpty(size)) {
        return std::nullopt;
    }
    return LayerImage(size,
                      [this, size, innerShadow](QPainter& painter) { drawRing(painter, size, ring_, innerShadow); });
}

std::optional<LayerImage> SBProgressBar::frozenBorderImage(QSizeF size, bool innerShadow) const {
    if (isEmpty(size)) {
        return std::nullopt;
    }
    return LayerImage(
        size, [look = ring_, size, innerShadow](QPainter& painter) { drawRing(painter, size, look, innerShadow); });
}

}  // namespace kelvo
