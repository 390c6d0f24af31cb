#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "VirtualKr310.h"

namespace kelvo {

using Bytes = std::vector<std::uint8_t>;

/// "AA 55 02".
[[nodiscard]] std::string hex(std::span<const std::uint8_t> bytes);
/// The bytes of "AA 55 02".
[[nodiscard]] Bytes unhex(std::string_view text);

/// Joins byte strings, or lists of frames.
template <typename Item>
[[nodiscard]] std::vector<Item> join(std::initializer_list<std::vector<Item>> pieces) {
    std::vector<Item> all;
    for (const std::vector<Item>& piece : pieces) {
        all.insert(all.end(), piece.begin(), piece.end());
    }
    return all;
}

/// One 64-byte report with its count byte; the bytes after the counted ones remain from an earlier report.
[[nodiscard]] Bytes makeReport(std::span<const std::uint8_t> payload);
/// The reports a host sends for a frame: 63 bytes each, the last one the rest.
[[nodiscard]] std::vector<Bytes> makeReports(std::span<const std::uint8_t> frame, std::size_t perReport = 63);

/// CMD_CONNECT: AA 55 02 00 E0 00 02 25.
[[nodiscard]] Bytes connectFrame();
/// The import packets of these phases. Byte i of plane p is 16 * p + i (low 8 bits), so word 0 is 0x102030 or
/// 0x10203040. The name is MYCAB or CLEAN.
[[nodiscard]] std::vector<Bytes> cab(std::uint8_t slot, const Bytes& phases = {1, 2, 3, 4});
[[nodiscard]] std::vector<Bytes> amp(std::uint8_t slot, const Bytes& phases = {1, 2, 3, 4, 5});
/// CMD_DELETE_CAB.
[[nodiscard]] Bytes deletion(std::uint8_t slot);

/// Faults by name: "silent=3 merge".
[[nodiscard]] Faults faultsOf(const std::string& texts);

/// Gives the pedal these frames, each in separate reports, and gathers what it does.
VirtualKr310::Reaction send(VirtualKr310& pedal, const std::vector<Bytes>& frames);
/// The frames that a host finds in the reports, each after its time: "E1: 01 | 20 ms A5: C7".
[[nodiscard]] std::string answered(const std::vector<InputReport>& reports);

}  // namespace kelvo
