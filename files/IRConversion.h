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

/// Rate of the device's points, in Hz. A point is 24-bit two's complement in bits 0 to 23.
inline constexpr std::uint32_t kIRPointRate = 44100;

/// Most source frames that the conversion uses; 512 points need 1114 frames at 96000 Hz.
inline constexpr std::size_t kIRFrameCount = 1120;

/// Samples with this many bits are IEEE-754 singles, whatever the format tag says; all others are integers.
inline constexpr std::uint32_t kFloatBits = 32;

using IRPointBuffer = std::array<std::uint32_t, kIRFrameCount>;
using IRPoints = std::span<std::uint32_t, kPointCount>;

/// How a source rate becomes 44100 Hz.
struct IRRate {
    std::uint32_t sampleRate;  ///< Hz
    std::size_t frameCap;      ///< source frames that are decoded and converted
    float ratio;               ///< source frames per point; 0 if the frames are the points
};

/// The entry for a sample rate, or null if it is not supported. Supported are 44100, 48000, 88200 and 96000.
[[nodiscard]] const IRRate* findIRRate(std::uint32_t sampleRate);

/// Whether convertWave supports this rate and depth.
[[nodiscard]] bool isConvertible(const WAVE_FORMAT& format);

/// Whether frames with this number of channels are decoded: one channel, or the first of two.
[[nodiscard]] bool hasUsableChannel(std::uint32_t channels);

/// Decodes the first channel of the complete frames in `data`, at most `maxFrames`, to 24-bit two's complement. The
/// rest of `out` does not change. 8-bit samples are not re-biased from unsigned. Floats beyond -1.0 to 1.0 wrap, and
/// positive ones then keep their bits 24 to 31. Returns the number of frames decoded, which is 0 without a usable
/// channel, or nothing for a width other than 8, 16, 24 (integers) and 32 (IEEE-754 singles).
[[nodiscard]] std::optional<std::size_t> decodeFirstChannel(ByteView data, std::uint32_t channels,
                                                            std::uint32_t bitsPerSample, std::size_t maxFrames,
                                                            IRPointBuffer& out);

/// The level of a point or decoded sample as a fraction of full scale: -1.0 to below 1.0. Ignores bits 24 to 31.
[[nodiscard]] float levelOf(std::uint32_t point);

/// `value` truncated toward zero. NaN, infinities and values beyond 32 bits give INT32_MIN, as x86's cvttss2si does, on
/// every processor.
[[nodiscard]] constexpr std::int32_t truncateToInt32(float value) {
    constexpr float kLimit = 2147483648.0F;
    // NaN fails this comparison.
    if (value >= -kLimit && value < kLimit) {
        return static_cast<std::int32_t>(value);
    }
    return std::numeric_limits<std::int32_t>::min();
}

/// Converts 24-bit integers (bits 24 to 31 are ignored) to floats in -1.0 to 1.0, up to the rate's frame cap. The rest
/// of `out` does not change. Returns the count: 0 for a rate that needs no resampling or is not supported.
std::size_t ICovertoF(std::span<const std::uint32_t, kIRFrameCount> in, std::int32_t sampleRate,
                      std::span<float, kIRFrameCount> out);

/// Interpolates linearly from `sampleRate` to 44100 Hz. Every operation rounds to single precision. The ratio is 0 for
/// a rate that needs no resampling or is not supported.
void Resample(std::span<const float, kIRFrameCount> in, std::int32_t sampleRate, std::span<float, kPointCount> out);

/// Converts floats to 24-bit integers; bits 24 to 31 are zero. Replaces an exact 1.0 or -1.0 in `in` by the nearest
/// value that fits the device. Values beyond that range wrap within 24 bits.
void FCovertoI(std::span<float, kPointCount> in, std::span<std::uint32_t, kPointCount> out);

/// Most bytes of a wave file's samples that the conversion reads.
inline constexpr std::size_t kMostSampleBytes = kIRFrameCount * 2 * (kFloatBits / 8);

/// Converts a wave file's samples to the device's points; bits 24 to 31 are zero, except for floats beyond -1.0 to 1.0
/// (see decodeFirstChannel). `samples` may extend to the end of the file. Uses those of the `frames` declared frames
/// that are complete; missing ones are silence. Returns the number used, or nothing, without changing `points`, for a
/// rate or depth that is not supported.
[[nodiscard]] std::optional<std::size_t> convertWave(ByteView samples, const WAVE_FORMAT& format, std::size_t frames,
                                                     IRPoints points);

/// The same for samples in the device's own format. All bytes belong to samples; missing ones are zero.
std::size_t unpackInternal(ByteView samples, IRPoints points);

}  // namespace kelvo
