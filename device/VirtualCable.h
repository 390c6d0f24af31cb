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

/// What lies between a VirtualHidManager, the HidDevices it has announced, and the pedal: who is plugged in, and which
/// reports are under way. Shared, because a HidDevice may outlive its manager.
///
/// All functions may be called on any thread. None calls the host; `send` calls the pedal, and so its line sink, with
/// nothing locked.
class VirtualCable : public std::enable_shared_from_this<VirtualCable> {
public:
    struct Options {
        HidMatching identity = kKr310Identity;
        /// Least time from one report to the next in the same direction. An output report waits for its turn.
        std::chrono::microseconds wirePace{0};
        /// Keeps `outputReports` and `changes` of the activity, which grow as long as the manager lives.
        bool record = false;
    };

    /// What has happened since the manager was made.
    struct Activity {
        /// With Options::record: every output report that was taken, whole, added when the pedal has dealt with it; and
        /// the pedal's lines, one for each finished change of its memory.
        std::vector<Report> outputReports;
        std::vector<std::string> changes;
        std::size_t refusedReports = 0;
        /// These three count calls that have returned from the host's callback.
        std::size_t arrivals = 0;
        std::size_t removals = 0;
        std::size_t inputReports = 0;
        /// Input reports that are not yet due, or not yet delivered.
        std::size_t pendingReports = 0;
    };

    enum class EventKind { kStop, kArrival, kRemoval, kInput };

    struct Event {
        EventKind kind = EventKind::kStop;
        std::shared_ptr<HidDevice> device;
        std::vector<std::uint8_t> report;
    };

    VirtualCable(VirtualKr310& pedal, const Options& options) : pedal_(pedal), options_(options) {}

    /// Puts the pedal on the cable, as a new HidDevice and freshly powered up. Without effect when it is plugged in.
    void plug();
    /// Takes the pedal off; answers that are still under way are lost. Without effect when it is not plugged in.
    void unplug();

    /// One output report to the pedal; false when `device` is no longer plugged in, or the pedal refuses.
    [[nodiscard]] bool send(const HidDevice* device, std::span<const std::uint8_t, kReportSize> report);

    /// Waits for the next event for the host. With `watching` false no device arrives. After kStop a device that is
    /// still plugged in arrives anew.
    [[nodiscard]] Event next(bool watching);
    /// The host's callback for an event of this kind has returned.
    void served(EventKind kind);
    void stop();

    /// A copy of the record.
    [[nodiscard]] Activity activity() const;
    /// Waits until `wanted` holds for the record, and returns false when it did not within `timeout`. `wanted` may look
    /// at the pedal but not at this cable or its manager. Not on the thread that is inside `next` or a callback.
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
    /// The device on the cable, and the one the host knows of.
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
