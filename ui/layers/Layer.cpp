#include "Layer.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <utility>

#include "LayerPainter.h"
#include "PatternCell.h"

namespace kelvo {

Layer::~Layer() {
    if (superlayer_) {
        std::erase(superlayer_->sublayers_, this);
    }
    for (Layer* const layer : sublayers_) {
        layer->superlayer_ = nullptr;
    }
    scene_.animated_.erase(this);
}

QRectF Layer::frame() const {
    return {position_.x() - anchorPoint_.x() * bounds_.width(), position_.y() - anchorPoint_.y() * bounds_.height(),
            bounds_.width(), bounds_.height()};
}

void Layer::setFrame(const QRectF& frame) {
    bounds_.setSize({std::max(frame.width(), 0.0), std::max(frame.height(), 0.0)});
    position_ = {frame.x() + anchorPoint_.x() * bounds_.width(), frame.y() + anchorPoint_.y() * bounds_.height()};
    scene_.changed();
}

void Layer::setBounds(const QRectF& bounds) {
    set(bounds_, {bounds.x(), bounds.y(), std::max(bounds.width(), 0.0), std::max(bounds.height(), 0.0)});
}

void Layer::setOpacity(float opacity) {
    if (opacity == opacity_) {
        return;
    }
    const double shown = static_cast<double>(shownOpacity());
    opacity_ = opacity;
    if ((superlayer_ || scene_.root() == this) && !scene_.disableActions()) {
        addAnimation({.keyPath = "opacity",
                      .fromValue = shown,
                      .toValue = static_cast<double>(opacity),
                      .timingFunction = defaultTiming()},
                     "opacity");
    }
    scene_.changed();
}

void Layer::setBackground(Background background) {
    cell_ = {};
    set(background_, std::move(background));
}

void Layer::addSublayer(Layer& layer) {
    if (layer.superlayer_) {
        std::erase(layer.superlayer_->sublayers_, &layer);
    }
    sublayers_.push_back(&layer);
    layer.superlayer_ = this;
    scene_.changed();
}

void Layer::addAnimation(BasicAnimation animation, const std::string& key) {
    if (!(animation.duration > 0.0)) {
        animation.duration = LayerScene::kDefaultDuration;
    }
    const auto group = scene_.current().group;
    ++group->running;
    const auto replaced = std::exchange(animations_[key], {std::move(animation), scene_.now(), group});
    scene_.animated_.insert(this);
    scene_.changed();
    if (replaced.group && !replaced.ended) {
        LayerScene::animationEnded(replaced.group);
    }
}

const BasicAnimation* Layer::animation(const std::string& key) const {
    const auto found = animations_.find(key);
    return found == animations_.end() ? nullptr : &found->second.animation;
}

void Layer::removeAnimation(const std::string& key) {
    const auto removed = animations_.extract(key);
    if (!removed) {
        return;
    }
    if (animations_.empty()) {
        scene_.animated_.erase(this);
    }
    scene_.changed();
    if (!removed.mapped().ended) {
        LayerScene::animationEnded(removed.mapped().group);
    }
}

std::optional<double> Layer::animatedValue(const std::string& keyPath) const {
    for (const auto& [key, running] : animations_) {
        if (running.animation.keyPath == keyPath) {
            if (const auto value = running.animation.valueAt(scene_.now() - running.begin, ownValue(keyPath))) {
                return value;
            }
        }
    }
    return std::nullopt;
}

QPointF Layer::shownPosition() const {
    return {animatedValue("position.x").value_or(position_.x()), position_.y()};
}

float Layer::shownOpacity() const {
    return static_cast<float>(animatedValue("opacity").value_or(static_cast<double>(opacity_)));
}

void Layer::drawBackground(QPainter& painter) const {
    if (const auto* const color = std::get_if<QColor>(&background_)) {
        painter.setBrush(*color);
        fillBounds(painter);
    } else if (const auto* const tile = std::get_if<LayerImage>(&background_)) {
        const double ratio = painter.transform().m11();
        if (cell_.isNull() || ratio != cellRatio_) {
            cell_ = patternCell(*tile, ratio);
            cellRatio_ = ratio;
        }
        drawPattern(painter, cell_, bounds_);
    }
}

void Layer::fillBounds(QPainter& painter) const {
    painter.drawPath(roundedRect(bounds_, cornerRadius_));
}

double Layer::ownValue(const std::string& keyPath) const {
    return keyPath == "opacity" ? static_cast<double>(opacity_) : (keyPath == "position.x" ? position_.x() : 0.0);
}

void Layer::endAnimations(double now, std::vector<std::shared_ptr<AnimationGroup>>& ended) {
    for (auto it = animations_.begin(); it != animations_.end();) {
        Running& running = it->second;
        const bool over = !running.ended && now - running.begin >= running.animation.length();
        if (over) {
            running.ended = true;
            ended.push_back(running.group);
            scene_.changed();
        }
        it = over && running.animation.removedOnCompletion ? animations_.erase(it) : std::next(it);
    }
    if (animations_.empty()) {
        scene_.animated_.erase(this);
    }
}

bool Layer::hasRunning() const {
    return std::any_of(animations_.begin(), animations_.end(), [](const auto& entry) { return !entry.second.ended; });
}

std::optional<double> Layer::nextEnd() const {
    std::optional<double> next;
    for (const auto& [key, running] : animations_) {
        const double end = running.begin + running.animation.length();
        if (!running.ended && std::isfinite(end) && (!next || end < *next)) {
            next = end;
        }
    }
    return next;
}

}  // namespace kelvo
