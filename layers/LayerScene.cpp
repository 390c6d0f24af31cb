#include "LayerScene.h"

#include "Layer.h"

namespace kelvo {

void release(LayerCompletion completion) {
    if (completion && completion.use_count() == 1) {
        (*completion)();
    }
}

void LayerScene::begin() {
    transactions_.push_back({disableActions(), nullptr});
}

void LayerScene::commit() {
    LayerCompletion completion = std::exchange(transactions_.back(), {}).completion;
    if (transactions_.size() > 1) {
        transactions_.pop_back();
    }
    release(std::move(completion));
}

void LayerScene::setCompletionBlock(std::function<void()> block) {
    auto completion = std::make_shared<const std::function<void()>>(std::move(block));
    release(std::exchange(transactions_.back().completion, std::move(completion)));
    changed_();
}

void LayerScene::update() {
    std::vector<LayerCompletion> ended{std::exchange(transactions_.front(), {}).completion};
    if (root_) {
        root_->endAnimations(ended);
    }
    // Only after all layers are up to date: a block may change layers.
    for (LayerCompletion& completion : ended) {
        release(std::move(completion));
    }
}

bool LayerScene::isAnimating() const {
    return root_ && root_->isAnimating(true);
}

bool LayerScene::isEnding() const {
    return root_ && root_->isAnimating(false);
}

}  // namespace kelvo
