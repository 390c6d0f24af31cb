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

    /// Lets time pass for the layers and for a movement of the animator.
    void step(double duration) {
        seconds += duration;
        bar.advance();
        auto* const movement = bar.findChild<QVariantAnimation*>();
        if (movement->state() == QAbstractAnimation::Running) {
            movement->setCurrentTime(movement->currentTime() + static_cast<int>(std::lround(duration * 1000.0)));
        }
    }

    /// The bar as it is now on a transparent background, at `ratio` pixels per point.
    QImage shot(double ratio = 1.0) {
        QImage image(static_cast<int>(std::ceil(bar.width() * ratio)),
                     static_cast<int>(std::ceil(bar.height() * ratio)), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        image.setDevicePixelRatio(ratio);
        QPainter painter(&image);
        bar.paintFrame(painter);
        return image;
    }

    double seconds = 0.0;
    SBProgressBar bar{[this] { return seconds; }};
};

}  // namespace kelvo
