#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace kelvo {

/// Points of an impulse response, and words of an amp model, as the device stores them.
inline constexpr std::size_t kPointCount = 512;
using PointBuffer = std::array<std::uint32_t, kPointCount>;

/// Bytes of a slot's name, as the device stores it.
inline constexpr std::size_t kNameLength = 10;
/// A name as the file readers store it, with a NUL after its last byte. The bytes after the NUL are undefined.
using NameBuffer = std::array<char, 20>;

}  // namespace kelvo
