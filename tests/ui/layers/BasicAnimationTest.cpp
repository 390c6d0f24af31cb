#include <gtest/gtest.h>

#include <limits>

#include "layers/BasicAnimation.h"

namespace kelvo {
namespace {

constexpr double kOwnValue = 7.0;

TEST(BasicAnimation, defaults_areOneEvenRunThatIsRemoved) {
    const BasicAnimation animation;
    EXPECT_EQ(animation.duration, 0.0);
    EXPECT_EQ(animation.repeatCount, 1.0);
    EXPECT_TRUE(animation.removedOnCompletion);
    EXPECT_EQ(animation.timingFunction, QEasingCurve(QEasingCurve::Linear));
}

struct Way {
    std::optional<double> from, by, to;
    double start, middle;
};

TEST(BasicAnimation, everyCombinationOfFromByAndTo_goesItsWay) {
    const Way ways[] = {
        {10.0, {}, 20.0, 10.0, 15.0},    // from, to
        {10.0, 4.0, {}, 10.0, 12.0},     // from, by
        {{}, 4.0, 20.0, 16.0, 18.0},     // by, to
        {10.0, 99.0, 20.0, 10.0, 15.0},  // from and to leave no say to by
        {10.0, {}, {}, 10.0, 8.5},       // from to the property's own value
        {{}, {}, 20.0, 7.0, 13.5},       // from the own value
        {{}, 4.0, {}, 7.0, 9.0},         // from the own value
        {{}, {}, {}, 7.0, 7.0},
    };
    for (const Way& way : ways) {
        const BasicAnimation animation{.fromValue = way.from, .byValue = way.by, .toValue = way.to, .duration = 2.0};
        EXPECT_DOUBLE_EQ(animation.valueAt(0.0, kOwnValue).value(), way.start);
        EXPECT_DOUBLE_EQ(animation.valueAt(1.0, kOwnValue).value(), way.middle);
    }
}

TEST(BasicAnimation, atTheEndOfItsTime_hasNoValue) {
    const BasicAnimation animation{.fromValue = 0.0, .toValue = 1.0, .duration = 2.0};
    EXPECT_TRUE(animation.valueAt(1.999, kOwnValue).has_value());
    EXPECT_FALSE(animation.valueAt(2.0, kOwnValue).has_value());
    EXPECT_FALSE(animation.valueAt(99.0, kOwnValue).has_value());
}

TEST(BasicAnimation, beforeItsStart_standsAtTheStart) {
    const BasicAnimation animation{.fromValue = 3.0, .toValue = 4.0, .duration = 2.0};
    EXPECT_EQ(animation.valueAt(-1.0, kOwnValue), 3.0);
}

TEST(BasicAnimation, repeated_beginsAnewEachTime) {
    const BasicAnimation animation{.fromValue = 0.0, .toValue = 8.0, .duration = 2.0, .repeatCount = 2.5};
    EXPECT_EQ(animation.length(), 5.0);
    EXPECT_EQ(animation.valueAt(1.0, kOwnValue), 4.0);
    EXPECT_EQ(animation.valueAt(2.0, kOwnValue), 0.0);
    EXPECT_EQ(animation.valueAt(3.0, kOwnValue), 4.0);
    EXPECT_EQ(animation.valueAt(4.5, kOwnValue), 2.0);
    EXPECT_FALSE(animation.valueAt(5.0, kOwnValue).has_value());
}

TEST(BasicAnimation, repeatedForEver_neverEnds) {
    const BasicAnimation animation{
        .fromValue = 0.0, .toValue = 8.0, .duration = 2.0, .repeatCount = std::numeric_limits<double>::infinity()};
    EXPECT_EQ(animation.valueAt(2e9 + 0.5, kOwnValue), 2.0);
}

TEST(BasicAnimation, withTimingFunction_followsItsCurve) {
    const BasicAnimation animation{
        .fromValue = 100.0, .toValue = 200.0, .duration = 4.0, .timingFunction = easeInEaseOut()};
    EXPECT_NEAR(animation.valueAt(1.0, kOwnValue).value(), 112.916, 0.01);
    EXPECT_NEAR(animation.valueAt(2.0, kOwnValue).value(), 150.0, 1e-6);
}

}  // namespace
}  // namespace kelvo
