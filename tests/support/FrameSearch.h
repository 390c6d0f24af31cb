#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kelvo::test {

using Bytes = std::vector<std::uint8_t>;

/// CRC-16/GSM, a byte at a time with no table: nothing in common with the code under test.
inline unsigned plainCrc(Bytes::const_iterator begin, Bytes::const_iterator end) {
    unsigned crc = 0;
    for (; begin != end; ++begin) {
        // What eight steps feed back, the upper four bits into the lower first, goes to the bits of x^12, x^5 and 1.
        unsigned carries = crc >> 8 ^ *begin;
        carries ^= carries >> 4;
        crc = (crc << 8 ^ carries << 12 ^ carries << 5 ^ carries) & 0xFFFF;
    }
    return crc ^ 0xFFFF;
}

/// The frames in a complete stream: the leftmost good frame wins, and the search continues after it; a byte
/// that begins no good frame is skipped. Stops where bytes are missing.
inline std::vector<Bytes> framesIn(const Bytes& stream) {
    std::vector<Bytes> frames;
    std::size_t at = 0;
    const auto byte = [&](std::size_t offset) { return stream[at + offset]; };
    while (at < stream.size()) {
        const std::size_t left = stream.size() - at;
        if (byte(0) != 0xAA || (left > 1 && byte(1) != 0x55)) {
            ++at;
            continue;
        }
        if (left < 4) {
            break;
        }
        const std::size_t length = byte(2) + 256U * byte(3);
        if (length > 1018) {
            ++at;
            continue;
        }
        if (left < length + 6) {
            break;
        }
        const auto frame = stream.begin() + static_cast<std::ptrdiff_t>(at);
        const auto crc = frame + static_cast<std::ptrdiff_t>(length + 4);
        if (plainCrc(frame + 2, crc) != 256U * crc[0] + crc[1]) {
            ++at;
            continue;
        }
        frames.emplace_back(frame, crc + 2);
        at += length + 6;
    }
    return frames;
}

}  // namespace kelvo::test
