#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <numeric>

#include "FileView.h"
#include "IRConversion.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

using FloatBuffer = std::array<float, kIRFrameCount>;
using Points = std::array<float, kPointCount>;
using Words = std::array<std::uint32_t, kPointCount>;

TEST(NumberInAFile, hasItsWidth_andZerosPastTheEnd) {
    const std::array<std::uint8_t, 5> bytes{0x01, 0x82, 0x03, 0x84, 0x05};
    EXPECT_EQ(FileView(bytes).number(0, 1), 0x01U);
    EXPECT_EQ(FileView(bytes).number(1, 3), 0x840382U);
    EXPECT_EQ(FileView(bytes).number(0, 4), 0x84038201U);
    EXPECT_EQ(FileView(bytes).number(3, 4), 0x0584U);
    EXPECT_EQ(FileView(bytes).number(5, 4), 0U);
    EXPECT_EQ(FileView(bytes).number(std::numeric_limits<std::size_t>::max(), 4), 0U);
    EXPECT_EQ(FileView().number(0, 4), 0U);
}

TEST(IRRates, areTheseFour) {
    struct Row {
        std::uint32_t rate;
        std::size_t cap;
        std::uint32_t ratioBits;
    };
    for (const Row& row : {Row{44100, 512, 0}, Row{48000, 560, 0x3F8B4396}, Row{88200, 1025, 0x40000000},
                           Row{96000, 1120, 0x400B53F8}}) {
        const IRRate* rate = findIRRate(row.rate);
        ASSERT_NE(rate, nullptr) << row.rate;
        EXPECT_EQ(rate->frameCap, row.cap);
        EXPECT_EQ(std::bit_cast<std::uint32_t>(rate->ratio), row.ratioBits);
    }
    for (const std::uint32_t rate : {0U, 44099U, 44101U, 192000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(findIRRate(rate), nullptr) << rate;
    }
}

TEST(TruncateToInt32, goesTowardZero_andGivesTheLeastIntegerForWhatDoesNotFit) {
    constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
    for (const auto& [value, integer] : {std::pair{-0.0F, 0},
                                         {1.9F, 1},
                                         {-1.9F, -1},
                                         {8388607.5F, 8388607},
                                         {2147483520.0F, 2147483520},
                                         {2147483648.0F, kLeast},
                                         {-2147483648.0F, kLeast},
                                         {-2147483904.0F, kLeast},
                                         {1e30F, kLeast},
                                         {-kInfinity, kLeast},
                                         {kNaN, kLeast}}) {
        EXPECT_EQ(truncateToInt32(value), integer) << value;
    }
}

TEST(LevelOfAPoint, isAFractionOfFullScale_andIgnoresTheTopByte) {
    for (const auto& [point, level] : {std::pair{0x000000U, 0.0F},
                                       {0x000001U, 0x1p-23F},
                                       {0x400000U, 0.5F},
                                       {0x7FFFFFU, 0.99999988F},
                                       {0x800000U, -1.0F},
                                       {0xC00000U, -0.5F},
                                       {0xFFFFFFU, -0x1p-23F},
                                       {0xAB400000U, 0.5F}}) {
        EXPECT_EQ(levelOf(point), level) << point;
    }
}

TEST(ICovertoF, convertsTheFramesOfTheRateAndNoMore) {
    IRPointBuffer in;
    in.fill(0xC00000);
    FloatBuffer out;
    out.fill(9.0F);
    for (const std::int32_t rate : {44100, 22050, 0, -48000}) {
        EXPECT_EQ(ICovertoF(in, rate, out), 0U) << rate;
    }
    EXPECT_EQ(out[0], 9.0F);
    EXPECT_EQ(ICovertoF(in, 48000, out), 560U);
    EXPECT_EQ(out[559], -0.5F);
    EXPECT_EQ(out[560], 9.0F);
    EXPECT_EQ(ICovertoF(in, 88200, out), 1025U);
    EXPECT_EQ(ICovertoF(in, 96000, out), 1120U);
}

TEST(Resample, ofAnotherRateUsesTheRatioZero) {
    FloatBuffer in{};
    in[0] = 0.25F;
    in[1] = 0.5F;
    in[2] = 1.0F;
    in[3] = 4.0F;
    Points out{};
    for (const std::int32_t rate : {44100, 22050, 0, -1}) {
        Resample(in, rate, out);
        EXPECT_EQ(out[0], 0.25F);
        EXPECT_EQ(out[1], 0.0F);   // 0.5 + (1 - 0.5) * -1
        EXPECT_EQ(out[2], -5.0F);  // 1 + (4 - 1) * -2
        EXPECT_EQ(out[511], 0.0F);
    }
}

TEST(FCovertoI, givesTheseWords) {
    for (const auto& [value, word] :
         {std::pair{0.0F, 0x000000U}, {-0.0F, 0x000000U},       {0.5F, 0x400000U},     {-0.5F, 0xC00000U},
          {1.0F, 0x7FFFF7U},          {-1.0F, 0x800009U},       {0x1p-23F, 0x000001U}, {-0x1p-23F, 0xFFFFFFU},
          {0x1.8p-23F, 0x000001U},    {-0x1.8p-23F, 0xFFFFFFU}, {0x1p-24F, 0x000000U}, {-0x1p-24F, 0x000000U},
          {1.5F, 0xC00000U},          {2.0F, 0x000000U},        {-1.5F, 0xC00000U},    {-2.0F, 0x800000U},
          {255.5F, 0xC00000U},        {256.0F, 0x800000U},      {-256.0F, 0x800000U},  {1e30F, 0x800000U},
          {kInfinity, 0x800000U},     {-kInfinity, 0x800000U},  {kNaN, 0x800000U}}) {
        Points in{};
        in[0] = value;
        in[511] = value;
        Words out;
        out.fill(0x12345678);
        FCovertoI(in, out);
        EXPECT_EQ(out[0], word) << value;
        EXPECT_EQ(out[1], 0U);
        EXPECT_EQ(out[511], word) << value;
    }
}

TEST(FCovertoI, writesThePulledInValuesBack) {
    Points in{};
    in[0] = 1.0F;
    in[1] = -1.0F;
    in[2] = 1.5F;
    Words out{};
    FCovertoI(in, out);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(in[0]), 0x3F7FFFEFU);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(in[1]), 0xBF7FFFEFU);
    EXPECT_EQ(in[2], 1.5F);
}

struct Conversion {
    const char* name;
    WAVE_FORMAT format;
    FileBytes samples;
    std::vector<std::uint32_t> points;  ///< silence follows
    std::size_t frames = 2000;          ///< that the file declares
};

FileBytes floatBytes(const std::vector<float>& values) {
    FileBytes bytes;
    for (const float value : values) {
        append(bytes, std::bit_cast<std::uint32_t>(value), 4);
    }
    return bytes;
}

constexpr WAVE_FORMAT formatOf(std::uint16_t bits, std::uint16_t channels = 1, std::uint32_t rate = 44100) {
    return {.channels = channels, .sampleRate = rate, .bitsPerSample = bits};
}

const Conversion kConversions[] = {
    {"depth8_isNotRebiased",
     formatOf(8),
     {0x80, 0x00, 0x7F, 0xFF, 0x01},
     {0x800000, 0x000000, 0x7F0000, 0xFF0000, 0x010000}},
    {"depth16",
     formatOf(16),
     {0x00, 0x80, 0xFF, 0x7F, 0xFF, 0xFF, 0x01, 0x00},
     {0x800000, 0x7FFF00, 0xFFFF00, 0x000100}},
    {"depth24", formatOf(24), {0xFF, 0xFF, 0xFF, 0x56, 0x34, 0x12, 0x00, 0x00, 0x80}, {0xFFFFFF, 0x123456, 0x800000}},
    {"floats",
     formatOf(32),
     floatBytes({0.0F, -0.0F, 0.5F, -0.5F, 1.0F, -1.0F, -0x1p-23F, -0x1p-24F, 1.5F, 2.0F, 255.5F}),
     {0x000000, 0x000000, 0x400000, 0xC00000, 0x7FFFF7, 0x800009, 0xFFFFFF, 0x000000, 0x00C00000, 0x01000000,
      0x7FC00000}},
    {"floatsThatDoNotFit",
     formatOf(32),
     floatBytes({-1.5F, -2.0F, 256.0F, kInfinity, -kInfinity, kNaN, std::numeric_limits<float>::max()}),
     {0xC00000, 0x800000, 0x800000, 0x800000, 0x800000, 0x800000, 0x800000}},
    // Points 0, 2 and 4 after resampling.
    {"floatsThatDoNotFit_at88200",
     formatOf(32, 1, 88200),
     floatBytes({kNaN, kInfinity, -kInfinity, std::numeric_limits<float>::max(), 2.0F, 1.5F}),
     {0x800009, 0x800009, 0x000000}},
    {"stereo8_takesTheLeftChannel", formatOf(8, 2), {1, 2, 3, 4}, {0x010000, 0x030000}},
    {"stereo16", formatOf(16, 2), {1, 2, 3, 4, 5, 6, 7, 8}, {0x020100, 0x060500}},
    {"stereo24", formatOf(24, 2), {1, 2, 3, 4, 5, 6}, {0x030201}},
    {"stereoFloats", formatOf(32, 2), {0, 0, 0, 0x3F, 9, 9, 9, 9}, {0x400000}},
    {"rate88200_takesEverySecondSample",
     formatOf(16, 1, 88200),
     {0, 1, 0, 2, 0, 3, 0, 4, 0, 5},
     {0x010000, 0x030000, 0x050000}},
    {"threeChannels_giveSilence", formatOf(16, 3), FileBytes(64, 1), {}},
    {"noChannels_giveSilence", formatOf(16, 0), FileBytes(64, 1), {}},
    {"channels65535At88200_giveSilence", formatOf(16, 0xFFFF, 88200), FileBytes(64, 1), {}},
    // Integers of -1.0 are pulled in by resampling only, floats of 1.0 before and after it.
    {"minusOneAt48000", formatOf(24, 1, 48000), {0x00, 0x00, 0x80}, {0x800009}},
    {"minusOneAt96000", formatOf(24, 1, 96000), {0x00, 0x00, 0x80}, {0x800009}},
    {"onesAt96000", formatOf(32, 1, 96000), floatBytes(std::vector<float>(1200, 1.0F)),
     std::vector<std::uint32_t>(512, 0x7FFFF7)},
    {"aHundredFrames", formatOf(8), FileBytes(100, 0x11), std::vector<std::uint32_t>(100, 0x110000)},
    {"sixHundredFrames_are512", formatOf(8), FileBytes(600, 0x11), std::vector<std::uint32_t>(512, 0x110000)},
    {"incompleteFrame_isNotUsed", formatOf(16, 2), {1, 2, 3, 4, 5, 6, 7}, {0x020100}},
    {"framesBeyondTheDeclaredOnes_areNotUsed", formatOf(16), {1, 2, 3, 4}, {0x020100}, 1},
};

TEST(ConvertWave, givesThesePoints) {
    for (const auto& [name, format, samples, expected, frames] : kConversions) {
        Words points;
        points.fill(0xA5A5A5A5);
        EXPECT_TRUE(convertWave(samples, format, frames, points));
        std::vector<std::uint32_t> all = expected;
        all.resize(kPointCount);
        EXPECT_EQ(std::vector(points.begin(), points.end()), all) << name;
    }
}

/// Samples of 24-bit noise. In two channels, the right one has the inverted noise.
FileBytes noise(std::size_t frames, std::uint32_t bitsPerSample, std::uint32_t channels) {
    FileBytes data;
    std::uint32_t x = 1;
    for (std::size_t i = 0; i < frames; ++i) {
        x = x * 1664525 + 1013904223;
        for (std::uint32_t channel = 0; channel < channels; ++channel) {
            const std::uint32_t sample = (channel == 0 ? x : ~x) >> 8;
            const float level = static_cast<float>(static_cast<std::int32_t>(sample << 8) >> 8) / 8388608.0F;
            append(data, bitsPerSample == 24 ? sample : std::bit_cast<std::uint32_t>(level),
                   bitsPerSample == 24 ? 3 : 4);
        }
    }
    return data;
}

// The sums were computed by another program, with every operation rounded to single precision.
TEST(ConvertWave, ofNoiseIsExactToTheLastBit) {
    struct Row {
        std::uint32_t rate;
        std::uint32_t second;  ///< point
        std::uint32_t last;
        std::uint32_t sum;  ///< of all points, each added to 31 times the sum before it
    };
    for (const auto& [rate, second, last, sum] : {Row{44100, 0x5E8885, 0xA938D2, 0x898928C2},
                                                  {48000, 0x4B0BC0, 0xE4BA93, 0x86788882},
                                                  {88200, 0x811601, 0x26599C, 0x1F932680},
                                                  {96000, 0x8A2D6B, 0x252D61, 0x7702BE72}}) {
        for (const std::uint16_t bits : {24, 32}) {
            for (const std::uint16_t channels : {1, 2}) {
                Words points{};
                EXPECT_TRUE(convertWave(noise(1200, bits, channels), formatOf(bits, channels, rate), 1200, points));
                EXPECT_EQ(points[1], second) << rate;
                EXPECT_EQ(points[511], last) << rate;
                EXPECT_EQ(
                    std::accumulate(points.begin(), points.end(), 0U,
                                    [](std::uint32_t before, std::uint32_t point) { return 31 * before + point; }),
                    sum)
                    << rate << ' ' << bits << ' ' << channels;
            }
        }
    }
}

TEST(ConvertWave, ofAHundredFrames_isFollowedBySilenceAfterResampling) {
    struct Row {
        std::uint32_t rate;
        std::size_t last;     ///< point, between the last frame and silence
        std::uint32_t value;  ///< of it
    };
    for (const auto& [rate, last, value] : {Row{48000, 91, 0x7EE587}, {96000, 45, 0x6AEBF7}}) {
        Words points{};
        EXPECT_TRUE(convertWave(noise(100, 24, 1), formatOf(24, 1, rate), 100, points));
        EXPECT_EQ(points[last], value);
        EXPECT_EQ(std::accumulate(points.begin() + static_cast<std::ptrdiff_t>(last) + 1, points.end(), 0U), 0U);
    }
}

TEST(ConvertWave, refusesOtherRatesAndDepthsAndLeavesThePoints) {
    Words points;
    points.fill(0xA5A5A5A5);
    const FileBytes samples(64);
    for (const std::uint32_t rate : {0U, 22050U, 44101U, 0xFFFFFFFFU}) {
        EXPECT_EQ(convertWave(samples, formatOf(16, 1, rate), 8, points), std::nullopt) << rate;
    }
    for (const std::uint16_t bits : {0, 7, 9, 20, 33, 0xFFFF}) {
        EXPECT_EQ(convertWave(samples, formatOf(bits), 8, points), std::nullopt) << bits;
    }
    EXPECT_EQ(std::ranges::count(points, 0xA5A5A5A5), 512);
}

TEST(ConvertWave, countsTheFramesThatItUses) {
    Words points{};
    EXPECT_EQ(convertWave(FileBytes(605), formatOf(24, 2, 48000), 1000, points), 100U);
    EXPECT_EQ(convertWave(FileBytes(605), formatOf(24, 2, 48000), 10, points), 10U);
    EXPECT_EQ(convertWave(FileBytes(6000), formatOf(24, 2, 48000), 1000, points), 560U);
    EXPECT_EQ(convertWave(FileBytes(605), formatOf(24, 4, 48000), 9, points), 0U);
}

TEST(DecodeFirstChannel, stopsAtTheLimitOfFramesAndAtTheBuffersEnd) {
    const FileBytes data(2000, 1);
    IRPointBuffer out{};
    EXPECT_EQ(decodeFirstChannel(data, 1, 8, 3, out), 3U);
    EXPECT_EQ(out[2], 0x10000U);
    EXPECT_EQ(out[3], 0U);
    EXPECT_EQ(decodeFirstChannel(data, 1, 8, std::numeric_limits<std::size_t>::max(), out), 1120U);
    EXPECT_EQ(out[1119], 0x10000U);
}

TEST(UnpackInternal, givesItsSamplesUnchanged_andZerosPastTheEnd) {
    FileBytes samples;
    for (std::uint32_t k = 0; k < 512; ++k) {
        append(samples, 0xFF0000 - k, 3);
    }
    append(samples, "and more");
    Words points{};
    EXPECT_EQ(unpackInternal(samples, points), 512U);
    EXPECT_EQ(points[0], 0xFF0000U);
    EXPECT_EQ(points[1], 0xFEFFFFU);
    EXPECT_EQ(points[511], 0xFEFE01U);
    EXPECT_EQ(unpackInternal(FileBytes{0x11, 0x22, 0x33, 0x44, 0x55}, points), 1U);
    EXPECT_EQ(points[0], 0x332211U);
    EXPECT_EQ(points[1], 0x005544U);
    EXPECT_EQ(points[2], 0U);
    EXPECT_EQ(points[511], 0U);
}

}  // namespace
}  // namespace kelvo
