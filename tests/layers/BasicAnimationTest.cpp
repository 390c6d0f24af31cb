#include <gtest/gtest.h>

#include <tuple>

#include "BasicAnimation.h"

namespace kelvo {
namespace {

TEST(BasicAnimation, goesFromItsStartToItsEndOrByItsDistanceAndRepeats) {
    const BasicAnimation to{.fromValue = 10.0, .byValue = 99.0, .toValue = 20.0, .duration = 2.0, .repeatCount = 2.5};
    const BasicAnimation by{.fromValue = 10.0, .byValue = 4.0, .duration = 2.0};
    EXPECT_EQ(to.length(), 5.0);
    for (const auto& [elapsed, valueOfTo, valueOfBy] : {std::tuple(-1.0, 10.0, 10.0),
                                                        {0.0, 10.0, 10.0},
                                                        {1.0, 15.0, 12.0},
                                                        {2.0, 10.0, 10.0},
                                                        {2e9 + 0.5, 12.5, 11.0}}) {
        EXPECT_EQ(to.valueAt(elapsed), valueOfTo) << elapsed;
        EXPECT_EQ(by.valueAt(elapsed), valueOfBy) << elapsed;
    }
}

TEST(BasicAnimation, followsItsTimingFunction) {
    const BasicAnimation slow{.toValue = 100.0, .duration = 4.0, .timingFunction = easeInEaseOut()};
    const BasicAnimation fast{.toValue = 100.0, .duration = 4.0, .timingFunction = defaultTiming()};
    for (const auto& [elapsed, slowValue, fastValue] :
         {std::tuple(1.0, 12.916, 40.851), {2.0, 50.0, 80.240}, {3.0, 87.084, 96.046}}) {
        EXPECT_NEAR(slow.valueAt(elapsed), slowValue, 0.01);
        EXPECT_NEAR(fast.valueAt(elapsed), fastValue, 0.01);
    }
}

}  // namespace
}  // namespace kelvo
