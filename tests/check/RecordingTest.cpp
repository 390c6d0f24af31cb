// What a file holds, by known answers.

#include <gtest/gtest.h>

#include <bit>
#include <limits>

#include "CheckFile.h"
#include "Recording.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

std::vector<double> samplesOf(const FileBytes& bytes) {
    std::vector<double> all;
    const auto recording = Recording::of(bytes, findWave(bytes));
    if (recording) {
        recording->read(0, 100000, [&all](std::span<const double> samples) {
            all.insert(all.end(), samples.begin(), samples.end());
            return true;
        });
    }
    return all;
}

FileBytes floatBytes(std::initializer_list<float> values) {
    FileBytes bytes;
    for (const float value : values) {
        append(bytes, std::bit_cast<std::uint32_t>(value), 4);
    }
    return bytes;
}

/// A 16-bit file with one sample of 0.5.
FileBytes pulse(std::uint32_t rate, std::size_t place, std::size_t frames) {
    WaveFile wave{.sampleRate = rate, .data = FileBytes(2 * frames)};
    wave.data[2 * place + 1] = 0x40;
    return wave.bytes();
}

std::optional<RecordingFacts> factsOfFile(const FileBytes& bytes) {
    const auto recording = Recording::of(bytes, findWave(bytes));
    return recording ? factsOf(*recording) : std::nullopt;
}

WaveFacts check(const FileBytes& bytes) {
    const SampleDir dir;
    return checkFile(dir.write("a.wav", bytes).toUtf8()).wave.value();
}

TEST(Recording, firstChannelOfTheCompleteFrames_isReadAsWritten) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    const struct {
        std::uint8_t tag;
        WaveFile wave;
        std::vector<double> samples;
    } rows[] = {
        {1, {.bitsPerSample = 8, .data = {0x80, 0x00, 0xC0}}, {0, -1, 0.5}},
        {1, {.data = {0x00, 0x40, 0x00, 0x80}}, {0.5, -1}},
        {1, {.bitsPerSample = 24, .data = {0, 0, 0x40, 0, 0, 0xC0}}, {0.5, -0.5}},
        {1, {.bitsPerSample = 20, .data = {0, 0, 0x40}}, {0.5}},
        {1, {.bitsPerSample = 32, .data = {0, 0, 0, 0x40}}, {0.5}},
        {3, {.bitsPerSample = 32, .data = floatBytes({0.25F, -3.0F, kNaN, kInfinity})}, {0.25, -3, 0, 0}},
        {3, {.bitsPerSample = 64, .data = {0, 0, 0, 0, 0, 0, 0xE0, 0xBF}}, {-0.5}},
        {1, {.channels = 2, .data = {0, 0x40, 1, 1, 0, 0x20, 1, 1, 0, 0x10, 1}}, {0.5, 0.25}},
        {1, {.channels = 2, .data = {0, 0x40, 1, 1, 0, 0x20, 1, 1}, .declaredDataSize = 4}, {0.5}},
    };
    for (const auto& [tag, wave, samples] : rows) {
        FileBytes bytes = wave.bytes();
        bytes[20] = tag;
        EXPECT_EQ(samplesOf(bytes), samples) << wave.bitsPerSample;
    }
}

TEST(Recording, ofAnotherEncodingIsNone) {
    const std::pair<std::uint8_t, WaveFile> rows[] = {
        {7, {.bitsPerSample = 8, .data = FileBytes(8)}},  {1, {.sampleRate = 0, .data = FileBytes(8)}},
        {1, {.bitsPerSample = 4, .data = FileBytes(8)}},  {1, {.channels = 0, .data = FileBytes(8)}},
        {1, {.bitsPerSample = 64, .data = FileBytes(8)}},
    };
    for (const auto& [tag, wave] : rows) {
        FileBytes bytes = wave.bytes();
        bytes[20] = tag;
        EXPECT_FALSE(Recording::of(bytes, findWave(bytes))) << wave.bitsPerSample;
    }
}

TEST(RecordingFacts, ofAPulseAreKnown) {
    const auto facts = factsOfFile(pulse(44100, 441, 600));
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->peak, 0.5);
    EXPECT_EQ(facts->onset, 10.0);
    EXPECT_EQ(facts->second.size(), 600U);
    EXPECT_FALSE(factsOfFile(WaveFile{.data = FileBytes(8)}.bytes()));
    EXPECT_FALSE(factsOfFile(WaveFile{}.bytes()));
}

TEST(RecordingFacts, countTheEnergyOfTheTimeThatThePointsLast) {
    EXPECT_EQ(factsOfFile(pulse(44100, 511, 600))->energy, 1.0);
    EXPECT_EQ(factsOfFile(pulse(44100, 512, 600))->energy, 0.0);
    EXPECT_EQ(factsOfFile(pulse(48000, 556, 600))->energy, 1.0);
    EXPECT_EQ(factsOfFile(pulse(48000, 557, 600))->energy, 0.0);
    WaveFile two{.data = FileBytes(2000)};
    two.data[1] = two.data[1801] = 0x40;
    EXPECT_EQ(factsOfFile(two.bytes())->energy, 0.5);
}

TEST(RecordingFacts, countATenthOfThePeakAsTheOnset) {
    WaveFile wave{.sampleRate = 48000};
    for (const std::uint32_t sample : {999U, 1000U, 10000U}) {
        wave.data.resize(wave.data.size() + 2 * 47);
        append(wave.data, sample, 2);
    }
    EXPECT_NEAR(factsOfFile(wave.bytes())->onset, 95 / 48.0, 1e-9);
}

TEST(RecordingFacts, foldALongRecordingIntoASecond) {
    WaveFile wave{.data = FileBytes(2 * (2 * 44100 + 10))};
    for (const std::size_t frame : {5U, 44105U, 88205U}) {
        wave.data[2 * frame + 1] = 0x20;
    }
    const auto facts = factsOfFile(wave.bytes());
    ASSERT_EQ(facts->second.size(), 44100U);
    EXPECT_EQ(facts->second[5], 0.75);
    EXPECT_EQ(facts->second[4], 0.0);
}

TEST(WaveFacts, ofAPulseDependOnItsPlace) {
    const struct {
        std::uint32_t rate;
        std::size_t place;
        double onset;
        bool isSent;
    } rows[] = {
        {44100, 0, 0.0, true},     {44100, 441, 10.0, true},
        {48000, 576, 12.0, false}, {88200, 0, 0.0, true},  // every second sample is taken
        {88200, 441, 5.0, false},
    };
    for (const auto& row : rows) {
        const WaveFacts facts = check(pulse(row.rate, row.place, 600));
        EXPECT_EQ(facts.whole->onset, row.onset) << row.rate << ' ' << row.place;
        EXPECT_EQ(facts.level.has_value(), row.isSent);
        EXPECT_EQ(facts.deviation.has_value(), row.isSent);
        EXPECT_NEAR(facts.level.value_or(-6.0206), -6.0206, 1e-4);
        EXPECT_NEAR(facts.deviation.value_or(Deviation{}).decibels, 0.0, 1e-9);
    }
}

// Point 11 is 0.968 of the way from frame 11 to frame 12, so that 0.032 of a pulse at 12 remain there, and the
// rest of it in point 12 at 13.056.
TEST(WaveFacts, ofAPulseAt48000HzKnowTheInterpolation) {
    const WaveFacts facts = check(pulse(48000, 12, 600));
    EXPECT_NEAR(facts.levels[11], 0.5 * 0.968, 1e-4);
    EXPECT_NEAR(facts.levels[12], 0.0, 1e-4);
    EXPECT_NEAR(facts.level.value(), -6.303, 1e-3);
    EXPECT_NEAR(facts.deviation->decibels, 0.0, 1e-6);
}

TEST(WaveFacts, of8BitsShowTheirSilenceAtFullScale) {
    WaveFile wave{.bitsPerSample = 8, .data = FileBytes(600, 0x80)};
    wave.data[0] = 0xC0;
    const WaveFacts facts = check(wave.bytes());
    EXPECT_EQ(facts.whole->peak, 0.5);
    EXPECT_EQ(facts.levels[1], -1.0);
    EXPECT_GT(std::abs(facts.deviation->decibels), 10.0);
}

TEST(WaveFacts, undefinedFacts_areAbsent) {
    EXPECT_FALSE(check(WaveFile{.channels = 3, .data = FileBytes(600, 0x11)}.bytes()).whole);
    FileBytes muLaw = WaveFile{.bitsPerSample = 8, .data = FileBytes(600, 0x11)}.bytes();
    muLaw[20] = 7;
    EXPECT_FALSE(check(muLaw).whole);
    EXPECT_TRUE(check(muLaw).level);
}

}  // namespace
}  // namespace kelvo
