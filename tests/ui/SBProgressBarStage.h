#pragma once

#include <QImage>
#include <QPainter>
#include <cmath>

#include "SBProgressBar.h"

namespace kelvo {

/// A bar of a given size on a clock that the test steps.
class BarStage {
public:
    BarStage(int width, int height) {
        bar.setAttribute(Qt::WA_DontShowOnScreen);
        bar.show();
        bar.resize(width, height);
    }

    void step(double duration) {
        seconds += duration;
        bar.advance();
    }

    /// The bar as it is now on a transparent ground, at `ratio` pixels per point.
    QImage shot(double ratio = 1.0) {
        QImage image(static_cast<int>(std::ceil(bar.width() * ratio)),
                     static_cast<int>(std::ceil(bar.height() * ratio)), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        image.setDevicePixelRatio(ratio);
        QPainter painter(&image);
        bar.paintFrame(painter, bar.rect());
        return image;
    }

    double seconds = 0.0;
    SBProgressBar bar{[this] { return seconds; }};
};

}  // namespace kelvo
