#pragma once

#include <cstdint>

namespace kelvo {

/// The unpacker: extracts frames from the bytes in the receive ring. Its state is process-wide and belongs to the
/// receive thread; only Delay_ms may be called on other threads.

/// Discards an incomplete frame. The next byte is then treated as the first byte of a frame.
void DUP_init();

/// Reads bytes from the ring and passes on every complete frame whose CRC is good. Returns when more bytes are needed,
/// or after dropping one byte that begins no frame. A bad frame is dropped silently; the search continues at the next
/// 0xAA among the bytes already read.
void DUP_Unpack();

/// Passes the 1024 bytes at `frame`, a good frame and what earlier frames left after it, to the application, if there
/// is one.
void C_CMD_CallBack(const std::uint8_t* frame);

/// Body of the receive thread. Waits about 10 ms for a device and returns 0 if there is none. Otherwise unpacks every
/// 10 ms until the device is gone, empties the ring and returns 170.
std::int32_t ReceiveThread();

/// Blocks the calling thread for `ms` milliseconds.
void Delay_ms(std::uint32_t ms);

}  // namespace kelvo
