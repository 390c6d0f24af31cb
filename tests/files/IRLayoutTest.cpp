// What is found in an impulse-response file, and which rule a file breaks.

#include <gtest/gtest.h>

#include <string>

#include "IRLayout.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

/// A good 16-bit mono file of two frames, with `text` written over it at `offset`.
FileBytes edited(std::size_t offset, std::string_view text) {
    return withTextAt(offset, text, WaveFile{.data = {1, 2, 3, 4}}.bytes());
}

FileBytes declaring(std::int64_t size) {
    return WaveFile{.data = {1, 2, 3, 4}, .declaredDataSize = size}.bytes();
}

FileBytes withDepth(std::uint32_t bits, std::uint32_t channels = 1) {
    return WaveFile{.bitsPerSample = bits, .channels = channels, .data = FileBytes(4)}.bytes();
}

/// The format chunk, and a data chunk of four bytes, of a good 16-bit mono file.
const FileBytes kFmt = [] {
    const FileBytes good = edited(0, "");
    return FileBytes(good.begin() + 12, good.begin() + 36);
}();
const FileBytes kData = textBytes(std::string_view("data\4\0\0\0\1\2\3\4", 12));

struct WaveCase {
    const char* name;
    FileBytes bytes;
    WaveRule broken = WaveRule::None;
    std::uint32_t frames = 0;
};

using enum WaveRule;

const WaveCase kWaveCases[] = {
    {"good", edited(0, ""), None, 2},
    {"oneSecondOf48kHz24BitStereo",
     WaveFile{.sampleRate = 48000, .bitsPerSample = 24, .channels = 2, .data = FileBytes(288000)}.bytes(), None, 48000},
    {"depth12_countsWholeBytesOnly", WaveFile{.bitsPerSample = 12, .channels = 3, .data = FileBytes(10)}.bytes(), None,
     3},
    {"largestFrameSize",
     WaveFile{.bitsPerSample = 0xFFFF, .channels = 0xFFFF, .data = {}, .declaredDataSize = 0xFFFFFFFF}.bytes(), None,
     8},
    {"declares0", declaring(0), None, 0},
    {"declares3", declaring(3), None, 1},
    {"declaresFFFFFFFF", declaring(0xFFFFFFFF), None, 0x7FFFFFFF},
    {"otherRate", WaveFile{.sampleRate = 22050, .data = FileBytes(4)}.bytes(), None, 2},
    {"fourChannels", withDepth(16, 4), None, 0},
    {"unusedRiffSize", edited(4, "\xEE\xEE\xEE\xEE"), None, 2},
    {"unusedFmtSizeAndTag", edited(16, "\xEE\xEE\xEE\xEE\xEE"), None, 2},
    {"unusedByteRateAndBlockAlign", edited(28, "\xEE\xEE\xEE\xEE\xEE\xEE"), None, 2},
    // 4 bytes in frames of 6, not in the later chunk's frames of 2.
    {"firstFmtInsideAnotherChunk",
     joinedFiles({textBytes("RIFF????WAVELIST????INFOfmt ....?"),
                  textBytes(std::string_view("\0\2\0????rate"
                                             "al\x18\0",
                                             15)),
                  kFmt, kData}),
     None, 0},
    {"firstDataInTheRiffSize", edited(4, "data"), None, 0x22AB20AB},  // half of "WAVE"
    {"dataBeforeFmtOnAnOddByte",
     joinedFiles({textBytes("RIFF????WAVE?"), textBytes(std::string_view("data\6\0\0\0abcdefghi", 17)), kFmt}), None,
     3},
    {"rifx", edited(0, "RIFX"), RiffMark},
    {"avi", edited(8, "AVI "), WaveMark},
    {"rf64OfAvi", edited(0, "RF64????AVI "), RiffMark},
    {"fmtAlone", textBytes("fmt data"), RiffMark},
    {"fmtWithoutSpace", edited(12, "fmt_"), FmtChunk},
    {"upperCaseData", edited(36, "Data"), DataChunk},
    {"neitherChunk", joinedFiles({textBytes("RIFF????WAVE"), kData}), FmtChunk},
    {"noChannel", withDepth(16, 0), Channels},
    {"depth0", withDepth(0), Depth},
    {"depth7", withDepth(7), Depth},
    {"depth8", withDepth(8), None, 4},
};

TEST(WaveLayout, breaksTheFirstRuleOrHasItsFrames) {
    for (const auto& [name, bytes, broken, frames] : kWaveCases) {
        const WaveLayout wave = findWave(bytes);
        EXPECT_EQ(wave.broken, broken) << name;
        EXPECT_EQ(wave.frames, frames) << name;
    }
}

TEST(WaveLayout, hasEveryFieldOfTheRecords) {
    const FileBytes bytes =
        WaveFile{.sampleRate = 48000, .bitsPerSample = 24, .channels = 2, .data = FileBytes(605)}.bytes();
    const WaveLayout wave = findWave(bytes);
    const auto id = [](const FourChars& chars) { return std::string(chars.begin(), chars.end()); };
    EXPECT_EQ(id(wave.riffheader.id), "RIFF");
    EXPECT_EQ(wave.riffheader.size, 641U);
    EXPECT_EQ(id(wave.riffheader.formType), "WAVE");
    EXPECT_EQ(wave.fmtOffset, 12U);
    EXPECT_EQ(id(wave.fmt_block.id), "fmt ");
    EXPECT_EQ(wave.fmt_block.size, 16U);
    EXPECT_EQ(wave.fmt_block.format.formatTag, 1U);
    EXPECT_EQ(wave.fmt_block.format.channels, 2U);
    EXPECT_EQ(wave.fmt_block.format.sampleRate, 48000U);
    EXPECT_EQ(wave.fmt_block.format.byteRate, 288000U);
    EXPECT_EQ(wave.fmt_block.format.blockAlign, 6U);
    EXPECT_EQ(wave.fmt_block.format.bitsPerSample, 24U);
    EXPECT_EQ(wave.dataOffset, 36U);
    EXPECT_EQ(id(wave.data_block.id), "data");
    EXPECT_EQ(wave.data_block.size, 605U);
    EXPECT_EQ(wave.samplesOffset, 44U);
    EXPECT_EQ(wave.samplesSize, 605U);
    EXPECT_EQ(wave.frames, 100U);
}

TEST(WaveLayout, cutOffAtAnyByte_breaksTheRuleOfThatChunk) {
    const FileBytes good = edited(0, "");
    for (std::size_t size = 0; size < good.size(); ++size) {
        const WaveLayout wave = findWave(std::span(good).first(size));
        EXPECT_EQ(wave.broken, size < 4    ? RiffMark
                               : size < 12 ? WaveMark
                               : size < 36 ? FmtChunk
                               : size < 44 ? DataChunk
                                           : None)
            << size;
    }
    EXPECT_EQ(findWave(std::span(good).first(35)).fmtOffset, 12U);
    EXPECT_EQ(findWave(std::span(good).first(43)).dataOffset, 36U);
    EXPECT_EQ(findWave(edited(12, "FMT ")).fmtOffset, 48U) << "a missing chunk is at the end of the file";
    EXPECT_EQ(findWave(edited(36, "Data")).dataOffset, 48U);
}

TEST(WaveLayout, findsItsChunksAlsoAcrossTheBlocksThatItReads) {
    for (std::size_t padding = 4040; padding < 4110; ++padding) {
        const WaveLayout wave =
            findWave(joinedFiles({textBytes("RIFF????WAVE"), FileBytes(padding, 'f'), kFmt, FileBytes(8, 'd'), kData}));
        EXPECT_EQ(wave.fmtOffset, padding + 12);
        EXPECT_EQ(wave.dataOffset, padding + 44);
        EXPECT_EQ(wave.frames, 2U);
    }
}

TEST(WaveLayout, piecesOfTheIds_areNoChunk) {
    FileBytes bytes = textBytes("RIFF????WAVE");
    for (int i = 0; i < 1000; ++i) {
        append(bytes, "fmtdatfm");
    }
    append(bytes, "fmt");
    EXPECT_EQ(findWave(bytes).broken, FmtChunk);
}

TEST(InternalIR, isRecognisedByItsCompleteMagic) {
    EXPECT_TRUE(isInternalIR(textBytes("TavikIR")));
    EXPECT_TRUE(isInternalIR(textBytes("TavikIRRIFF WAVE fmt  data")));
    for (const char* magic : {"TavikI", "TavikIr", "tavikIR", " TavikIR"}) {
        EXPECT_FALSE(isInternalIR(textBytes(magic))) << magic;
    }
}

TEST(InternalIR, hasTheFirst15BytesOfItsNameInTheTable) {
    const auto named = [](std::uint8_t index) { return internalName(joinedFiles({textBytes("TavikIR"), {index}})); };
    for (const std::uint8_t index : {0, 29, 30, 255}) {
        EXPECT_EQ(named(index), "");
    }
    FileNameBuff[0] = "SHORT";
    FileNameBuff[28] = "abcdefghijklmno";
    FileNameBuff[29] = "ABCDEFGHIJKLMNOPQRST";
    EXPECT_EQ(named(0), "SHORT");
    EXPECT_EQ(named(28), "abcdefghijklmno");
    EXPECT_EQ(named(29), "ABCDEFGHIJKLMNO");
    EXPECT_EQ(internalName(textBytes("TavikIR")), "") << "the byte that says which name is missing";
    EXPECT_EQ(internalName(textBytes("TavikIR\1\xFF")), "");
    EXPECT_EQ(internalName(joinedFiles({textBytes("TavikIR"), {0, 0xFF}})), "SHORT");
    FileNameBuff = {};
}

}  // namespace
}  // namespace kelvo
