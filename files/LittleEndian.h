#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvo {

using ByteView = std::span<const std::uint8_t>;

/// The unsigned little-endian number that these bytes, at most 4, are.
template <std::size_t extent>
[[nodiscard]] constexpr std::uint32_t littleEndian(std::span<const std::uint8_t, extent> bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        value |= std::uint32_t{bytes[i]} << (8 * i);
    }
    return value;
}

/// The unsigned little-endian number of `width` bytes, at most 4, that stands at `offset`. Bytes past the end count as
/// zero, so it is defined for every offset.
[[nodiscard]] constexpr std::uint32_t littleEndian(ByteView bytes, std::size_t offset, std::size_t width) {
    const auto rest = bytes.subspan(std::min(offset, bytes.size()));
    return littleEndian(rest.first(std::min(width, rest.size())));
}

}  // namespace kelvo
