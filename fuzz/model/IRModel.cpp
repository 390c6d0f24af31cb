#include "IRModel.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvo::fuzz {
namespace {

struct Wave {
    std::uint32_t channels;
    std::uint32_t rate;
    std::uint32_t bits;
    std::uint32_t dataSize;
    std::string samples;
};

std::uint32_t number(const std::string& bytes, std::size_t at, int width) {
    std::uint32_t value = 0;
    for (int i = width - 1; i >= 0; --i) {
        const std::size_t where = at + static_cast<std::size_t>(i);
        value = value * 256 + (where < bytes.size() ? static_cast<unsigned char>(bytes[where]) : 0U);
    }
    return value;
}

std::optional<Wave> readWave(const std::string& file) {
    const std::size_t fmt = file.find("fmt ");
    const std::size_t data = file.find("data");
    if (file.size() < 12 || file.compare(0, 4, "RIFF") != 0 || file.compare(8, 4, "WAVE") != 0 ||
        fmt == std::string::npos || data == std::string::npos || fmt + 24 > file.size() || data + 8 > file.size()) {
        return std::nullopt;
    }
    Wave wave{number(file, fmt + 10, 2), number(file, fmt + 12, 4), number(file, fmt + 22, 2),
              number(file, data + 4, 4), file.substr(data + 8)};
    if (wave.channels == 0 || wave.bits < 8) {
        return std::nullopt;
    }
    return wave;
}

std::int32_t truncated(double value) {
    const bool fits = value > -2147483649.0 && value < 2147483648.0;
    return fits ? static_cast<std::int32_t>(value) : std::int32_t{-2147483647} - 1;
}

double pulledIn(double value) {
    constexpr double kNearlyOne = 16777199.0 / 16777216.0;
    return std::abs(value) == 1.0 ? std::copysign(kNearlyOne, value) : value;
}

std::uint32_t wrapped(double value) {
    const std::int32_t whole = truncated(pulledIn(value) * 8388608.0);
    const auto word = static_cast<std::uint32_t>(whole);
    return whole < 0 ? (word % 0x1000000) | 0x800000 : word;
}

std::uint32_t sample(const Wave& wave, std::size_t frame) {
    const std::size_t at = frame * (wave.bits / 8) * wave.channels;
    switch (wave.bits) {
        case 8:
            return number(wave.samples, at, 1) * 0x10000;
        case 16:
            return number(wave.samples, at, 2) * 0x100;
        case 24:
            return number(wave.samples, at, 3);
        default: {
            const std::uint32_t bits = number(wave.samples, at, 4);
            float value = 0;
            std::memcpy(&value, &bits, sizeof value);
            return wrapped(static_cast<double>(value));
        }
    }
}

/// The frames of the file, and silence up to `cap`.
std::vector<std::uint32_t> decode(const Wave& wave, std::size_t cap) {
    std::vector<std::uint32_t> words(cap + 1);
    if (wave.channels > 2) {
        return words;
    }
    const std::size_t frameSize = wave.bits / 8 * wave.channels;
    for (std::size_t i = 0; i < cap; ++i) {
        if ((i + 1) * frameSize <= wave.dataSize && (i + 1) * frameSize <= wave.samples.size()) {
            words[i] = sample(wave, i);
        }
    }
    return words;
}

double level(std::uint32_t word) {
    const double low = word % 0x1000000;
    return (low < 8388608.0 ? low : low - 16777216.0) / 8388608.0;
}

/// Rounds to single precision.
double single(double value) {
    return static_cast<double>(static_cast<float>(value));
}

void resample(const std::vector<std::uint32_t>& words, double ratio, std::array<std::uint32_t, 512>& points) {
    const double step = single(single(ratio) - 1.0);
    double fraction = 0.0;
    std::size_t whole = 0;
    for (std::uint32_t& point : points) {
        const double here = level(words[whole]);
        const double slope = single(level(words[whole + 1]) - here);
        point = wrapped(single(here + single(slope * fraction))) % 0x1000000;
        fraction = single(fraction + step);
        for (++whole; fraction >= 1.0; ++whole) {
            fraction = single(fraction - 1.0);
        }
    }
}

bool convert(const Wave& wave, std::array<std::uint32_t, 512>& points) {
    if (wave.bits != 8 && wave.bits != 16 && wave.bits != 24 && wave.bits != 32) {
        return false;
    }
    switch (wave.rate) {
        case 44100: {
            const auto words = decode(wave, 512);
            std::copy_n(words.begin(), 512, points.begin());
            return true;
        }
        case 48000:
            resample(decode(wave, 560), 1.088, points);
            return true;
        case 88200:
            resample(decode(wave, 1025), 2.0, points);
            return true;
        case 96000:
            resample(decode(wave, 1120), 2.177, points);
            return true;
        default:
            return false;
    }
}

}  // namespace

IRModelResult modelIR(std::span<const std::uint8_t> bytes) {
    const std::string file(bytes.begin(), bytes.end());
    IRModelResult result;
    if (file.compare(0, 7, "TavikIR") == 0) {
        result.opened = result.converted = true;
        for (std::size_t k = 0; k < 512; ++k) {
            result.points[k] = number(file, 512 + 3 * k, 3);
        }
        return result;
    }
    const auto wave = readWave(file);
    result.opened = wave.has_value();
    result.converted = wave && convert(*wave, result.points);
    return result;
}

}  // namespace kelvo::fuzz
