#pragma once

#include <cstdint>

namespace kelvo {

/// CRC-16/GSM of exactly `count` bytes: polynomial 0x1021, initial register 0, most significant bit first, inverted at
/// the end. No bytes give 0xFFFF. Any thread.
[[nodiscard]] std::uint16_t crc16_Count(const std::uint8_t* data, std::uint32_t count);

/// Completes the frame that the caller has laid out, offsets 0 to LENGTH+3, with its CRC and sends it. `frame` must
/// have room for LENGTH + 6 bytes. A frame that cannot be sent is lost without a word: no device, no message. Any
/// thread, but two sends must not share a buffer at the same time.
void SendUartCmd(std::uint8_t* frame);

}  // namespace kelvo
