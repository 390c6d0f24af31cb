#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>

#include "Response.h"

namespace kelvo {
namespace {

constexpr double kBin = 44100.0 / 512;  // Hz

double gainAt(std::span<const double> samples, double frequency, double rate = 44100) {
    return gainsAt(samples, rate, std::array{frequency}).front();
}

std::vector<double> gainsOf(std::span<const double> samples, double rate = 44100) {
    return gainsAt(samples, rate, comparedFrequencies());
}

/// `cycles` whole cycles of a cosine of level 1.0 in 512 points.
std::array<double, 512> cosine(int cycles) {
    std::array<double, 512> points{};
    for (std::size_t i = 0; i < points.size(); ++i) {
        points[i] = std::cos(2.0 * std::numbers::pi * cycles * static_cast<double>(i) / 512);
    }
    return points;
}

TEST(Gain, ofAnImpulse_is0dBAtAnyPosition) {
    for (const std::size_t place : {0, 1, 511}) {
        std::array<double, 512> points{};
        points[place] = 1.0;
        for (const double frequency : {0.0, 20.0, 440.0, 1000.0, 20000.0, 22050.0}) {
            EXPECT_NEAR(gainAt(points, frequency), 0.0, 1e-9) << frequency;
        }
    }
}

TEST(Gain, followsTheLevel) {
    EXPECT_NEAR(gainAt(std::array{0.1}, 1000.0), -20.0, 1e-6);
    EXPECT_NEAR(gainAt(std::array{-0.5}, 1000.0), -6.0206, 1e-4);
    EXPECT_NEAR(gainAt(std::array{1.0, 1.0}, 0.0), 6.0206, 1e-4);
}

TEST(Gain, ofACosineIsInItsBinAndNowhereElse) {
    const auto points = cosine(16);
    EXPECT_NEAR(gainAt(points, 16 * kBin), 48.1648, 1e-4);  // 256 times
    for (const int other : {0, 1, 15, 17, 100, 256}) {
        EXPECT_LT(gainAt(points, other * kBin), -80.0) << other;
    }
    EXPECT_NEAR(gainAt(points, 16.5 * kBin), 44.2, 0.3);
}

TEST(Gain, ofTwoEqualPointsHasItsNotchAtHalfTheRate) {
    EXPECT_NEAR(gainAt(std::array{1.0, 1.0}, 11025.0), 3.0103, 1e-4);
    EXPECT_EQ(gainAt(std::array{1.0, 1.0}, 22050.0), -200.0);
    EXPECT_EQ(gainAt(std::array{1.0, 1.0}, 48000.0, 96000.0), -200.0);
}

TEST(Gain, ofSilenceIsTheLeastThereIs) {
    EXPECT_EQ(gainAt(std::array<double, 512>{}, 1000.0), -200.0);
    EXPECT_EQ(gainAt({}, 1000.0), -200.0);
}

TEST(Gain, isGivenForEachFrequencyInTurn) {
    const std::array samples{1.0, 1.0};
    std::vector<double> frequencies(17, 0.0);
    frequencies[16] = 11025.0;
    const auto gains = gainsAt(samples, 44100.0, frequencies);
    ASSERT_EQ(gains.size(), 17U);
    EXPECT_NEAR(gains[15], 6.0206, 1e-4);
    EXPECT_NEAR(gains[16], 3.0103, 1e-4);
}

TEST(ComparedFrequencies, are100IntegersFrom80To8000) {
    const auto& frequencies = comparedFrequencies();
    ASSERT_EQ(frequencies.size(), 100U);
    EXPECT_EQ(frequencies[0], 80.0);
    EXPECT_EQ(frequencies[1], 84.0);
    EXPECT_EQ(frequencies[50], 819.0);
    EXPECT_EQ(frequencies[99], 8000.0);
}

TEST(MeanLevel, ofAPulseIsThePulses) {
    EXPECT_NEAR(meanLevel(gainsOf(std::array{1.0})), 0.0, 1e-9);
    EXPECT_NEAR(meanLevel(gainsOf(std::array{0.0, -0.5})), -6.0206, 1e-4);
    EXPECT_EQ(meanLevel(gainsOf(std::array{0.0})), -200.0);
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
