#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kelvo {

/// A frame without header, LENGTH and CRC.
struct Frame {
    std::uint8_t command = 0;
    std::vector<std::uint8_t> data;
};

/// Most frame bytes in one report, after its count byte.
inline constexpr std::size_t kReportPayload = 63;

/// The pedal's CRC-16, computed bit by bit: polynomial 0x1021, initial value 0, not reflected, inverted at the end.
[[nodiscard]] std::uint16_t frameCrc(std::span<const std::uint8_t> bytes);

/// Encodes a frame: 0xAA 0x55, LENGTH low byte first, command, data, CRC high byte first. At most 1017 bytes of data.
[[nodiscard]] std::vector<std::uint8_t> writeFrame(const Frame& frame);

/// Finds the frames in a stream of reports. After an error the search continues at the next header pair, so a good
/// frame inside a broken one is found. Buffers less than one frame.
class FrameReader {
public:
    /// Returns the frames that this report completes, in order. Ignores a report that is not 64 bytes long or whose
    /// count byte is not 1 to 63.
    [[nodiscard]] std::vector<Frame> takeReport(std::span<const std::uint8_t> report);

    /// Discards an incomplete frame.
    void reset() { held_.clear(); }

private:
    std::vector<std::uint8_t> held_;
};

}  // namespace kelvo
