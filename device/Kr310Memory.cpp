#include "Kr310Memory.h"

#include <string_view>

namespace kelvo {
namespace {

using Names = std::array<std::string_view, kSlotCount>;

constexpr Names kCabNames = {"OPEN 1X12", "CLOSED2X12", "VINTAGE412", "MODERN 412", "TWEED 1X8",
                             "",          "BASS 4X10",  "",           "ACOUSTIC",   ""};
constexpr Names kAmpNames = {"CLEAN", "CRUNCH", "LEAD", "EDGE DRIVE", "HIGH GAIN", "", "JAZZ", "BASS", "", ""};

/// Largest positive point: a factory cabinet is a single full-scale click, which leaves the sound as it is.
constexpr std::uint32_t kFullScale = 0x7FFFFF;

std::uint32_t crc32(const Kr310Slot& slot, unsigned bytesPerWord) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const std::uint32_t word : slot.words) {
        for (unsigned byte = 0; byte < bytesPerWord; ++byte) {
            crc ^= (word >> (8 * byte)) & 0xFF;
            for (int bit = 0; bit < 8; ++bit) {
                crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320U : 0U);
            }
        }
    }
    return ~crc;
}

}  // namespace

Kr310Memory Kr310Memory::factory() {
    Kr310Memory memory;
    for (std::size_t slot = 0; slot < kSlotCount; ++slot) {
        memory.cab[slot].name = kCabNames[slot];
        memory.cab[slot].words[0] = kCabNames[slot].empty() ? 0 : kFullScale;
        memory.amp[slot].name = kAmpNames[slot];
    }
    return memory;
}

std::uint32_t cabCrc32(const Kr310Slot& slot) {
    return crc32(slot, 3);
}

std::uint32_t ampCrc32(const Kr310Slot& slot) {
    return crc32(slot, 4);
}

}  // namespace kelvo
