// What the readers tell of a file beside what they make of it.

#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "AMPFile.h"
#include "RVIRFile.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

class FileFacts : public testing::Test {
protected:
    void convert(const FileBytes& bytes, const QString& name = "cab.wav") {
        ASSERT_TRUE(wave.OpenFilePath(dir.write(name, bytes)));
        std::array<std::uint32_t, kIRPointCount> points{};
        ASSERT_TRUE(wave.GetIRDataBuffer(points));
    }

    const SampleDir dir;
    RVIRFile wave;
    AMPFile amp;
};

TEST_F(FileFacts, ofAWaveTellWhereItsChunksAreAndWhatTheyHold) {
    convert(WaveFile{.sampleRate = 48000, .bitsPerSample = 24, .channels = 2, .data = FileBytes(605)}.bytes());
    EXPECT_EQ(wave.fmt_block.offset, 12U);
    EXPECT_EQ(wave.fmt_block.formatTag, 1U);
    EXPECT_EQ(wave.fmt_block.channels, 2U);
    EXPECT_EQ(wave.fmt_block.sampleRate, 48000U);
    EXPECT_EQ(wave.fmt_block.bitsPerSample, 24U);
    EXPECT_EQ(wave.data_block.offset, 36U);
    EXPECT_EQ(wave.data_block.declaredSize, 605U);
    EXPECT_EQ(wave.data_block.heldSize, 605U);
    EXPECT_EQ(wave.data_block.heldFrames, 100U);
    EXPECT_EQ(wave.framesUsed, 100U);
    EXPECT_EQ(wave.framesWanted, 560U);
    EXPECT_EQ(wave.wholeName, "CAB");
}

TEST_F(FileFacts, countFramesThatAreBothDeclaredAndHeld) {
    convert(WaveFile{.data = FileBytes(80), .declaredDataSize = 2000}.bytes());
    EXPECT_EQ(wave.data_block.declaredSize, 2000U);
    EXPECT_EQ(wave.data_block.heldSize, 80U);
    EXPECT_EQ(wave.data_block.heldFrames, 40U);
    convert(WaveFile{.data = FileBytes(80), .declaredDataSize = 20}.bytes());
    EXPECT_EQ(wave.data_block.heldSize, 80U);
    EXPECT_EQ(wave.data_block.heldFrames, 10U);
    EXPECT_EQ(wave.framesUsed, 10U);
}

TEST_F(FileFacts, takeTheTagOfTheSubFormatWhereThereIsOne) {
    FileBytes bytes = WaveFile{.data = FileBytes(4)}.bytes();
    bytes[20] = 0xFE;
    bytes[21] = 0xFF;
    bytes[44] = 0x34;  // 24 bytes behind the chunk's header
    bytes[45] = 0x12;
    convert(bytes);
    EXPECT_EQ(wave.fmt_block.formatTag, 0x1234U);
}

TEST_F(FileFacts, ofAnInternalFileCountItsPoints) {
    FileBytes bytes;
    append(bytes, "TavikIR");
    bytes.resize(512 + 3 * 100 + 2);
    convert(bytes);
    EXPECT_EQ(wave.framesUsed, 100U);
    EXPECT_EQ(wave.framesWanted, 512U);
    EXPECT_EQ(wave.wholeName, "");
    bytes.resize(7);
    convert(bytes);
    EXPECT_EQ(wave.framesUsed, 0U);
}

TEST_F(FileFacts, keepTheNameThatWasCut) {
    convert(WaveFile{.data = FileBytes(4)}.bytes(), "Closed Back 4x12.wav");
    EXPECT_STREQ(wave.CharFileNane.data(), "CLOSED BAC");
    EXPECT_EQ(wave.wholeName, "CLOSED BACK 4X12");
    ASSERT_TRUE(amp.readModel(dir.write("Overdriven Lead.amp", ampFile({}))));
    EXPECT_STREQ(amp.CharFileName.data(), "Overdriven");
    EXPECT_EQ(amp.wholeName, "Overdriven Lead");
}

TEST_F(FileFacts, tellWhetherChunksLeadToAPlace) {
    FileBytes bytes;
    append(bytes, "RIFF????WAVELIST");
    append(bytes, 7, 4);
    append(bytes, "some te");  // and a byte that makes the size even
    bytes.push_back(0);
    const FileBytes good = WaveFile{.data = FileBytes(4)}.bytes();
    bytes.insert(bytes.end(), good.begin() + 12, good.end());
    convert(bytes);
    EXPECT_TRUE(wave.chunkBeginsAt(12));
    EXPECT_FALSE(wave.chunkBeginsAt(20));  // in LIST
    EXPECT_TRUE(wave.chunkBeginsAt(28));   // the real fmt
    EXPECT_TRUE(wave.chunkBeginsAt(52));   // data
    EXPECT_FALSE(wave.chunkBeginsAt(51));
    EXPECT_FALSE(wave.chunkBeginsAt(4));
}

TEST_F(FileFacts, countFloatsThatWrapAmongTheFramesUsed) {
    FileBytes data;
    for (const float left : {1.0F, -1.0F, 1.0000001F, -2.0F, std::numeric_limits<float>::quiet_NaN(),
                             std::numeric_limits<float>::infinity(), 0.5F}) {
        append(data, std::bit_cast<std::uint32_t>(left), 4);
        append(data, std::bit_cast<std::uint32_t>(9.0F), 4);  // the right channel does not count
    }
    convert(WaveFile{.bitsPerSample = 32, .channels = 2, .data = data}.bytes());
    EXPECT_EQ(wave.framesUsed, 7U);
    EXPECT_EQ(wave.framesBeyondFullScale(), 4U);
    convert(WaveFile{.bitsPerSample = 32, .channels = 2, .data = data, .declaredDataSize = 24}.bytes());
    EXPECT_EQ(wave.framesBeyondFullScale(), 1U);
    convert(WaveFile{.bitsPerSample = 32, .channels = 4, .data = data}.bytes());
    EXPECT_EQ(wave.framesBeyondFullScale(), 0U);
    convert(WaveFile{.bitsPerSample = 24, .data = FileBytes(300, 0x7F)}.bytes());
    EXPECT_EQ(wave.framesBeyondFullScale(), 0U);
}

TEST_F(FileFacts, ofAnAmpCountItsWordsAndGiveItsChecksum) {
    ASSERT_TRUE(amp.readModel(dir.write("a.amp", ampFile(std::array<std::uint32_t, 2>{0x12345678, 1}))));
    EXPECT_EQ(amp.wordsRead, 512U);
    EXPECT_TRUE(amp.hasChecksum);
    EXPECT_EQ(amp.checksum, 0x12345679U);
    ASSERT_TRUE(amp.readModel(dir.write("a.amp", FileBytes{0, 0, 0, 0, '2', '.', '0'})));
    EXPECT_EQ(amp.wordsRead, 1U);
    EXPECT_FALSE(amp.hasChecksum);
    EXPECT_EQ(amp.checksum, 0U);
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
