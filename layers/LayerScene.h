#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kelvo {

class Layer;

/// The clock of the animations: seconds since a fixed moment, never decreasing.
using LayerClock = std::function<double()>;

/// The completion block of a transaction, shared by the transaction and the animations that were added to it. The last
/// owner that releases it runs it.
using LayerCompletion = std::shared_ptr<const std::function<void()>>;
void release(LayerCompletion completion);

/// The clock and the transactions of one tree of layers. It must outlive the layers. Main thread.
///
/// Changes outside begin and commit belong to the implicit transaction, which ends with the next update().
class LayerScene {
public:
    /// Seconds of an implicit animation.
    static constexpr double kDefaultDuration = 0.25;

    /// `changed` is called after each change of a layer or its animations.
    explicit LayerScene(
        LayerClock clock, std::function<void()> changed = [] {})
        : clock_(std::move(clock)), changed_(std::move(changed)) {}
    LayerScene(const LayerScene&) = delete;
    LayerScene& operator=(const LayerScene&) = delete;

    double now() const { return clock_(); }

    /// Transactions nest; an inner one inherits whether actions are disabled. A commit without a begin ends the
    /// implicit transaction.
    void begin();
    void commit();
    /// Whether a change of opacity in the current transaction takes effect at once instead of fading.
    void setDisableActions(bool disable) { transactions_.back().disableActions = disable; }
    bool disableActions() const { return transactions_.back().disableActions; }
    /// Runs `block` once, when the current transaction is over and all animations that were added to it after this call
    /// have ended or been replaced or removed. A second block does not replace the first: each waits for the animations
    /// added between it and the next.
    void setCompletionBlock(std::function<void()> block);

    /// Ends the implicit transaction and all animations of the tree whose time is over. Runs the completion blocks that
    /// are due.
    void update();

    /// Whether any animation of the tree runs.
    bool isAnimating() const;
    /// Whether any animation of the tree runs that is not endless.
    bool isEnding() const;

    /// The layer at the top of the tree; initially none.
    void setRoot(Layer* root) { root_ = root; }
    Layer* root() const { return root_; }

private:
    friend class Layer;

    struct Transaction {
        bool disableActions = false;
        LayerCompletion completion;
    };

    LayerClock clock_;
    std::function<void()> changed_;
    Layer* root_ = nullptr;
    // The first one is the implicit transaction.
    std::vector<Transaction> transactions_{1};
};

/// A transaction with disabled actions that lasts as long as this object.
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
