#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kelvo {

/// A frame without its envelope.
struct Frame {
    std::uint8_t command = 0;
    std::vector<std::uint8_t> data;
};

/// Frame bytes that one report holds after its count byte.
inline constexpr std::size_t kReportPayload = 63;

/// CRC-16 as the pedal works it out, bit by bit: polynomial 0x1021, start 0x0000, not reflected, inverted at the end.
[[nodiscard]] std::uint16_t frameCrc(std::span<const std::uint8_t> bytes);

/// The frame as bytes of the wire: 0xAA 0x55, LENGTH low byte first, command, data, CRC high byte first. At most 1017
/// bytes of data.
[[nodiscard]] std::vector<std::uint8_t> writeFrame(const Frame& frame);

/// Finds the frames in a stream of reports. After an error the search continues at the next header pair, so a good
/// frame inside a broken one is found. It keeps less than one frame.
class FrameReader {
public:
    /// The frames that became complete with this report, in their order. A report that is not 64 bytes long, or whose
    /// count byte is not 1 to 63, is ignored.
    [[nodiscard]] std::vector<Frame> takeReport(std::span<const std::uint8_t> report);

    /// Forgets a frame that is not yet complete.
    void reset() { held_.clear(); }

private:
    std::vector<std::uint8_t> held_;
};

}  // namespace kelvo
