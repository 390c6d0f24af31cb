#include "UsbKr310.h"

#include <algorithm>
#include <utility>

#include "UsbControl.h"

namespace kelvo {

void UsbKr310::powerUp() {
    pedal_.powerUp();
    reader_.reset();
    wantsUnplug_ = false;
    waitingIn_.clear();
    waitingOut_.clear();
    reports_.clear();
    answers_.clear();
}

void UsbKr310::receive(std::span<const std::uint8_t> bytes, Clock::time_point now) {
    for (const UsbIpMessage& message : reader_.take(bytes)) {
        if (wantsUnplug_) {
            return;
        }
        if (const auto* const request = std::get_if<UsbRequest>(&message)) {
            handle(*request, now);
        } else {
            handle(std::get<UsbUnlink>(message));
        }
    }
    deliverDue(now);
}

void UsbKr310::handle(const UsbRequest& request, Clock::time_point now) {
    if (request.endpoint == 0) {
        control(request);
    } else if (request.endpoint != kUsbReportEndpoint) {
        appendSubmitAnswer(answers_, request, kUsbStall, {});
    } else if (request.direction == UsbDirection::In) {
        waitingIn_.push_back(request);
    } else {
        takeOutput(request, now);
    }
}

void UsbKr310::handle(const UsbUnlink& unlink) {
    const auto isTarget = [&](const UsbRequest& request) { return request.number == unlink.target; };
    const bool wasPending = std::erase_if(waitingIn_, isTarget) + std::erase_if(waitingOut_, isTarget) > 0;
    appendUnlinkAnswer(answers_, unlink, wasPending ? kUsbUnlinked : 0);
}

void UsbKr310::control(const UsbRequest& request) {
    auto answer = answerControl(request.setup);
    if (!answer) {
        appendSubmitAnswer(answers_, request, kUsbStall, {});
        return;
    }
    // The length in the header and the one in the setup bytes should be equal, but the host may send anything.
    answer->resize(std::min(answer->size(), request.length));
    appendSubmitAnswer(answers_, request, 0, *answer);
}

void UsbKr310::takeOutput(const UsbRequest& request, Clock::time_point now) {
    switch (output_) {
        case Output::Accept:
            return takeReport(request, now);
        case Output::Hang:
            return waitingOut_.push_back(request);
        case Output::Stall:
            return appendSubmitAnswer(answers_, request, kUsbStall, {});
    }
}

void UsbKr310::takeReport(const UsbRequest& request, Clock::time_point now) {
    switch (pedal_.deliverNext()) {
        case VirtualKr310::Delivery::Unplugged:
            wantsUnplug_ = true;
            return;
        case VirtualKr310::Delivery::Refused:
            return appendSubmitAnswer(answers_, request, kUsbStall, {});
        case VirtualKr310::Delivery::ProtocolError:
            return appendSubmitAnswer(answers_, request, kUsbProtocolError, {});
        case VirtualKr310::Delivery::NoAnswer:
            return waitingOut_.push_back(request);
        case VirtualKr310::Delivery::Accepted:
            break;
    }
    reportSink_(request.data);
    for (InputReport& report : pedal_.receive(request.data).reports) {
        reports_.emplace(now + report.due, std::move(report.bytes));
    }
    appendSubmitAnswer(answers_, request, 0, request.data);
}

void UsbKr310::setOutput(Output output, Clock::time_point now) {
    output_ = output;
    for (const UsbRequest& request : std::exchange(waitingOut_, {})) {
        if (!wantsUnplug_) {
            takeOutput(request, now);
        }
    }
    deliverDue(now);
}

void UsbKr310::deliverDue(Clock::time_point now) {
    while (!wantsUnplug_ && !waitingIn_.empty() && !reports_.empty() && reports_.begin()->first <= now) {
        const UsbRequest& request = waitingIn_.front();
        const std::span<const std::uint8_t> report(reports_.begin()->second);
        appendSubmitAnswer(answers_, request, 0, report.first(std::min(report.size(), request.length)));
        waitingIn_.erase(waitingIn_.begin());
        reports_.erase(reports_.begin());
    }
}

std::optional<UsbKr310::Clock::time_point> UsbKr310::nextDue() const {
    if (wantsUnplug_ || waitingIn_.empty() || reports_.empty()) {
        return std::nullopt;
    }
    return reports_.begin()->first;
}

std::vector<std::uint8_t> UsbKr310::takeAnswers() {
    return std::exchange(answers_, {});
}

}  // namespace kelvo
