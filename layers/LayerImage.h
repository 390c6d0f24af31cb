#pragma once

#include <QSizeF>
#include <functional>
#include <utility>

class QPainter;

namespace kelvo {

/// An image without pixels: a size in points and a routine that draws it at any resolution.
class LayerImage {
public:
    /// Draws within (0, 0) to (width, height) points, y downward, on an antialiasing painter.
    using Draw = std::function<void(QPainter& painter)>;

    LayerImage() = default;
    LayerImage(QSizeF size, Draw draw) : size_(size), draw_(std::move(draw)) {}

    QSizeF size() const { return size_; }
    bool isEmpty() const { return !draw_ || !(size_.width() > 0.0 && size_.height() > 0.0); }
    /// Does nothing for an empty image.
    void draw(QPainter& painter) const {
        if (!isEmpty()) {
            draw_(painter);
        }
    }

private:
    QSizeF size_{0.0, 0.0};
    Draw draw_;
};

}  // namespace kelvo
