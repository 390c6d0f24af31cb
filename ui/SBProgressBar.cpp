#include "SBProgressBar.h"

#include <QAccessible>
#include <QEvent>
#include <QSignalBlocker>
#include <QThread>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include "NSLog.h"
#include "Post.h"
#include "SBProgressBarAccessible.h"

namespace kelvo {
namespace {

double steadySeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

QColor white(float level) {
    return QColor::fromRgbF(level, level, level);
}

QRectF inset(const QRectF& rect, double distance) {
    return {rect.x() + distance, rect.y() + distance, std::max(rect.width() - 2.0 * distance, 0.0),
            std::max(rect.height() - 2.0 * distance, 0.0)};
}

void requireValid(double value) {
    if (!(value >= 0.0 && value <= 1.0)) {
        throw InvalidValue();
    }
}

}  // namespace

SBProgressBar::SBProgressBar(QWidget* parent) : SBProgressBar(steadySeconds, parent) {}

SBProgressBar::SBProgressBar(LayerClock clock, QWidget* parent) : LayerView(std::move(clock), parent) {
    installProgressBarAccessibility();
    setUp();
    knownWindow_ = window();
    viewDidMoveToWindow();
}

void SBProgressBar::setUp() {
    ring_.borderColor = white(0.291F);
    stripesImage_ = stripesImageWithSize({30.0, 20.0});
    backgroundColors_ = {white(0.55F), white(0.4F)};

    clipLayer_.setMasksToBounds(true);
    backgroundLayer_.setBackground(backgroundColors_);
    innerClipLayer_.setMasksToBounds(true);
    stripesLayer_.setAnchorPoint({0.0, 0.5});
    stripesLayer_.setOpacity(kStripesOpacity);
    colorTintLayer_.setOpacity(static_cast<float>(colorTintOpacity_));

    setLayer(rootLayer_);
    fillLayer_.setBackground(Layer::Gradient{white(0.75F), white(1.0F)});
    for (Layer* const layer : {&fillLayer_, &stripesLayer_, &innerShadowLayer_, &colorTintLayer_}) {
        innerClipLayer_.addSublayer(*layer);
    }
    for (Layer* const layer : {&backgroundLayer_, &borderLayer_, &innerClipLayer_}) {
        clipLayer_.addSublayer(*layer);
    }
    rootLayer_.addSublayer(clipLayer_);
    resizeLayers();
    setAnimates(true);

    movement_.setDuration(static_cast<int>(std::lround(LayerScene::kDefaultDuration * 1000.0)));
    movement_.setEasingCurve(defaultAnimationForKey("floatValue")->timingFunction);
    connect(&movement_, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { moveFloatValue(value.toDouble()); });
}

void SBProgressBar::resizeLayers() {
    const ActionlessTransaction transaction(scene());
    const QRectF bounds = rect();
    clipLayer_.setFrame(bounds);
    clipLayer_.setCornerRadius(clipLayer_.frame().height() / 2.0);
    resizeInnerLayers();
    for (Layer* const layer : {&fillLayer_, &borderLayer_, &colorTintLayer_, &backgroundLayer_}) {
        layer->setFrame(bounds);
    }
    borderLayer_.setContents(borderImageOfNow(bounds.size()));
    stripesLayer_.setBackground(stripesImage_);
    // One extra tile, so that the stripes still cover the bar after moving right by one tile.
    const double tile = stripesImage_.size().width();
    const double width = stripesImage_.isEmpty() ? 0.0 : (std::ceil(bounds.width() / tile) + 1.0) * tile;
    stripesLayer_.setFrame({-tile, bounds.y(), width, bounds.height()});
}

void SBProgressBar::resizeInnerLayers() {
    QRectF inner = inset(rect(), ring_.borderWidth);
    inner.setWidth(inner.width() * floatValue());
    innerClipLayer_.setFrame(inner);
    innerClipLayer_.setCornerRadius(innerClipLayer_.frame().height() / 2.0);
    innerShadowLayer_.setFrame(inset(innerClipLayer_.bounds(), -ring_.borderWidth));
    innerShadowLayer_.setCornerRadius(innerShadowLayer_.frame().height() / 2.0);
    innerShadowLayer_.setContents(innerShadowOfNow(innerShadowLayer_.frame().size()));
}

void SBProgressBar::viewDidMoveToWindow() {
    ++frameRegistrations_;
}

void SBProgressBar::viewResized() {
    resizeLayers();
}

bool SBProgressBar::event(QEvent* event) {
    const bool handled = LayerView::event(event);
    if (std::exchange(knownWindow_, window()) != window()) {
        viewDidMoveToWindow();
    }
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize) {
        for (int i = 0; i < frameRegistrations_; ++i) {
            viewResized();
        }
    }
    return handled;
}

double SBProgressBar::floatValue() const {
    const std::lock_guard lock(valueMutex_);
    return floatValue_;
}

void SBProgressBar::setFloatValue(double value) {
    requireValid(value);
    const bool isMainThread = QThread::currentThread() == thread();
    {
        const std::lock_guard lock(valueMutex_);
        floatValue_ = value;
        valueMoves_ = false;
        if (!isMainThread && !std::exchange(layoutQueued_, true)) {
            post(this, [this] { showFloatValue(); });
        }
    }
    if (isMainThread) {
        showFloatValue();
    }
}

void SBProgressBar::animateFloatValue(double value) {
    requireValid(value);
    movement_.stop();
    {
        // Setting the start and end values must not emit valueChanged.
        const QSignalBlocker blocker(movement_);
        movement_.setStartValue(floatValue());
        movement_.setEndValue(value);
    }
    {
        const std::lock_guard lock(valueMutex_);
        valueMoves_ = true;
    }
    movement_.start();
}

void SBProgressBar::moveFloatValue(double value) {
    {
        const std::lock_guard lock(valueMutex_);
        if (!valueMoves_) {
            return;
        }
        floatValue_ = std::clamp(value, 0.0, 1.0);
    }
    showFloatValue();
}

void SBProgressBar::showFloatValue() {
    {
        // A value stored by another thread after this queues another layout.
        const std::lock_guard lock(valueMutex_);
        layoutQueued_ = false;
    }
    {
        const ActionlessTransaction transaction(scene());
        resizeInnerLayers();
    }
    const int percent = progressPercent(floatValue());
    if (std::exchange(announcedPercent_, percent) != percent) {
        announce(percent);
    }
}

void SBProgressBar::announce(int percent) {
    QAccessibleValueChangeEvent event(this, percent);
    QAccessible::updateAccessibility(&event);
}

void SBProgressBar::setColorTint(std::optional<QColor> color) {
    colorTint_ = color;
    reloadColorTint();
}

void SBProgressBar::setColorTintOpacity(double opacity) {
    colorTintOpacity_ = opacity;
    reloadColorTint();
}

void SBProgressBar::reloadColorTint() {
    colorTintLayer_.setBackground(colorTint_ ? Layer::Gradient{*colorTint_} : Layer::Gradient{});
    colorTintLayer_.setOpacity(static_cast<float>(colorTintOpacity_));
}

void SBProgressBar::setBackgroundColors(std::vector<QColor> colors) {
    backgroundColors_ = std::move(colors);
    reloadBackground();
}

void SBProgressBar::reloadBackground() {
    backgroundLayer_.setBackground(backgroundColors_);
}

void SBProgressBar::setBorderWidth(double width) {
    if (!std::isfinite(width)) {
        return;
    }
    ring_.borderWidth = width;
    if (ring_.shadowWidth > width) {
        setShadowWidth(width);
    }
    updateLayer();
}

void SBProgressBar::setBorderColor(const QColor& color) {
    ring_.borderColor = color;
    updateLayer();
}

void SBProgressBar::setShadowWidth(double width) {
    if (!std::isfinite(width)) {
        return;
    }
    if (width > ring_.borderWidth) {
        NSLog("Warning: Line width must be at least as large as shadow width");
        return;
    }
    ring_.shadowWidth = width;
    updateLayer();
}

void SBProgressBar::setStripesImage(LayerImage image) {
    stripesImage_ = std::move(image);
    updateLayer();
}

}  // namespace kelvo
