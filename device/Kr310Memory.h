#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

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

/// The pedal's persistent memory.
struct Kr310Memory {
    std::array<Kr310Slot, kSlotCount> cab;
    std::array<Kr310Slot, kSlotCount> amp;

    /// The factory content: some slots are filled, some are empty.
    [[nodiscard]] static Kr310Memory factory();
};

/// The properties of the slots of one kind.
struct Kr310Bank {
    const char* label;
    /// The number of slot 0 on the pedal's display.
    std::size_t firstNumber;
    const char* unit;
    unsigned bytesPerWord;  ///< the low bytes that are used
    std::array<Kr310Slot, kSlotCount> Kr310Memory::*place;

    /// The slot's title on the display: CAB 27
    [[nodiscard]] std::string title(std::size_t slot) const;
    /// CRC-32 (IEEE 802.3) of a slot's words, the low byte of each first.
    [[nodiscard]] std::uint32_t crc32(const Kr310Slot& slot) const;
    /// The checksum as text: crc32 a0a36dee
    [[nodiscard]] std::string crcText(const Kr310Slot& slot) const;
};

inline constexpr Kr310Bank kCabBank{"CAB", 27, "points", 3, &Kr310Memory::cab};
inline constexpr Kr310Bank kAmpBank{"AMP", 56, "words", 4, &Kr310Memory::amp};

/// One line for each slot, the CAB slots first: CAB 27 "BRIGHT" crc32 a0a36dee
[[nodiscard]] std::vector<std::string> memoryLines(const Kr310Memory& memory);

}  // namespace kelvo
