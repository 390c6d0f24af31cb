#include <gtest/gtest.h>

#include "layers/TimingCurve.h"

namespace kelvo {
namespace {

TEST(TimingCurve, anyCurve_beginsAtZeroAndEndsAtOne) {
    for (const TimingCurve& curve : {kDefaultTiming, kEaseInEaseOut, TimingCurve{1.0, 0.0, 0.0, 1.0}}) {
        EXPECT_EQ(curve.at(0.0), 0.0);
        EXPECT_EQ(curve.at(1.0), 1.0);
    }
}

TEST(TimingCurve, easeInEaseOut_startsSlowlyAndIsSymmetric) {
    EXPECT_NEAR(kEaseInEaseOut.at(0.25), 0.12916, 1e-4);
    EXPECT_NEAR(kEaseInEaseOut.at(0.5), 0.5, 1e-9);
    EXPECT_NEAR(kEaseInEaseOut.at(0.75), 0.87084, 1e-4);
}

TEST(TimingCurve, default_hurriesAtFirst) {
    EXPECT_NEAR(kDefaultTiming.at(0.25), 0.40851, 1e-4);
    EXPECT_NEAR(kDefaultTiming.at(0.5), 0.80240, 1e-4);
    EXPECT_NEAR(kDefaultTiming.at(0.75), 0.96046, 1e-4);
}

TEST(TimingCurve, controlPointsOnTheDiagonal_goEvenly) {
    const TimingCurve even{1.0 / 3.0, 1.0 / 3.0, 2.0 / 3.0, 2.0 / 3.0};
    EXPECT_NEAR(even.at(0.1), 0.1, 1e-9);
    EXPECT_NEAR(even.at(0.7), 0.7, 1e-9);
}

TEST(TimingCurve, timeOutsideTheRun_staysAtTheEnds) {
    EXPECT_EQ(kDefaultTiming.at(-0.5), 0.0);
    EXPECT_EQ(kDefaultTiming.at(1.5), 1.0);
}

TEST(TimingCurve, constants_areTheCustomaryControlPoints) {
    EXPECT_EQ(kDefaultTiming, (TimingCurve{0.25, 0.1, 0.25, 1.0}));
    EXPECT_EQ(kEaseInEaseOut, (TimingCurve{0.42, 0.0, 0.58, 1.0}));
}

}  // namespace
}  // namespace kelvo
