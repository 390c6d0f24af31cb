#include "Kr310Frames.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace kelvo {
namespace {

constexpr std::uint8_t kHeader[] = {0xAA, 0x55};
constexpr std::size_t kReportBytes = kReportPayload + 1;
/// Bytes of a frame that LENGTH does not count: header, LENGTH itself, CRC.
constexpr std::size_t kEnvelope = 6;
/// LENGTH counts the command byte and the data. A frame without a command is invalid.
constexpr std::size_t kLeastLength = 1;
constexpr std::size_t kGreatestLength = 1018;

enum class Found { Frame, Broken, Incomplete };

/// Checks the frame that begins with the header pair at the front of `bytes`. Sets `length` for a good frame.
Found judge(std::span<const std::uint8_t> bytes, std::size_t& length) {
    if (bytes.size() < 4) {
        return Found::Incomplete;
    }
    length = bytes[2] + std::size_t{256} * bytes[3];
    if (length < kLeastLength || length > kGreatestLength) {
        return Found::Broken;
    }
    if (bytes.size() < length + kEnvelope) {
        return Found::Incomplete;
    }
    const std::uint16_t crc = frameCrc(bytes.subspan(2, length + 2));
    const bool sound = bytes[length + 4] == crc >> 8 && bytes[length + 5] == (crc & 0xFF);
    return sound ? Found::Frame : Found::Broken;
}

/// The number of bytes before the first header pair, or before a last byte that may begin one.
std::size_t strayBytes(std::span<const std::uint8_t> bytes) {
    const auto header = std::search(bytes.begin(), bytes.end(), std::begin(kHeader), std::end(kHeader));
    if (header == bytes.end() && !bytes.empty() && bytes.back() == kHeader[0]) {
        return bytes.size() - 1;
    }
    return static_cast<std::size_t>(header - bytes.begin());
}

}  // namespace

std::uint16_t frameCrc(std::span<const std::uint8_t> bytes) {
    std::uint32_t crc = 0;
    for (const std::uint8_t byte : bytes) {
        crc ^= std::uint32_t{byte} << 8;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc << 1) ^ ((crc & 0x8000) != 0 ? 0x1021U : 0U);
        }
    }
    return static_cast<std::uint16_t>(~crc);
}

std::vector<std::uint8_t> writeFrame(const Frame& frame) {
    const std::size_t length = frame.data.size() + 1;
    std::vector<std::uint8_t> bytes = {kHeader[0], kHeader[1], static_cast<std::uint8_t>(length & 0xFF),
                                       static_cast<std::uint8_t>(length >> 8), frame.command};
    std::ranges::copy(frame.data, std::back_inserter(bytes));
    const std::uint16_t crc = frameCrc(std::span(bytes).subspan(2));
    bytes.push_back(static_cast<std::uint8_t>(crc >> 8));
    bytes.push_back(static_cast<std::uint8_t>(crc & 0xFF));
    return bytes;
}

std::vector<Frame> FrameReader::takeReport(std::span<const std::uint8_t> report) {
    if (report.size() != kReportBytes || report[0] < 1 || report[0] > kReportPayload) {
        return {};
    }
    std::ranges::copy(report.subspan(1, report[0]), std::back_inserter(held_));

    std::vector<Frame> frames;
    std::span<const std::uint8_t> rest = held_;
    while (true) {
        rest = rest.subspan(strayBytes(rest));
        std::size_t length = 0;
        const Found found = judge(rest, length);
        if (found == Found::Incomplete) {
            break;
        }
        if (found == Found::Broken) {
            rest = rest.subspan(1);
            continue;
        }
        const auto data = rest.subspan(5, length - 1);
        frames.push_back({rest[4], {data.begin(), data.end()}});
        rest = rest.subspan(length + kEnvelope);
    }
    held_.erase(held_.begin(), held_.end() - static_cast<std::ptrdiff_t>(rest.size()));
    return frames;
}

}  // namespace kelvo
