#pragma once

#include <cstdint>

namespace kelvo {

/// The receive ring: one process-wide queue of bytes. The HID thread puts, the receive thread gets. A call moves all of
/// its bytes or none; a call with 0 bytes always succeeds.

/// Capacity in bytes.
inline constexpr std::uint32_t kRxBufferSize = 10240;

/// Appends the n bytes at `data`. Returns false and stores nothing when they do not all fit; the unpacker then
/// resynchronises at the next frame header. Any thread.
bool putRX_buffer(const std::uint8_t* data, std::uint32_t n);

/// Moves the n oldest bytes to `out`. Returns false and moves nothing when fewer than n are stored. Any thread.
[[nodiscard]] bool getRX_buffer(std::uint32_t n, std::uint8_t* out);

/// Discards all stored bytes. Any thread.
void ClearRx_buffer();

}  // namespace kelvo
