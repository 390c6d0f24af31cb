#include "MemoryLines.h"

#include <cstdint>
#include <cstdio>

namespace kelvo {
namespace {

constexpr int kFirstCab = 27;
constexpr int kFirstAmp = 56;

std::string slotLine(const char* kind, int number, const Kr310Slot& slot, std::uint32_t crc) {
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08x", static_cast<unsigned>(crc));
    return std::string(kind) + ' ' + std::to_string(number) + " \"" + slot.name + "\" crc32 " + digits;
}

}  // namespace

std::vector<std::string> memoryLines(const Kr310Memory& memory) {
    std::vector<std::string> lines;
    int number = kFirstCab;
    for (const Kr310Slot& slot : memory.cab) {
        lines.push_back(slotLine("CAB", number++, slot, cabCrc32(slot)));
    }
    number = kFirstAmp;
    for (const Kr310Slot& slot : memory.amp) {
        lines.push_back(slotLine("AMP", number++, slot, ampCrc32(slot)));
    }
    return lines;
}

}  // namespace kelvo
