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
    } else if (request.direction == UsbDirection::kIn) {
        waitingIn_.push_back(request);
    } else {
        takeOutput(request, now);
    }
}

void UsbKr310::handle(const UsbUnlink& unlink) {
    const auto isTarget = [&](const UsbRequest& request) { return request.number == unlink.target; };
    const bool waiting = std::erase_if(waitingIn_, isTarget) + std::erase_if(waitingOut_, isTarget) > 0;
    appendUnlinkAnswer(answers_, unlink, waiting ? kUsbUnlinked : 0);
}

void UsbKr310::control(const UsbRequest& request) {
    auto answer = answerControl(request.setup);
    if (!answer) {
        appendSubmitAnswer(answers_, request, kUsbStall, {});
        return;
    }
    // The header's length and the one in the setup bytes come from the same place, but neither is ours to trust.
    answer->resize(std::min(answer->size(), request.length));
    appendSubmitAnswer(answers_, request, 0, *answer);
}

void UsbKr310::takeOutput(const UsbRequest& request, Clock::time_point now) {
    switch (output_) {
        case Output::kTake:
            return takeReport(request, now);
        case Output::kHang:
            return waitingOut_.push_back(request);
        case Output::kStall:
            return appendSubmitAnswer(answers_, request, kUsbStall, {});
    }
}

void UsbKr310::takeReport(const UsbRequest& request, Clock::time_point now) {
    switch (pedal_.deliverNext()) {
        case VirtualKr310::Delivery::kUnplugged:
            wantsUnplug_ = true;
            return;
        case VirtualKr310::Delivery::kRefused:
            return appendSubmitAnswer(answers_, request, kUsbStall, {});
        case VirtualKr310::Delivery::kProtocolError:
            return appendSubmitAnswer(answers_, request, kUsbProtocolError, {});
        case VirtualKr310::Delivery::kNoAnswer:
            return waitingOut_.push_back(request);
        case VirtualKr310::Delivery::kTaken:
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
