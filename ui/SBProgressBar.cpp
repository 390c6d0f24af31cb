#include "SBProgressBar.h"

#include <QEvent>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include "NSLog.h"
#include "Post.h"
#include "SBProgressBarAccessible.h"
#include "SBProgressBarFrame.h"

namespace kelvo {
namespace {

constexpr QSizeF kStripesTile{30.0, 20.0};

double steadySeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

QColor white(double level) {
    return QColor::fromRgbF(static_cast<float>(level), static_cast<float>(level), static_cast<float>(level));
}

QRectF inset(const QRectF& rect, double distance) {
    return {rect.x() + distance, rect.y() + distance, std::max(rect.width() - 2.0 * distance, 0.0),
            std::max(rect.height() - 2.0 * distance, 0.0)};
}

}  // namespace

SBProgressBar::SBProgressBar(QWidget* parent) : SBProgressBar(steadySeconds, parent) {}

SBProgressBar::SBProgressBar(LayerClock clock, QWidget* parent)
    : LayerView(std::move(clock), parent), frame_(std::make_unique<SBProgressBarFrame>(*this)) {
    installProgressBarAccessibility();
    setUp();
    knownWindow_ = window();
    viewDidMoveToWindow();
}

SBProgressBar::~SBProgressBar() = default;

void SBProgressBar::setUp() {
    ring_ = {.borderColor = white(0.291)};
    stripesImage_ = stripesImageWithSize(kStripesTile);
    backgroundColors_ = {white(0.55), white(0.4)};

    clipLayer_.setMasksToBounds(true);
    backgroundLayer_.setColors(backgroundColors_);
    innerClipLayer_.setMasksToBounds(true);
    stripesLayer_.setAnchorPoint({0.0, 0.5});
    stripesLayer_.setOpacity(kStripesOpacity);
    colorTintLayer_.setOpacity(static_cast<float>(colorTintOpacity_));

    setLayer(rootLayer_);
    fillLayer_.setColors({white(0.75), white(1.0)});
    for (Layer* const layer :
         {static_cast<Layer*>(&fillLayer_), &stripesLayer_, &innerShadowLayer_, &colorTintLayer_}) {
        innerClipLayer_.addSublayer(*layer);
    }
    for (Layer* const layer : {static_cast<Layer*>(&backgroundLayer_), &borderLayer_, &innerClipLayer_}) {
        clipLayer_.addSublayer(*layer);
    }
    rootLayer_.addSublayer(clipLayer_);
    resizeLayers();
    setAnimates(true);
}

void SBProgressBar::resizeLayers() {
    const ActionlessTransaction transaction(scene());
    const QRectF bounds = rect();
    clipLayer_.setFrame(bounds);
    clipLayer_.setCornerRadius(clipLayer_.frame().height() / 2.0);
    resizeInnerLayers();
    for (Layer* const layer :
         {static_cast<Layer*>(&fillLayer_), &borderLayer_, &colorTintLayer_, static_cast<Layer*>(&backgroundLayer_)}) {
        layer->setFrame(bounds);
    }
    borderLayer_.setContents(keptBorderImage(bounds.size()));
    stripesLayer_.setBackground(stripesImage_);
    // One tile more than the bar needs, so that the stripes can move right by one tile and still cover it.
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
    innerShadowLayer_.setContents(keptInnerShadow(innerShadowLayer_.frame().size()));
    shownRing_ = ring_;
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

void SBProgressBar::setFloatValue(double value) {
    if (!(value >= 0.0 && value <= 1.0)) {
        throw InvalidValue();
    }
    floatValue_.store(std::abs(value));
    if (std::this_thread::get_id() == mainThread_) {
        showFloatValue();
    } else if (!layoutQueued_.exchange(true)) {
        post(this, [this] {
            // Cleared first: a value that is stored from here on queues a layout of its own.
            layoutQueued_.store(false);
            showFloatValue();
        });
    }
}

void SBProgressBar::showFloatValue() {
    const std::uint64_t before = scene().revision();
    {
        const ActionlessTransaction transaction(scene());
        resizeInnerLayers();
        layoutRevisions_ += scene().revision() - before;
    }
    const int percent = progressPercent(floatValue());
    if (std::exchange(announcedPercent_, percent) != percent) {
        announce(percent);
    }
}

void SBProgressBar::announce(int percent) {
    announceProgress(*this, percent);
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
    const ActionlessTransaction transaction(scene());
    colorTintLayer_.setBackground(colorTint_ ? Layer::Background(*colorTint_) : Layer::Background());
    colorTintLayer_.setOpacity(static_cast<float>(colorTintOpacity_));
}

void SBProgressBar::setBackgroundColors(std::vector<QColor> colors) {
    backgroundColors_ = std::move(colors);
    reloadBackground();
}

void SBProgressBar::reloadBackground() {
    backgroundLayer_.setColors(backgroundColors_);
}

void SBProgressBar::setBorderWidth(double width) {
    if (!std::isfinite(width) || width < 0.0) {
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

QSize SBProgressBar::sizeHint() const {
    return {200, 20};
}

void SBProgressBar::drawLayers(QPainter& painter, double ratio, const QRect& part) {
    frame_->draw(painter, ratio, part);
}

QRect SBProgressBar::animatedRect() const {
    if (alphaIsFading()) {
        return rect();
    }
    const QRectF fill = innerClipLayer_.frame();
    return fill.isEmpty() ? QRect() : QRect(0, 0, static_cast<int>(std::ceil(fill.right())), height());
}

}  // namespace kelvo
