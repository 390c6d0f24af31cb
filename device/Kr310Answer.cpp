#include "Kr310Answer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace kelvo {
namespace {

/// A stray byte, a false start, and a header with an impossible LENGTH.
constexpr std::array<std::uint8_t, 7> kGarbage = {0x13, 0xAA, 0x00, 0xAA, 0x55, 0xFF, 0xFF};
constexpr std::uint8_t kFiller = 0xAA;
constexpr std::uint8_t kImpossibleCount = 255;

bool isAffected(std::uint32_t every, FrameCounter frame) {
    return every != 0 && frame % every == 0;
}

std::size_t reportSize(const Faults& faults, std::size_t index) {
    const bool isLong = faults.reportsOf65 && (!faults.reportsOf63 || index % 2 == 1);
    const std::size_t sound = kReportPayload + 1;
    return isLong ? sound + 1 : sound - (faults.reportsOf63 ? 1 : 0);
}

}  // namespace

void AnswerWriter::add(std::chrono::microseconds due, Frame frame) {
    if (faults_.longFrames) {
        frame.data.push_back(0);
    }
    std::vector<std::uint8_t> bytes = writeFrame(frame);
    ++counter_;
    if (isAffected(faults_.corruptCrcEvery, counter_)) {
        bytes.back() ^= 0xFF;
    }
    if (isAffected(faults_.garbageInsideEvery, counter_)) {
        const auto middle = bytes.begin() + static_cast<std::ptrdiff_t>(bytes.size() / 2);
        bytes.insert(middle, kGarbage.begin(), kGarbage.end());
    }
    if (faults_.garbageBefore && stretches_.empty()) {
        bytes.insert(bytes.begin(), kGarbage.begin(), kGarbage.end());
    }
    if (faults_.garbageBetween) {
        bytes.insert(bytes.end(), kGarbage.begin(), kGarbage.end());
    }
    stretches_.push_back({due + faults_.answerDelay, std::move(bytes)});
}

std::vector<InputReport> AnswerWriter::finish() {
    const std::size_t payload =
        faults_.splitReports == 0 ? kReportPayload : std::min<std::size_t>(faults_.splitReports, kReportPayload);
    std::vector<InputReport> reports;
    std::vector<std::uint8_t> held;
    const auto send = [&](std::chrono::microseconds due) {
        std::vector<std::uint8_t> report(reportSize(faults_, reports.size()), kFiller);
        report[0] = faults_.countOver63 ? kImpossibleCount : static_cast<std::uint8_t>(held.size());
        std::copy_n(held.begin(), std::min(held.size(), report.size() - 1), report.begin() + 1);
        reports.push_back({due, std::move(report)});
        held.clear();
    };
    for (const Stretch& stretch : stretches_) {
        for (const std::uint8_t byte : stretch.bytes) {
            held.push_back(byte);
            if (held.size() == payload) {
                send(stretch.due);
            }
        }
        const bool continues = faults_.mergedReports && &stretch != &stretches_.back();
        if (!held.empty() && !continues) {
            send(stretch.due);
        }
    }
    return reports;
}

}  // namespace kelvo
