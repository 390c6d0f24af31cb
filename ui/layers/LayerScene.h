#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace kelvo {

class Layer;

/// The time that animations run by: seconds since any fixed moment, never going back.
using LayerClock = std::function<double()>;

/// Animations that were added within one transaction, and what to do when all of them have ended.
struct AnimationGroup {
    int running = 0;
    bool closed = false;
    std::function<void()> completion;
};

/// A transaction that is not over yet.
struct LayerTransaction {
    bool disableActions = false;
    std::shared_ptr<AnimationGroup> group = std::make_shared<AnimationGroup>();
};

/// What the layers of one tree have in common: the time and the transactions. It must outlive the layers. Main thread.
///
/// A change outside of begin and commit belongs to the implicit transaction, which ends with the next update().
class LayerScene {
public:
    /// Seconds that an implicit animation takes.
    static constexpr double kDefaultDuration = 0.25;

    explicit LayerScene(LayerClock clock) : clock_(std::move(clock)) {}
    LayerScene(const LayerScene&) = delete;
    LayerScene& operator=(const LayerScene&) = delete;

    double now() const { return clock_(); }

    /// Transactions nest; an inner one takes over whether actions are disabled. A commit too many ends the implicit
    /// one.
    void begin();
    void commit();
    /// Whether a change of opacity in the current transaction acts at once instead of fading.
    void setDisableActions(bool disable) { current().disableActions = disable; }
    bool disableActions() { return current().disableActions; }
    /// Called once, when the current transaction is over and the animations that were added to it after this call have
    /// ended, been replaced or removed. A second block does not replace the first, it begins a new set of animations.
    void setCompletionBlock(std::function<void()> block);

    /// Ends the implicit transaction and every animation whose time is over, and calls the completions that are due.
    void update();

    /// Whether any animation still has time to run.
    bool isAnimating() const;
    /// When the next update is needed even if nobody looks on: the end of the implicit transaction (now) or of a finite
    /// animation; none if there is neither.
    std::optional<double> nextEnd() const;

    /// The layer at the top of the tree; none at first.
    void setRoot(Layer* root) { root_ = root; }
    Layer* root() const { return root_; }

    /// Grows with every change of a layer or its animations.
    std::uint64_t revision() const { return revision_; }
    /// Called after a change, once per outermost transaction.
    void setListener(std::function<void()> listener) { listener_ = std::move(listener); }

private:
    friend class Layer;

    LayerTransaction& current();
    void changed();
    static void close(AnimationGroup& group);
    static void animationEnded(const std::shared_ptr<AnimationGroup>& group);

    LayerClock clock_;
    Layer* root_ = nullptr;
    std::function<void()> listener_;
    std::vector<LayerTransaction> explicit_;
    std::optional<LayerTransaction> implicit_;
    std::set<Layer*> animated_;
    std::uint64_t revision_ = 0;
    bool changedInTransaction_ = false;
};

/// An explicit transaction that lasts as long as the scope, with implicit actions disabled.
class ActionlessTransaction {
public:
    explicit ActionlessTransaction(LayerScene& scene) : scene_(scene) {
        scene_.begin();
        scene_.setDisableActions(true);
    }
    ~ActionlessTransaction() { scene_.commit(); }
    ActionlessTransaction(const ActionlessTransaction&) = delete;
    ActionlessTransaction& operator=(const ActionlessTransaction&) = delete;

private:
    LayerScene& scene_;
};

}  // namespace kelvo
