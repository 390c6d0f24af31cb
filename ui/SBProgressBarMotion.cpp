#include <algorithm>
#include <cmath>
#include <limits>

#include "SBProgressBar.h"

namespace kelvo {
namespace {

constexpr const char* kStripesKey = "x";
constexpr const char* kValueKey = "floatValue";

}  // namespace

void SBProgressBar::setAnimates(bool animates) {
    if (animates_ == animates) {
        return;
    }
    animates_ = animates;
    if (animates_) {
        scene().begin();
        if (!stripesLayer_.animation(kStripesKey) && animates_ && !sb_isHidden_) {
            stripesLayer_.addAnimation(stripesAnimation(), kStripesKey);
        }
        stripesLayer_.setOpacity(kStripesOpacity);
        scene().commit();
    } else {
        scene().setCompletionBlock([this] {
            if (stripesLayer_.animation(kStripesKey) && !animates_) {
                stripesLayer_.removeAnimation(kStripesKey);
            }
        });
        stripesLayer_.setOpacity(0.0F);
    }
}

void SBProgressBar::setAnimationDuration(double seconds) {
    if (!std::isfinite(seconds)) {
        return;
    }
    animationDuration_ = seconds;
    if (animates_) {
        setAnimates(false);
        stripesLayer_.removeAnimation(kStripesKey);
        setAnimates(true);
    }
}

void SBProgressBar::setHidden(bool hidden) {
    setSb_isHidden(hidden);
    // A widget that was never told to hide waits for its window; that is not hidden.
    const bool hiddenNow = (isHidden() && testAttribute(Qt::WA_WState_ExplicitShowHide)) || fadingOut_;
    if (hiddenNow == hidden) {
        return;
    }
    scene().begin();
    if (hidden) {
        hideFading();
    } else {
        showFading();
    }
    scene().commit();
}

void SBProgressBar::hideFading() {
    fadingOut_ = true;
    scene().setCompletionBlock([this] {
        fadingOut_ = false;
        if (sb_isHidden_) {
            QWidget::setVisible(false);
        }
        stripesLayer_.removeAnimation(kStripesKey);
    });
    setAlphaValue(0.0);
}

void SBProgressBar::showFading() {
    QWidget::setVisible(true);
    // Ends the fade-out, whose completion says so and stops the stripes; hence the stripes come after it.
    setAlphaValue(1.0);
    if (animates_) {
        stripesLayer_.addAnimation(stripesAnimation(), kStripesKey);
    }
}

bool SBProgressBar::alphaIsFading() const {
    return rootLayer_.animation("opacity") != nullptr;
}

std::optional<BasicAnimation> SBProgressBar::defaultAnimationForKey(std::string_view key) {
    if (key == kValueKey) {
        return BasicAnimation{.timingFunction = easeInEaseOut()};
    }
    return std::nullopt;
}

BasicAnimation SBProgressBar::stripesAnimation() const {
    const double tile = stripesImage_.size().width();
    return {.keyPath = "position.x",
            .fromValue = -tile,
            .byValue = tile,
            .duration = animationDuration_,
            .repeatCount = std::numeric_limits<double>::infinity(),
            .removedOnCompletion = false};
}

BasicAnimation SBProgressBar::fadeAnimationVisible(bool visible) const {
    const double shown = static_cast<double>(kStripesOpacity);
    return {
        .keyPath = "opacity", .fromValue = visible ? 0.0 : shown, .toValue = visible ? shown : 0.0, .duration = 0.255};
}

void SBProgressBar::animateFloatValue(double value) {
    if (!(value >= 0.0 && value <= 1.0)) {
        throw InvalidValue();
    }
    BasicAnimation animation = *defaultAnimationForKey(kValueKey);
    animation.keyPath = kValueKey;
    double from = floatValue_.load();
    while (!floatValue_.compare_exchange_weak(from, -std::abs(from))) {
    }
    animatedValue_ = -std::abs(from);
    animation.fromValue = std::abs(from);
    animation.toValue = value;
    animation.removedOnCompletion = false;
    rootLayer_.addAnimation(animation, kValueKey);
}

void SBProgressBar::layersAdvanced() {
    const BasicAnimation* const animation = rootLayer_.animation(kValueKey);
    if (!animation) {
        return;
    }
    const auto moving = rootLayer_.animatedValue(kValueKey);
    const double next = std::clamp(moving.value_or(*animation->toValue), 0.0, 1.0);
    // Fails if somebody has set a value of their own meanwhile, on whatever thread: that one stays.
    const bool ours = floatValue_.compare_exchange_strong(animatedValue_, -next);
    animatedValue_ = -next;
    if (!moving || !ours) {
        rootLayer_.removeAnimation(kValueKey);
    }
    if (ours) {
        showFloatValue();
    }
}

}  // namespace kelvo
