#pragma once

#include <optional>
#include <span>
#include <vector>

namespace kelvo {

// The frequency response of an impulse response, by plain sums over its samples. Any thread.

/// The gain of silence, dB. No gain is below it.
inline constexpr double kNoGain = -200.0;

/// The gains in dB of an impulse response, with `rate` samples a second, at some frequencies in Hz. A single sample
/// of 1.0 has 0 dB.
[[nodiscard]] std::vector<double> gainsAt(std::span<const double> samples, double rate,
                                          std::span<const double> frequencies);

/// The 100 frequencies at which responses are compared: whole Hz, logarithmically spaced from 80 to 8000.
[[nodiscard]] const std::vector<double>& comparedFrequencies();

/// The mean power in dB of the gains up to 5000 Hz. `gains` are those at comparedFrequencies.
[[nodiscard]] double meanLevel(std::span<const double> gains);

/// Where two responses differ most.
struct Deviation {
    double decibels = 0.0;  ///< of the first relative to the second
    double frequency = 0.0;
};

/// Compares two responses, given as gains at comparedFrequencies, relative to the meanLevel of each. Returns nothing
/// for silence.
[[nodiscard]] std::optional<Deviation> largestDeviation(std::span<const double> gains, std::span<const double> others);

}  // namespace kelvo
