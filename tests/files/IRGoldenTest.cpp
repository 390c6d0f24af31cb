#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <tuple>

#include "IRGoldenPoints.h"
#include "RVIRFile.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

using Words = std::array<std::uint32_t, kPointCount>;

/// More than any rate's frame cap.
constexpr std::size_t kFrames = 1200;

/// 24-bit noise over the full scale.
std::array<std::uint32_t, kFrames> fineNoise() {
    std::array<std::uint32_t, kFrames> samples;
    std::uint32_t x = 1;
    for (auto& sample : samples) {
        x = x * 1664525 + 1013904223;
        sample = x >> 8;
    }
    return samples;
}

/// The upper 8 bits of it, which every depth can hold; 0x80 is left out, since a float of -1.0 is pulled in.
std::array<std::uint32_t, kFrames> coarseNoise() {
    auto samples = fineNoise();
    for (auto& sample : samples) {
        sample = sample >> 16 == 0x80 ? 0x7F0000 : sample & 0xFF0000;
    }
    return samples;
}

void appendSample(FileBytes& data, std::uint32_t sample, std::uint32_t bitsPerSample) {
    if (bitsPerSample == 32) {
        const auto value = static_cast<float>(static_cast<std::int32_t>(sample << 8) >> 8) / 8388608.0F;
        append(data, std::bit_cast<std::uint32_t>(value), 4);
    } else {
        append(data, sample >> (24 - bitsPerSample), static_cast<int>(bitsPerSample / 8));
    }
}

Words convert(std::span<const std::uint32_t> samples, std::uint32_t rate, std::uint32_t bitsPerSample,
              std::uint32_t channels) {
    WaveFile wave{.sampleRate = rate, .bitsPerSample = bitsPerSample, .channels = channels, .data = {}};
    for (const std::uint32_t sample : samples) {
        appendSample(wave.data, sample, bitsPerSample);
        if (channels == 2) {
            appendSample(wave.data, ~sample & 0xFFFFFF, bitsPerSample);
        }
    }
    const SampleDir dir;
    RVIRFile file;
    EXPECT_TRUE(file.OpenFilePath(dir.write("noise.wav", wave.bytes())));
    EXPECT_EQ(file.PointSize, samples.size());
    Words points{};
    EXPECT_TRUE(file.GetIRDataBuffer(points));
    return points;
}

/// The points of a rate at which each is a separate sample.
Words everyNth(const std::array<std::uint32_t, kFrames>& samples, std::size_t n) {
    Words points;
    for (std::size_t k = 0; k < points.size(); ++k) {
        points[k] = samples[k * n];
    }
    return points;
}

class EveryDepth : public testing::TestWithParam<std::tuple<std::uint32_t, std::uint32_t>> {};

TEST_P(EveryDepth, givesTheSamples) {
    const auto [bitsPerSample, channels] = GetParam();
    EXPECT_EQ(convert(coarseNoise(), 44100, bitsPerSample, channels), everyNth(coarseNoise(), 1));
    EXPECT_EQ(convert(coarseNoise(), 88200, bitsPerSample, channels), everyNth(coarseNoise(), 2));
}

INSTANTIATE_TEST_SUITE_P(MonoAndStereo, EveryDepth,
                         testing::Combine(testing::Values(8, 16, 24, 32), testing::Values(1, 2)));

class FullPrecision : public testing::TestWithParam<std::uint32_t> {};

TEST_P(FullPrecision, givesTheGoldenPointsToTheLastBit) {
    EXPECT_EQ(convert(fineNoise(), 44100, GetParam(), 1), everyNth(fineNoise(), 1));
    EXPECT_EQ(convert(fineNoise(), 48000, GetParam(), 2), kFine48000);
    EXPECT_EQ(convert(fineNoise(), 88200, GetParam(), 1), everyNth(fineNoise(), 2));
    EXPECT_EQ(convert(fineNoise(), 96000, GetParam(), 2), kFine96000);
}

INSTANTIATE_TEST_SUITE_P(IntegerAndFloat, FullPrecision, testing::Values(24, 32));

TEST(ShortFile, isFollowedBySilenceAfterResampling) {
    const auto noise = fineNoise();
    const Words at48000 = convert(std::span(noise).first(100), 48000, 24, 1);
    EXPECT_EQ(at48000[0], 0x3C8859U);
    EXPECT_EQ(at48000[1], 0x4B0BC0U);
    EXPECT_EQ(at48000[90], 0x62F087U);
    EXPECT_EQ(at48000[91], 0x7EE587U);  // between the last frame and silence
    EXPECT_TRUE(std::all_of(at48000.begin() + 92, at48000.end(), [](std::uint32_t word) { return word == 0; }));
    const Words at96000 = convert(std::span(noise).first(100), 96000, 24, 1);
    EXPECT_EQ(at96000[44], 0xBD0735U);
    EXPECT_EQ(at96000[45], 0x6AEBF7U);
    EXPECT_TRUE(std::all_of(at96000.begin() + 46, at96000.end(), [](std::uint32_t word) { return word == 0; }));
}

TEST(FullScaleFloats, arePulledInBeforeAndAfterResampling) {
    // 1.0 at every frame: pulled in to 0x7FFFF7 when it is decoded, and the same between two frames.
    WaveFile wave{.sampleRate = 96000, .bitsPerSample = 32, .channels = 1, .data = {}};
    for (std::size_t i = 0; i < kFrames; ++i) {
        append(wave.data, 0x3F800000, 4);
    }
    const SampleDir dir;
    RVIRFile file;
    ASSERT_TRUE(file.OpenFilePath(dir.write("full.wav", wave.bytes())));
    Words points{};
    ASSERT_TRUE(file.GetIRDataBuffer(points));
    EXPECT_EQ(points[0], 0x7FFFF7U);
    EXPECT_EQ(points[511], 0x7FFFF7U);
}

TEST(FullScaleIntegers, ofMinusOneArePulledInOnlyByResampling) {
    const std::array<std::uint32_t, 1> sample{0x800000};
    EXPECT_EQ(convert(sample, 44100, 24, 1)[0], 0x800000U);
    EXPECT_EQ(convert(sample, 48000, 24, 1)[0], 0x800009U);
    EXPECT_EQ(convert(sample, 88200, 24, 1)[0], 0x800009U);
    EXPECT_EQ(convert(sample, 96000, 24, 1)[0], 0x800009U);
}

}  // namespace
}  // namespace kelvo
