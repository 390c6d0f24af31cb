#include "Response.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace kelvo {
namespace {

constexpr double kHighestOfLevel = 5000.0;  // Hz

constexpr std::size_t kTones = 8;

/// The amplitudes at kTones frequencies, by Goertzel's recursion. Its steps depend on each other; several tones at once
/// keep the processor busy.
std::array<double, kTones> amplitudes(std::span<const double> samples, const std::array<double, kTones>& angles) {
    std::array<double, kTones> factor{};
    std::ranges::transform(angles, factor.begin(), [](double angle) { return 2.0 * std::cos(angle); });
    std::array<double, kTones> last{};
    std::array<double, kTones> beforeLast{};
    for (const double sample : samples) {
        for (std::size_t k = 0; k < kTones; ++k) {
            const double next = sample + factor[k] * last[k] - beforeLast[k];
            beforeLast[k] = last[k];
            last[k] = next;
        }
    }
    std::array<double, kTones> result{};
    for (std::size_t k = 0; k < kTones; ++k) {
        result[k] = std::hypot(last[k] - beforeLast[k] * factor[k] / 2.0, beforeLast[k] * std::sin(angles[k]));
    }
    return result;
}

}  // namespace

std::vector<double> gainsAt(std::span<const double> samples, double rate, std::span<const double> frequencies) {
    std::vector<double> gains;
    while (gains.size() < frequencies.size()) {
        const auto some = frequencies.subspan(gains.size(), std::min(kTones, frequencies.size() - gains.size()));
        std::array<double, kTones> angles{};
        std::ranges::transform(some, angles.begin(),
                               [rate](double frequency) { return 2.0 * std::numbers::pi * frequency / rate; });
        const auto found = amplitudes(samples, angles);
        std::transform(found.begin(), found.begin() + std::ssize(some), std::back_inserter(gains),
                       [](double amplitude) { return std::max(20.0 * std::log10(amplitude), kNoGain); });
    }
    return gains;
}

const std::vector<double>& comparedFrequencies() {
    static const std::vector<double> frequencies = [] {
        std::vector<double> result(100);
        for (std::size_t i = 0; i < result.size(); ++i) {
            result[i] = std::round(80.0 * std::pow(100.0, static_cast<double>(i) / 99.0));
        }
        return result;
    }();
    return frequencies;
}

double meanLevel(std::span<const double> gains) {
    const auto& frequencies = comparedFrequencies();
    const auto count = std::ranges::upper_bound(frequencies, kHighestOfLevel) - frequencies.begin();
    double power = 0.0;
    for (const double gain : gains.first(static_cast<std::size_t>(count))) {
        power += std::pow(10.0, gain / 10.0);
    }
    return std::max(10.0 * std::log10(power / static_cast<double>(count)), kNoGain);
}

std::optional<Deviation> largestDeviation(std::span<const double> gains, std::span<const double> others) {
    const double level = meanLevel(gains);
    const double otherLevel = meanLevel(others);
    if (level <= kNoGain || otherLevel <= kNoGain) {
        return std::nullopt;
    }
    Deviation largest;
    for (std::size_t i = 0; i < gains.size(); ++i) {
        const double difference = (gains[i] - level) - (others[i] - otherLevel);
        if (std::abs(difference) >= std::abs(largest.decibels)) {
            largest = {difference, comparedFrequencies()[i]};
        }
    }
    return largest;
}

}  // namespace kelvo
