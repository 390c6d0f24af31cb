#include "RepaintingBar.h"

#include <QLinearGradient>
#include <QPainterPath>
#include <algorithm>

namespace kelvo {
namespace {

constexpr double kTileWidth = 30.0;
constexpr double kTileHeight = 20.0;

QPainterPath pill(const QRectF& rect) {
    QPainterPath path;
    const double radius = std::min(rect.width(), rect.height()) / 2.0;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

void fillWithGradient(QPainter& painter, const QRectF& rect, float top, float bottom) {
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0.0, QColor::fromRgbF(top, top, top));
    gradient.setColorAt(1.0, QColor::fromRgbF(bottom, bottom, bottom));
    painter.fillRect(rect, gradient);
}

void strokeRing(QPainter& painter, const QRectF& rect, const QColor& color) {
    painter.setPen(QPen(color, 1.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(pill(rect.adjusted(0.5, 0.5, -0.5, -0.5)));
    painter.setPen(Qt::NoPen);
}

// Between two lines through the tiles' corners is a band of half a tile's width, rising to the right.
void paintStripes(QPainter& painter, QSizeF size, double stripesAt) {
    painter.setOpacity(0.04);
    painter.fillRect(QRectF({0.0, 0.0}, size), Qt::white);
    painter.setBrush(Qt::black);
    const double slant = size.height() * kTileWidth / kTileHeight;
    const double first = stripesAt - kTileWidth;
    for (double x = first; x < size.width() + slant; x += kTileWidth) {
        painter.drawPolygon(QPolygonF({{x, 0.0},
                                       {x + kTileWidth / 2.0, 0.0},
                                       {x + kTileWidth / 2.0 - slant, size.height()},
                                       {x - slant, size.height()}}));
    }
    painter.setOpacity(1.0);
}

}  // namespace

void paintWholeBar(QPainter& painter, QSizeF size, double value, double stripesAt) {
    const QRectF bounds({0.0, 0.0}, size);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setClipPath(pill(bounds));
    fillWithGradient(painter, bounds, 0.55F, 0.4F);
    strokeRing(painter, bounds, QColor::fromRgbF(0.291F, 0.291F, 0.291F));

    QRectF fill = bounds.adjusted(1.0, 1.0, -1.0, -1.0);
    fill.setWidth(fill.width() * value);
    painter.setClipPath(pill(fill), Qt::IntersectClip);
    fillWithGradient(painter, bounds, 0.75F, 1.0F);
    paintStripes(painter, size, stripesAt);
    strokeRing(painter, fill.adjusted(-1.0, 0.0, 1.0, 2.0), QColor::fromRgbF(1.0F, 1.0F, 1.0F, 0.6F));
    painter.restore();
}

}  // namespace kelvo
