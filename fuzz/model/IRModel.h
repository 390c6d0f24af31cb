#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace kelvo::fuzz {

/// What an impulse-response file must come to.
struct IRModelResult {
    bool opened = false;
    bool converted = false;
    std::array<std::uint32_t, 512> points{};  ///< only meaningful when converted
};

/// A second, plain reading of the file format and of the conversion: byte by byte, with sums and products worked out in
/// double precision and rounded once each. Shares nothing with `files/`.
[[nodiscard]] IRModelResult modelIR(std::span<const std::uint8_t> file);

}  // namespace kelvo::fuzz
