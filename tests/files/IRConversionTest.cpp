#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <string>

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

TEST(NumberInAFile, readsTheBytesOfItsWidth) {
    const std::array<std::uint8_t, 5> bytes{0x01, 0x82, 0x03, 0x84, 0x05};
    EXPECT_EQ(FileView(bytes).number(0, 1), 0x01U);
    EXPECT_EQ(FileView(bytes).number(0, 2), 0x8201U);
    EXPECT_EQ(FileView(bytes).number(1, 3), 0x840382U);
    EXPECT_EQ(FileView(bytes).number(0, 4), 0x84038201U);
}

TEST(NumberInAFile, countsBytesPastTheEndAsZero) {
    const std::array<std::uint8_t, 2> bytes{0x01, 0x02};
    EXPECT_EQ(FileView(bytes).number(1, 4), 0x02U);
    EXPECT_EQ(FileView(bytes).number(2, 4), 0U);
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
    for (const std::uint32_t rate : {0U, 8000U, 22050U, 44099U, 44101U, 176400U, 192000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(findIRRate(rate), nullptr) << rate;
    }
}

TEST(TruncateToInt32, goesTowardZero) {
    EXPECT_EQ(truncateToInt32(0.0F), 0);
    EXPECT_EQ(truncateToInt32(-0.0F), 0);
    EXPECT_EQ(truncateToInt32(1.9F), 1);
    EXPECT_EQ(truncateToInt32(-1.9F), -1);
    EXPECT_EQ(truncateToInt32(8388607.5F), 8388607);
    EXPECT_EQ(truncateToInt32(std::numeric_limits<float>::denorm_min()), 0);
}

TEST(TruncateToInt32, reachesBothEndsOf32Bits) {
    EXPECT_EQ(truncateToInt32(2147483520.0F), 2147483520);
    EXPECT_EQ(truncateToInt32(-2147483648.0F), std::numeric_limits<std::int32_t>::min());
}

TEST(TruncateToInt32, givesTheLeastIntegerForAllThatDoesNotFit) {
    for (const float value : {2147483648.0F, -2147483904.0F, 1e30F, -1e30F, kInfinity, -kInfinity, kNaN, -kNaN}) {
        EXPECT_EQ(truncateToInt32(value), -2147483647 - 1) << value;
    }
}

TEST(ICovertoF, convertsTheFramesOfTheRateAndNoMore) {
    const IRPointBuffer in{};
    FloatBuffer out;
    out.fill(9.0F);
    for (const std::int32_t rate : {44100, 22050, 192000, 0, -1, -48000}) {
        EXPECT_EQ(ICovertoF(in, rate, out), 0U) << rate;
    }
    EXPECT_EQ(out[0], 9.0F);
    EXPECT_EQ(ICovertoF(in, 48000, out), 560U);
    EXPECT_EQ(out[559], 0.0F);
    EXPECT_EQ(out[560], 9.0F);
    EXPECT_EQ(ICovertoF(in, 88200, out), 1025U);
    EXPECT_EQ(ICovertoF(in, 96000, out), 1120U);
}

TEST(ICovertoF, extendsTheSignOf24BitsAndIgnoresTheTopByte) {
    IRPointBuffer in{};
    const std::array<std::uint32_t, 8> words{0x000000, 0x000001, 0x7FFFFF, 0x800000,
                                             0xFFFFFF, 0x400000, 0xC00000, 0xAB400000};
    std::ranges::copy(words, in.begin());
    FloatBuffer out{};
    ICovertoF(in, 96000, out);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(out[0]), 0x00000000U);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(out[1]), 0x34000000U);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(out[2]), 0x3F7FFFFEU);
    EXPECT_EQ(out[3], -1.0F);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(out[4]), 0xB4000000U);
    EXPECT_EQ(out[5], 0.5F);
    EXPECT_EQ(out[6], -0.5F);
    EXPECT_EQ(out[7], 0.5F);
}

/// Entry i is i, so that a resampled point shows its source position.
FloatBuffer ramp() {
    FloatBuffer in;
    for (std::size_t i = 0; i < in.size(); ++i) {
        in[i] = static_cast<float>(i);
    }
    return in;
}

TEST(Resample, pointJLiesAtSourcePositionJTimesTheRatio) {
    Points out{};
    Resample(ramp(), 48000, out);
    EXPECT_EQ(out[0], 0.0F);
    EXPECT_FLOAT_EQ(out[1], 1.088F);
    EXPECT_FLOAT_EQ(out[2], 2.176F);
    EXPECT_NEAR(out[511], 555.968F, 0.001F);
    Resample(ramp(), 96000, out);
    EXPECT_FLOAT_EQ(out[1], 2.177F);
    EXPECT_NEAR(out[511], 1112.447F, 0.001F);
}

TEST(Resample, usesEverySecondEntryAt88200) {
    Points out{};
    Resample(ramp(), 88200, out);
    EXPECT_EQ(out[0], 0.0F);
    EXPECT_EQ(out[1], 2.0F);
    EXPECT_EQ(out[255], 510.0F);
    EXPECT_EQ(out[511], 1022.0F);
}

TEST(Resample, readsNoFurtherThanTheseEntries) {
    const std::array<std::pair<std::int32_t, std::size_t>, 3> highest{{{48000, 556}, {88200, 1023}, {96000, 1113}}};
    for (const auto& [rate, index] : highest) {
        FloatBuffer in{};
        std::fill(in.begin() + static_cast<std::ptrdiff_t>(index) + 1, in.end(), kNaN);
        Points out{};
        Resample(in, rate, out);
        EXPECT_EQ(out[511], 0.0F) << rate;
        in[index] = kNaN;
        Resample(in, rate, out);
        EXPECT_NE(out[511], out[511]) << rate;
    }
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

struct FloatWord {
    float value;
    std::uint32_t word;
};

TEST(FCovertoI, givesTheseWords) {
    for (const FloatWord& row :
         {FloatWord{0.0F, 0x000000}, {-0.0F, 0x000000},       {0.5F, 0x400000},     {-0.5F, 0xC00000},
          {1.0F, 0x7FFFF7},          {-1.0F, 0x800009},       {0x1p-23F, 0x000001}, {-0x1p-23F, 0xFFFFFF},
          {0x1.8p-23F, 0x000001},    {-0x1.8p-23F, 0xFFFFFF}, {0x1p-24F, 0x000000}, {-0x1p-24F, 0x000000},
          {1.5F, 0xC00000},          {2.0F, 0x000000},        {-1.5F, 0xC00000},    {-2.0F, 0x800000},
          {255.5F, 0xC00000},        {256.0F, 0x800000},      {-256.0F, 0x800000},  {1e30F, 0x800000},
          {kInfinity, 0x800000},     {-kInfinity, 0x800000},  {kNaN, 0x800000}}) {
        Points in{};
        in[0] = row.value;
        in[511] = row.value;
        Words out;
        out.fill(0x12345678);
        FCovertoI(in, out);
        EXPECT_EQ(out[0], row.word) << row.value;
        EXPECT_EQ(out[1], 0U);
        EXPECT_EQ(out[511], row.word) << row.value;
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
    std::size_t frames = 1000;          ///< that the file declares
};

FileBytes floatBytes(std::initializer_list<float> values) {
    FileBytes bytes;
    for (const float value : values) {
        append(bytes, std::bit_cast<std::uint32_t>(value), 4);
    }
    return bytes;
}

class WaveConversion : public testing::TestWithParam<Conversion> {};

TEST_P(WaveConversion, givesThesePoints) {
    const auto& [name, format, samples, expected, frames] = GetParam();
    Words points;
    points.fill(0xA5A5A5A5);
    EXPECT_TRUE(convertWave(samples, format, frames, points));
    std::vector<std::uint32_t> all = expected;
    all.resize(kPointCount);
    EXPECT_EQ(std::vector(points.begin(), points.end()), all);
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
    {"fourChannelsAt48000_giveSilence", formatOf(16, 4, 48000), FileBytes(64, 1), {}},
    {"channels65535At88200_giveSilence", formatOf(16, 0xFFFF, 88200), FileBytes(64, 1), {}},
    {"sixChannelsAt96000_giveSilence", formatOf(16, 6, 96000), FileBytes(64, 1), {}},
    {"aHundredFrames", formatOf(8), FileBytes(100, 0x11), std::vector<std::uint32_t>(100, 0x110000)},
    {"sixHundredFrames_are512", formatOf(8), FileBytes(600, 0x11), std::vector<std::uint32_t>(512, 0x110000)},
    {"incompleteFrame_isNotUsed", formatOf(16, 2), {1, 2, 3, 4, 5, 6, 7}, {0x020100}},
    {"framesBeyondTheDeclaredOnes_areNotUsed", formatOf(16), {1, 2, 3, 4}, {0x020100}, 1},
};

INSTANTIATE_TEST_SUITE_P(Samples, WaveConversion, testing::ValuesIn(kConversions),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(ConvertWave, refusesOtherRatesAndDepthsAndLeavesThePoints) {
    Words points;
    points.fill(0xA5A5A5A5);
    const FileBytes samples(64);
    for (const std::uint32_t rate : {0U, 22050U, 192000U, 176400U, 44101U, 0x8000AC44U, 0xFFFFFFFFU}) {
        EXPECT_EQ(convertWave(samples, formatOf(16, 1, rate), 8, points), std::nullopt) << rate;
    }
    for (const std::uint16_t bits : {0, 7, 9, 12, 20, 31, 33, 40, 64, 0xFFFF}) {
        for (const std::uint16_t channels : {1, 2, 4}) {
            EXPECT_EQ(convertWave(samples, formatOf(bits, channels), 8, points), std::nullopt) << bits;
        }
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
    EXPECT_TRUE(decodeFirstChannel(data, 1, 8, 3, out));
    EXPECT_EQ(out[2], 0x10000U);
    EXPECT_EQ(out[3], 0U);
    EXPECT_TRUE(decodeFirstChannel(data, 1, 8, std::numeric_limits<std::size_t>::max(), out));
    EXPECT_EQ(out[1119], 0x10000U);
}

}  // namespace
}  // namespace kelvo
