#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "LayerPainter.h"
#include "SBProgressBar.h"

namespace kelvo {
namespace {

QColor shadowColor(const RingLook& look) {
    constexpr float kShadowAlpha = 0.6F;
    return QColor::fromRgbF(1.0F, 1.0F, 1.0F, kShadowAlpha * look.borderColor.alphaF());
}

QPainterPath ringPath(QSizeF size, double line) {
    QPainterPath ring;
    if (!(line > 0.0)) {
        return ring;
    }
    // The radius at the line's middle is half of the full height, although the line is inset. A ring that is narrower
    // than high is round at the top and bottom, like the clip of its layer.
    const double radius = std::min(size.height(), size.width() - line) / 2.0;
    for (const double in : {0.0, line}) {
        const double edgeRadius = radius + line / 2.0 - in;
        ring.addRoundedRect(QRectF(QPointF(), size).adjusted(in, in, -in, -in), edgeRadius, edgeRadius);
    }
    return withFineCurves(ring);
}

// The part of the shadow inside the ring: between the fill's upper edge and the same edge, shifted down.
void drawInnerShadow(QPainter& painter, QSizeF size, const RingLook& look) {
    const double line = look.borderWidth;
    const QRectF inside = QRectF(QPointF(), size).adjusted(line, line, -line, -line);
    const double diameter = std::min(inside.width(), inside.height());
    const QRectF left(inside.topLeft(), QSizeF(diameter, diameter));
    const QRectF right = left.translated(inside.width() - diameter, 0.0);
    const QPointF down(0.0, look.shadowWidth);
    QPainterPath shadow;
    shadow.arcMoveTo(left, 180.0);
    shadow.arcTo(left, 180.0, -90.0);
    shadow.arcTo(right, 90.0, -90.0);
    shadow.arcTo(right.translated(down), 0.0, 90.0);
    shadow.arcTo(left.translated(down), 90.0, 90.0);
    painter.fillPath(withFineCurves(shadow), shadowColor(look));
}

}  // namespace

LayerImage SBProgressBar::stripesImageWithSize(QSizeF size) {
    return {size, [size](QPainter& painter) {
                const double w = size.width();
                const double h = size.height();
                painter.fillRect(QRectF(0.0, 0.0, w, h), Qt::white);
                painter.setPen(Qt::NoPen);
                painter.setBrush(Qt::black);
                painter.drawPolygon(QPolygonF({{w, 0.0}, {w, h / 2.0}, {w / 2.0, h}, {0.0, h}}));
                painter.drawPolygon(QPolygonF({{0.0, 0.0}, {w / 2.0, 0.0}, {0.0, h / 2.0}}));
            }};
}

LayerImage SBProgressBar::borderImageForSize_withInnerShadow(QSizeF size, bool innerShadow) const {
    return {size, [this, size, innerShadow](QPainter& painter) {
                const QPainterPath ring = ringPath(size, ring_.borderWidth);
                if (innerShadow) {
                    painter.fillPath(ring.translated(0.0, ring_.shadowWidth), shadowColor(ring_));
                }
                painter.fillPath(ring, ring_.borderColor);
            }};
}

LayerImage SBProgressBar::borderImageOfNow(QSizeF size) const {
    return {size, [ring = ringPath(size, ring_.borderWidth), color = ring_.borderColor](QPainter& painter) {
                painter.fillPath(ring, color);
            }};
}

LayerImage SBProgressBar::innerShadowOfNow(QSizeF size) const {
    return {size, [look = ring_, size](QPainter& painter) { drawInnerShadow(painter, size, look); }};
}

}  // namespace kelvo
