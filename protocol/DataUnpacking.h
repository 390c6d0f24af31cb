#pragma once

#include <cstdint>

namespace kelvo {

/// The unpacker: makes frames out of the bytes in the receive ring. It has one state, for the whole process, and
/// belongs to the receive thread; only Delay_ms may be called on any other.

/// Forgets a frame that is only partly there. The next byte is taken for the first one of a frame.
void DUP_init();

/// Takes bytes out of the ring and hands on every frame that they complete and whose CRC is good. Returns when more
/// bytes are needed, or after dropping one byte that begins no frame. A frame that is not good is dropped without a
/// word; the search goes on at the next 0xAA among the bytes already taken.
void DUP_Unpack();

/// Hands the 1024 bytes at `frame`, a good frame and what earlier frames left behind it, to the application. Nothing
/// happens as long as there is none.
void C_CMD_CallBack(const std::uint8_t* frame);

/// Waits about 10 ms for a device; returns 0 if there is none. Otherwise unpacks every 10 ms until the device is gone,
/// empties the ring and returns 170. Body of the receive thread.
std::int32_t ReceiveThread();

/// Blocks the calling thread for `ms` milliseconds.
void Delay_ms(std::uint32_t ms);

}  // namespace kelvo
