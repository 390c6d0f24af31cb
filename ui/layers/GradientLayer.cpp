#include "GradientLayer.h"

#include <QLinearGradient>
#include <QPainter>
#include <utility>

namespace kelvo {

void GradientLayer::setColors(std::vector<QColor> colors) {
    set(colors_, std::move(colors));
}

void GradientLayer::drawBackground(QPainter& painter) const {
    if (colors_.empty()) {
        return;
    }
    QLinearGradient gradient(bounds().topLeft(), bounds().bottomLeft());
    const double steps = colors_.size() > 1 ? static_cast<double>(colors_.size() - 1) : 1.0;
    for (std::size_t i = 0; i < colors_.size(); ++i) {
        gradient.setColorAt(static_cast<double>(i) / steps, colors_[i]);
    }
    painter.setBrush(gradient);
    fillBounds(painter);
}

}  // namespace kelvo
