#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>

#include "Plot.h"

namespace kelvo {
namespace {

constexpr double kBin = 44100.0 / 512;  // Hz

/// `cycles` whole cycles of a cosine of level 1.0 in 512 points.
std::array<float, 512> cosine(int cycles) {
    std::array<float, 512> points{};
    for (std::size_t i = 0; i < points.size(); ++i) {
        points[i] = static_cast<float>(std::cos(2.0 * std::numbers::pi * cycles * static_cast<double>(i) / 512));
    }
    return points;
}

TEST(Spectrum, ofAnImpulseIsFlatAt0dBWhereverItStands) {
    for (const std::size_t place : {0, 1, 511}) {
        std::array<float, 512> points{};
        points[place] = 1.0F;
        for (const double frequency : {0.0, 20.0, 440.0, 1000.0, 20000.0, 22050.0}) {
            EXPECT_NEAR(gainAt(points, frequency), 0.0, 1e-9) << frequency;
        }
    }
}

TEST(Spectrum, followsTheLevel) {
    EXPECT_NEAR(gainAt(std::array{0.1F}, 1000.0), -20.0, 1e-6);
    EXPECT_NEAR(gainAt(std::array{-0.5F}, 1000.0), -6.0206, 1e-4);
    EXPECT_NEAR(gainAt(std::array{1.0F, 1.0F}, 0.0), 6.0206, 1e-4);
}

TEST(Spectrum, ofACosineStandsInItsBinAndNowhereElse) {
    const auto points = cosine(16);
    EXPECT_NEAR(gainAt(points, 16 * kBin), 48.1648, 1e-4);  // 256 times
    for (const int other : {0, 1, 15, 17, 100, 256}) {
        EXPECT_LT(gainAt(points, other * kBin), -80.0) << other;
    }
    EXPECT_NEAR(gainAt(points, 16.5 * kBin), 44.2, 0.3);
}

TEST(Spectrum, ofTwoEqualPointsHasItsNotchAtTheHighestFrequency) {
    EXPECT_NEAR(gainAt(std::array{1.0F, 1.0F}, 11025.0), 3.0103, 1e-4);
    EXPECT_LT(gainAt(std::array{1.0F, 1.0F}, 22050.0), -190.0);
}

TEST(Spectrum, ofSilenceIsTheLeastThereIs) {
    EXPECT_EQ(gainAt(std::array<float, 512>{}, 1000.0), -200.0);
}

}  // namespace
}  // namespace kelvo
