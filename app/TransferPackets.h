#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvo {

/// Words of an impulse response and of an amp model alike.
inline constexpr std::size_t kPointCount = 512;

/// The largest frame that goes to the device: LENGTH 515 and six bytes around it.
inline constexpr std::size_t kPacketSize = 521;

/// A display name with its terminating NUL; only the first ten bytes travel.
inline constexpr std::size_t kNameSize = 20;

using PointBuffer = std::array<std::uint32_t, kPointCount>;
using PacketBuffer = std::array<std::uint8_t, kPacketSize>;
using NameBuffer = std::array<char, kNameSize>;

/// How one kind of data travels: phases 1 to namePhase - 1 carry one byte of every word each, from the highest byte
/// that is sent down to the lowest; namePhase carries the name.
struct TransferKind {
    std::uint8_t command;
    std::uint8_t namePhase;
};

extern const TransferKind kIRTransfer;
extern const TransferKind kAMPTransfer;

/// Writes the header, a LENGTH of 515 and the command; all other bytes stay what they were.
void layOutHeader(PacketBuffer& packet, std::uint8_t command);

/// Lays out the packet of one phase, all but its CRC. `row` is the slot; its low byte is sent. Returns false for a
/// phase that has no packet; then only the header was written.
[[nodiscard]] bool layOutPacket(PacketBuffer& packet, const TransferKind& kind, std::uint8_t phase, std::int64_t row,
                                const PointBuffer& words, const NameBuffer& name);

}  // namespace kelvo
