#include "CRC.h"

#include <array>

#include "CommandCodes.h"
#include "RVHidClass.h"

namespace kelvo {
namespace {

/// Entry i is the register after i * 256 has been shifted through eight steps of the CCITT polynomial.
constexpr std::array<std::uint16_t, 256> ccitt_table = [] {
    std::array<std::uint16_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t crc = i << 8;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc << 1) ^ ((crc & 0x8000) != 0 ? 0x1021U : 0U);
        }
        table[i] = static_cast<std::uint16_t>(crc);
    }
    return table;
}();

}  // namespace

std::uint16_t crc16_Count(const std::uint8_t* data, std::uint32_t count) {
    std::uint16_t crc = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        crc = static_cast<std::uint16_t>(ccitt_table[(crc >> 8) ^ data[i]] ^ (crc << 8));
    }
    return crc ^ 0xFFFF;
}

void SendUartCmd(std::uint8_t* frame) {
    const std::uint32_t length = frameLength(frame);
    const std::uint16_t crc = crc16_Count(frame + kLengthOffset, length + 2);
    frame[length + kCommandOffset] = static_cast<std::uint8_t>(crc >> 8);
    frame[length + kCommandOffset + 1] = static_cast<std::uint8_t>(crc & 0xFF);
    HID_WreteData(frame, length + kFrameOverhead);
}

}  // namespace kelvo
