#include "Kr310Memory.h"

#include <cstdio>
#include <string_view>

namespace kelvo {
namespace {

using Names = std::array<std::string_view, kSlotCount>;

constexpr Names kFactoryCabNames = {"OPEN 1X12", "CLOSED2X12", "VINTAGE412", "MODERN 412", "TWEED 1X8",
                                    "",          "BASS 4X10",  "",           "ACOUSTIC",   ""};
constexpr Names kFactoryAmpNames = {"CLEAN", "CRUNCH", "LEAD", "EDGE DRIVE", "HIGH GAIN", "", "JAZZ", "BASS", "", ""};

/// The largest point. A factory cabinet is a single full-scale pulse, which does not change the sound.
constexpr std::uint32_t kFullScale = 0x7FFFFF;

}  // namespace

Kr310Memory Kr310Memory::factory() {
    Kr310Memory memory;
    for (std::size_t slot = 0; slot < kSlotCount; ++slot) {
        memory.cab[slot].name = kFactoryCabNames[slot];
        memory.cab[slot].words[0] = kFactoryCabNames[slot].empty() ? 0 : kFullScale;
        memory.amp[slot].name = kFactoryAmpNames[slot];
    }
    return memory;
}

std::string Kr310Bank::title(std::size_t slot) const {
    return std::string(label) + ' ' + std::to_string(firstNumber + slot);
}

std::uint32_t Kr310Bank::crc32(const Kr310Slot& slot) const {
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

std::string Kr310Bank::crcText(const Kr310Slot& slot) const {
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08x", static_cast<unsigned>(crc32(slot)));
    return std::string("crc32 ") + digits;
}

std::vector<std::string> memoryLines(const Kr310Memory& memory) {
    std::vector<std::string> lines;
    for (const Kr310Bank& bank : {kCabBank, kAmpBank}) {
        for (std::size_t slot = 0; slot < kSlotCount; ++slot) {
            const Kr310Slot& held = (memory.*bank.place)[slot];
            lines.push_back(bank.title(slot) + " \"" + held.name + "\" " + bank.crcText(held));
        }
    }
    return lines;
}

}  // namespace kelvo
