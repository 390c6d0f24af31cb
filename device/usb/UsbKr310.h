#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "UsbIp.h"
#include "VirtualKr310.h"

namespace kelvo {

/// A virtual KR310 as a USB device: takes the host's USB/IP bytes, gives the bytes of its answers. It has no clock and
/// no socket; its owner says what time it is. One thread.
///
/// An output report of 64 bytes goes to the pedal; of Faults it also obeys refuseReport (that transfer stalls),
/// protocolErrorAtReport, noAnswerAtReport (until the host gives it up) and unplugAtReport (see `wantsUnplug`). An
/// input report is longer than the endpoint's 64 bytes only by a fault, and is cut to what the host asked for.
class UsbKr310 {
public:
    using Clock = std::chrono::steady_clock;

    /// What the OUT endpoint does with a report: take it, keep the host waiting, or stall.
    enum class Output { kTake, kHang, kStall };

    /// `pedal` outlives this object.
    explicit UsbKr310(VirtualKr310& pedal) : pedal_(pedal) {}

    /// The cable has been plugged in: the pedal is freshly powered up and nothing is under way. `Output` stays.
    void powerUp();

    /// Takes bytes of the host. Throws std::runtime_error, whose text is the reason, when they break the protocol; pull
    /// the cable then.
    void receive(std::span<const std::uint8_t> bytes, Clock::time_point now);

    /// A change also settles the output reports that hang: they are taken, or they stall.
    void setOutput(Output output, Clock::time_point now);

    /// Gets every output report from now on that goes to the pedal.
    void setReportSink(std::function<void(std::span<const std::uint8_t> report)> sink) {
        reportSink_ = std::move(sink);
    }

    /// Answers waiting IN requests with the input reports that are due.
    void deliverDue(Clock::time_point now);

    /// When `deliverDue` has something to do next; nothing while no request or no report is there.
    [[nodiscard]] std::optional<Clock::time_point> nextDue() const;

    /// The bytes for the host since the last call.
    [[nodiscard]] std::vector<std::uint8_t> takeAnswers();

    /// A report has come at which the cable is to be pulled. From then on everything is ignored until `powerUp`.
    [[nodiscard]] bool wantsUnplug() const { return wantsUnplug_; }

private:
    void handle(const UsbRequest& request, Clock::time_point now);
    void handle(const UsbUnlink& unlink);
    void control(const UsbRequest& request);
    void takeOutput(const UsbRequest& request, Clock::time_point now);
    void takeReport(const UsbRequest& request, Clock::time_point now);

    VirtualKr310& pedal_;
    UsbIpReader reader_;
    Output output_ = Output::kTake;
    std::function<void(std::span<const std::uint8_t>)> reportSink_ = [](const auto&) {};
    bool wantsUnplug_ = false;
    /// Requests without an answer so far, in the order in which they came.
    std::vector<UsbRequest> waitingIn_;
    std::vector<UsbRequest> waitingOut_;
    std::multimap<Clock::time_point, std::vector<std::uint8_t>> reports_;
    std::vector<std::uint8_t> answers_;
};

}  // namespace kelvo
