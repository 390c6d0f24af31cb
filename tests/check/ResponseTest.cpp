#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>

#include "Response.h"

namespace kelvo {
namespace {

constexpr double kBin = 44100.0 / 512;  // Hz

std::vector<double> gainsOf(std::span<const double> samples, double rate = 44100) {
    return gainsAt(samples, rate, comparedFrequencies());
}

TEST(Gain, isThatOfTheLevelAtEachFrequency) {
    std::vector<double> cosine(512);  // 16 whole cycles
    for (std::size_t i = 0; i < cosine.size(); ++i) {
        cosine[i] = std::cos(2.0 * std::numbers::pi * 16 * static_cast<double>(i) / 512);
    }
    std::vector<double> late(512);
    late[511] = 1.0;
    const struct {
        std::vector<double> samples;
        double rate, frequency, gain;
    } rows[] = {
        {{1.0}, 44100, 0.0, 0.0},
        {late, 44100, 440.0, 0.0},
        {late, 44100, 22050.0, 0.0},
        {{0.1}, 44100, 1000.0, -20.0},
        {{-0.5}, 44100, 1000.0, -6.0206},
        {{1.0, 1.0}, 44100, 0.0, 6.0206},
        {{1.0, 1.0}, 44100, 11025.0, 3.0103},
        {{1.0, 1.0}, 44100, 22050.0, -200.0},  // the notch
        {{1.0, 1.0}, 96000, 48000.0, -200.0},
        {cosine, 44100, 16 * kBin, 48.1648},  // 256 times
        {cosine, 44100, 16.5 * kBin, 44.3734},
        {{}, 44100, 1000.0, -200.0},
        {{0.0, 0.0}, 44100, 1000.0, -200.0},
    };
    for (const auto& row : rows) {
        EXPECT_NEAR(gainsAt(row.samples, row.rate, std::array{row.frequency}).front(), row.gain, 1e-4) << &row - rows;
    }
    for (const int other : {0, 1, 15, 17, 100, 256}) {
        EXPECT_LT(gainsAt(cosine, 44100, std::array{other * kBin}).front(), -80.0) << other;
    }
    std::vector<double> frequencies(17, 0.0);
    frequencies[16] = 11025.0;
    const auto gains = gainsAt(std::array{1.0, 1.0}, 44100.0, frequencies);
    EXPECT_NEAR(gains.at(15), 6.0206, 1e-4);
    EXPECT_NEAR(gains.at(16), 3.0103, 1e-4);
}

TEST(ComparedFrequencies, are100IntegersFrom80To8000) {
    const auto& frequencies = comparedFrequencies();
    ASSERT_EQ(frequencies.size(), 100U);
    EXPECT_EQ(frequencies[0], 80.0);
    EXPECT_EQ(frequencies[1], 84.0);
    EXPECT_EQ(frequencies[50], 819.0);
    EXPECT_EQ(frequencies[99], 8000.0);
}

TEST(MeanLevel, isOfPowersUpTo5000Hz) {
    std::vector<double> gains(100, -200.0);
    gains[0] = 0.0;
    EXPECT_NEAR(meanLevel(gains), -19.4939, 1e-4);  // 1 of 89
    gains[88] = 0.0;                                // 4796 Hz
    EXPECT_NEAR(meanLevel(gains), -16.4836, 1e-4);
    gains[89] = 100.0;  // 5024 Hz
    EXPECT_NEAR(meanLevel(gains), -16.4836, 1e-4);
}

TEST(LargestDeviation, ofTheSameResponseAtAnotherLevelAndRateIsNone) {
    const auto deviation = largestDeviation(gainsOf(std::array{0.5}), gainsOf(std::array{0.0, 0.0, 1.0}, 96000));
    ASSERT_TRUE(deviation);
    EXPECT_NEAR(deviation->decibels, 0.0, 1e-9);
}

TEST(LargestDeviation, saysWhereAndOnWhichSide) {
    std::vector<double> gains(100, -3.0);
    const std::vector<double> others(100, -3.0);
    gains[95] = -5.0;  // 6643 Hz, which is above those of the level
    gains[97] = -2.0;
    const auto deviation = largestDeviation(gains, others);
    ASSERT_TRUE(deviation);
    EXPECT_NEAR(deviation->decibels, -2.0, 1e-9);
    EXPECT_EQ(deviation->frequency, 6642.0);
}

TEST(LargestDeviation, ofSilenceIsNotDefined) {
    EXPECT_FALSE(largestDeviation(gainsOf({}), gainsOf(std::array{1.0})));
    EXPECT_FALSE(largestDeviation(gainsOf(std::array{1.0}), gainsOf({})));
}

}  // namespace
}  // namespace kelvo
