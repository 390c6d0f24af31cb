#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "HidManager.h"
#include "Kr310Answer.h"
#include "VirtualKr310.h"

namespace kelvo {

/// The identifiers in the KR310's USB device descriptor.
inline constexpr HidMatching kKr310Identity{0x0483, 0x5703, 200};

/// Connects a VirtualHidManager and its HidDevices with the pedal: knows whether it is plugged in, and the reports in
/// transit. Shared, because a HidDevice may outlive its manager.
///
/// All functions may be called on any thread. None calls the host. `send` calls the pedal, and thus its line sink,
/// without holding a lock.
class VirtualCable : public std::enable_shared_from_this<VirtualCable> {
public:
    struct Options {
        HidMatching identity = kKr310Identity;
        /// Shortest time between two reports in the same direction. `send` waits for it.
        std::chrono::microseconds wirePace{0};
        /// Records `outputReports` and `changes` of the activity, which then grow without limit.
        bool record = false;
    };

    /// The events since the manager was made.
    struct Activity {
        /// With Options::record: every output report that the pedal has processed, and the pedal's lines, one for each
        /// change of its memory.
        std::vector<Report> outputReports;
        std::vector<std::string> changes;
        std::size_t refusedReports = 0;
        /// These three count finished calls of the host's callbacks.
        std::size_t arrivals = 0;
        std::size_t removals = 0;
        std::size_t inputReports = 0;
        /// Input reports that have not been delivered.
        std::size_t pendingReports = 0;
    };

    enum class EventKind { Stop, Arrival, Removal, Input };

    struct Event {
        EventKind kind = EventKind::Stop;
        std::shared_ptr<HidDevice> device;
        std::vector<std::uint8_t> report;
    };

    VirtualCable(VirtualKr310& pedal, const Options& options) : pedal_(pedal), options_(options) {}

    /// Powers the pedal up and plugs it in as a new HidDevice. No effect if it is plugged in.
    void plug();
    /// Unplugs the pedal. Undelivered answers are lost. No effect if it is not plugged in.
    void unplug();

    /// Sends one output report to the pedal. Returns false if `device` is not plugged in or the pedal refuses the
    /// report.
    [[nodiscard]] bool send(const HidDevice* device, std::span<const std::uint8_t, kReportSize> report);

    /// Waits for the next event for the host. No device arrives unless `watching`. After Stop a device that is still
    /// plugged in arrives again.
    [[nodiscard]] Event next(bool watching);
    /// The host's callback for an event of this kind has returned.
    void served(EventKind kind);
    void stop();

    /// A copy of the activity so far.
    [[nodiscard]] Activity activity() const;
    /// Waits until `wanted` is true for the activity. Returns false after `timeout`. `wanted` may use the pedal, but
    /// not this cable or its manager. Do not call it on the thread that is in `next` or in a callback.
    [[nodiscard]] bool waitFor(const std::function<bool(const Activity&)>& wanted,
                               std::chrono::milliseconds timeout) const;

private:
    using Clock = std::chrono::steady_clock;

    bool takesReport(const HidDevice* device, std::unique_lock<std::mutex>& lock);
    void detach();
    void recordChanged();

    VirtualKr310& pedal_;
    const Options options_;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    /// The device on the cable, and the one that the host knows.
    std::shared_ptr<HidDevice> attached_;
    std::shared_ptr<HidDevice> announced_;
    std::multimap<Clock::time_point, std::vector<std::uint8_t>> pending_;
    bool delivering_ = false;
    bool stopping_ = false;
    Clock::time_point nextOutput_;
    Clock::time_point nextInput_;
    Activity activity_;
};

}  // namespace kelvo
