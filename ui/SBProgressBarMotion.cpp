#include <cmath>
#include <limits>

#include "SBProgressBar.h"

namespace kelvo {
namespace {

constexpr const char* kStripesKey = "x";

}  // namespace

void SBProgressBar::setAnimates(bool animates) {
    if (animates_ == animates) {
        return;
    }
    animates_ = animates;
    if (animates_) {
        scene().begin();
        if (!stripesLayer_.animation(kStripesKey) && !sb_isHidden_) {
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
    // A widget that is hidden only because its window is not shown yet does not count as hidden.
    const bool isHiddenNow = (isHidden() && testAttribute(Qt::WA_WState_ExplicitShowHide)) || fadingOut_;
    if (isHiddenNow == hidden) {
        return;
    }
    scene().begin();
    if (hidden) {
        fadingOut_ = true;
        scene().setCompletionBlock([this] {
            fadingOut_ = false;
            if (sb_isHidden_) {
                QWidget::setVisible(false);
            }
            stripesLayer_.removeAnimation(kStripesKey);
        });
        setAlphaValue(0.0);
    } else {
        QWidget::setVisible(true);
        // This replaces a running fade-out, whose completion block stops the stripes, so they must start after it.
        setAlphaValue(1.0);
        if (animates_) {
            stripesLayer_.addAnimation(stripesAnimation(), kStripesKey);
        }
    }
    scene().commit();
}

std::optional<BasicAnimation> SBProgressBar::defaultAnimationForKey(std::string_view key) {
    if (key == "floatValue") {
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

}  // namespace kelvo
