#include <gtest/gtest.h>

#include <algorithm>

#include "RVIRFile.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

using Points = std::array<std::uint32_t, kPointCount>;

class IRConvert : public testing::Test {
protected:
    IRConvert() { points.fill(0xA5A5A5A5); }

    bool convert(const FileBytes& bytes) {
        return file.OpenFilePath(dir.write("cab.wav", bytes)) && file.GetIRDataBuffer(points);
    }

    /// Whether the points are `first` and then silence.
    bool pointsAre(std::initializer_list<std::uint32_t> first) const {
        return std::equal(first.begin(), first.end(), points.begin()) &&
               std::all_of(points.begin() + static_cast<std::ptrdiff_t>(first.size()), points.end(),
                           [](std::uint32_t word) { return word == 0; });
    }

    bool pointsAreUntouched() const {
        return std::ranges::all_of(points, [](std::uint32_t word) { return word == 0xA5A5A5A5; });
    }

    const SampleDir dir;
    RVIRFile file;
    Points points;
};

TEST_F(IRConvert, withoutAFileIsRefusedAndLeavesThePoints) {
    EXPECT_FALSE(file.GetIRDataBuffer(points));
    EXPECT_TRUE(pointsAreUntouched());
}

TEST_F(IRConvert, hundredFramesAreFollowedBySilence) {
    EXPECT_TRUE(convert(WaveFile{.bitsPerSample = 8, .data = FileBytes(100, 0x11)}.bytes()));
    EXPECT_EQ(points[0], 0x110000U);
    EXPECT_EQ(points[99], 0x110000U);
    EXPECT_EQ(std::count(points.begin() + 100, points.end(), 0U), 412);
}

TEST_F(IRConvert, framesBeyond512AreNotUsed) {
    FileBytes data(512, 0x11);
    data.resize(600, 0x22);
    EXPECT_TRUE(convert(WaveFile{.bitsPerSample = 8, .data = data}.bytes()));
    EXPECT_EQ(std::ranges::count(points, 0x110000U), 512);
}

TEST_F(IRConvert, eightBitSamplesAreNotRebiased) {
    EXPECT_TRUE(convert(WaveFile{.bitsPerSample = 8, .data = {0x80, 0x00, 0x7F, 0xFF, 0x01}}.bytes()));
    EXPECT_TRUE(pointsAre({0x800000, 0x000000, 0x7F0000, 0xFF0000, 0x010000}));
}

TEST_F(IRConvert, sixteenBitSamplesAreScaledUp) {
    EXPECT_TRUE(convert(WaveFile{.data = {0x00, 0x80, 0xFF, 0x7F, 0xFF, 0xFF, 0x01, 0x00}}.bytes()));
    EXPECT_TRUE(pointsAre({0x800000, 0x7FFF00, 0xFFFF00, 0x000100}));
}

TEST_F(IRConvert, twentyFourBitSamplesStay) {
    EXPECT_TRUE(
        convert(WaveFile{.bitsPerSample = 24, .data = {0xFF, 0xFF, 0xFF, 0x56, 0x34, 0x12, 0x00, 0x00, 0x80}}.bytes()));
    EXPECT_TRUE(pointsAre({0xFFFFFF, 0x123456, 0x800000}));
}

TEST_F(IRConvert, floatSamplesAreScaledAndFullScaleIsPulledIn) {
    FileBytes data;
    for (const std::uint32_t single : {0x3F800000U, 0xBF800000U, 0x3F000000U, 0xBF000000U, 0x80000000U}) {
        append(data, single, 4);  // 1.0, -1.0, 0.5, -0.5, -0.0
    }
    EXPECT_TRUE(convert(WaveFile{.bitsPerSample = 32, .data = data}.bytes()));
    EXPECT_TRUE(pointsAre({0x7FFFF7, 0x800009, 0x400000, 0xC00000, 0x000000}));
}

TEST_F(IRConvert, floatsThatDoNotFitAreDefined) {
    FileBytes data;
    for (const std::uint32_t single : {0x7FC00000U, 0x7F800000U, 0xFF800000U, 0x7F7FFFFFU, 0x40000000U, 0x3FC00000U}) {
        append(data, single, 4);  // NaN, both infinities, the largest single, 2.0, 1.5
    }
    EXPECT_TRUE(convert(WaveFile{.bitsPerSample = 32, .data = data}.bytes()));
    EXPECT_TRUE(pointsAre({0x800000, 0x800000, 0x800000, 0x800000, 0x01000000, 0x00C00000}));
    EXPECT_TRUE(convert(WaveFile{.sampleRate = 88200, .bitsPerSample = 32, .data = data}.bytes()));
    EXPECT_TRUE(pointsAre({0x800009, 0x800009, 0x000000}));  // what resampling made of points 0, 2 and 4
}

TEST_F(IRConvert, formatTagIsNotConsulted) {
    FileBytes bytes = WaveFile{.bitsPerSample = 32, .data = {0x00, 0x00, 0x00, 0x3F}}.bytes();
    bytes[20] = 1;  // integers, it says
    EXPECT_TRUE(convert(bytes));
    EXPECT_TRUE(pointsAre({0x400000}));
}

TEST_F(IRConvert, stereoFilesGiveTheirLeftChannel) {
    EXPECT_TRUE(convert(WaveFile{.bitsPerSample = 8, .channels = 2, .data = {1, 2, 3, 4}}.bytes()));
    EXPECT_TRUE(pointsAre({0x010000, 0x030000}));
    EXPECT_TRUE(convert(WaveFile{.channels = 2, .data = {1, 2, 3, 4, 5, 6, 7, 8}}.bytes()));
    EXPECT_TRUE(pointsAre({0x020100, 0x060500}));
    EXPECT_TRUE(convert(WaveFile{.bitsPerSample = 24, .channels = 2, .data = {1, 2, 3, 4, 5, 6}}.bytes()));
    EXPECT_TRUE(pointsAre({0x030201}));
    EXPECT_TRUE(convert(WaveFile{.bitsPerSample = 32, .channels = 2, .data = {0, 0, 0, 0x3F, 9, 9, 9, 9}}.bytes()));
    EXPECT_TRUE(pointsAre({0x400000}));
}

TEST_F(IRConvert, fileOf88200HzGivesEverySecondSample) {
    EXPECT_TRUE(convert(WaveFile{.sampleRate = 88200, .data = {0, 1, 0, 2, 0, 3, 0, 4, 0, 5}}.bytes()));
    EXPECT_TRUE(pointsAre({0x010000, 0x030000, 0x050000}));
}

TEST_F(IRConvert, otherRatesAreRefused) {
    for (const std::uint32_t rate : {0U, 22050U, 192000U, 176400U, 44101U, 0x8000AC44U, 0xFFFFFFFFU}) {
        EXPECT_FALSE(convert(WaveFile{.sampleRate = rate, .data = FileBytes(8)}.bytes())) << rate;
    }
    EXPECT_TRUE(pointsAreUntouched());
}

TEST_F(IRConvert, otherDepthsAreRefused) {
    for (const std::uint32_t bits : {9U, 12U, 20U, 31U, 33U, 40U, 64U, 0xFFFFU}) {
        for (const std::uint32_t channels : {1U, 2U, 4U}) {
            const WaveFile wave{.bitsPerSample = bits, .channels = channels, .data = FileBytes(64)};
            EXPECT_FALSE(convert(wave.bytes())) << bits << ' ' << channels;
        }
    }
    EXPECT_TRUE(pointsAreUntouched());
}

TEST_F(IRConvert, moreThanTwoChannelsGiveSilence) {
    for (const std::uint32_t channels : {3U, 4U, 0xFFFFU}) {
        for (const std::uint32_t rate : {44100U, 48000U, 88200U, 96000U}) {
            points.fill(0xA5A5A5A5);
            EXPECT_TRUE(convert(WaveFile{.sampleRate = rate, .channels = channels, .data = FileBytes(64, 1)}.bytes()));
            EXPECT_TRUE(pointsAre({})) << channels << ' ' << rate;
        }
    }
}

TEST_F(IRConvert, dataThatTheFileLacksIsSilence) {
    for (const std::int64_t declared : {0x7FFFFFFFLL, 0xFFFFFFFFLL, 0xFFFFFFF8LL, 5LL, 400LL}) {
        EXPECT_TRUE(convert(WaveFile{.data = {1, 2, 3, 4, 5}, .declaredDataSize = declared}.bytes()));
        EXPECT_TRUE(pointsAre({0x020100, 0x040300})) << declared;
    }
}

TEST_F(IRConvert, frameThatTheEndOfTheFileCutsOffIsSilence) {
    const WaveFile wave{.channels = 2, .data = {1, 2, 3, 4, 5, 6, 7}, .declaredDataSize = 8};
    EXPECT_TRUE(convert(wave.bytes()));
    EXPECT_TRUE(pointsAre({0x020100}));
}

TEST_F(IRConvert, bytesBehindTheDeclaredDataAreNotUsed) {
    for (const std::int64_t declared : {2, 3}) {
        EXPECT_TRUE(convert(WaveFile{.data = {1, 2, 3, 4}, .declaredDataSize = declared}.bytes()));
        EXPECT_TRUE(pointsAre({0x020100}));
    }
    for (const std::int64_t declared : {0, 1}) {
        EXPECT_TRUE(convert(WaveFile{.data = {1, 2, 3, 4}, .declaredDataSize = declared}.bytes()));
        EXPECT_TRUE(pointsAre({}));
    }
}

TEST_F(IRConvert, internalFileGivesIts512SamplesUnchanged) {
    FileBytes bytes;
    append(bytes, "TavikIR");
    bytes.resize(512, 0xEE);
    for (std::uint32_t k = 0; k < 512; ++k) {
        append(bytes, 0xFF0000 - k, 3);
    }
    append(bytes, "behind");
    EXPECT_TRUE(convert(bytes));
    EXPECT_EQ(points[0], 0xFF0000U);
    EXPECT_EQ(points[1], 0xFEFFFFU);
    EXPECT_EQ(points[256], 0xFEFF00U);
    EXPECT_EQ(points[511], 0xFEFE01U);
}

TEST_F(IRConvert, shortInternalFileIsFilledUpWithZeroBytes) {
    FileBytes bytes;
    append(bytes, "TavikIR");
    EXPECT_TRUE(convert(bytes));
    EXPECT_TRUE(pointsAre({}));
    bytes.resize(512, 0xEE);
    EXPECT_TRUE(convert(bytes));
    EXPECT_TRUE(pointsAre({}));
    append(bytes, 0x332211, 3);
    append(bytes, 0x5544, 2);
    EXPECT_TRUE(convert(bytes));
    EXPECT_TRUE(pointsAre({0x332211, 0x005544}));
}

TEST_F(IRConvert, givesTheSameEveryTime) {
    ASSERT_TRUE(convert(WaveFile{.sampleRate = 96000, .data = FileBytes(3000, 0x35)}.bytes()));
    const Points first = points;
    EXPECT_EQ(first[100], 0x353500U);
    points.fill(1);
    EXPECT_TRUE(file.GetIRDataBuffer(points));
    EXPECT_EQ(points, first);
}

}  // namespace
}  // namespace kelvo
