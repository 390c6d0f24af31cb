#include "LayerView.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QTimerEvent>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <utility>

#include "Layer.h"
#include "LayerPainter.h"

namespace kelvo {

LayerView::LayerView(LayerClock clock, QWidget* parent) : QWidget(parent), scene_(std::move(clock)) {
    scene_.setListener([this] {
        update();
        schedule();
    });
}

double LayerView::alphaValue() const {
    return layer() ? static_cast<double>(layer()->opacity()) : 1.0;
}

void LayerView::setAlphaValue(double alpha) {
    if (layer()) {
        layer()->setOpacity(static_cast<float>(alpha));
    }
}

void LayerView::advance() {
    scene_.update();
    layersAdvanced();
    if (scene_.isAnimating()) {
        update(animatedRect());
    }
    schedule();
}

int LayerView::frameIntervalAt(double refreshRate) {
    constexpr double kMostFramesPerSecond = 60.0;
    const double rate = refreshRate > 1.0 ? std::min(refreshRate, kMostFramesPerSecond) : kMostFramesPerSecond;
    return static_cast<int>(std::ceil(1000.0 / rate));
}

int LayerView::frameInterval() const {
    return scene_.isAnimating() && isOnScreen() ? frameIntervalAt(screen()->refreshRate()) : 0;
}

void LayerView::paintFrame(QPainter& painter, const QRect& part) {
    const QTransform device = painter.deviceTransform();
    const double ratio = device.m11() > 0.0 ? device.m11() : 1.0;
    // On a scaled display a widget may begin within a pixel; the picture does not, it would blur.
    const QTransform world = painter.worldTransform();
    const QPointF begin(device.dx(), device.dy());
    const QPointF shift = begin.toPoint() - begin;
    painter.setWorldTransform(
        QTransform::fromTranslate(shift.x() / ratio, shift.y() / ratio).scale(1.0 / ratio, 1.0 / ratio), true);
    drawLayers(painter, ratio, part);
    painter.setWorldTransform(world);
}

void LayerView::drawLayers(QPainter& painter, double ratio, const QRect&) {
    if (layer()) {
        const QSize size(static_cast<int>(std::ceil(width() * ratio)), static_cast<int>(std::ceil(height() * ratio)));
        painter.drawImage(0, 0, paintLayers(*layer(), {{}, size, ratio}));
    }
}

void LayerView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    paintFrame(painter, event->rect());
    schedule();
}

void LayerView::timerEvent(QTimerEvent* event) {
    if (event->timerId() == timer_.timerId()) {
        advance();
    }
}

void LayerView::showEvent(QShowEvent*) {
    // Only the window is told when it becomes exposed, or no longer is.
    if (QWindow* const handle = window()->windowHandle()) {
        handle->installEventFilter(this);
    }
}

bool LayerView::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::Expose) {
        update(animatedRect());
    }
    return QWidget::eventFilter(object, event);
}

bool LayerView::isOnScreen() const {
    const QWindow* const handle = window()->windowHandle();
    return isVisible() && handle && handle->isExposed() && !window()->isMinimized() && !visibleRegion().isEmpty();
}

// Called for each change, each frame and each painting. A view that leaves the screen asks for one frame more, and the
// painting of one that comes back begins anew.
void LayerView::schedule() {
    int wanted = frameInterval();
    if (wanted == 0) {
        if (const auto end = scene_.nextEnd()) {
            wanted = std::max(1, static_cast<int>(std::ceil(std::min(*end - scene_.now(), 1e6) * 1000.0)));
        }
    }
    if (wanted == 0) {
        timer_.stop();
    } else if (wanted != interval_) {
        timer_.start(wanted, Qt::PreciseTimer, this);
    }
    interval_ = wanted;
}

}  // namespace kelvo
