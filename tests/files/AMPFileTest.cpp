#include <gtest/gtest.h>

#include <string>

#include "AMPFile.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

/// 512 words and their real sum: 0x04030201, then 0x11111111, then zeros.
FileBytes twoWordModel() {
    FileBytes file{0x01, 0x02, 0x03, 0x04, 0x11, 0x11, 0x11, 0x11};
    file.resize(2048);
    append(file, 0x15141312, 4);
    append(file, "2.0");
    return file;
}

class AmpReader : public testing::Test {
protected:
    void SetUp() override { AmpPiontBuff.fill(0xA5A5A5A5); }

    bool open(const FileBytes& bytes) { return file.OpenFile(dir.write("Lead.amp", bytes)); }

    static bool ampPiontBuffIsUntouched() {
        return std::ranges::all_of(AmpPiontBuff, [](std::uint32_t word) { return word == 0xA5A5A5A5; });
    }

    const SampleDir dir;
    AMPFile file;
};

TEST_F(AmpReader, startsClosedWithABlankName) {
    EXPECT_FALSE(file.IsFileOpenSuccess);
    EXPECT_EQ(file.FileSize, 0U);
    EXPECT_EQ(std::string(file.CharFileName.begin(), file.CharFileName.end()), "                    ");
    EXPECT_EQ(file.ampSwBuffer.AmpIntBuffer, (std::array<std::uint32_t, 512>{}));
}

TEST_F(AmpReader, takesAFileOf2055BytesWhoseChecksumMatches) {
    const FileBytes bytes = twoWordModel();
    ASSERT_EQ(bytes.size(), 2055U);
    EXPECT_TRUE(open(bytes));
    EXPECT_TRUE(file.IsFileOpenSuccess);
    EXPECT_EQ(file.FileSize, 2055U);
    EXPECT_STREQ(file.CharFileName.data(), "Lead");
    EXPECT_EQ(AmpPiontBuff[0], 0x04030201U);
    EXPECT_EQ(AmpPiontBuff[1], 0x11111111U);
    EXPECT_EQ(AmpPiontBuff[2], 0U);
    EXPECT_EQ(AmpPiontBuff[511], 0U);
}

TEST_F(AmpReader, takesAllWordsInOrder) {
    FileBytes bytes;
    for (std::uint32_t i = 0; i < 512; ++i) {
        append(bytes, 0x80000000 + i, 4);
    }
    append(bytes, 0x0001FF00, 4);  // 512 * 0x80000000 wraps to 0; 0 + 1 + ... + 511 is 130816
    append(bytes, "2.0");
    EXPECT_TRUE(open(bytes));
    EXPECT_EQ(AmpPiontBuff[0], 0x80000000U);
    EXPECT_EQ(AmpPiontBuff[255], 0x800000FFU);
    EXPECT_EQ(AmpPiontBuff[511], 0x800001FFU);
}

TEST_F(AmpReader, getBufferCopiesTheWords) {
    ASSERT_TRUE(open(twoWordModel()));
    std::array<std::uint32_t, 512> words;
    words.fill(9);
    file.GetBuffer(words);
    EXPECT_EQ(words[0], 0x04030201U);
    EXPECT_EQ(words[1], 0x11111111U);
    EXPECT_EQ(words[511], 0U);
}

TEST_F(AmpReader, checksumWraps) {
    FileBytes bytes(2048, 0xFF);
    append(bytes, 0xFFFFFE00, 4);
    append(bytes, "2.0");
    EXPECT_TRUE(open(bytes));
    EXPECT_EQ(AmpPiontBuff[0], 0xFFFFFFFFU);
    EXPECT_EQ(AmpPiontBuff[511], 0xFFFFFFFFU);
}

TEST_F(AmpReader, checksumOneOffIsRefused) {
    for (const std::uint8_t lowByte : {0x11, 0x13}) {
        FileBytes bytes = twoWordModel();
        bytes[2048] = lowByte;
        EXPECT_FALSE(open(bytes));
        EXPECT_FALSE(file.IsFileOpenSuccess);
        EXPECT_TRUE(ampPiontBuffIsUntouched());
    }
}

TEST_F(AmpReader, everySingleFlippedBitOfWordsAndChecksumIsRefused) {
    for (std::size_t bit = 0; bit < std::size_t{2052} * 8; bit += 7) {
        FileBytes bytes = twoWordModel();
        bytes[bit / 8] = static_cast<std::uint8_t>(bytes[bit / 8] ^ (1U << (bit % 8)));
        EXPECT_FALSE(open(bytes)) << bit;
    }
    EXPECT_TRUE(ampPiontBuffIsUntouched());
}

TEST_F(AmpReader, trailerFollowedByALineEndIsRefused) {
    FileBytes bytes = twoWordModel();
    append(bytes, "\n");
    EXPECT_FALSE(open(bytes));
    EXPECT_TRUE(ampPiontBuffIsUntouched());
}

TEST_F(AmpReader, otherTrailersAreRefused) {
    for (const char* trailer : {"1.0", "2,0", "2.1", "2.", "", "\0\0\0", "2.0 "}) {
        FileBytes bytes = twoWordModel();
        bytes.resize(2052);
        append(bytes, trailer);
        EXPECT_FALSE(open(bytes)) << trailer;
    }
    EXPECT_TRUE(ampPiontBuffIsUntouched());
}

TEST_F(AmpReader, bytesBetweenChecksumAndTrailerAreNotRead) {
    FileBytes bytes = twoWordModel();
    bytes.resize(2052);
    append(bytes, "anything at all, of any length 2.0 ");
    append(bytes, "2.0");
    EXPECT_TRUE(open(bytes));
    EXPECT_EQ(file.FileSize, 2090U);
}

TEST_F(AmpReader, sevenBytesAreAcceptedAndTheOtherWordsKeepTheirValues) {
    ASSERT_TRUE(open(twoWordModel()));
    EXPECT_TRUE(open({0, 0, 0, 0, '2', '.', '0'}));
    EXPECT_EQ(file.FileSize, 7U);
    EXPECT_EQ(file.ampSwBuffer.AmpIntBuffer[0], 0U);
    EXPECT_EQ(file.ampSwBuffer.AmpIntBuffer[1], 0x11111111U);
    EXPECT_EQ(AmpPiontBuff[0], 0U);
    EXPECT_EQ(AmpPiontBuff[1], 0x11111111U);
}

TEST_F(AmpReader, sevenBytesWithAWordOtherThanZeroAreRefused) {
    EXPECT_FALSE(open({1, 0, 0, 0, '2', '.', '0'}));
    EXPECT_TRUE(ampPiontBuffIsUntouched());
}

TEST_F(AmpReader, trailerAloneIsAcceptedAndChangesNoWord) {
    ASSERT_TRUE(open(twoWordModel()));
    EXPECT_TRUE(open({'2', '.', '0'}));
    EXPECT_EQ(AmpPiontBuff[0], 0x04030201U);
}

TEST_F(AmpReader, trailerMayOverlapTheChecksum) {
    // 2052 bytes: the checksum's upper three bytes are the trailer.
    FileBytes bytes{0x00, '2', '.', '0'};
    bytes.resize(2048);
    append(bytes, std::string_view("\0"
                                   "2.0",
                                   4));
    EXPECT_TRUE(open(bytes));
    EXPECT_EQ(AmpPiontBuff[0], 0x302E3200U);
}

TEST_F(AmpReader, withoutItsWholeChecksumTheExpectedSumIsZero) {
    FileBytes bytes(2048);
    append(bytes, "2.0");
    EXPECT_TRUE(open(bytes));
    bytes[0] = 1;
    EXPECT_FALSE(open(bytes));
}

TEST_F(AmpReader, filesShorterThanThreeBytesAreRefused) {
    EXPECT_FALSE(open({}));
    EXPECT_FALSE(open({'0'}));
    EXPECT_FALSE(open({'.', '0'}));
    EXPECT_TRUE(ampPiontBuffIsUntouched());
}

TEST_F(AmpReader, everyPrefixOfAGoodFileIsRefused) {
    const FileBytes bytes = twoWordModel();
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_FALSE(open({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)})) << size;
    }
    EXPECT_TRUE(ampPiontBuffIsUntouched());
}

TEST_F(AmpReader, refusedFileStillOverwritesTheObjectsWords) {
    FileBytes bytes = twoWordModel();
    bytes.back() = '1';
    EXPECT_FALSE(open(bytes));
    EXPECT_EQ(file.ampSwBuffer.AmpIntBuffer[0], 0x04030201U);
    EXPECT_TRUE(ampPiontBuffIsUntouched());
}

TEST_F(AmpReader, failureAfterASuccessClosesAndKeepsNameAndProcessWideWords) {
    ASSERT_TRUE(open(twoWordModel()));
    EXPECT_FALSE(file.OpenFile(dir.path("missing.amp")));
    EXPECT_FALSE(file.IsFileOpenSuccess);
    EXPECT_STREQ(file.CharFileName.data(), "Lead");
    EXPECT_EQ(AmpPiontBuff[0], 0x04030201U);
}

TEST_F(AmpReader, keepsTheWholeFileWhileItIsOpen) {
    ASSERT_TRUE(open(twoWordModel()));
    ASSERT_EQ(file.pFileBuff.size, 2055U);
    EXPECT_EQ(file.pFileBuff.bytes[2054], '0');
    EXPECT_FALSE(open({'0'}));
    EXPECT_EQ(file.pFileBuff.size, 0U);
    EXPECT_EQ(file.FileSize, 1U);
}

TEST_F(AmpReader, anEmptyFileHasTheLengthNone) {
    ASSERT_TRUE(open(twoWordModel()));
    EXPECT_FALSE(open({}));
    EXPECT_EQ(file.FileSize, 0U);
    EXPECT_EQ(file.ampSwBuffer.AmpIntBuffer[0], 0x04030201U);
}

TEST(AmpLayout, tellsWhatTheFileHolds) {
    std::array<std::uint32_t, 512> words{};
    AmpLayout amp = scanAmp(ampFile(std::array<std::uint32_t, 2>{0x12345678, 1}), words);
    EXPECT_EQ(amp.words, 512U);
    EXPECT_EQ(amp.sum, 0x12345679U);
    EXPECT_EQ(amp.checksum, 0x12345679U);
    EXPECT_TRUE(amp.addsUp());
    EXPECT_TRUE(amp.hasTrailer);
    EXPECT_EQ(words[0], 0x12345678U);
    words.fill(7);
    amp = scanAmp(FileBytes{0, 0, 0, 0, '2', '.', '0'}, words);
    EXPECT_EQ(amp.words, 1U);
    EXPECT_EQ(amp.checksum, std::nullopt);
    EXPECT_TRUE(amp.addsUp());
    EXPECT_EQ(words[0], 0U);
    EXPECT_EQ(words[1], 7U);
    amp = scanAmp(FileBytes{1, 0, 0, 0, '2', '.', '1'}, words);
    EXPECT_FALSE(amp.addsUp());
    EXPECT_FALSE(amp.hasTrailer);
    amp = scanAmp({}, words);
    EXPECT_EQ(amp.words, 0U);
    EXPECT_FALSE(amp.hasTrailer);
}

TEST_F(AmpReader, extensionIsNotChecked) {
    EXPECT_TRUE(file.OpenFile(dir.write("model.bin", twoWordModel())));
    EXPECT_STREQ(file.CharFileName.data(), "model.bin");
}

TEST_F(AmpReader, whatIsNoRegularFileIsRefused) {
    EXPECT_FALSE(file.OpenFile(dir.path(".")));
    EXPECT_FALSE(file.OpenFile("/dev/zero"));
    EXPECT_FALSE(file.OpenFile(dir.path("missing")));
    EXPECT_TRUE(ampPiontBuffIsUntouched());
}

TEST_F(AmpReader, percentEscapesAreNotDecoded) {
    ASSERT_TRUE(file.OpenFile(dir.write("My Amp.amp", twoWordModel())));
    EXPECT_FALSE(file.OpenFile(dir.path("My%20Amp.amp")));
}

}  // namespace
}  // namespace kelvo
