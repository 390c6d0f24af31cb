#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "HidManager.h"
#include "VirtualKr310.h"

namespace kelvo {

/// The identifiers in the KR310's USB device descriptor.
inline constexpr HidMatching kKr310Identity{0x0483, 0x5703, 200};

class VirtualCable;

/// A HID layer with one virtual KR310 and a cable to it. The pedal is unplugged at first.
class VirtualHidManager : public HidManager {
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

    /// `pedal` must outlive the manager and every setReport that is under way.
    explicit VirtualHidManager(VirtualKr310& pedal);
    VirtualHidManager(VirtualKr310& pedal, const Options& options);
    /// Unplugs. `run` must have returned.
    ~VirtualHidManager() override;
    VirtualHidManager(const VirtualHidManager&) = delete;
    VirtualHidManager& operator=(const VirtualHidManager&) = delete;

    bool open(const HidMatching& matching, HidCallbacks callbacks) override;
    void run() override;
    void stop() override;

    /// Puts the pedal on the cable, as a new HidDevice and freshly powered up. Without effect when it is plugged in.
    /// Any thread.
    void plug();
    /// Takes the pedal off; answers that are still under way are lost. Without effect when it is not plugged in. Any
    /// thread.
    void unplug();

    /// A copy of the record. Any thread.
    [[nodiscard]] Activity activity() const;

    /// Waits until `wanted` holds for the record, and returns false when it did not within `timeout`. `wanted` may look
    /// at the pedal but not at this manager. Any thread but the one inside `run`.
    [[nodiscard]] bool waitFor(const std::function<bool(const Activity&)>& wanted,
                               std::chrono::milliseconds timeout = std::chrono::seconds(10)) const;

private:
    const std::shared_ptr<VirtualCable> cable_;
    const HidMatching identity_;
    HidCallbacks callbacks_;
    /// Open, and asked for this very device.
    bool watching_ = false;
};

}  // namespace kelvo
