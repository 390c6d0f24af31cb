#include <gtest/gtest.h>

#include <QAccessible>
#include <vector>

#include "SBProgressBarAccessible.h"
#include "SBProgressBarStage.h"

namespace kelvo {
namespace {

class RecordingBar : public SBProgressBar {
public:
    std::vector<int> announced;

protected:
    void announce(int percent) override {
        announced.push_back(percent);
        SBProgressBar::announce(percent);
    }
};

class BarAccessibility : public testing::Test {
protected:
    BarStage stage{200, 20};
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&stage.bar);
};

TEST_F(BarAccessibility, bar_isAProgressBarWithItsName) {
    ASSERT_NE(interface, nullptr);
    stage.bar.setAccessibleName("Loading progress");
    EXPECT_EQ(interface->role(), QAccessible::ProgressBar);
    EXPECT_EQ(interface->text(QAccessible::Name), "Loading progress");
    EXPECT_TRUE(interface->state().readOnly);
    EXPECT_FALSE(interface->state().focusable);
}

TEST_F(BarAccessibility, value_isInWholePercent) {
    QAccessibleValueInterface* const value = interface->valueInterface();
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->minimumValue().toInt(), 0);
    EXPECT_EQ(value->maximumValue().toInt(), 100);
    EXPECT_EQ(value->minimumStepSize().toInt(), 1);
    EXPECT_EQ(value->currentValue().toInt(), 0);
    stage.bar.setFloatValue(0.376);
    EXPECT_EQ(value->currentValue().toInt(), 38);
    EXPECT_EQ(interface->text(QAccessible::Value), "38%");
    value->setCurrentValue(70);  // only the program sets it
    EXPECT_EQ(stage.bar.floatValue(), 0.376);
}

TEST_F(BarAccessibility, otherWidgets_areLeftAsTheyAre) {
    QWidget widget;
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&widget)->role(), QAccessible::Client);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&widget)->valueInterface(), nullptr);
}

TEST(BarAnnouncements, everyNewPercent_isAnnouncedOnce) {
    RecordingBar bar;
    for (const double value : {0.0, 0.004, 0.01, 0.0101, 0.5, 0.5, 1.0}) {
        bar.setFloatValue(value);
    }
    EXPECT_EQ(bar.announced, (std::vector<int>{1, 50, 100}));
}

TEST(BarAnnouncements, newMovement_isAnnouncedFromItsFirstStepOn) {
    RecordingBar bar;
    bar.animator().setFloatValue(1.0);
    bar.findChild<QVariantAnimation*>()->setCurrentTime(250);
    bar.animator().setFloatValue(0.5);
    EXPECT_EQ(bar.announced, std::vector<int>{100});
    bar.findChild<QVariantAnimation*>()->setCurrentTime(250);
    EXPECT_EQ(bar.announced, (std::vector<int>{100, 50}));
}

TEST(BarAnnouncements, refusedValue_isNotAnnounced) {
    RecordingBar bar;
    EXPECT_THROW(bar.setFloatValue(1.5), InvalidValue);
    EXPECT_TRUE(bar.announced.empty());
}

TEST(ProgressPercent, isRoundedAsThePercentageOfTheLabel) {
    for (const auto& [value, percent] :
         {std::pair(0.0, 0), {0.004, 0}, {0.006, 1}, {0.125, 12}, {198 / 199.0, 99}, {1.0, 100}}) {
        EXPECT_EQ(progressPercent(value), percent) << value;
    }
}

}  // namespace
}  // namespace kelvo
