#include <gtest/gtest.h>

#include <string>

#include "AMPFile.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

constexpr std::uint32_t kUntouched = 0xA5A5A5A5;

/// The words 0x04030201 and 0x11111111, zeros up to 512 words, a checksum, which is right by default, and an end.
FileBytes model(std::uint32_t checksum = 0x15141312, std::string_view end = "2.0") {
    FileBytes file{0x01, 0x02, 0x03, 0x04, 0x11, 0x11, 0x11, 0x11};
    file.resize(2048);
    append(file, checksum, 4);
    append(file, end);
    return file;
}

FileBytes filled(std::size_t size, std::uint8_t byte, std::string_view end) {
    FileBytes file(size, byte);
    append(file, end);
    return file;
}

class AmpReader : public testing::Test {
protected:
    void SetUp() override { AmpPiontBuff.fill(kUntouched); }

    bool open(const FileBytes& bytes) { return file.OpenFile(dir.write("Lead.amp", bytes)); }

    static bool ampPiontBuffIsUntouched() { return std::ranges::count(AmpPiontBuff, kUntouched) == 512; }

    const SampleDir dir;
    AMPFile file;
};

struct AmpCase {
    const char* name;
    FileBytes bytes;
    std::array<std::uint32_t, 3> words = {};  ///< the first, the second and the last
};

class AcceptedAmp : public AmpReader, public testing::WithParamInterface<AmpCase> {};

TEST_P(AcceptedAmp, isCopiedToAmpPiontBuff) {
    EXPECT_TRUE(open(GetParam().bytes));
    EXPECT_TRUE(file.IsFileOpenSuccess);
    EXPECT_EQ(file.FileSize, GetParam().bytes.size());
    const std::array words{AmpPiontBuff[0], AmpPiontBuff[1], AmpPiontBuff[511]};
    EXPECT_EQ(words, GetParam().words);
}

const AmpCase kAccepted[] = {
    {"good", model(), {0x04030201, 0x11111111, 0}},
    {"sumThatWraps",
     filled(2048, 0xFF,
            std::string_view("\0\xFE\xFF\xFF"
                             "2.0",
                             7)),
     {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF}},
    {"bytesBetweenChecksumAndEnd",
     model(0x15141312, "anything at all, of any length 2.0 2.0"),
     {0x04030201, 0x11111111, 0}},
    {"oneWord", filled(4, 0, "2.0")},
    {"endAlone", filled(0, 0, "2.0")},
    {"noChecksum_isAsIfItWere0", filled(2048, 0, "2.0")},
};

std::string nameOf(const testing::TestParamInfo<AmpCase>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Files, AcceptedAmp, testing::ValuesIn(kAccepted), nameOf);

class RefusedAmp : public AmpReader, public testing::WithParamInterface<AmpCase> {};

TEST_P(RefusedAmp, leavesAmpPiontBuff) {
    EXPECT_FALSE(open(GetParam().bytes));
    EXPECT_FALSE(file.IsFileOpenSuccess);
    EXPECT_TRUE(ampPiontBuffIsUntouched());
}

const AmpCase kRefused[] = {
    {"checksumTooSmall", model(0x15141311)},
    {"checksumTooGreat", model(0x15141313)},
    {"lineEndAfterTheEnd", model(0x15141312, "2.0\n")},
    {"version1", model(0x15141312, "1.0")},
    {"comma", model(0x15141312, "2,0")},
    {"version21", model(0x15141312, "2.1")},
    {"endCutOff", model(0x15141312, "2.")},
    {"noEnd", model(0x15141312, "")},
    {"spaceAfterTheEnd", model(0x15141312, "2.0 ")},
    {"oneWordThatIsNot0", filled(4, 1, "2.0")},
    {"noChecksumAndASum", filled(2048, 1, "2.0")},
    {"empty", {}},
    {"oneByte", filled(0, 0, "0")},
    {"twoBytes", filled(0, 0, ".0")},
};

INSTANTIATE_TEST_SUITE_P(Files, RefusedAmp, testing::ValuesIn(kRefused), nameOf);

TEST_F(AmpReader, readsAllWordsInOrder) {
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
    std::array<std::uint32_t, 512> words{};
    file.GetBuffer(words);
    EXPECT_EQ(words, AmpPiontBuff);
}

TEST_F(AmpReader, checksumMayOverlapTheEnd) {
    FileBytes bytes{0x00, '2', '.', '0'};
    bytes.resize(2048);
    append(bytes, 0x302E3200, 4);
    EXPECT_TRUE(open(bytes));
    EXPECT_EQ(AmpPiontBuff[0], 0x302E3200U);
}

TEST_F(AmpReader, hasABlankNameAndThenTheFiles) {
    EXPECT_EQ(std::string(file.CharFileName.begin(), file.CharFileName.end()), "                    ");
    ASSERT_TRUE(open(model()));
    EXPECT_STREQ(file.CharFileName.data(), "Lead");
}

TEST_F(AmpReader, shortFileAfterAnother_leavesTheOtherWords) {
    ASSERT_TRUE(open(model()));
    EXPECT_TRUE(open({'2', '.', '0'}));
    EXPECT_EQ(AmpPiontBuff[0], 0x04030201U);
    EXPECT_TRUE(open({0, 0, 0, 0, '2', '.', '0'}));
    EXPECT_EQ(file.ampSwBuffer.AmpIntBuffer[0], 0U);
    EXPECT_EQ(file.ampSwBuffer.AmpIntBuffer[1], 0x11111111U);
    EXPECT_EQ(AmpPiontBuff[0], 0U);
    EXPECT_EQ(AmpPiontBuff[1], 0x11111111U);
}

TEST_F(AmpReader, refusedFile_overwritesTheObjectsWordsOnly) {
    EXPECT_FALSE(open(model(0x15141312, "2.1")));
    EXPECT_EQ(file.ampSwBuffer.AmpIntBuffer[0], 0x04030201U);
    EXPECT_TRUE(ampPiontBuffIsUntouched());
}

TEST_F(AmpReader, failureAfterASuccess_closesAndKeepsTheNameAndTheWords) {
    ASSERT_TRUE(open(model()));
    ASSERT_EQ(file.pFileBuff.size, 2055U);
    EXPECT_EQ(file.pFileBuff.bytes[2054], '0');
    EXPECT_FALSE(open({'0'}));
    EXPECT_EQ(file.FileSize, 1U);
    EXPECT_FALSE(open({}));
    EXPECT_EQ(file.FileSize, 0U);
    EXPECT_FALSE(file.OpenFile(dir.path("missing.amp")));
    EXPECT_FALSE(file.IsFileOpenSuccess);
    EXPECT_EQ(file.pFileBuff.size, 0U);
    EXPECT_STREQ(file.CharFileName.data(), "Lead");
    EXPECT_EQ(file.ampSwBuffer.AmpIntBuffer[0], 0x04030201U);
    EXPECT_EQ(AmpPiontBuff[0], 0x04030201U);
}

TEST_F(AmpReader, path_isLiteral) {
    ASSERT_TRUE(file.OpenFile(dir.write("My Amp.bin", model())));
    EXPECT_STREQ(file.CharFileName.data(), "My Amp.bin");
    EXPECT_FALSE(file.OpenFile(dir.path("My%20Amp.bin")));
}

TEST(AmpLayout, saysWhatTheFileContains) {
    std::array<std::uint32_t, 512> words{};
    AmpLayout amp = scanAmp(model(), words);
    EXPECT_EQ(amp.words, 512U);
    EXPECT_EQ(amp.sum, 0x15141312U);
    EXPECT_EQ(amp.checksum, 0x15141312U);
    EXPECT_TRUE(amp.addsUp() && amp.hasTrailer);
    words.fill(7);
    amp = scanAmp(FileBytes{0, 0, 0, 0, '2', '.', '0'}, words);
    EXPECT_EQ(amp.words, 1U);
    EXPECT_EQ(amp.checksum, std::nullopt);
    EXPECT_TRUE(amp.addsUp());
    EXPECT_EQ(words[0], 0U);
    EXPECT_EQ(words[1], 7U);
    amp = scanAmp(FileBytes{1, 0, 0, 0, '2', '.', '1'}, words);
    EXPECT_FALSE(amp.addsUp() || amp.hasTrailer);
    amp = scanAmp({}, words);
    EXPECT_EQ(amp.words, 0U);
    EXPECT_FALSE(amp.hasTrailer);
}

TEST(AmpLayout, everyFlippedBitOfWordsAndChecksum_isNotSound) {
    std::array<std::uint32_t, 512> words{};
    FileBytes bytes = model();
    EXPECT_TRUE(scanAmp(bytes, words).isSound());
    for (std::size_t bit = 0; bit < std::size_t{2052} * 8; ++bit) {
        bytes[bit / 8] ^= static_cast<std::uint8_t>(1U << (bit % 8));
        EXPECT_FALSE(scanAmp(bytes, words).isSound()) << bit;
        bytes[bit / 8] ^= static_cast<std::uint8_t>(1U << (bit % 8));
    }
}

}  // namespace
}  // namespace kelvo
