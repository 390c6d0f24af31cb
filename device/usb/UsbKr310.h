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

/// A virtual KR310 as a USB device: the host's USB/IP bytes in, the bytes of its answers out. It has no clock and no
/// socket; the caller passes the time. One thread.
///
/// Output reports go to the pedal. This class implements Faults::refuseReport (the transfer stalls),
/// protocolErrorAtReport, noAnswerAtReport (until the host cancels the transfer) and unplugAtReport (see
/// `wantsUnplug`). A fault can make an input report longer than the endpoint's 64 bytes; it is cut to the length that
/// the host requested.
class UsbKr310 {
public:
    using Clock = std::chrono::steady_clock;

    /// The reaction of the OUT endpoint to a report: accept it, leave it pending, or stall.
    enum class Output { Accept, Hang, Stall };

    /// `pedal` must outlive this object.
    explicit UsbKr310(VirtualKr310& pedal) : pedal_(pedal) {}

    /// The cable has been plugged in: powers the pedal up and discards all requests and answers. `Output` stays.
    void powerUp();

    /// Processes bytes from the host. Throws std::runtime_error with the reason when they break the protocol; unplug
    /// the cable then.
    void receive(std::span<const std::uint8_t> bytes, Clock::time_point now);

    /// Also applies to the pending output reports: they are accepted or they stall.
    void setOutput(Output output, Clock::time_point now);

    /// `sink` gets every later output report that goes to the pedal.
    void setReportSink(std::function<void(std::span<const std::uint8_t> report)> sink) {
        reportSink_ = std::move(sink);
    }

    /// Answers pending IN requests with the input reports that are due.
    void deliverDue(Clock::time_point now);

    /// When `deliverDue` can answer a request; nothing without a pending request or a report.
    [[nodiscard]] std::optional<Clock::time_point> nextDue() const;

    /// The bytes for the host since the last call.
    [[nodiscard]] std::vector<std::uint8_t> takeAnswers();

    /// A fault requires the cable to be unplugged. Everything is ignored until `powerUp`.
    [[nodiscard]] bool wantsUnplug() const { return wantsUnplug_; }

private:
    void handle(const UsbRequest& request, Clock::time_point now);
    void handle(const UsbUnlink& unlink);
    void control(const UsbRequest& request);
    void takeOutput(const UsbRequest& request, Clock::time_point now);
    void takeReport(const UsbRequest& request, Clock::time_point now);

    VirtualKr310& pedal_;
    UsbIpReader reader_;
    Output output_ = Output::Accept;
    std::function<void(std::span<const std::uint8_t>)> reportSink_ = [](const auto&) {};
    bool wantsUnplug_ = false;
    /// Pending requests in the order of their arrival.
    std::vector<UsbRequest> waitingIn_;
    std::vector<UsbRequest> waitingOut_;
    std::multimap<Clock::time_point, std::vector<std::uint8_t>> reports_;
    std::vector<std::uint8_t> answers_;
};

}  // namespace kelvo
