#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "FrameSearch.h"

namespace kelvo::fuzz {

/// A good frame around `body`, which is the command and the data, at most 1018 bytes.
inline test::Bytes soundFrame(std::span<const std::uint8_t> body) {
    test::Bytes frame{0xAA, 0x55, static_cast<std::uint8_t>(body.size() & 0xFF),
                      static_cast<std::uint8_t>(body.size() >> 8)};
    frame.insert(frame.end(), body.begin(), body.end());
    const unsigned crc = test::plainCrc(frame.begin() + 2, frame.end());
    frame.push_back(static_cast<std::uint8_t>(crc >> 8));
    frame.push_back(static_cast<std::uint8_t>(crc & 0xFF));
    return frame;
}

/// `bytes` as input reports, up to 63 of them in each; the bytes after them are 0xAA.
inline std::vector<test::Bytes> inReports(std::span<const std::uint8_t> bytes) {
    std::vector<test::Bytes> reports;
    while (!bytes.empty()) {
        const auto piece = bytes.first(std::min<std::size_t>(bytes.size(), 63));
        test::Bytes& report = reports.emplace_back(1, static_cast<std::uint8_t>(piece.size()));
        report.insert(report.end(), piece.begin(), piece.end());
        report.resize(64, 0xAA);
        bytes = bytes.subspan(piece.size());
    }
    return reports;
}

/// Fills the unpacker's complete buffer, so that nothing of an earlier input is left.
inline const std::vector<test::Bytes>& longestFrame() {
    static const std::vector<test::Bytes> reports = inReports(soundFrame(test::Bytes(1018)));
    return reports;
}

}  // namespace kelvo::fuzz
