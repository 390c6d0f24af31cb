#pragma once

#include <optional>
#include <span>
#include <vector>

namespace kelvo {

// What an impulse response does to tones, by plain sums over its samples. Any thread.

inline constexpr double kNoGain = -200.0;

/// How much an impulse response of these samples, `rate` a second, amplifies steady tones of some frequencies in Hz, in
/// dB; a single sample of 1.0 gives 0 dB. kNoGain at the least, which silence gives.
[[nodiscard]] std::vector<double> gainsAt(std::span<const double> samples, double rate,
                                          std::span<const double> frequencies);

/// The frequencies at which responses are compared: 100 in whole Hz, spaced by their logarithm from 80 to 8000.
[[nodiscard]] const std::vector<double>& comparedFrequencies();

/// The mean power of those gains whose frequency is 5000 Hz or less, in dB. `gains` are those at comparedFrequencies.
[[nodiscard]] double meanLevel(std::span<const double> gains);

/// Where two responses differ most.
struct Deviation {
    double decibels = 0.0;  ///< of the first beside the second
    double frequency = 0.0;
};

/// Compares two responses, both as gains at comparedFrequencies, after the meanLevel of each is taken out. Nothing for
/// silence.
[[nodiscard]] std::optional<Deviation> largestDeviation(std::span<const double> gains, std::span<const double> others);

}  // namespace kelvo
