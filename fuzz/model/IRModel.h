#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace kelvo::fuzz {

/// The required result for an impulse-response file.
struct IRModelResult {
    bool opened = false;
    bool converted = false;
    std::array<std::uint32_t, 512> points{};  ///< only valid when converted
};

/// A second, simple implementation of the file format and the conversion: byte by byte, with sums and products in
/// double precision, each rounded once. Shares no code with `files/`.
[[nodiscard]] IRModelResult modelIR(std::span<const std::uint8_t> file);

}  // namespace kelvo::fuzz
