#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "VirtualKr310.h"

namespace kelvo {

using Bytes = std::vector<std::uint8_t>;

/// The commands of the imports.
constexpr std::uint8_t kCab = 0xE1;
constexpr std::uint8_t kAmp = 0xE2;

/// "AA 55 02".
[[nodiscard]] std::string hex(std::span<const std::uint8_t> bytes);
/// The bytes of "AA 55 02".
[[nodiscard]] Bytes unhex(std::string_view text);

/// One 64-byte report with its count byte; the bytes after the counted ones remain from an earlier report.
[[nodiscard]] Bytes makeReport(std::span<const std::uint8_t> payload);
/// The reports a host sends for a frame: 63 bytes each, the last one the rest.
[[nodiscard]] std::vector<Bytes> makeReports(std::span<const std::uint8_t> frame);

/// An import packet as bytes of the wire. Byte i of plane p is 16 * p + i + shift (low 8 bits), so that word 0 without
/// shift is 0x102030 or 0x10203040. The name is MYCAB or CLEAN, with shift OTHERNAME!. The CRCs are literals worked out
/// elsewhere, so only the combinations in the table of the source file exist.
[[nodiscard]] Bytes packet(std::uint8_t command, std::uint8_t slot, std::uint8_t phase, unsigned shift = 0);
/// CMD_DELETE_CAB for slot 0, 3, 9, 10 or 255.
[[nodiscard]] Bytes deletePacket(std::uint8_t slot);
/// AA 55 02 00 E0 00 02 25.
[[nodiscard]] Bytes connectFrame();

/// Gives the pedal these frames, each in separate reports, and gathers what it does.
VirtualKr310::Reaction send(VirtualKr310& pedal, const std::vector<Bytes>& frames);
/// Sends the packets of these phases for one slot.
VirtualKr310::Reaction sendPhases(VirtualKr310& pedal, std::uint8_t command, std::uint8_t slot, const Bytes& phases,
                                  unsigned shift = 0);

/// The counted bytes of every report, joined. A count over 63 means 63.
[[nodiscard]] std::string answered(const VirtualKr310::Reaction& reaction);

}  // namespace kelvo
