#include <gtest/gtest.h>

#include <string>

#include "AMPFile.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

/// The words 0x04030201 and 0x11111111, zeros up to 512 words, a checksum, which is right by default, and an end.
FileBytes model(std::uint32_t checksum = 0x15141312, std::string_view end = "2.0") {
    FileBytes file{0x01, 0x02, 0x03, 0x04, 0x11, 0x11, 0x11, 0x11};
    file.resize(2048);
    append(file, checksum, 4);
    append(file, end);
    return file;
}

FileBytes filled(std::size_t size, std::uint8_t byte, std::string_view end) {
    return joinedFiles({FileBytes(size, byte), textBytes(end)});
}

TEST(AmpLayout, isSoundWithTheRightSumAndEnd) {
    struct Row {
        const char* name;
        FileBytes bytes;
        std::size_t words;
        bool addsUp;
        bool hasTrailer;
    };
    for (const auto& [name, bytes, words, addsUp, hasTrailer] :
         {Row{"good", model(), 512, true, true},
          {"sum that wraps", filled(2048, 0xFF, std::string_view("\0\xFE\xFF\xFF", 4)), 512, true, false},
          {"bytes between checksum and end", model(0x15141312, "anything 2.0 2.0"), 512, true, true},
          {"checksum that overlaps the end",
           joinedFiles({FileBytes{0x00, '2', '.', '0'}, FileBytes(2044), textBytes(std::string_view("\0002.0", 4))}),
           512, true, true},
          {"one word", filled(4, 0, "2.0"), 1, true, true},
          {"one word that is not 0", filled(4, 1, "2.0"), 1, false, true},
          {"end alone", filled(0, 0, "2.0"), 0, true, true},
          {"no checksum, as if it were 0", filled(2048, 0, "2.0"), 512, true, true},
          {"no checksum and a sum", filled(2048, 1, "2.0"), 512, false, true},
          {"checksum too small", model(0x15141311), 512, false, true},
          {"checksum too great", model(0x15141313), 512, false, true},
          {"line end after the end", model(0x15141312, "2.0\n"), 512, true, false},
          {"version 1.0", model(0x15141312, "1.0"), 512, true, false},
          {"comma", model(0x15141312, "2,0"), 512, true, false},
          {"version 2.1", model(0x15141312, "2.1"), 512, true, false},
          {"no end", model(0x15141312, ""), 512, true, false},
          {"empty", {}, 0, true, false},
          {"two bytes", filled(0, 0, ".0"), 0, true, false}}) {
        std::array<std::uint32_t, 512> found{};
        const AmpLayout amp = scanAmp(bytes, found);
        EXPECT_EQ(amp.words, words) << name;
        EXPECT_EQ(amp.addsUp(), addsUp) << name;
        EXPECT_EQ(amp.hasTrailer, hasTrailer) << name;
        EXPECT_EQ(amp.isSound(), addsUp && hasTrailer) << name;
    }
}

TEST(AmpLayout, hasTheSumAndTheChecksum_andLeavesMissingWords) {
    std::array<std::uint32_t, 512> words{};
    words.fill(7);
    AmpLayout amp = scanAmp(FileBytes{3, 0, 0, 0, '2', '.', '0'}, words);
    EXPECT_EQ(amp.sum, 3U);
    EXPECT_EQ(amp.checksum, std::nullopt);
    EXPECT_EQ(words[0], 3U);
    EXPECT_EQ(words[1], 7U);
    amp = scanAmp(model(5), words);
    EXPECT_EQ(amp.sum, 0x15141312U);
    EXPECT_EQ(amp.checksum, 5U);
    EXPECT_EQ(words[1], 0x11111111U);
    EXPECT_EQ(words[511], 0U);
}

TEST(AmpLayout, everyFlippedBitOfWordsAndChecksum_isNotSound) {
    std::array<std::uint32_t, 512> words{};
    FileBytes bytes = model();
    for (std::size_t bit = 0; bit < std::size_t{2052} * 8; ++bit) {
        bytes[bit / 8] ^= static_cast<std::uint8_t>(1U << (bit % 8));
        EXPECT_FALSE(scanAmp(bytes, words).isSound()) << bit;
        bytes[bit / 8] ^= static_cast<std::uint8_t>(1U << (bit % 8));
    }
}

class AmpReader : public testing::Test {
protected:
    void SetUp() override { AmpPiontBuff.fill(7); }

    bool open(const FileBytes& bytes) { return file.OpenFile(dir.write("Lead.amp", bytes)); }

    const SampleDir dir;
    AMPFile file;
};

TEST_F(AmpReader, acceptedFile_isCopiedToAmpPiontBuff) {
    EXPECT_EQ(std::string(file.CharFileName.begin(), file.CharFileName.end()), "                    ");
    EXPECT_TRUE(open(model()));
    EXPECT_TRUE(file.IsFileOpenSuccess);
    EXPECT_EQ(file.FileSize, 2055U);
    EXPECT_STREQ(file.CharFileName.data(), "Lead");
    ASSERT_EQ(file.pFileBuff.size, 2055U);
    EXPECT_EQ(file.pFileBuff.bytes[2054], '0');
    EXPECT_EQ(AmpPiontBuff[0], 0x04030201U);
    EXPECT_EQ(AmpPiontBuff[1], 0x11111111U);
    EXPECT_EQ(AmpPiontBuff[511], 0U);
}

TEST_F(AmpReader, shortFileAfterAnother_leavesTheOtherWords) {
    ASSERT_TRUE(open(model()));
    EXPECT_TRUE(open({0, 0, 0, 0, '2', '.', '0'}));
    EXPECT_EQ(AmpPiontBuff[0], 0U);
    EXPECT_EQ(AmpPiontBuff[1], 0x11111111U);
    std::array<std::uint32_t, 512> words{};
    file.GetBuffer(words);
    EXPECT_EQ(words, AmpPiontBuff);
}

TEST_F(AmpReader, refusedFile_overwritesTheObjectsWordsOnly) {
    for (const FileBytes& bytes : {model(0x15141312, "2.1"), model(0)}) {
        EXPECT_FALSE(open(bytes));
        EXPECT_EQ(file.ampSwBuffer.AmpIntBuffer[0], 0x04030201U);
        EXPECT_EQ(std::ranges::count(AmpPiontBuff, 7U), 512);
    }
}

TEST_F(AmpReader, failureAfterASuccess_closesAndKeepsTheNameAndTheWords) {
    ASSERT_TRUE(open(model()));
    EXPECT_FALSE(open({'0'}));
    EXPECT_EQ(file.FileSize, 1U);
    EXPECT_EQ(file.pFileBuff.size, 0U);
    ASSERT_TRUE(open(model()));
    EXPECT_FALSE(file.OpenFile(dir.path("missing.amp")));
    EXPECT_FALSE(file.IsFileOpenSuccess);
    EXPECT_EQ(file.FileSize, 2055U);
    EXPECT_EQ(file.pFileBuff.size, 0U);
    EXPECT_STREQ(file.CharFileName.data(), "Lead");
    EXPECT_EQ(AmpPiontBuff[0], 0x04030201U);
}

}  // namespace
}  // namespace kelvo
