#pragma once

#include <span>

namespace kelvo {

/// How much an impulse response with these points, one every 1 / kIRPointRate seconds, amplifies a steady tone of
/// `frequency` Hz, in dB; a single point of 1.0 gives 0 dB. kNoGain at the least, which silence gives. Any thread.
[[nodiscard]] double gainAt(std::span<const float> points, double frequency);

inline constexpr double kNoGain = -200.0;

}  // namespace kelvo
