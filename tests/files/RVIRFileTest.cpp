// An impulse-response file as an object: that the layout, the name and the conversion meet, and what a failure leaves.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "RVIRFile.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

using Points = std::array<std::uint32_t, kPointCount>;

std::string text(const NameBuffer& name) {
    return {name.begin(), name.end()};
}

class IRFile : public testing::Test {
protected:
    void SetUp() override { points.fill(0xA5A5A5A5); }
    void TearDown() override { FileNameBuff = {}; }

    bool open(const FileBytes& bytes) { return file.OpenFilePath(dir.write("cab.wav", bytes)); }
    bool convert() { return file.GetIRDataBuffer(points); }

    /// Whether the points are `first` and then silence.
    bool pointsAre(std::initializer_list<std::uint32_t> first) const {
        return std::equal(first.begin(), first.end(), points.begin()) &&
               std::all_of(points.begin() + static_cast<std::ptrdiff_t>(first.size()), points.end(),
                           [](std::uint32_t word) { return word == 0; });
    }
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
    Points points;
};

TEST_F(IRFile, beforeItIsOpened_hasABlankNameAndNoPoints) {
    EXPECT_EQ(text(file.CharFileNane), "                    ");
    EXPECT_FALSE(convert());
    EXPECT_TRUE(pointsAreUntouched());
}

TEST_F(IRFile, acceptsAWaveFile) {
    EXPECT_TRUE(open(goodWave()));
    EXPECT_TRUE(file.IsFileOpenSuccess);
    EXPECT_FALSE(file.isInteralIR);
    EXPECT_EQ(file.FileSize, 48U);
    EXPECT_EQ(file.PointSize, 2U);
    EXPECT_EQ(text(file.CharFileNane), std::string("CAB\0                ", 20));
    EXPECT_TRUE(convert());
    EXPECT_TRUE(pointsAre({0x020100, 0x040300}));
}

TEST_F(IRFile, thatBreaksARule_isRefused) {
    for (const std::uint32_t bits : {0U, 7U}) {
        EXPECT_FALSE(open(WaveFile{.bitsPerSample = bits, .data = FileBytes(4)}.bytes())) << bits;
        EXPECT_FALSE(file.IsFileOpenSuccess);
        EXPECT_EQ(text(file.CharFileNane), "                    ");
    }
}

TEST_F(IRFile, ofAnotherRateOrDepth_isRefusedByTheConversion) {
    EXPECT_TRUE(open(WaveFile{.sampleRate = 22050, .data = FileBytes(8)}.bytes()));
    EXPECT_FALSE(convert());
    EXPECT_TRUE(open(WaveFile{.bitsPerSample = 20, .data = FileBytes(8)}.bytes()));
    EXPECT_FALSE(convert());
    EXPECT_TRUE(pointsAreUntouched());
}

TEST_F(IRFile, dataThatTheFileLacksIsSilence) {
    for (const std::int64_t declared : {0x7FFFFFFFLL, 0xFFFFFFFFLL, 0xFFFFFFF8LL, 5LL, 400LL}) {
        EXPECT_TRUE(open(WaveFile{.data = {1, 2, 3, 4, 5}, .declaredDataSize = declared}.bytes()) && convert());
        EXPECT_TRUE(pointsAre({0x020100, 0x040300})) << declared;
    }
    EXPECT_TRUE(open(WaveFile{.channels = 2, .data = {1, 2, 3, 4, 5, 6, 7}, .declaredDataSize = 8}.bytes()) &&
                convert());
    EXPECT_TRUE(pointsAre({0x020100}));
}

TEST_F(IRFile, bytesAfterTheDeclaredDataAreNotUsed) {
    for (const std::int64_t declared : {0, 1, 2, 3}) {
        EXPECT_TRUE(open(WaveFile{.data = {1, 2, 3, 4}, .declaredDataSize = declared}.bytes()) && convert());
        EXPECT_TRUE(declared < 2 ? pointsAre({}) : pointsAre({0x020100})) << declared;
    }
}

TEST_F(IRFile, formatTagIsNotConsulted) {
    FileBytes bytes = WaveFile{.bitsPerSample = 32, .data = {0x00, 0x00, 0x00, 0x3F}}.bytes();
    bytes[20] = 1;  // it says integers
    EXPECT_TRUE(open(bytes) && convert());
    EXPECT_TRUE(pointsAre({0x400000}));
}

TEST_F(IRFile, givesTheSameEveryTime) {
    ASSERT_TRUE(open(WaveFile{.sampleRate = 96000, .data = FileBytes(3000, 0x35)}.bytes()) && convert());
    const Points first = points;
    EXPECT_EQ(first[100], 0x353500U);
    points.fill(1);
    EXPECT_TRUE(convert());
    EXPECT_EQ(points, first);
}

TEST_F(IRFile, internalFile_isAcceptedAtAnyLength) {
    for (const std::size_t size : {8, 11, 12, 512, 2048, 5000}) {
        RVIRFile other;
        EXPECT_TRUE(other.OpenFilePath(dir.write("internal", internal(3, size)))) << size;
        EXPECT_TRUE(other.isInteralIR && other.IsFileOpenSuccess);
        EXPECT_EQ(other.FileSize, size);
        EXPECT_EQ(other.PointSize, 0U);
    }
}

TEST_F(IRFile, internalFile_givesIts512SamplesUnchanged) {
    FileBytes bytes = internal(0xEE, 512);
    for (std::uint32_t k = 0; k < 512; ++k) {
        append(bytes, 0xFF0000 - k, 3);
    }
    append(bytes, "and more");
    EXPECT_TRUE(open(bytes) && convert());
    EXPECT_EQ(points[0], 0xFF0000U);
    EXPECT_EQ(points[1], 0xFEFFFFU);
    EXPECT_EQ(points[256], 0xFEFF00U);
    EXPECT_EQ(points[511], 0xFEFE01U);
}

TEST_F(IRFile, shortInternalFile_isFilledUpWithZeroBytes) {
    FileBytes bytes = internal(0xEE, 7);
    EXPECT_TRUE(open(bytes) && convert());
    EXPECT_TRUE(pointsAre({}));
    bytes.resize(512, 0xEE);
    EXPECT_TRUE(open(bytes) && convert());
    EXPECT_TRUE(pointsAre({}));
    append(bytes, 0x332211, 3);
    append(bytes, 0x5544, 2);
    EXPECT_TRUE(open(bytes) && convert());
    EXPECT_TRUE(pointsAre({0x332211, 0x005544}));
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
