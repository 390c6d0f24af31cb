#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "HidManager.h"
#include "VirtualHidManager.h"

namespace kelvo {

/// What lies between a VirtualHidManager, the HidDevices it has announced, and the pedal: who is plugged in, and which
/// reports are under way. Shared, because a HidDevice may outlive its manager.
///
/// All functions may be called on any thread. None calls the host; `send` calls the pedal, and so its line sink, with
/// nothing locked.
class VirtualCable : public std::enable_shared_from_this<VirtualCable> {
public:
    using Activity = VirtualHidManager::Activity;

    enum class EventKind { kStop, kArrival, kRemoval, kInput };

    struct Event {
        EventKind kind = EventKind::kStop;
        std::shared_ptr<HidDevice> device;
        std::vector<std::uint8_t> report;
    };

    VirtualCable(VirtualKr310& pedal, const VirtualHidManager::Options& options) : pedal_(pedal), options_(options) {}

    void plug();
    void unplug();

    /// One output report to the pedal; false when `device` is no longer plugged in, or the pedal refuses.
    [[nodiscard]] bool send(const HidDevice* device, std::span<const std::uint8_t, kReportSize> report);

    /// Waits for the next thing to tell the host. With `watching` false no device arrives. After kStop a device that is
    /// still plugged in arrives anew.
    [[nodiscard]] Event next(bool watching);
    /// The host's callback for an event of this kind has returned.
    void served(EventKind kind);
    void stop();

    [[nodiscard]] Activity activity() const;
    [[nodiscard]] bool waitFor(const std::function<bool(const Activity&)>& wanted,
                               std::chrono::milliseconds timeout) const;

private:
    using Clock = std::chrono::steady_clock;

    bool takesReport(const HidDevice* device, std::unique_lock<std::mutex>& lock);
    void detach();
    void recordChanged();

    VirtualKr310& pedal_;
    const VirtualHidManager::Options options_;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    /// The device on the cable, and the one the host knows of.
    std::shared_ptr<HidDevice> attached_;
    std::shared_ptr<HidDevice> announced_;
    std::multimap<Clock::time_point, std::vector<std::uint8_t>> pending_;
    bool delivering_ = false;
    bool stopping_ = false;
    std::uint32_t outputReports_ = 0;
    Clock::time_point nextOutput_;
    Clock::time_point nextInput_;
    Activity activity_;
};

}  // namespace kelvo
