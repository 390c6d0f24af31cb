#include <gtest/gtest.h>

#include "layers/BasicAnimation.h"

namespace kelvo {
namespace {

TEST(TimingFunction, any_beginsAtZeroEndsAtOneAndStaysThere) {
    for (const QEasingCurve& curve : {defaultTiming(), easeInEaseOut()}) {
        EXPECT_EQ(curve.valueForProgress(-0.5), 0.0);
        EXPECT_EQ(curve.valueForProgress(0.0), 0.0);
        EXPECT_EQ(curve.valueForProgress(1.0), 1.0);
        EXPECT_EQ(curve.valueForProgress(1.5), 1.0);
    }
}

TEST(TimingFunction, easeInEaseOut_startsSlowlyAndIsSymmetric) {
    EXPECT_NEAR(easeInEaseOut().valueForProgress(0.25), 0.12916, 1e-4);
    EXPECT_NEAR(easeInEaseOut().valueForProgress(0.5), 0.5, 1e-9);
    EXPECT_NEAR(easeInEaseOut().valueForProgress(0.75), 0.87084, 1e-4);
}

TEST(TimingFunction, default_hurriesAtFirst) {
    EXPECT_NEAR(defaultTiming().valueForProgress(0.25), 0.40851, 1e-4);
    EXPECT_NEAR(defaultTiming().valueForProgress(0.5), 0.80240, 1e-4);
    EXPECT_NEAR(defaultTiming().valueForProgress(0.75), 0.96046, 1e-4);
}

TEST(TimingFunction, ofAnAnimationThatNamesNone_goesEvenly) {
    EXPECT_EQ(BasicAnimation().timingFunction.valueForProgress(0.1), 0.1);
    EXPECT_EQ(BasicAnimation().timingFunction.valueForProgress(0.7), 0.7);
}

}  // namespace
}  // namespace kelvo
