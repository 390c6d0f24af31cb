#include "LayerView.h"

#include <QPainter>
#include <QTimerEvent>
#include <QWindow>
#include <cmath>
#include <utility>

#include "Layer.h"
#include "LayerPainter.h"

namespace kelvo {

LayerView::LayerView(LayerClock clock, QWidget* parent)
    : QWidget(parent), scene_(std::move(clock), [this] {
          update();
          startTimer();
      }) {}

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
    if (scene_.isAnimating()) {
        update();
    }
    if (!scene_.isEnding() && !(scene_.isAnimating() && isOnScreen())) {
        timer_.stop();
    }
}

void LayerView::paintFrame(QPainter& painter) const {
    if (!layer()) {
        return;
    }
    const QTransform device = painter.deviceTransform();
    const double ratio = device.m11() > 0.0 ? device.m11() : 1.0;
    const QSize size(static_cast<int>(std::ceil(width() * ratio)), static_cast<int>(std::ceil(height() * ratio)));
    // On a scaled display a widget may begin inside a pixel. The picture is shifted to a whole pixel, or it would blur.
    const QPointF begin(device.dx(), device.dy());
    const QPointF shift = (begin.toPoint() - begin) / ratio;
    painter.save();
    painter.translate(shift);
    painter.scale(1.0 / ratio, 1.0 / ratio);
    painter.drawImage(0, 0, composeLayers(*layer(), size, ratio));
    painter.restore();
}

void LayerView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintFrame(painter);
    // A view that becomes visible again is painted; this restarts its timer.
    if (scene_.isAnimating()) {
        startTimer();
    }
}

void LayerView::timerEvent(QTimerEvent* event) {
    if (event->timerId() == timer_.timerId()) {
        advance();
    }
}

void LayerView::showEvent(QShowEvent*) {
    // Only the native window receives expose events.
    if (QWindow* const handle = window()->windowHandle()) {
        handle->installEventFilter(this);
    }
}

bool LayerView::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::Expose) {
        update();
    }
    return QWidget::eventFilter(object, event);
}

bool LayerView::isOnScreen() const {
    const QWindow* const handle = window()->windowHandle();
    return isVisible() && handle && handle->isExposed() && !window()->isMinimized() && !visibleRegion().isEmpty();
}

void LayerView::startTimer() {
    constexpr int kFrameMilliseconds = 17;
    if (!timer_.isActive()) {
        timer_.start(kFrameMilliseconds, Qt::PreciseTimer, this);
    }
}

}  // namespace kelvo
