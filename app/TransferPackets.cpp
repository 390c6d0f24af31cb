#include "TransferPackets.h"

#include <algorithm>

#include "CommandCodes.h"

namespace kelvo {
namespace {

constexpr std::size_t kSlotOffset = 5;
constexpr std::size_t kPhaseOffset = 6;
constexpr std::size_t kPayloadOffset = 7;
constexpr std::size_t kSentNameSize = 10;

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
    layOutLength(packet, 515);
    packet[kCommandOffset] = command;
}

bool layOutPacket(PacketBuffer& packet, const TransferKind& kind, std::uint8_t phase, std::int64_t row,
                  const PointBuffer& words, const NameBuffer& name) {
    layOutHeader(packet, kind.command);
    if (phase < 1 || phase > kind.namePhase) {
        return false;
    }
    packet[kSlotOffset] = lowByte(static_cast<std::uint64_t>(row));
    packet[kPhaseOffset] = phase;
    auto* const payload = packet.data() + kPayloadOffset;
    if (phase == kind.namePhase) {
        layOutLength(packet, 13);
        std::transform(name.begin(), name.begin() + kSentNameSize, payload,
                       [](char letter) { return static_cast<std::uint8_t>(letter); });
        return true;
    }
    const unsigned shift = 8U * (kind.namePhase - 1U - phase);
    std::transform(words.begin(), words.end(), payload, [shift](std::uint32_t word) { return lowByte(word >> shift); });
    return true;
}

}  // namespace kelvo
