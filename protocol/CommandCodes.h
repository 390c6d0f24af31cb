#pragma once

#include <cstddef>
#include <cstdint>

namespace kelvo {

/// Layout of a frame, the same in both directions. LENGTH counts the command byte and the data.
///
///     offset          content
///     0, 1            0xAA 0x55
///     2, 3            LENGTH, low byte first
///     4               command
///     5 .. LENGTH+3   data
///     LENGTH+4, +5    CRC of offsets 2 .. LENGTH+3, high byte first
inline constexpr std::uint8_t kFrameHeader1 = 0xAA;
inline constexpr std::uint8_t kFrameHeader2 = 0x55;
inline constexpr std::size_t kHeader2Offset = 1;
inline constexpr std::size_t kLengthOffset = 2;
inline constexpr std::size_t kCommandOffset = 4;
inline constexpr std::size_t kDataOffset = 5;

/// Bytes of a frame that LENGTH does not count: the header, LENGTH itself and the CRC.
inline constexpr std::size_t kFrameOverhead = 6;

/// LENGTH, 0 to 65535, of the frame whose first four bytes are at `frame`.
constexpr std::uint16_t frameLength(const std::uint8_t* frame) {
    return static_cast<std::uint16_t>(frame[kLengthOffset] | frame[kLengthOffset + 1] << 8);
}

/// Command codes of the KR310.
inline constexpr std::uint8_t CMD_CONNECT = 0xE0;      ///< to the device: send names and progress
inline constexpr std::uint8_t CMD_IR_DATA = 0xE1;      ///< to the device: a packet of an IR; back: its acknowledgement
inline constexpr std::uint8_t CMD_AMP_DATA = 0xE2;     ///< to the device: a packet of an amp; back: its acknowledgement
inline constexpr std::uint8_t CMD_AMP_NAMES = 0xE3;    ///< from the device: the ten AMP slot names
inline constexpr std::uint8_t CMD_DELETE_CAB = 0xE4;   ///< to the device: clear a CAB slot
inline constexpr std::uint8_t CMD_CAB_NAMES = 0x85;    ///< from the device: the ten CAB slot names
inline constexpr std::uint8_t CMD_PRESET_PARA = 0xA5;  ///< from the device: progress of its answer, 0 to 199

}  // namespace kelvo
