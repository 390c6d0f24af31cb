// An impulse-response file as an object: that the layout, the name and the conversion meet, and what a failure leaves.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "RVIRFile.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

std::string text(const NameBuffer& name) {
    return {name.begin(), name.end()};
}

class IRFile : public testing::Test {
protected:
    void SetUp() override { points.fill(0xA5A5A5A5); }
    void TearDown() override { FileNameBuff = {}; }

    bool open(const FileBytes& bytes) { return file.OpenFilePath(dir.write("cab.wav", bytes)); }
    bool convert() { return file.GetIRDataBuffer(points); }

    bool pointsAreUntouched() const { return std::ranges::count(points, 0xA5A5A5A5) == 512; }

    /// A good 16-bit mono file of two frames.
    static FileBytes goodWave() { return WaveFile{.data = {1, 2, 3, 4}}.bytes(); }

    static FileBytes internal(std::uint8_t index, std::size_t size = 2048) {
        FileBytes bytes;
        append(bytes, "TavikIR");
        bytes.push_back(index);
        bytes.resize(size);
        return bytes;
    }

    const SampleDir dir;
    RVIRFile file;
    PointBuffer points;
};

TEST_F(IRFile, beforeItIsOpened_hasABlankNameAndNoPoints) {
    EXPECT_EQ(text(file.CharFileNane), "                    ");
    EXPECT_FALSE(convert());
    EXPECT_TRUE(pointsAreUntouched());
    EXPECT_EQ(file.FileSize, 0U);
}

TEST_F(IRFile, acceptsAWaveFile) {
    EXPECT_TRUE(open(goodWave()));
    EXPECT_TRUE(file.IsFileOpenSuccess);
    EXPECT_FALSE(file.isInteralIR);
    EXPECT_EQ(file.FileSize, 48U);
    EXPECT_EQ(file.PointSize, 2U);
    EXPECT_EQ(text(file.CharFileNane), std::string("CAB\0                ", 20));
    EXPECT_TRUE(convert());
    EXPECT_EQ(points[1], 0x040300U);
    EXPECT_EQ(points[2], 0U);
}

TEST_F(IRFile, samplesBeyondTheDeclaredOnes_areNotUsed) {
    EXPECT_TRUE(open(WaveFile{.data = {1, 2, 3, 4}, .declaredDataSize = 2}.bytes()) && convert());
    EXPECT_EQ(points[0], 0x020100U);
    EXPECT_EQ(points[1], 0U);
}

TEST_F(IRFile, thatBreaksARule_isRefused) {
    EXPECT_FALSE(open(WaveFile{.bitsPerSample = 7, .data = FileBytes(4)}.bytes()));
    EXPECT_FALSE(file.IsFileOpenSuccess);
    EXPECT_EQ(text(file.CharFileNane), "                    ");
}

TEST_F(IRFile, ofAnotherRate_isRefusedByTheConversion) {
    EXPECT_TRUE(open(WaveFile{.sampleRate = 22050, .data = FileBytes(8)}.bytes()));
    EXPECT_FALSE(convert());
    EXPECT_TRUE(pointsAreUntouched());
}

TEST_F(IRFile, internalFile_isAcceptedAtAnyLength) {
    for (const std::size_t size : {8U, 511U, 512U, 516U}) {
        FileBytes bytes = internal(3, size);
        bytes.back() = 0x11;
        EXPECT_TRUE(open(bytes)) << size;
        EXPECT_TRUE(file.isInteralIR && file.IsFileOpenSuccess);
        EXPECT_EQ(file.FileSize, size);
        EXPECT_EQ(file.PointSize, 0U);
        EXPECT_TRUE(convert());
        EXPECT_EQ(points[0], 0U);
        EXPECT_EQ(points[1], size < 516 ? 0U : 0x11U);
        EXPECT_EQ(points[2], 0U);
    }
}

TEST_F(IRFile, internalName_isWrittenOverTheOldOne) {
    FileNameBuff[0] = "SHORT";
    FileNameBuff[29] = "ABCDEFGHIJKLMNOPQRST";
    EXPECT_TRUE(open(internal(29)));
    EXPECT_EQ(text(file.CharFileNane), "ABCDEFGHIJKLMNO     ");
    EXPECT_TRUE(open(internal(0)));
    EXPECT_EQ(text(file.CharFileNane), std::string("SHORT\0GHIJKLMNO     ", 20));
    EXPECT_TRUE(open(internal(1)));
    EXPECT_EQ(text(file.CharFileNane), std::string("\0HORT\0GHIJKLMNO     ", 20));
}

TEST_F(IRFile, secondOpen_replacesTheFirst) {
    ASSERT_TRUE(file.OpenFilePath(dir.write("abcdefghijk.wav", goodWave())));
    ASSERT_TRUE(open(WaveFile{.bitsPerSample = 8, .data = FileBytes(3)}.bytes()));
    EXPECT_EQ(file.FileSize, 47U);
    EXPECT_EQ(file.PointSize, 3U);
    EXPECT_EQ(text(file.CharFileNane), std::string("CAB\0EFGHIJ\0         ", 20));
    ASSERT_TRUE(open(internal(0)));
    EXPECT_TRUE(file.isInteralIR);
    EXPECT_EQ(file.PointSize, 3U);
    ASSERT_TRUE(open(goodWave()));
    EXPECT_FALSE(file.isInteralIR);
}

TEST_F(IRFile, keepsTheRecordsAndTheBytes) {
    ASSERT_TRUE(open(WaveFile{.sampleRate = 48000, .channels = 2, .data = FileBytes(12)}.bytes()));
    EXPECT_EQ(file.riffheader.size, 48U);
    EXPECT_EQ(file.fmt_block.format.channels, 2U);
    EXPECT_EQ(file.fmt_block.format.sampleRate, 48000U);
    EXPECT_EQ(file.data_block.size, 12U);
    ASSERT_EQ(file.pFileBuff.size, 56U);
    EXPECT_EQ(file.pIRData.data(), file.pFileBuff.bytes.get() + 44);
    EXPECT_EQ(file.pIRData.size(), 12U);
    ASSERT_TRUE(open(internal(0, 600)));
    EXPECT_EQ(file.pIRData.data(), file.pFileBuff.bytes.get() + 512);
    EXPECT_EQ(file.data_block.size, 12U);
    EXPECT_FALSE(open({'R'}));
    EXPECT_EQ(file.pFileBuff.size, 0U);
    EXPECT_TRUE(file.pIRData.empty());
}

TEST_F(IRFile, failureAfterASuccess_closesAndKeepsTheName) {
    ASSERT_TRUE(open(goodWave()));
    EXPECT_FALSE(open({}));
    EXPECT_EQ(file.FileSize, 0U);
    ASSERT_TRUE(open(goodWave()));
    EXPECT_FALSE(file.OpenFilePath(dir.path("missing.wav")));
    EXPECT_FALSE(file.IsFileOpenSuccess);
    EXPECT_STREQ(file.CharFileNane.data(), "CAB");
    EXPECT_FALSE(convert());
    EXPECT_TRUE(pointsAreUntouched());
}

}  // namespace
}  // namespace kelvo
