#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "DeviceTesting.h"

namespace kelvo {

/// Words of the requests' numbers, and of a whole report's length.
constexpr auto kOne = "00 00 00 01";
constexpr auto kTwo = "00 00 00 02";
constexpr auto kThree = "00 00 00 03";
constexpr auto kSize = "00 00 00 40";

/// A CMD_SUBMIT header as a host sends it, written out: "number direction endpoint length" as hex words, and the setup.
struct HostRequest {
    std::string_view number = "00 00 00 01";
    std::string_view direction = "00 00 00 00";
    std::string_view endpoint = "00 00 00 01";
    std::string_view length = "00 00 00 40";
    std::string_view packets = "00 00 00 00";
    std::string_view setup = "00 00 00 00 00 00 00 00";

    [[nodiscard]] Bytes bytes(const Bytes& payload = {}) const;
};

/// An output report on the interrupt OUT endpoint, and a request for an input report.
[[nodiscard]] Bytes outRequest(std::string_view number, const Bytes& report);
[[nodiscard]] Bytes inRequest(std::string_view number);

/// A CMD_UNLINK header.
[[nodiscard]] Bytes unlinkRequest(std::string_view number, std::string_view target);

/// RET_SUBMIT: number, status and length as hex words, then what follows the header.
[[nodiscard]] std::string submitAnswer(std::string_view number, std::string_view status, std::string_view length,
                                       const Bytes& payload = {});
[[nodiscard]] std::string unlinkAnswer(std::string_view number, std::string_view status);

/// The one report of the frame that asks for the pedal's names.
[[nodiscard]] Bytes connectReport();

/// Joins byte strings.
[[nodiscard]] Bytes join(std::initializer_list<Bytes> pieces);

inline constexpr std::string_view kStallWord = "FF FF FF E0";
inline constexpr std::string_view kUnlinkedWord = "FF FF FF 98";
inline constexpr std::string_view kZeroWord = "00 00 00 00";

}  // namespace kelvo
