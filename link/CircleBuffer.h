#pragma once

#include <cstdint>

namespace kelvo {

/// The receive ring: one process-wide queue of bytes between the HID thread, which puts, and the receive thread, which
/// gets. Every request is met in full or not at all; a request for 0 bytes always succeeds.

/// Most bytes the ring holds unread.
inline constexpr std::uint32_t kRxBufferSize = 10240;

/// Appends the n bytes at `data`. Returns false and stores nothing when they do not all fit: the bytes are lost, and
/// the unpacker finds its way back at the next frame header. Any thread.
bool putRX_buffer(const std::uint8_t* data, std::uint32_t n);

/// Takes the n oldest bytes into `out`, count first. Returns false and takes nothing when fewer than n are stored. Any
/// thread.
[[nodiscard]] bool getRX_buffer(std::uint32_t n, std::uint8_t* out);

/// Forgets all stored bytes. Any thread.
void ClearRx_buffer();

}  // namespace kelvo
