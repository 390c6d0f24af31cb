#include "LayerScene.h"

#include <algorithm>
#include <utility>

#include "Layer.h"

namespace kelvo {

void LayerScene::begin() {
    const bool disabled = !explicit_.empty() && explicit_.back().disableActions;
    explicit_.push_back({.disableActions = disabled});
}

void LayerScene::commit() {
    std::shared_ptr<AnimationGroup> group;
    if (!explicit_.empty()) {
        group = std::move(explicit_.back().group);
        explicit_.pop_back();
    } else if (implicit_) {
        group = std::move(implicit_->group);
        implicit_.reset();
    }
    if (group) {
        close(*group);
    }
    if (explicit_.empty() && std::exchange(changedInTransaction_, false) && listener_) {
        listener_();
    }
}

void LayerScene::setCompletionBlock(std::function<void()> block) {
    const auto previous = std::exchange(current().group, std::make_shared<AnimationGroup>());
    current().group->completion = std::move(block);
    close(*previous);
}

void LayerScene::update() {
    if (implicit_) {
        commit();
    }
    std::vector<std::shared_ptr<AnimationGroup>> ended;
    for (Layer* const layer : std::vector(animated_.begin(), animated_.end())) {
        layer->endAnimations(now(), ended);
    }
    // Only now, with every layer settled: a completion may change layers.
    for (const auto& group : ended) {
        animationEnded(group);
    }
}

bool LayerScene::isAnimating() const {
    return std::any_of(animated_.begin(), animated_.end(), [](const Layer* layer) { return layer->hasRunning(); });
}

std::optional<double> LayerScene::nextEnd() const {
    if (implicit_) {
        return now();
    }
    std::optional<double> next;
    for (const Layer* const layer : animated_) {
        const auto end = layer->nextEnd();
        if (end && (!next || *end < *next)) {
            next = end;
        }
    }
    return next;
}

LayerTransaction& LayerScene::current() {
    if (!explicit_.empty()) {
        return explicit_.back();
    }
    if (!implicit_) {
        implicit_.emplace();
    }
    return *implicit_;
}

void LayerScene::changed() {
    ++revision_;
    if (!explicit_.empty()) {
        changedInTransaction_ = true;
    } else if (listener_) {
        listener_();
    }
}

void LayerScene::close(AnimationGroup& group) {
    group.closed = true;
    if (group.running == 0 && group.completion) {
        std::exchange(group.completion, nullptr)();
    }
}

void LayerScene::animationEnded(const std::shared_ptr<AnimationGroup>& group) {
    --group->running;
    if (group->closed) {
        close(*group);
    }
}

}  // namespace kelvo
