#include "IRConversion.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <iterator>
#include <limits>

// Intermediate results in a wider format would round differently.
static_assert(FLT_EVAL_METHOD == 0 && std::numeric_limits<float>::is_iec559);

namespace kelvo {
namespace {

constexpr float kFullScale = 8388608.0F;

/// The substitute for an exact 1.0, which does not fit 24 bits: 0.999999.
constexpr float kLargest = std::bit_cast<float>(0x3F7FFFEFU);

/// The ratios are the quotients of the rates, rounded to three decimals. The results depend on these exact values.
constexpr IRRate kRates[] = {
    {kIRPointRate, kPointCount, 0.0F},
    {48000, 560, 1.088F},
    {88200, 1025, 2.0F},
    {96000, 1120, 2.177F},
};
static_assert(std::ranges::max(kRates, {}, &IRRate::frameCap).frameCap == kIRFrameCount);

float belowFullScale(float value) {
    return std::abs(value) == 1.0F ? std::copysign(kLargest, value) : value;
}

std::uint32_t decodeFloat(std::uint32_t bits) {
    const std::int32_t v = truncateToInt32(belowFullScale(std::bit_cast<float>(bits)) * kFullScale);
    const auto word = static_cast<std::uint32_t>(v);
    return v < 0 ? (word & 0xFFFFFFU) | 0x800000U : word;
}

/// Writes one word per frame of `stride` bytes: its first `width` bytes, shifted left by `shift` bits. `data` contains
/// all of the frames.
template <std::size_t width, int shift>
void decodeFrames(ByteView data, std::size_t stride, std::span<std::uint32_t> out) {
    for (std::size_t i = 0; i < out.size(); ++i) {
        out[i] = littleEndian(data.subspan(i * stride).first<width>()) << shift;
    }
}

void decodeFloats(ByteView data, std::size_t stride, std::span<std::uint32_t> out) {
    decodeFrames<4, 0>(data, stride, out);
    std::ranges::transform(out, out.begin(), decodeFloat);
}

struct SampleDecoder {
    std::uint32_t bitsPerSample;
    void (*decode)(ByteView data, std::size_t stride, std::span<std::uint32_t> out);
};

constexpr SampleDecoder kDecoders[] = {
    {8, decodeFrames<1, 16>},
    {16, decodeFrames<2, 8>},
    {24, decodeFrames<3, 0>},
    {kFloatBits, decodeFloats},
};

/// Null for a depth that is not supported.
const SampleDecoder* findDecoder(std::uint32_t bitsPerSample) {
    const auto* const found = std::ranges::find(kDecoders, bitsPerSample, &SampleDecoder::bitsPerSample);
    return found == std::end(kDecoders) ? nullptr : found;
}

/// The entry of a rate that is resampled, otherwise an empty one.
IRRate resampling(std::int32_t sampleRate) {
    const IRRate* rate = findIRRate(static_cast<std::uint32_t>(sampleRate));
    return rate != nullptr && rate->ratio != 0.0F ? *rate : IRRate{};
}

}  // namespace

const IRRate* findIRRate(std::uint32_t sampleRate) {
    const auto* const found = std::ranges::find(kRates, sampleRate, &IRRate::sampleRate);
    return found == std::end(kRates) ? nullptr : found;
}

bool isConvertible(const WAVE_FORMAT& format) {
    return findIRRate(format.sampleRate) != nullptr && findDecoder(format.bitsPerSample) != nullptr;
}

bool hasUsableChannel(std::uint32_t channels) {
    return channels == 1 || channels == 2;
}

std::optional<std::size_t> decodeFirstChannel(ByteView data, std::uint32_t channels, std::uint32_t bitsPerSample,
                                              std::size_t maxFrames, IRPointBuffer& out) {
    const SampleDecoder* const decoder = findDecoder(bitsPerSample);
    if (decoder == nullptr) {
        return std::nullopt;
    }
    if (!hasUsableChannel(channels)) {
        return 0;
    }
    const std::size_t stride = bitsPerSample / 8 * channels;
    const std::size_t frames = std::min({data.size() / stride, maxFrames, out.size()});
    decoder->decode(data, stride, std::span(out).first(frames));
    return frames;
}

float levelOf(std::uint32_t point) {
    // The shifts copy bit 23, the sign, into bits 24 to 31.
    return static_cast<float>(static_cast<std::int32_t>(point << 8) >> 8) / kFullScale;
}

std::size_t ICovertoF(std::span<const std::uint32_t, kIRFrameCount> in, std::int32_t sampleRate,
                      std::span<float, kIRFrameCount> out) {
    const std::size_t count = resampling(sampleRate).frameCap;
    std::ranges::transform(in.first(count), out.begin(), levelOf);
    return count;
}

void Resample(std::span<const float, kIRFrameCount> in, std::int32_t sampleRate, std::span<float, kPointCount> out) {
    const float step = resampling(sampleRate).ratio - 1.0F;
    float fraction = 0.0F;
    std::size_t p = 1;
    out[0] = in[0];
    for (std::size_t j = 1; j < out.size(); ++j, ++p) {
        fraction += step;
        while (fraction >= 1.0F) {
            fraction -= 1.0F;
            ++p;
        }
        out[j] = in[p] + (in[p + 1] - in[p]) * fraction;
    }
}

void FCovertoI(std::span<float, kPointCount> in, std::span<std::uint32_t, kPointCount> out) {
    for (std::size_t k = 0; k < out.size(); ++k) {
        in[k] = belowFullScale(in[k]);
        const std::int32_t v = truncateToInt32(in[k] * kFullScale);
        out[k] = (static_cast<std::uint32_t>(v) & 0xFFFFFFU) | (v < 0 ? 0x800000U : 0U);
    }
}

std::optional<std::size_t> convertWave(ByteView samples, const WAVE_FORMAT& format, std::size_t frames,
                                       IRPoints points) {
    if (!isConvertible(format)) {
        return std::nullopt;
    }
    const IRRate* const rate = findIRRate(format.sampleRate);
    IRPointBuffer decoded{};
    const auto used =
        decodeFirstChannel(samples, format.channels, format.bitsPerSample, std::min(frames, rate->frameCap), decoded);
    if (rate->ratio == 0.0F) {
        std::ranges::copy_n(decoded.begin(), kPointCount, points.begin());
        return used;
    }
    const auto sampleRate = static_cast<std::int32_t>(rate->sampleRate);
    std::array<float, kIRFrameCount> EnterBufferF{};
    std::array<float, kPointCount> ResampOut{};
    ICovertoF(decoded, sampleRate, EnterBufferF);
    Resample(EnterBufferF, sampleRate, ResampOut);
    FCovertoI(ResampOut, points);
    return used;
}

std::size_t unpackInternal(ByteView samples, IRPoints points) {
    constexpr std::size_t kSampleSize = 3;
    for (std::size_t k = 0; k < points.size(); ++k) {
        points[k] = FileView(samples).number(k * kSampleSize, kSampleSize);
    }
    return std::min(samples.size() / kSampleSize, points.size());
}

}  // namespace kelvo
