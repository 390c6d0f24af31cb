#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace kelvo {

/// Slots of each kind, words of each slot and bytes of each name in the pedal.
inline constexpr std::size_t kSlotCount = 10;
inline constexpr std::size_t kSlotWords = 512;
inline constexpr std::size_t kSlotNameSize = 10;

/// One CAB or AMP slot. In a CAB slot a word is a point of 24 bits, two's complement in bits 0 to 23; an AMP slot uses
/// all 32 bits.
struct Kr310Slot {
    /// At most kSlotNameSize bytes, none of them 0x00; empty in an empty slot.
    std::string name;
    std::array<std::uint32_t, kSlotWords> words{};
};

/// What the pedal keeps while it is off.
struct Kr310Memory {
    std::array<Kr310Slot, kSlotCount> cab;
    std::array<Kr310Slot, kSlotCount> amp;

    /// As the pedal leaves the factory: some slots filled, some empty.
    [[nodiscard]] static Kr310Memory factory();
};

/// CRC-32 (IEEE 802.3) of a slot's points, each as three bytes, low byte first.
[[nodiscard]] std::uint32_t cabCrc32(const Kr310Slot& slot);

/// CRC-32 (IEEE 802.3) of a slot's words, each as four bytes, low byte first.
[[nodiscard]] std::uint32_t ampCrc32(const Kr310Slot& slot);

}  // namespace kelvo
