#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

#include "DeviceTesting.h"

namespace kelvo {

inline constexpr std::uint32_t kStalled = 0xFFFFFFE0;
inline constexpr std::uint32_t kUnlinked = 0xFFFFFF98;

/// A USB/IP header of these words, with zeros up to its 48 bytes, and the data after it.
[[nodiscard]] inline Bytes usbIp(std::initializer_list<std::uint32_t> words, const Bytes& data = {}) {
    Bytes header;
    for (const std::uint32_t word : words) {
        for (const int shift : {24, 16, 8, 0}) {
            header.push_back(static_cast<std::uint8_t>(word >> shift));
        }
    }
    header.resize(48);
    return join({header, data});
}

/// CMD_SUBMIT as a host sends it: an output report, and a request for an input report.
[[nodiscard]] inline Bytes outRequest(std::uint32_t number, const Bytes& report) {
    return usbIp({1, number, 0x10002, 0, 1, 0x200, static_cast<std::uint32_t>(report.size())}, report);
}
[[nodiscard]] inline Bytes inRequest(std::uint32_t number, std::uint32_t length = 64) {
    return usbIp({1, number, 0x10002, 1, 1, 0x200, length});
}
/// CMD_UNLINK.
[[nodiscard]] inline Bytes unlinkRequest(std::uint32_t number, std::uint32_t target) {
    return usbIp({2, number, 0x10002, 0, 0, target});
}

/// RET_SUBMIT to a request that succeeded, to one that failed, and RET_UNLINK.
[[nodiscard]] inline std::string answer(std::uint32_t number, std::uint32_t length, const Bytes& data = {}) {
    return hex(usbIp({3, number, 0, 0, 0, 0, length}, data));
}
[[nodiscard]] inline std::string failure(std::uint32_t number, std::uint32_t status) {
    return hex(usbIp({3, number, 0, 0, 0, status}));
}
[[nodiscard]] inline std::string unlinkAnswer(std::uint32_t number, std::uint32_t status) {
    return hex(usbIp({4, number, 0, 0, 0, status}));
}

/// The one report of the frame that asks for the pedal's names.
[[nodiscard]] inline Bytes connectReport() {
    return makeReport(connectFrame());
}

}  // namespace kelvo
