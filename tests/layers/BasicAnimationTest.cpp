#include <gtest/gtest.h>

#include <limits>

#include "BasicAnimation.h"

namespace kelvo {
namespace {

TEST(BasicAnimation, goesFromItsStartToItsEndOrByItsDistance) {
    const BasicAnimation to{.fromValue = 10.0, .byValue = 99.0, .toValue = 20.0, .duration = 2.0};
    EXPECT_EQ(to.valueAt(0.0), 10.0);
    EXPECT_EQ(to.valueAt(1.0), 15.0);
    const BasicAnimation by{.fromValue = 10.0, .byValue = 4.0, .duration = 2.0};
    EXPECT_EQ(by.valueAt(0.0), 10.0);
    EXPECT_EQ(by.valueAt(1.0), 12.0);
}

TEST(BasicAnimation, beforeItsStart_hasItsFirstValue) {
    EXPECT_EQ((BasicAnimation{.fromValue = 3.0, .toValue = 4.0, .duration = 2.0}.valueAt(-1.0)), 3.0);
}

TEST(BasicAnimation, repeated_startsAgainEachTime) {
    const BasicAnimation animation{.fromValue = 0.0, .toValue = 8.0, .duration = 2.0, .repeatCount = 2.5};
    EXPECT_EQ(animation.length(), 5.0);
    EXPECT_EQ(animation.valueAt(1.0), 4.0);
    EXPECT_EQ(animation.valueAt(2.0), 0.0);
    EXPECT_EQ(animation.valueAt(4.5), 2.0);
    EXPECT_EQ(animation.valueAt(2e9 + 0.5), 2.0);
}

TEST(BasicAnimation, withATimingFunction_followsItsCurve) {
    const BasicAnimation animation{
        .fromValue = 100.0, .toValue = 200.0, .duration = 4.0, .timingFunction = easeInEaseOut()};
    EXPECT_NEAR(animation.valueAt(1.0), 112.916, 0.01);
    EXPECT_NEAR(animation.valueAt(2.0), 150.0, 1e-6);
    EXPECT_NEAR(animation.valueAt(3.0), 187.084, 0.01);
}

TEST(DefaultTiming, startsFast) {
    EXPECT_NEAR(defaultTiming().valueForProgress(0.25), 0.40851, 1e-4);
    EXPECT_NEAR(defaultTiming().valueForProgress(0.5), 0.80240, 1e-4);
    EXPECT_NEAR(defaultTiming().valueForProgress(0.75), 0.96046, 1e-4);
}

}  // namespace
}  // namespace kelvo
