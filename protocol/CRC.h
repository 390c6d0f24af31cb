#pragma once

#include <cstdint>

namespace kelvo {

/// CRC-16/GSM of exactly `count` bytes: polynomial 0x1021, initial register 0, most significant bit first, inverted at
/// the end. No bytes give 0xFFFF. Any thread.
[[nodiscard]] std::uint16_t crc16_Count(const std::uint8_t* data, std::uint32_t count);

/// Appends the CRC to the frame at offsets 0 to LENGTH+3 and sends it. `frame` must have space for LENGTH + 6 bytes. A
/// frame that cannot be sent is lost silently. Any thread, but no two at the same time with the same buffer.
void SendUartCmd(std::uint8_t* frame);

}  // namespace kelvo
