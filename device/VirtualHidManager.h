#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "HidManager.h"
#include "VirtualCable.h"

namespace kelvo {

/// A HID layer with a cable to one virtual KR310, which is initially unplugged.
class VirtualHidManager : public HidManager {
public:
    using Options = VirtualCable::Options;
    using Activity = VirtualCable::Activity;

    /// `pedal` must outlive the manager and every running setReport.
    explicit VirtualHidManager(VirtualKr310& pedal) : VirtualHidManager(pedal, Options()) {}
    VirtualHidManager(VirtualKr310& pedal, const Options& options)
        : cable_(std::make_shared<VirtualCable>(pedal, options)), identity_(options.identity) {}
    /// Unplugs. `run` must have returned.
    ~VirtualHidManager() override { unplug(); }
    VirtualHidManager(const VirtualHidManager&) = delete;
    VirtualHidManager& operator=(const VirtualHidManager&) = delete;

    bool open(const HidMatching& matching, HidCallbacks callbacks) override;
    void run() override;
    void stop() override { cable_->stop(); }

    // See VirtualCable.
    void plug() { cable_->plug(); }
    void unplug() { cable_->unplug(); }
    [[nodiscard]] Activity activity() const { return cable_->activity(); }
    [[nodiscard]] bool waitFor(const std::function<bool(const Activity&)>& wanted,
                               std::chrono::milliseconds timeout = std::chrono::seconds(10)) const {
        return cable_->waitFor(wanted, timeout);
    }

private:
    const std::shared_ptr<VirtualCable> cable_;
    const HidMatching identity_;
    HidCallbacks callbacks_;
    /// Whether `open` was called for this device's identity.
    bool watching_ = false;
};

}  // namespace kelvo
