#include "Layer.h"

#include <algorithm>
#include <cmath>

#include "LayerPainter.h"

namespace kelvo {

Layer::~Layer() {
    leaveSuperlayer();
    for (Layer* const layer : sublayers_) {
        layer->superlayer_ = nullptr;
    }
}

QRectF Layer::frame() const {
    return {position_ - QPointF(anchorPoint_.x() * size_.width(), anchorPoint_.y() * size_.height()), size_};
}

void Layer::setFrame(const QRectF& frame) {
    const QSizeF size = frame.size().expandedTo({0.0, 0.0});
    if (size != size_) {
        size_ = size;
        picture_ = {};
    }
    set(position_, frame.topLeft() + QPointF(anchorPoint_.x() * size.width(), anchorPoint_.y() * size.height()));
}

void Layer::setCornerRadius(double radius) {
    picture_ = {};
    mask_ = {};
    set(cornerRadius_, radius);
}

void Layer::setMasksToBounds(bool masks) {
    mask_ = {};
    set(masksToBounds_, masks);
}

void Layer::setOpacity(float opacity) {
    if (opacity == opacity_) {
        return;
    }
    const double shown = static_cast<double>(shownOpacity());
    set(opacity_, opacity);
    if ((superlayer_ || scene_.root() == this) && !scene_.disableActions()) {
        addAnimation({.keyPath = "opacity",
                      .fromValue = shown,
                      .toValue = static_cast<double>(opacity),
                      .timingFunction = defaultTiming()},
                     "opacity");
    }
}

void Layer::setBackground(Background background) {
    picture_ = {};
    set(background_, std::move(background));
}

void Layer::setContents(LayerImage contents) {
    picture_ = {};
    set(contents_, std::move(contents));
}

void Layer::addSublayer(Layer& layer) {
    layer.leaveSuperlayer();
    sublayers_.push_back(&layer);
    layer.superlayer_ = this;
    scene_.changed_();
}

void Layer::leaveSuperlayer() {
    if (superlayer_) {
        std::erase(superlayer_->sublayers_, this);
    }
}

void Layer::addAnimation(BasicAnimation animation, const std::string& key) {
    if (!(animation.duration > 0.0)) {
        animation.duration = LayerScene::kDefaultDuration;
    }
    Running added{std::move(animation), scene_.now(), scene_.transactions_.back().completion};
    Running replaced = std::exchange(animations_[key], std::move(added));
    scene_.changed_();
    release(std::move(replaced.completion));
}

const BasicAnimation* Layer::animation(const std::string& key) const {
    const auto found = animations_.find(key);
    return found == animations_.end() ? nullptr : &found->second.animation;
}

void Layer::removeAnimation(const std::string& key) {
    if (auto removed = animations_.extract(key)) {
        scene_.changed_();
        release(std::move(removed.mapped().completion));
    }
}

std::optional<double> Layer::animatedValue(const std::string& keyPath) const {
    for (const auto& [key, running] : animations_) {
        const double elapsed = scene_.now() - running.begin;
        if (running.animation.keyPath == keyPath && !(elapsed >= running.animation.length())) {
            return running.animation.valueAt(elapsed);
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

void Layer::endAnimations(std::vector<LayerCompletion>& ended) {
    for (auto it = animations_.begin(); it != animations_.end();) {
        Running& running = it->second;
        const bool ends = !running.ended && scene_.now() - running.begin >= running.animation.length();
        if (ends) {
            running.ended = true;
            ended.push_back(std::move(running.completion));
            scene_.changed_();
        }
        it = ends && running.animation.removedOnCompletion ? animations_.erase(it) : std::next(it);
    }
    for (Layer* const layer : sublayers_) {
        layer->endAnimations(ended);
    }
}

bool Layer::isAnimating(bool endlessToo) const {
    const auto runs = [&](const auto& entry) {
        return !entry.second.ended && (endlessToo || std::isfinite(entry.second.animation.length()));
    };
    const auto isAnimated = [&](const Layer* layer) { return layer->isAnimating(endlessToo); };
    return std::any_of(animations_.begin(), animations_.end(), runs) ||
           std::any_of(sublayers_.begin(), sublayers_.end(), isAnimated);
}

const QImage& Layer::picture(double ratio) const {
    if (picture_.isNull() || ratio != pictureRatio_) {
        picture_ = paintPicture(*this, ratio);
        pictureRatio_ = ratio;
    }
    return picture_;
}

const QImage& Layer::mask(QSize size, const QRectF& shape, double ratio) const {
    if (mask_.size() != size || maskShape_ != shape) {
        mask_ = paintMask(*this, size, shape, ratio);
        maskShape_ = shape;
    }
    return mask_;
}

}  // namespace kelvo
