#include "IRConversion.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <limits>

#include "LittleEndian.h"

// Intermediate results in a wider format would round differently.
static_assert(FLT_EVAL_METHOD == 0 && std::numeric_limits<float>::is_iec559);

namespace kelvo {
namespace {

constexpr float kFullScale = 8388608.0F;

/// What stands for an exact 1.0, which does not fit 24 bits: 0.999999.
constexpr float kLargest = std::bit_cast<float>(0x3F7FFFEFU);

/// The ratios are the quotients of the rates rounded to three decimals; the results depend on just these.
constexpr std::array<IRRate, 4> kRates{{
    {44100, 512, 0.0F},
    {48000, 560, 1.088F},
    {88200, 1025, 2.0F},
    {96000, 1120, 2.177F},
}};
static_assert(std::ranges::max(kRates, {}, &IRRate::frameCap).frameCap == kIRFrameCount);

float pullIn(float value) {
    if (value == 1.0F) {
        return kLargest;
    }
    return value == -1.0F ? -kLargest : value;
}

std::uint32_t decodeFloat(std::uint32_t bits) {
    const std::int32_t v = truncateToInt32(pullIn(std::bit_cast<float>(bits)) * kFullScale);
    const auto word = static_cast<std::uint32_t>(v);
    return v < 0 ? (word & 0xFFFFFFU) | 0x800000U : word;
}

struct SampleDecoder {
    std::uint32_t bitsPerSample;
    std::uint32_t (*decode)(std::uint32_t sample);
};

constexpr std::array<SampleDecoder, 4> kDecoders{{
    {8, [](std::uint32_t sample) { return sample << 16; }},
    {16, [](std::uint32_t sample) { return sample << 8; }},
    {24, [](std::uint32_t sample) { return sample; }},
    {32, decodeFloat},
}};

/// The IRRate of a rate that is resampled, else one that does nothing.
IRRate resampling(std::int32_t sampleRate) {
    const IRRate* rate = findIRRate(static_cast<std::uint32_t>(sampleRate));
    return rate != nullptr && rate->ratio != 0.0F ? *rate : IRRate{};
}

}  // namespace

const IRRate* findIRRate(std::uint32_t sampleRate) {
    const auto found = std::ranges::find(kRates, sampleRate, &IRRate::sampleRate);
    return found == kRates.end() ? nullptr : &*found;
}

bool decodeFirstChannel(std::span<const std::uint8_t> data, std::uint32_t channels, std::uint32_t bitsPerSample,
                        std::size_t maxFrames, IRPointBuffer& out) {
    const auto decoder = std::ranges::find(kDecoders, bitsPerSample, &SampleDecoder::bitsPerSample);
    if (decoder == kDecoders.end()) {
        return false;
    }
    if (channels != 1 && channels != 2) {
        return true;
    }
    const std::size_t sampleSize = bitsPerSample / 8;
    const std::size_t stride = sampleSize * channels;
    const std::size_t frames = std::min({data.size() / stride, maxFrames, out.size()});
    for (std::size_t i = 0; i < frames; ++i) {
        out[i] = decoder->decode(littleEndian(data, i * stride, sampleSize));
    }
    return true;
}

std::int32_t truncateToInt32(float value) {
    constexpr float kLimit = 2147483648.0F;
    // Written so that NaN fails it.
    if (value >= -kLimit && value < kLimit) {
        return static_cast<std::int32_t>(value);
    }
    return std::numeric_limits<std::int32_t>::min();
}

std::size_t ICovertoF(std::span<const std::uint32_t, kIRFrameCount> in, std::int32_t sampleRate,
                      std::span<float, kIRFrameCount> out) {
    const std::size_t count = resampling(sampleRate).frameCap;
    for (std::size_t i = 0; i < count; ++i) {
        // The shifts carry bit 23 through bits 24 to 31.
        const std::int32_t value = static_cast<std::int32_t>(in[i] << 8) >> 8;
        out[i] = static_cast<float>(value) / kFullScale;
    }
    return count;
}

void Resample(std::span<const float, kIRFrameCount> in, std::int32_t sampleRate, std::span<float, kIRPointCount> out) {
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

void FCovertoI(std::span<float, kIRPointCount> in, std::span<std::uint32_t, kIRPointCount> out) {
    for (std::size_t k = 0; k < out.size(); ++k) {
        in[k] = pullIn(in[k]);
        const std::int32_t v = truncateToInt32(in[k] * kFullScale);
        out[k] = (static_cast<std::uint32_t>(v) & 0xFFFFFFU) | (v < 0 ? 0x800000U : 0U);
    }
}

}  // namespace kelvo
