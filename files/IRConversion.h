#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>

#include "IRLayout.h"
#include "SlotContent.h"

namespace kelvo {

/// Rate of the points in the device, in Hz. They are 24-bit two's complement in bits 0 to 23.
inline constexpr std::uint32_t kIRPointRate = 44100;

/// Source frames that the conversion takes at most; 512 points need 1114 frames at 96000 Hz.
inline constexpr std::size_t kIRFrameCount = 1120;

/// Samples of this many bits are IEEE-754 singles, whatever the file says of them; all others are integers.
inline constexpr std::uint32_t kFloatBits = 32;

using IRPointBuffer = std::array<std::uint32_t, kIRFrameCount>;
using IRPoints = std::span<std::uint32_t, kPointCount>;

/// How a source rate becomes 44100 Hz.
struct IRRate {
    std::uint32_t sampleRate;  ///< Hz
    std::size_t frameCap;      ///< source frames that are decoded and converted
    float ratio;               ///< source frames per point; 0 means that the frames are the points
};

/// The entry for a sample rate, or null for a rate that is not supported. Supported are 44100, 48000, 88200 and 96000.
[[nodiscard]] const IRRate* findIRRate(std::uint32_t sampleRate);

/// Whether convertWave takes samples of this rate and depth.
[[nodiscard]] bool isConvertible(const WAVE_FORMAT& format);

/// Whether frames of so many channels are decoded: of one, and of the first of two.
[[nodiscard]] bool hasUsableChannel(std::uint32_t channels);

/// Decodes the first channel of the frames that lie wholly in `data`, at most `maxFrames`, to 24-bit two's complement;
/// the rest of `out` is left as it is. 8-bit samples are not re-biased from unsigned. Floats beyond -1.0 to 1.0 wrap,
/// and positive ones then keep their bits 24 to 31. Returns how many frames were decoded, nothing for a width other
/// than 8, 16, 24 (integers) and 32 (IEEE-754 singles). Without a usable channel no frame is decoded.
[[nodiscard]] std::optional<std::size_t> decodeFirstChannel(ByteView data, std::uint32_t channels,
                                                            std::uint32_t bitsPerSample, std::size_t maxFrames,
                                                            IRPointBuffer& out);

/// The level of a point, or of a decoded sample, as a part of full scale: -1.0 to below 1.0. Bits 24 to 31 are ignored.
[[nodiscard]] float levelOf(std::uint32_t point);

/// `value` truncated toward zero. NaN, infinities and values beyond 32 bits give INT32_MIN, as x86's cvttss2si does, on
/// every processor.
[[nodiscard]] constexpr std::int32_t truncateToInt32(float value) {
    constexpr float kLimit = 2147483648.0F;
    // Written so that NaN fails it.
    if (value >= -kLimit && value < kLimit) {
        return static_cast<std::int32_t>(value);
    }
    return std::numeric_limits<std::int32_t>::min();
}

/// 24-bit integers (bits 24 to 31 are ignored) to floats in -1.0 to 1.0. Converts as many as the rate's frame cap,
/// leaves the rest of `out` and returns the count: 0 for a rate that needs no resampling or is not supported.
std::size_t ICovertoF(std::span<const std::uint32_t, kIRFrameCount> in, std::int32_t sampleRate,
                      std::span<float, kIRFrameCount> out);

/// Linear interpolation from `sampleRate` to 44100 Hz. Every operation rounds to single precision. A rate that needs no
/// resampling or is not supported counts as the ratio 0.
void Resample(std::span<const float, kIRFrameCount> in, std::int32_t sampleRate, std::span<float, kPointCount> out);

/// Floats to 24-bit integers; bits 24 to 31 are zero. An exact 1.0 or -1.0 in `in` is replaced there by the nearest
/// value that fits the device; other values beyond that range wrap within 24 bits.
void FCovertoI(std::span<float, kPointCount> in, std::span<std::uint32_t, kPointCount> out);

/// Samples of a wave file, in bytes, of which the conversion looks at no more than these.
inline constexpr std::size_t kMostSampleBytes = kIRFrameCount * 2 * (kFloatBits / 8);

/// Converts a wave file's samples, as they stand in the file up to its end, to the device's points; bits 24 to 31 are
/// zero (floats beyond -1.0 to 1.0 excepted, see decodeFirstChannel). Of `frames` declared frames those are used that
/// are there whole; the rest is silence. Returns how many, or nothing, with `points` as they were, for a rate or a
/// depth that is not supported.
[[nodiscard]] std::optional<std::size_t> convertWave(ByteView samples, const WAVE_FORMAT& format, std::size_t frames,
                                                     IRPoints points);

/// The same for samples in the device's own format, where every byte counts; bytes that lack are zero.
std::size_t unpackInternal(ByteView samples, IRPoints points);

}  // namespace kelvo
