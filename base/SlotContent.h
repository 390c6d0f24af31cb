#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace kelvo {

/// Points of an impulse response, and words of an amp model. The device.
inline constexpr std::size_t kPointCount = 512;
using PointBuffer = std::array<std::uint32_t, kPointCount>;

/// Bytes of a slot's name. The device.
inline constexpr std::size_t kNameLength = 10;
/// A name as the file readers store it, with a NUL after its last byte; what follows the NUL is not defined.
using NameBuffer = std::array<char, 20>;

}  // namespace kelvo
