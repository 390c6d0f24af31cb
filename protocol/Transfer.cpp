#include "Transfer.h"

#include <algorithm>

#include "CommandCodes.h"

namespace kelvo {
namespace {

constexpr std::size_t kSlotOffset = 5;
constexpr std::size_t kPhaseOffset = 6;
constexpr std::size_t kPayloadOffset = 7;

constexpr std::uint8_t lowByte(std::uint64_t value) {
    return static_cast<std::uint8_t>(value & 0xFF);
}

void layOutLength(PacketBuffer& packet, std::uint16_t length) {
    packet[kLengthOffset] = lowByte(length);
    packet[kLengthOffset + 1] = lowByte(length >> 8U);
}

}  // namespace

const TransferKind kIRTransfer{.command = CMD_IR_DATA, .namePhase = 4};
const TransferKind kAMPTransfer{.command = CMD_AMP_DATA, .namePhase = 5};

void layOutHeader(PacketBuffer& packet, std::uint8_t command) {
    packet[0] = kFrameHeader1;
    packet[kHeader2Offset] = kFrameHeader2;
    layOutLength(packet, kDataLength);
    packet[kCommandOffset] = command;
}

void Transfer::begin(std::uint32_t number, int row, const PointBuffer& words, const NameBuffer& name) {
    tick_ = 1;
    lastSent_ = 0;
    words_ = words;
    name_ = name;
    progress_ = {.number = number, .row = static_cast<std::int16_t>(row)};
}

bool Transfer::acknowledge(std::uint8_t phase) {
    if (phase < 1 || phase > kind_.namePhase) {
        return false;
    }
    if (phase == progress_.acknowledged + 1) {
        progress_.acknowledged = phase;
    }
    if (phase == kind_.namePhase) {
        return false;
    }
    tick_ = static_cast<std::uint8_t>(phase + 1);
    return true;
}

bool Transfer::layOutPacket(PacketBuffer& packet, std::int64_t slot) {
    layOutHeader(packet, kind_.command);
    if (tick_ < 1 || tick_ > kind_.namePhase) {
        return false;
    }
    // A repeated packet is harmless.
    const bool isInOrder = tick_ == lastSent_ || tick_ == lastSent_ + 1;
    if (progress_.acknowledged < kind_.namePhase && (!isInOrder || slot != progress_.row)) {
        progress_.isSpoiled = true;
    }
    lastSent_ = tick_;

    packet[kSlotOffset] = lowByte(static_cast<std::uint64_t>(slot));
    packet[kPhaseOffset] = tick_;
    auto* const payload = packet.data() + kPayloadOffset;
    if (tick_ == kind_.namePhase) {
        layOutLength(packet, kNameLengthField);
        std::transform(name_.begin(), name_.begin() + kNameLength, payload,
                       [](char letter) { return static_cast<std::uint8_t>(letter); });
        return true;
    }
    const unsigned shift = 8U * (kind_.namePhase - 1U - tick_);
    std::transform(words_.begin(), words_.end(), payload,
                   [shift](std::uint32_t word) { return lowByte(word >> shift); });
    return true;
}

void Transfer::slotCleared(int row) {
    const bool hasSentName = lastSent_ == kind_.namePhase || progress_.acknowledged == kind_.namePhase;
    if (progress_.row == row && hasSentName) {
        progress_.row = -1;
    }
}

}  // namespace kelvo
