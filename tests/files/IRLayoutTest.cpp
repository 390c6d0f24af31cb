// What is found in a wave file, and which rule a file breaks.

#include <gtest/gtest.h>

#include <string>

#include "IRConversion.h"
#include "IRLayout.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

std::string text(const FourChars& chars) {
    return {chars.begin(), chars.end()};
}

WaveRule brokenBy(const FileBytes& bytes) {
    return findWave(bytes).broken;
}

TEST(WaveLayout, hasEveryFieldOfTheRecords) {
    const FileBytes bytes =
        WaveFile{.sampleRate = 48000, .bitsPerSample = 24, .channels = 2, .data = FileBytes(605)}.bytes();
    const WaveLayout wave = findWave(bytes);
    EXPECT_EQ(wave.broken, WaveRule::None);
    EXPECT_EQ(text(wave.riffheader.id), "RIFF");
    EXPECT_EQ(wave.riffheader.size, 641U);
    EXPECT_EQ(text(wave.riffheader.formType), "WAVE");
    EXPECT_EQ(wave.fmtOffset, 12U);
    EXPECT_EQ(text(wave.fmt_block.id), "fmt ");
    EXPECT_EQ(wave.fmt_block.size, 16U);
    EXPECT_EQ(wave.fmt_block.format.formatTag, 1U);
    EXPECT_EQ(wave.fmt_block.format.channels, 2U);
    EXPECT_EQ(wave.fmt_block.format.sampleRate, 48000U);
    EXPECT_EQ(wave.fmt_block.format.byteRate, 288000U);
    EXPECT_EQ(wave.fmt_block.format.blockAlign, 6U);
    EXPECT_EQ(wave.fmt_block.format.bitsPerSample, 24U);
    EXPECT_EQ(wave.dataOffset, 36U);
    EXPECT_EQ(text(wave.data_block.id), "data");
    EXPECT_EQ(wave.data_block.size, 605U);
    EXPECT_EQ(wave.samplesOffset, 44U);
    EXPECT_EQ(wave.samplesSize, 605U);
    EXPECT_EQ(wave.frames, 100U);
}

TEST(WaveLayout, ofNothingIsAllZero) {
    const WaveLayout wave = findWave({});
    EXPECT_EQ(wave.broken, WaveRule::RiffMark);
    EXPECT_EQ(wave.riffheader.size, 0U);
    EXPECT_EQ(wave.fmtOffset, 0U);
    EXPECT_EQ(wave.fmt_block.size, 0U);
    EXPECT_EQ(wave.fmt_block.format.formatTag, 0U);
    EXPECT_EQ(wave.fmt_block.format.channels, 0U);
    EXPECT_EQ(wave.fmt_block.format.sampleRate, 0U);
    EXPECT_EQ(wave.fmt_block.format.byteRate, 0U);
    EXPECT_EQ(wave.fmt_block.format.blockAlign, 0U);
    EXPECT_EQ(wave.fmt_block.format.bitsPerSample, 0U);
    EXPECT_EQ(wave.dataOffset, 0U);
    EXPECT_EQ(wave.data_block.size, 0U);
    EXPECT_EQ(wave.frames, 0U);
}

TEST(WaveLayout, tellsWhatIsDeclaredFromWhatIsThere) {
    WaveLayout wave = findWave(WaveFile{.data = FileBytes(80), .declaredDataSize = 2000}.bytes());
    EXPECT_EQ(wave.data_block.size, 2000U);
    EXPECT_EQ(wave.samplesSize, 80U);
    EXPECT_EQ(wave.frames, 1000U);
    wave = findWave(WaveFile{.data = FileBytes(80), .declaredDataSize = 20}.bytes());
    EXPECT_EQ(wave.samplesSize, 80U);
    EXPECT_EQ(wave.frames, 10U);
}

TEST(WaveRule, ofTheMarksComesFirst) {
    FileBytes bytes = WaveFile{.data = FileBytes(4)}.bytes();
    std::ranges::copy(std::string_view("AVI "), bytes.begin() + 8);
    EXPECT_EQ(brokenBy(bytes), WaveRule::WaveMark);
    std::ranges::copy(std::string_view("RF64"), bytes.begin());
    EXPECT_EQ(brokenBy(bytes), WaveRule::RiffMark);
    EXPECT_EQ(brokenBy({}), WaveRule::RiffMark);
    EXPECT_EQ(brokenBy({'R'}), WaveRule::RiffMark);
    EXPECT_EQ(brokenBy({'R', 'I', 'F', 'F'}), WaveRule::WaveMark);
}

TEST(WaveRule, ofTheChunksIsBrokenByAMissingOne) {
    FileBytes bytes = WaveFile{.data = FileBytes(4)}.bytes();
    bytes[36] = 'D';
    EXPECT_EQ(brokenBy(bytes), WaveRule::DataChunk);
    EXPECT_EQ(findWave(bytes).dataOffset, 48U);
    bytes[12] = 'F';
    EXPECT_EQ(brokenBy(bytes), WaveRule::FmtChunk);
    EXPECT_EQ(findWave(bytes).fmtOffset, 48U);
}

TEST(WaveRule, ofTheChunksIsBrokenByOneThatTheEndCutsOff) {
    FileBytes bytes = WaveFile{}.bytes();
    EXPECT_EQ(brokenBy(bytes), WaveRule::None);
    bytes.resize(43);
    EXPECT_EQ(brokenBy(bytes), WaveRule::DataChunk);
    EXPECT_EQ(findWave(bytes).dataOffset, 36U);
    bytes.resize(35);
    EXPECT_EQ(brokenBy(bytes), WaveRule::FmtChunk);
    EXPECT_EQ(findWave(bytes).fmtOffset, 12U);
}

TEST(WaveRule, ofTheFrameIsBrokenWithoutAChannelOrAWholeByte) {
    const FileBytes data(16);
    EXPECT_EQ(brokenBy(WaveFile{.channels = 0, .data = data}.bytes()), WaveRule::Channels);
    EXPECT_EQ(brokenBy(WaveFile{.bitsPerSample = 7, .channels = 0, .data = data}.bytes()), WaveRule::Channels);
    EXPECT_EQ(brokenBy(WaveFile{.bitsPerSample = 7, .data = data}.bytes()), WaveRule::Depth);
    EXPECT_EQ(brokenBy(WaveFile{.bitsPerSample = 8, .data = data}.bytes()), WaveRule::None);
}

TEST(WaveConversion, countsTheFramesThatItUses) {
    std::array<std::uint32_t, kPointCount> points{};
    const FileBytes samples(605);
    const WAVE_FORMAT format{.channels = 2, .sampleRate = 48000, .bitsPerSample = 24};
    EXPECT_EQ(convertWave(samples, format, 1000, points), 100U);
    EXPECT_EQ(convertWave(samples, format, 10, points), 10U);
    EXPECT_EQ(convertWave(FileBytes(6000), format, 1000, points), 560U);
    EXPECT_EQ(convertWave(samples, {.channels = 4, .sampleRate = 48000, .bitsPerSample = 24}, 9, points), 0U);
    EXPECT_EQ(convertWave(samples, {.channels = 2, .sampleRate = 22050, .bitsPerSample = 24}, 9, points), std::nullopt);
    EXPECT_EQ(convertWave(samples, {.channels = 2, .sampleRate = 48000, .bitsPerSample = 20}, 9, points), std::nullopt);
}

TEST(InternalIR, isToldByItsMagicAndCountsItsPoints) {
    std::array<std::uint32_t, kPointCount> points{};
    FileBytes bytes;
    append(bytes, "TavikIR");
    EXPECT_TRUE(isInternalIR(bytes));
    EXPECT_EQ(unpackInternal(FileBytes(302), points), 100U);
    EXPECT_EQ(unpackInternal(FileBytes(3 * 512 + 3), points), 512U);
    bytes[6] = 'r';
    EXPECT_FALSE(isInternalIR(bytes));
}

TEST(InternalIR, tellsItsNameByOneByte) {
    FileBytes bytes;
    append(bytes, "TavikIR");
    EXPECT_EQ(internalName(bytes), "");
    bytes.push_back(3);
    FileNameBuff[3] = "THREE";
    EXPECT_EQ(internalName(bytes), "THREE");
    bytes.push_back(0xFF);
    EXPECT_EQ(internalName(bytes), "THREE");
    FileNameBuff[3] = {};
}

TEST(LevelOfAPoint, isAPartOfFullScaleAndIgnoresTheHighestByte) {
    EXPECT_EQ(levelOf(0x000000), 0.0F);
    EXPECT_EQ(levelOf(0x400000), 0.5F);
    EXPECT_EQ(levelOf(0x800000), -1.0F);
    EXPECT_EQ(levelOf(0xFFFFFF), -0.00000011920929F);
    EXPECT_EQ(levelOf(0x7FFFFF), 0.99999988F);
    EXPECT_EQ(levelOf(0x01400000), 0.5F);
}

TEST(UsableChannel, isThereInFilesOfOneAndTwoChannelsOnly) {
    EXPECT_FALSE(hasUsableChannel(0));
    EXPECT_TRUE(hasUsableChannel(1));
    EXPECT_TRUE(hasUsableChannel(2));
    EXPECT_FALSE(hasUsableChannel(3));
    EXPECT_FALSE(hasUsableChannel(0x10001));
}

}  // namespace
}  // namespace kelvo
