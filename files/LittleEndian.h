#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvo {

/// The unsigned little-endian number that these bytes, at most 4, are.
template <std::size_t width>
[[nodiscard]] constexpr std::uint32_t littleEndian(std::span<const std::uint8_t, width> bytes) {
    static_assert(width <= 4);
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < width; ++i) {
        value |= std::uint32_t{bytes[i]} << (8 * i);
    }
    return value;
}

/// The unsigned little-endian number of `width` bytes, at most 4, that stands at `offset`. Bytes past the end count as
/// zero, so it is defined for every offset.
[[nodiscard]] constexpr std::uint32_t littleEndian(std::span<const std::uint8_t> bytes, std::size_t offset,
                                                   std::size_t width) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < width && offset < bytes.size() && i < bytes.size() - offset; ++i) {
        value |= std::uint32_t{bytes[offset + i]} << (8 * i);
    }
    return value;
}

}  // namespace kelvo
