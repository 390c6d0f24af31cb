// From the button to the pedal's memory, over the whole stack.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <fstream>
#include <iterator>
#include <tuple>

#include "AppHarness.h"
#include "SampleFiles.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;

/// One sample of half scale at each depth; the first frame is a quarter of full scale.
FileBytes sample(std::uint32_t bits, bool quarter) {
    const float level = quarter ? 0.25F : 0.5F;
    FileBytes bytes;
    switch (bits) {
        case 8:
            append(bytes, quarter ? 0x20 : 0x40, 1);
            break;
        case 16:
            append(bytes, quarter ? 0x2000 : 0x4000, 2);
            break;
        case 24:
            append(bytes, quarter ? 0x200000 : 0x400000, 3);
            break;
        default:
            append(bytes, std::bit_cast<std::uint32_t>(level), 4);
            break;
    }
    return bytes;
}

using Format = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>;

class EveryFormat : public testing::TestWithParam<Format> {};

TEST_P(EveryFormat, reachesThePedalAsTheSamePoints) {
    const auto [rate, bits, channels] = GetParam();
    WaveFile wave{.sampleRate = rate, .bitsPerSample = bits, .channels = channels};
    for (int frame = 0; frame < 1200; ++frame) {
        const FileBytes first = sample(bits, frame == 0);
        std::ranges::copy(first, std::back_inserter(wave.data));
        if (channels == 2) {
            // A second channel that must not be heard.
            std::fill_n(std::back_inserter(wave.data), bits / 8, std::uint8_t{0x11});
        }
    }
    const SampleDir files;
    RunningApp app;
    app.start();
    app.importIR(9, files.write("Format.wav", wave.bytes()));
    ASSERT_TRUE(app.waitForChanges(1));
    const Kr310Slot slot = app.pedal.memory().cab[9];
    EXPECT_EQ(slot.name, "FORMAT");
    EXPECT_EQ(slot.words[0], 0x200000U);
    EXPECT_THAT(std::vector<std::uint32_t>(slot.words.begin() + 1, slot.words.end()), testing::Each(0x400000U));
}

INSTANTIATE_TEST_SUITE_P(All, EveryFormat,
                         testing::Combine(testing::Values(44100U, 48000U, 88200U, 96000U),
                                          testing::Values(8U, 16U, 24U, 32U), testing::Values(1U, 2U)));

struct SystemSound {
    const char* file;
    const char* change;
};

class FileWeDidNotMake : public testing::TestWithParam<SystemSound> {};

// The checksums come from a separate calculation with single-precision arithmetic.
TEST_P(FileWeDidNotMake, reachesThePedal) {
    RunningApp app;
    app.start();
    app.importIR(0, QStringLiteral("/usr/share/sounds/alsa/") + GetParam().file);
    ASSERT_TRUE(app.waitForChanges(1)) << "is the package alsa-utils installed?";
    EXPECT_THAT(app.manager.activity().changes, ElementsAre(GetParam().change));
}

INSTANTIATE_TEST_SUITE_P(
    SystemSounds, FileWeDidNotMake,
    testing::Values(SystemSound{"Front_Center.wav", "CAB 27 <- \"FRONT_CENT\" 512 points, crc32 f11609d3"},
                    SystemSound{"Front_Left.wav", "CAB 27 <- \"FRONT_LEFT\" 512 points, crc32 6c1ce17e"},
                    SystemSound{"Front_Right.wav", "CAB 27 <- \"FRONT_RIGH\" 512 points, crc32 6c1ce17e"},
                    SystemSound{"Noise.wav", "CAB 27 <- \"NOISE\" 512 points, crc32 2362b1e0"},
                    SystemSound{"Rear_Center.wav", "CAB 27 <- \"REAR_CENTE\" 512 points, crc32 6c1ce17e"},
                    SystemSound{"Rear_Left.wav", "CAB 27 <- \"REAR_LEFT\" 512 points, crc32 da1920f5"},
                    SystemSound{"Rear_Right.wav", "CAB 27 <- \"REAR_RIGHT\" 512 points, crc32 6c1ce17e"},
                    SystemSound{"Side_Left.wav", "CAB 27 <- \"SIDE_LEFT\" 512 points, crc32 4b96ef18"},
                    SystemSound{"Side_Right.wav", "CAB 27 <- \"SIDE_RIGHT\" 512 points, crc32 3a64137b"}));

TEST(EndToEnd, anAmpModelReachesThePedalWordByWord) {
    std::array<std::uint32_t, 512> words{};
    for (std::uint32_t i = 0; i < 512; ++i) {
        words[i] = i * 0x01020304U;
    }
    const SampleDir files;
    RunningApp app;
    app.start();
    app.importAMP(2, files.write("clean.amp", ampFile(words)));
    ASSERT_TRUE(app.waitForChanges(1));
    EXPECT_EQ(app.pedal.memory().amp[2].words, words);
    EXPECT_EQ(app.pedal.memory().amp[2].name, "clean");
}

/// The reports of a golden file, one line of hex each.
std::vector<std::string> goldenReports(const char* name) {
    std::ifstream file(std::string(KELVO_GOLDEN) + "/" + name);
    return {std::istream_iterator<std::string>(file), {}};
}

std::vector<std::string> sentAfterConnect(const RunningApp& app) {
    std::vector<std::string> lines;
    for (const Report& report : app.manager.activity().outputReports) {
        QByteArray bytes;
        for (const std::uint8_t byte : report) {
            bytes += static_cast<char>(byte);
        }
        lines.push_back(bytes.toHex().toStdString());
    }
    lines.erase(lines.begin());
    return lines;
}

TEST(GoldenWire, aWholeIRImportReportByReportWithItsStaleTails) {
    WaveFile wave{.bitsPerSample = 24};
    for (std::uint32_t i = 0; i < 512; ++i) {
        append(wave.data, i * 0x010203U, 3);
    }
    const SampleDir files;
    RunningApp app;
    app.start();
    app.importIR(4, files.write("mycab.wav", wave.bytes()));
    ASSERT_TRUE(app.waitForChanges(1));
    const auto golden = goldenReports("ir-import.hex");
    ASSERT_EQ(golden.size(), 28U);
    EXPECT_EQ(sentAfterConnect(app), golden);
}

TEST(GoldenWire, aWholeAmpImportReportByReportWithItsStaleTails) {
    std::array<std::uint32_t, 512> words{};
    for (std::uint32_t i = 0; i < 512; ++i) {
        words[i] = i * 0x01020304U;
    }
    const SampleDir files;
    RunningApp app;
    app.start();
    app.importAMP(2, files.write("clean.amp", ampFile(words)));
    ASSERT_TRUE(app.waitForChanges(1));
    const auto golden = goldenReports("amp-import.hex");
    ASSERT_EQ(golden.size(), 37U);
    EXPECT_EQ(sentAfterConnect(app), golden);
}

}  // namespace
}  // namespace kelvo::test
