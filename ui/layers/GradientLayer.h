#pragma once

#include "Layer.h"

namespace kelvo {

/// A layer whose background is a vertical gradient.
class GradientLayer : public Layer {
public:
    using Layer::Layer;

    /// From top to bottom at even distances; one colour is a plain background, none no background.
    const std::vector<QColor>& colors() const { return colors_; }
    void setColors(std::vector<QColor> colors);

    void drawBackground(QPainter& painter) const override;

private:
    std::vector<QColor> colors_;
};

}  // namespace kelvo
