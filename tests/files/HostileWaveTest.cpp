#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QFile>
#include <algorithm>

#include "RVIRFile.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

using Words = std::array<std::uint32_t, kPointCount>;

constexpr std::size_t kHeaderSize = 44;

class HostileWave : public testing::Test {
protected:
    bool open(const FileBytes& bytes) { return file.OpenFilePath(dir.write("cab.wav", bytes)); }

    /// A refusal leaves the words; else they are device words.
    void expectDefinedPoints() {
        Words words;
        words.fill(0xA5A5A5A5);
        const std::uint32_t limit = file.GetIRDataBuffer(words) ? 0xFFFFFF : 0xA5A5A5A5;
        EXPECT_LE(std::ranges::max(words), limit);
        EXPECT_TRUE(limit == 0xFFFFFF || std::ranges::min(words) == limit);
    }

    const SampleDir dir;
    RVIRFile file;
};

TEST_F(HostileWave, everyPrefixIsRefusedUpToTheHeadersEndAndSilenceBehindIt) {
    const FileBytes whole = WaveFile{.bitsPerSample = 24, .channels = 2, .data = FileBytes(60, 0x11)}.bytes();
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const FileBytes prefix(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(open(prefix), size >= kHeaderSize) << size;
        Words words{};
        EXPECT_EQ(file.GetIRDataBuffer(words), size >= kHeaderSize) << size;
        const auto frames = size >= kHeaderSize ? (size - kHeaderSize) / 6 : 0;
        EXPECT_EQ(std::ranges::count(words, 0x111111U), static_cast<std::ptrdiff_t>(frames)) << size;
    }
}

TEST_F(HostileWave, everyPrefixOfAnInternalFileFromTheMagicOnIsAccepted) {
    FileBytes whole;
    append(whole, "TavikIR");
    whole.resize(2048, 0x22);
    for (std::size_t size = 0; size <= whole.size(); size += size < 16 ? 1 : 127) {
        EXPECT_EQ(open({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)}), size >= 7) << size;
        Words words{};
        EXPECT_EQ(file.GetIRDataBuffer(words), size >= 7);
        const auto samples = size > 512 ? (size - 512) / 3 : 0;
        EXPECT_EQ(std::ranges::count(words, 0x222222U), static_cast<std::ptrdiff_t>(samples)) << size;
    }
}

TEST_F(HostileWave, everyHeaderByteMayHoldAnything) {
    for (const std::uint32_t rate : {44100U, 96000U}) {
        const FileBytes whole = WaveFile{.sampleRate = rate, .channels = 2, .data = FileBytes(80, 0x11)}.bytes();
        for (std::size_t i = 0; i < kHeaderSize; ++i) {
            for (const std::uint8_t value : {0x00, 0x01, 0x07, 0x20, 0x7F, 0x80, 0xFF}) {
                FileBytes bytes = whole;
                bytes[i] = value;
                EXPECT_EQ(open(bytes), file.IsFileOpenSuccess);
                expectDefinedPoints();
            }
        }
    }
}

TEST_F(HostileWave, everyHeaderWordMayHoldAnExtremeNumber) {
    for (std::size_t i = 0; i + 4 <= kHeaderSize; i += 2) {
        for (const std::uint32_t value : {0U, 1U, 3U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFF8U, 0xFFFFFFFFU}) {
            FileBytes bytes = WaveFile{.sampleRate = 48000, .data = FileBytes(80, 0x11)}.bytes();
            for (std::size_t k = 0; k < 4; ++k) {
                bytes[i + k] = static_cast<std::uint8_t>(value >> (8 * k));
            }
            EXPECT_EQ(open(bytes), file.IsFileOpenSuccess);
            expectDefinedPoints();
        }
    }
}

TEST_F(HostileWave, riffAndFmtSizesDoNotMatter) {
    for (const std::size_t field : {4, 16}) {
        for (const std::uint32_t value : {0U, 1U, 0x7FFFFFFFU, 0xFFFFFFFFU, 0xFFFFFFF8U}) {
            FileBytes bytes = WaveFile{.data = {1, 2}}.bytes();
            for (std::size_t k = 0; k < 4; ++k) {
                bytes[field + k] = static_cast<std::uint8_t>(value >> (8 * k));
            }
            EXPECT_TRUE(open(bytes));
            Words words{};
            EXPECT_TRUE(file.GetIRDataBuffer(words));
            EXPECT_EQ(words[0], 0x020100U);
        }
    }
}

TEST_F(HostileWave, whatIsNoRegularFileIsRefused) {
    ASSERT_EQ(::mkfifo(QFile::encodeName(dir.path("fifo.wav")).constData(), 0600), 0);
    EXPECT_FALSE(file.OpenFilePath(dir.path("fifo.wav")));
    EXPECT_FALSE(file.OpenFilePath(dir.path(".")));
    EXPECT_FALSE(file.OpenFilePath("/dev/zero"));
    EXPECT_FALSE(file.OpenFilePath("/dev/null"));
    EXPECT_FALSE(file.OpenFilePath(dir.path("missing.wav")));
    EXPECT_FALSE(file.OpenFilePath(""));
    EXPECT_FALSE(file.IsFileOpenSuccess);
    EXPECT_EQ(file.FileSize, 0U);
}

TEST_F(HostileWave, textAndRepeatedIdsAreRefused) {
    FileBytes bytes;
    for (int i = 0; i < 1000; ++i) {
        append(bytes, "fmt data");
    }
    EXPECT_FALSE(open(bytes));
    bytes.assign(100000, 'f');
    EXPECT_FALSE(open(bytes));
    bytes.assign(100000, 0);
    EXPECT_FALSE(open(bytes));
}

}  // namespace
}  // namespace kelvo
