#include "VirtualKr310.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <optional>
#include <utility>

namespace kelvo {
namespace {

/// Host to pedal: connect, import (acknowledged with the same code), delete.
constexpr std::uint8_t kConnect = 0xE0;
constexpr std::uint8_t kCabData = 0xE1;
constexpr std::uint8_t kAmpData = 0xE2;
constexpr std::uint8_t kDeleteCab = 0xE4;
/// Pedal to host: names and start-up progress.
constexpr std::uint8_t kAmpNames = 0xE3;
constexpr std::uint8_t kCabNames = 0x85;
constexpr std::uint8_t kProgress = 0xA5;

constexpr std::size_t kConnectData = 1;
constexpr std::size_t kDeleteData = 514;
constexpr std::uint8_t kDone = 199;
constexpr std::array<std::uint8_t, 2> kBeyondDone = {200, 255};
constexpr std::uint8_t kCabPlanes = 3;
constexpr std::uint8_t kAmpPlanes = 4;

using Slots = std::array<Kr310Slot, kSlotCount>;

std::string printable(std::string_view name) {
    std::string text(name);
    std::ranges::replace_if(
        text, [](char c) { return c < ' ' || c > '~'; }, '?');
    return text;
}

Frame nameList(std::uint8_t command, const Slots& slots, char padding) {
    std::string names;
    for (const Kr310Slot& slot : slots) {
        std::string name = slot.name;
        name.resize(kSlotNameSize, padding);
        names += name;
    }
    return {command, {names.begin(), names.end()}};
}

}  // namespace

VirtualKr310::VirtualKr310(Kr310Memory memory, LineSink sink)
    : sink_(std::move(sink)), memory_(std::move(memory)), cabTransfer_(kCabPlanes), ampTransfer_(kAmpPlanes) {}

void VirtualKr310::setStartup(const Kr310Startup& startup) {
    const std::lock_guard lock(mutex_);
    startup_ = startup;
}

void VirtualKr310::setFaults(const Faults& faults) {
    const std::lock_guard lock(mutex_);
    faults_ = faults;
}

Faults VirtualKr310::faults() const {
    const std::lock_guard lock(mutex_);
    return faults_;
}

Kr310Memory VirtualKr310::memory() const {
    const std::lock_guard lock(mutex_);
    return memory_;
}

void VirtualKr310::powerUp() {
    const std::lock_guard lock(mutex_);
    outputReports_ = 0;
    reader_.reset();
    cabTransfer_.reset();
    ampTransfer_.reset();
}

VirtualKr310::Delivery VirtualKr310::deliverNext() {
    const std::lock_guard lock(mutex_);
    ++outputReports_;
    for (const auto& [report, delivery] : {std::pair(faults_.unplugAtReport, Delivery::Unplugged),
                                           {faults_.refuseReport, Delivery::Refused},
                                           {faults_.protocolErrorAtReport, Delivery::ProtocolError},
                                           {faults_.noAnswerAtReport, Delivery::NoAnswer}}) {
        if (report == outputReports_) {
            return delivery;
        }
    }
    return Delivery::Accepted;
}

VirtualKr310::Reaction VirtualKr310::receive(std::span<const std::uint8_t> report) {
    Reaction reaction;
    {
        const std::lock_guard lock(mutex_);
        for (const Frame& frame : reader_.takeReport(report)) {
            AnswerWriter answer(faults_, frameCounter_);
            handle(frame, answer, reaction.changes);
            std::ranges::move(answer.finish(), std::back_inserter(reaction.reports));
        }
    }
    std::ranges::for_each(reaction.changes, sink_);
    return reaction;
}

void VirtualKr310::handle(const Frame& frame, AnswerWriter& answer, std::vector<std::string>& changes) {
    switch (frame.command) {
        case kConnect:
            return connect(frame, answer);
        case kCabData:
            return takePacket(kCabBank, cabTransfer_, frame, answer, changes);
        case kAmpData:
            return takePacket(kAmpBank, ampTransfer_, frame, answer, changes);
        case kDeleteCab:
            return deleteCab(frame, changes);
        default:
            return;
    }
}

void VirtualKr310::connect(const Frame& frame, AnswerWriter& answer) const {
    if (frame.data.size() != kConnectData || faults_.silentFromPhase == 0) {
        return;
    }
    std::chrono::microseconds due{0};
    const auto progress = [&](std::uint32_t value) {
        answer.add(due, {kProgress, {static_cast<std::uint8_t>(value)}});
        due += startup_.progressPace;
    };
    const auto names = [&] {
        const Frame cab = nameList(kCabNames, memory_.cab, '\0');
        const Frame amp = nameList(kAmpNames, memory_.amp, ' ');
        answer.add(due, faults_.ampNamesFirst ? amp : cab);
        answer.add(due, faults_.ampNamesFirst ? cab : amp);
    };
    for (std::uint32_t value = 0; value < kDone; value += std::clamp<std::uint32_t>(startup_.progressStep, 1, kDone)) {
        progress(value);
    }
    if (faults_.progressOver199) {
        std::ranges::for_each(kBeyondDone, progress);
    }
    if (!faults_.namesAfterDone) {
        names();
    }
    answer.add(due, {kProgress, {kDone}});
    if (faults_.namesAfterDone) {
        due += *faults_.namesAfterDone;
        names();
    }
}

void VirtualKr310::takePacket(const Kr310Bank& bank, Kr310Transfer& transfer, const Frame& frame, AnswerWriter& answer,
                              std::vector<std::string>& changes) {
    constexpr std::size_t slotAndPhase = 2;
    if (frame.data.size() < slotAndPhase || !transfer.fits(frame.data[1], frame.data.size() - slotAndPhase)) {
        return;
    }
    const std::uint8_t slot = frame.data[0];
    std::optional<Kr310Slot> content = transfer.take(slot, frame.data[1], std::span(frame.data).subspan(slotAndPhase));
    if (content && slot < kSlotCount) {
        changes.push_back(bank.title(slot) + " <- \"" + printable(content->name) + "\" " + std::to_string(kSlotWords) +
                          ' ' + bank.unit + ", " + bank.crcText(*content));
        (memory_.*bank.place)[slot] = std::move(*content);
    }
    acknowledge(frame, transfer.lastPhase(), answer);
}

void VirtualKr310::acknowledge(const Frame& packet, std::uint8_t lastPhase, AnswerWriter& answer) const {
    const std::uint8_t phase = packet.data[1];
    if (faults_.silentFromPhase && phase >= *faults_.silentFromPhase) {
        return;
    }
    std::uint8_t reported = phase;
    if (faults_.wrongAcknowledgement) {
        reported = phase == lastPhase ? 1 : static_cast<std::uint8_t>(phase + 1);
    }
    const Frame frame{packet.command, {faults_.acknowledgementOutOfRange.value_or(reported)}};
    answer.add({}, frame);
    if (faults_.duplicateAcknowledgement) {
        answer.add({}, frame);
    }
}

void VirtualKr310::deleteCab(const Frame& frame, std::vector<std::string>& changes) {
    if (frame.data.size() != kDeleteData || frame.data[0] >= kSlotCount ||
        std::ranges::any_of(frame.data.begin() + 1, frame.data.end(), [](std::uint8_t byte) { return byte != 0; })) {
        return;
    }
    memory_.cab[frame.data[0]] = {};
    changes.push_back(kCabBank.title(frame.data[0]) + " cleared");
}

}  // namespace kelvo
