// Sound files with a little of everything wrong, read by the program and by a second reader that shares nothing with
// it.

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <random>

#include "AMPFile.h"
#include "AmpModel.h"
#include "IRModel.h"
#include "Judge.h"
#include "MemoryFile.h"
#include "RVIRFile.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

constexpr std::uint32_t kUntouched = 0xA5A5A5A5;

struct Tally {
    std::size_t inputs = 0;
    std::size_t accepted = 0;
};

/// True when the program takes, refuses and converts the file as the second reader does.
testing::AssertionResult readsAlike(const FileBytes& bytes, Tally& tally) {
    const fuzz::MemoryFile source(bytes);
    const fuzz::IRModelResult expected = fuzz::modelIR(bytes);
    RVIRFile file;
    std::array<std::uint32_t, kPointCount> points;
    points.fill(kUntouched);
    const bool opened = file.OpenFilePath(source.path());
    const bool converted = file.GetIRDataBuffer(points);
    ++tally.inputs;
    tally.accepted += converted ? 1 : 0;
    const bool judged = judgeIRFile(source.path()).isAccepted();
    if (opened != expected.opened || converted != expected.converted || judged != expected.converted) {
        return testing::AssertionFailure() << "opened " << opened << " converted " << converted << " judged " << judged;
    }
    const bool same = converted ? points == expected.points : std::ranges::count(points, kUntouched) == 512;
    return same ? testing::AssertionSuccess() : testing::AssertionFailure() << "other points";
}

testing::AssertionResult readsAmpAlike(const FileBytes& bytes, Tally& tally) {
    const fuzz::MemoryFile source(bytes);
    AMPFile file;
    auto words = file.ampSwBuffer.AmpIntBuffer;
    AmpPiontBuff.fill(kUntouched);
    const bool expected = fuzz::modelAmp(bytes, words);
    const bool accepted = file.OpenFile(source.path());
    ++tally.inputs;
    tally.accepted += accepted ? 1 : 0;
    const bool judged = judgeAmpFile(source.path()).isAccepted();
    if (accepted != expected || judged != expected) {
        return testing::AssertionFailure() << "accepted " << accepted << " judged " << judged;
    }
    const bool same = accepted ? AmpPiontBuff == words : std::ranges::count(AmpPiontBuff, kUntouched) == 512;
    return same ? testing::AssertionSuccess() : testing::AssertionFailure() << "other words";
}

FileBytes rising(std::size_t count) {
    FileBytes bytes;
    for (std::size_t i = 0; i < count; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(7 + 37 * i));
    }
    return bytes;
}

FileBytes floats(std::size_t count) {
    FileBytes bytes;
    for (std::size_t i = 0; i < count; ++i) {
        append(bytes, std::bit_cast<std::uint32_t>(static_cast<float>(i % 9) / 4.0F - 1.0F), 4);
    }
    return bytes;
}

FileBytes internalFile() {
    FileBytes bytes;
    append(bytes, "TavikIR");
    const FileBytes rest = rising(2041);
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    return bytes;
}

FileBytes ampOf(std::uint32_t step) {
    std::array<std::uint32_t, 512> words{};
    for (std::uint32_t i = 0; i < 512; ++i) {
        words[i] = i * step;
    }
    return ampFile(words);
}

struct Kind {
    const char* name;
    FileBytes (*make)();
    testing::AssertionResult (*readsAlike)(const FileBytes& bytes, Tally& tally);
    std::size_t header;                     // every file with at least these bytes is accepted
    std::size_t leastChanged, mostChanged;  // how many changes of a byte among the first 64 may be accepted
};

const Kind kKinds[] = {
    {"Stereo24At48000",
     [] { return WaveFile{.sampleRate = 48000, .bitsPerSample = 24, .channels = 2, .data = rising(300)}.bytes(); },
     readsAlike, 44, 4097, 16383},
    {"MonoFloatAt96000", [] { return WaveFile{.sampleRate = 96000, .bitsPerSample = 32, .data = floats(64)}.bytes(); },
     readsAlike, 44, 4097, 16383},
    {"Internal", internalFile, readsAlike, 7, 4097, 16383},
    // The checksum finds every change, and nothing but a change.
    {"Amp", [] { return ampOf(0x01020304); }, readsAmpAlike, 2055, 64, 64},
};

class EachKind : public testing::TestWithParam<Kind> {};

TEST_P(EachKind, everyPrefixIsReadAsTheSecondReaderReadsIt) {
    const FileBytes whole = GetParam().make();
    Tally tally;
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const FileBytes prefix(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        ASSERT_TRUE(GetParam().readsAlike(prefix, tally)) << size;
    }
    EXPECT_EQ(tally.inputs, whole.size() + 1);
    EXPECT_EQ(tally.accepted, whole.size() + 1 - GetParam().header);
}

TEST_P(EachKind, everyChangeOfOneOfTheFirst64BytesIsReadAsTheSecondReaderReadsIt) {
    FileBytes bytes = GetParam().make();
    Tally tally;
    for (std::size_t i = 0; i < 64; ++i) {
        const std::uint8_t sound = bytes[i];
        for (unsigned value = 0; value < 256; ++value) {
            bytes[i] = static_cast<std::uint8_t>(value);
            ASSERT_TRUE(GetParam().readsAlike(bytes, tally)) << "byte " << i << " is " << value;
        }
        bytes[i] = sound;
    }
    EXPECT_EQ(tally.inputs, 16384U);
    EXPECT_GE(tally.accepted, GetParam().leastChanged);
    EXPECT_LE(tally.accepted, GetParam().mostChanged);
}

INSTANTIATE_TEST_SUITE_P(Files, EachKind, testing::ValuesIn(kKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

constexpr std::uint32_t kHostileSizes[] = {0, 1, 3, 0x7FFFFFFF, 0xFFFFFFFF, 0xFFFFFFF8, 0xFFFFFFF7, 0x80000000};

void overwrite(FileBytes& bytes, std::size_t at, std::uint32_t value) {
    for (std::size_t k = 0; k < 4; ++k) {
        bytes[at + k] = static_cast<std::uint8_t>(value >> (8 * k));
    }
}

TEST(LengthFields, allFourTogetherMayHoldAnything) {
    FileBytes whole;
    append(whole, "RIFF");
    append(whole, 0, 4);
    append(whole, "WAVELIST");
    append(whole, 4, 4);
    append(whole, "INFO");
    const FileBytes plain = WaveFile{.data = rising(101)}.bytes();
    whole.insert(whole.end(), plain.begin() + 12, plain.end());
    Tally tally;
    for (const std::uint32_t riff : kHostileSizes) {
        for (const std::uint32_t list : kHostileSizes) {
            for (const std::uint32_t fmt : kHostileSizes) {
                for (const std::uint32_t data : kHostileSizes) {
                    overwrite(whole, 4, riff);
                    overwrite(whole, 16, list);
                    overwrite(whole, 28, fmt);
                    overwrite(whole, 52, data);
                    ASSERT_TRUE(readsAlike(whole, tally)) << riff << ' ' << list << ' ' << fmt << ' ' << data;
                }
            }
        }
    }
    EXPECT_EQ(tally.inputs, 4096U);
    EXPECT_EQ(tally.accepted, 4096U) << "no size is a reason to refuse";
}

/// A file of many blocks, changed at random: ids that move, header fields that change, an end that is cut off.
FileBytes changedAtRandom(std::minstd_rand& random) {
    const auto below = [&random](std::size_t end) { return random() % end; };
    const std::array<std::uint32_t, 6> rates{44100, 48000, 88200, 96000, 22050, 192000};
    const std::array<std::uint32_t, 6> depths{8, 16, 24, 32, 12, 4};
    FileBytes bytes = WaveFile{.sampleRate = rates[below(6)],
                               .bitsPerSample = depths[below(6)],
                               .channels = static_cast<std::uint32_t>(below(4)),
                               .data = rising(below(20000))}
                          .bytes();
    // The bytes between the form type and each chunk: up to the end of a block, give or take a few bytes.
    const auto insert = [&](std::ptrdiff_t at) {
        const std::size_t length = below(2) * (4096 * (1 + below(2)) - 40 + below(48));
        bytes.insert(bytes.begin() + at, length, static_cast<std::uint8_t>(below(2) == 0 ? 'f' : 'd'));
    };
    insert(36);
    insert(12);
    for (std::size_t i = below(3); i > 0; --i) {
        bytes[below(std::min<std::size_t>(bytes.size(), 64))] = static_cast<std::uint8_t>(below(256));
    }
    bytes.resize(bytes.size() - below(2) * below(bytes.size()));
    return bytes;
}

TEST(RandomChanges, areReadAsTheSecondReaderReadsThem) {
    std::minstd_rand random(1);
    Tally tally;
    for (int i = 0; i < 3000; ++i) {
        ASSERT_TRUE(readsAlike(changedAtRandom(random), tally)) << i;
    }
    EXPECT_GT(tally.accepted, 300U);
    EXPECT_LT(tally.accepted, 2700U);
}

TEST(RandomChanges, ofAmpModelsAreReadAsTheSecondReaderReadsThem) {
    std::minstd_rand random(1);
    Tally tally;
    for (int i = 0; i < 1000; ++i) {
        FileBytes bytes = ampOf(static_cast<std::uint32_t>(random()));
        bytes.insert(bytes.begin() + 2052, random() % 2 * (random() % 70000), 0x11);
        bytes[random() % bytes.size()] += static_cast<std::uint8_t>(random() % 2);
        bytes.resize(bytes.size() - random() % 4 / 3 * (random() % bytes.size()));
        ASSERT_TRUE(readsAmpAlike(bytes, tally)) << i;
    }
    EXPECT_GT(tally.accepted, 100U);
    EXPECT_LT(tally.accepted, 900U);
}

FileBytes withIdsAt(std::size_t size, std::size_t fmt, std::size_t data) {
    FileBytes bytes(size, 0x10);
    const auto put = [&](std::size_t at, std::string_view text) {
        for (std::size_t i = 0; i < text.size() && at + i < bytes.size(); ++i) {
            bytes[at + i] = static_cast<std::uint8_t>(text[i]);
        }
    };
    put(0, "RIFF");
    put(8, "WAVE");
    put(fmt, "fmt ");
    put(data, "data");
    return bytes;
}

TEST(ChunkIds, standAnywhereOverlapAndReachTheLastByte) {
    Tally tally;
    for (std::size_t fmt = 0; fmt <= 64; ++fmt) {
        for (std::size_t data = 0; data <= 64; ++data) {
            ASSERT_TRUE(readsAlike(withIdsAt(64, fmt, data), tally)) << fmt << ' ' << data;
        }
    }
    EXPECT_EQ(tally.inputs, 4225U);
}

}  // namespace
}  // namespace kelvo
