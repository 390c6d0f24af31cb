#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <limits>

#include "FileView.h"
#include "IRConversion.h"

namespace kelvo {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

using FloatBuffer = std::array<float, kIRFrameCount>;
using Points = std::array<float, kPointCount>;
using Words = std::array<std::uint32_t, kPointCount>;

TEST(NumberInAFile, takesTheBytesOfItsWidth) {
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

TEST(ICovertoF, countsTheFrameCapOfTheRate) {
    const IRPointBuffer in{};
    FloatBuffer out{};
    EXPECT_EQ(ICovertoF(in, 48000, out), 560U);
    EXPECT_EQ(ICovertoF(in, 88200, out), 1025U);
    EXPECT_EQ(ICovertoF(in, 96000, out), 1120U);
}

TEST(ICovertoF, doesNothingForAnyOtherRate) {
    IRPointBuffer in;
    in.fill(0x400000);
    FloatBuffer out;
    out.fill(9.0F);
    for (const std::int32_t rate : {44100, 22050, 192000, 0, -1, -48000}) {
        EXPECT_EQ(ICovertoF(in, rate, out), 0U) << rate;
    }
    EXPECT_EQ(out[0], 9.0F);
}

TEST(ICovertoF, leavesEntriesBehindTheCap) {
    const IRPointBuffer in{};
    FloatBuffer out;
    out.fill(9.0F);
    ICovertoF(in, 48000, out);
    EXPECT_EQ(out[559], 0.0F);
    EXPECT_EQ(out[560], 9.0F);
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

TEST(Resample, takesEverySecondEntryAt88200) {
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

TEST(DecodeFirstChannel, ofAFloatGivesTheseWords) {
    for (const FloatWord& row : {FloatWord{0.0F, 0x000000},
                                 {0.5F, 0x400000},
                                 {-0.5F, 0xC00000},
                                 {1.0F, 0x7FFFF7},
                                 {-1.0F, 0x800009},
                                 {-0x1p-23F, 0xFFFFFF},
                                 {-0x1p-24F, 0x000000},
                                 {1.5F, 0x00C00000},
                                 {2.0F, 0x01000000},
                                 {255.5F, 0x7FC00000},
                                 {-1.5F, 0xC00000},
                                 {-2.0F, 0x800000},
                                 {256.0F, 0x800000},
                                 {kInfinity, 0x800000},
                                 {-kInfinity, 0x800000},
                                 {kNaN, 0x800000}}) {
        std::array<std::uint8_t, 4> data;
        const auto bits = std::bit_cast<std::uint32_t>(row.value);
        for (std::size_t i = 0; i < data.size(); ++i) {
            data[i] = static_cast<std::uint8_t>(bits >> (8 * i));
        }
        IRPointBuffer out{};
        EXPECT_TRUE(decodeFirstChannel(data, 1, 32, 512, out));
        EXPECT_EQ(out[0], row.word) << row.value;
    }
}

TEST(DecodeFirstChannel, stopsAtTheLimitOfFramesAndAtTheBuffersEnd) {
    const std::array<std::uint8_t, 2000> data = [] {
        std::array<std::uint8_t, 2000> bytes;
        bytes.fill(1);
        return bytes;
    }();
    IRPointBuffer out{};
    EXPECT_TRUE(decodeFirstChannel(data, 1, 8, 3, out));
    EXPECT_EQ(out[2], 0x10000U);
    EXPECT_EQ(out[3], 0U);
    EXPECT_TRUE(decodeFirstChannel(data, 1, 8, std::numeric_limits<std::size_t>::max(), out));
    EXPECT_EQ(out[1119], 0x10000U);
}

}  // namespace
}  // namespace kelvo
