#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvo {

using ByteView = std::span<const std::uint8_t>;

/// The unsigned little-endian number in these bytes, at most 4.
template <std::size_t extent>
[[nodiscard]] constexpr std::uint32_t littleEndian(std::span<const std::uint8_t, extent> bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        value |= std::uint32_t{bytes[i]} << (8 * i);
    }
    return value;
}

}  // namespace kelvo
