#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <vector>

#include "SBProgressBarStage.h"

namespace kelvo {
namespace {

class BarMotion : public testing::Test {
protected:
    BarStage stage{200, 20};
    SBProgressBar& bar = stage.bar;

    bool runs() { return bar.stripesLayer().animation("x") != nullptr; }
    double stripesX() { return bar.stripesLayer().shownPosition().x(); }
};

TEST_F(BarMotion, stripesAnimation_movesByOneTileForEver) {
    const BasicAnimation animation = bar.stripesAnimation();
    EXPECT_EQ(animation.keyPath, "position.x");
    EXPECT_EQ(animation.fromValue, -30.0);
    EXPECT_EQ(animation.byValue, 30.0);
    EXPECT_FALSE(animation.toValue.has_value());
    EXPECT_EQ(animation.duration, 0.3);
    EXPECT_EQ(animation.repeatCount, std::numeric_limits<double>::infinity());
    EXPECT_FALSE(animation.removedOnCompletion);
    EXPECT_EQ(animation.timingFunction, QEasingCurve(QEasingCurve::Linear));
    EXPECT_EQ(*bar.stripesLayer().animation("x"), animation);
}

TEST_F(BarMotion, stripes_goFromMinusThirtyToZeroInThreeTenths) {
    EXPECT_NEAR(stripesX(), -30.0, 1e-9);
    stage.step(0.15);
    EXPECT_NEAR(stripesX(), -15.0, 1e-9);
    stage.step(0.149);
    EXPECT_NEAR(stripesX(), -0.1, 1e-9);
    stage.step(0.001);
    EXPECT_NEAR(stripesX(), -30.0, 1e-6);
    stage.step(3000.1);
    EXPECT_NEAR(stripesX(), -20.0, 1e-6);
}

TEST_F(BarMotion, fadeAnimation_matchesTheStripesOpacity) {
    const double shown = static_cast<double>(0.04F);
    EXPECT_EQ(bar.fadeAnimationVisible(true),
              (BasicAnimation{.keyPath = "opacity", .fromValue = 0.0, .toValue = shown, .duration = 0.255}));
    EXPECT_EQ(bar.fadeAnimationVisible(false),
              (BasicAnimation{.keyPath = "opacity", .fromValue = shown, .toValue = 0.0, .duration = 0.255}));
}

/// A switch turned off and on again after times, and the bar after a last one.
struct Toggles {
    std::vector<double> times;
    bool isOn;
};

const Toggles kToggles[] = {
    {{0.24}, true},     {{0.25}, false},         {{0.1, 1.0}, true},        {{0.0, 0.5}, true},
    {{0.1, 0.0}, true}, {{0.1, 0.1, 0.2}, true}, {{0.1, 0.1, 0.25}, false},
};

class BarToggles : public BarMotion, public testing::WithParamInterface<Toggles> {
protected:
    void toggle(const std::function<void(bool isOn)>& change) {
        bool isOn = true;
        for (const double time : GetParam().times) {
            isOn = !isOn;
            change(isOn);
            stage.step(time);
        }
    }
};

TEST_P(BarToggles, ofTheAnimation_stopTheStripesAtTheEndOfTheirFade) {
    toggle([this](bool isOn) { bar.setAnimates(isOn); });
    EXPECT_EQ(runs(), GetParam().isOn);
    EXPECT_EQ(bar.stripesLayer().shownOpacity() > 0.0F, GetParam().isOn);
    EXPECT_EQ(bar.scene().isAnimating(), GetParam().isOn);
    EXPECT_EQ(bar.animates(), GetParam().times.size() % 2 == 0);
    EXPECT_EQ(bar.stripesLayer().opacity(), bar.animates() ? 0.04F : 0.0F);
}

TEST_P(BarToggles, ofTheBar_hideItAtTheEndOfItsFade) {
    toggle([this](bool isOn) { bar.setHidden(!isOn); });
    EXPECT_EQ(!bar.isHidden(), GetParam().isOn);
    EXPECT_EQ(runs(), GetParam().isOn);
    EXPECT_EQ(bar.rootLayer().shownOpacity() > 0.0F, GetParam().isOn);
    EXPECT_EQ(bar.scene().isAnimating(), GetParam().isOn);
    EXPECT_EQ(bar.alphaValue(), bar.sb_isHidden() ? 0.0 : 1.0);
    EXPECT_TRUE(bar.animates());
}

INSTANTIATE_TEST_SUITE_P(At, BarToggles, testing::ValuesIn(kToggles));

TEST_F(BarMotion, animatesOffAndOnBeforeTheFadeEnds_keepsTheRunningAnimation) {
    stage.step(0.1);
    bar.setAnimates(false);
    stage.step(0.1);
    const BasicAnimation* const running = bar.stripesLayer().animation("x");
    bar.setAnimates(true);
    stage.step(1.0);
    EXPECT_EQ(bar.stripesLayer().animation("x"), running);
    EXPECT_EQ(bar.stripesLayer().opacity(), 0.04F);
    EXPECT_EQ(bar.stripesLayer().shownOpacity(), 0.04F);
    EXPECT_NEAR(stripesX(), -30.0, 1e-6);  // 1.2 s from the very start: four whole periods
}

TEST_F(BarMotion, animatesOnAfterTheFade_startsAnew) {
    bar.setAnimates(false);
    stage.step(0.25);
    bar.setAnimates(true);
    EXPECT_TRUE(runs());
    EXPECT_NEAR(stripesX(), -30.0, 1e-9);
    EXPECT_EQ(bar.stripesLayer().opacity(), 0.04F);
    stage.step(0.25);
    EXPECT_EQ(bar.stripesLayer().shownOpacity(), 0.04F);
}

TEST_F(BarMotion, animatesSetToWhatItIs_doesNothing) {
    stage.step(0.125);
    bar.setAnimates(true);
    EXPECT_NEAR(stripesX(), -17.5, 1e-9);
    EXPECT_FALSE(bar.scene().isEnding());
    bar.setAnimates(false);
    stage.step(0.25);
    bar.setAnimates(false);
    EXPECT_FALSE(bar.scene().isAnimating());
}

TEST_F(BarMotion, animationWhileHidden_waitsForTheShow) {
    bar.setAnimates(false);
    stage.step(0.25);
    bar.setHidden(true);
    stage.step(0.25);
    bar.setAnimates(true);
    EXPECT_FALSE(runs());
    EXPECT_EQ(bar.stripesLayer().opacity(), 0.04F);
    bar.setHidden(false);
    EXPECT_TRUE(runs());
}

TEST_F(BarMotion, newDuration_appliesAtOnce) {
    stage.step(0.1);
    bar.setAnimationDuration(0.6);
    EXPECT_EQ(bar.animationDuration(), 0.6);
    EXPECT_TRUE(bar.animates());
    ASSERT_TRUE(runs());
    EXPECT_EQ(bar.stripesLayer().animation("x")->duration, 0.6);
    EXPECT_NEAR(stripesX(), -30.0, 1e-9);
    stage.step(0.3);
    EXPECT_NEAR(stripesX(), -15.0, 1e-9);
    EXPECT_TRUE(runs());
    EXPECT_EQ(bar.stripesLayer().shownOpacity(), 0.04F);
}

TEST_F(BarMotion, durationOfZeroOrLess_scrollsInTheLayersDefaultTime) {
    for (const double duration : {0.0, -1.0}) {
        bar.setAnimationDuration(duration);
        EXPECT_EQ(bar.animationDuration(), duration);
        EXPECT_EQ(bar.stripesLayer().animation("x")->duration, 0.25);
    }
}

TEST_F(BarMotion, newDurationOfAStillBar_isOnlyStored) {
    bar.setAnimates(false);
    stage.step(0.25);
    bar.setAnimationDuration(2.0);
    EXPECT_FALSE(runs());
    bar.setAnimates(true);
    EXPECT_EQ(bar.stripesLayer().animation("x")->duration, 2.0);
}

TEST_F(BarMotion, hideTwice_fadesOnceFromWhatIsShown) {
    bar.setHidden(true);
    EXPECT_TRUE(bar.sb_isHidden());
    EXPECT_EQ(bar.rootLayer().shownOpacity(), 1.0F);
    stage.step(0.2);
    bar.setHidden(true);
    EXPECT_FALSE(bar.isHidden());
    stage.step(0.05);
    EXPECT_TRUE(bar.isHidden());
    bar.setHidden(true);
    EXPECT_FALSE(bar.scene().isAnimating());
}

TEST_F(BarMotion, hide_isATransactionOfItsOwn) {
    bool ended = false;
    bar.scene().setCompletionBlock([&ended] { ended = true; });
    bar.setHidden(true);
    EXPECT_FALSE(ended);
    stage.step(0.0);
    EXPECT_TRUE(ended);
}

TEST_F(BarMotion, show_showsAtOnceFadesInAndStarts) {
    bar.setHidden(true);
    stage.step(0.25);
    bar.setHidden(false);
    EXPECT_FALSE(bar.sb_isHidden());
    EXPECT_FALSE(bar.isHidden());
    EXPECT_TRUE(runs());
    EXPECT_EQ(bar.rootLayer().shownOpacity(), 0.0F);
    stage.step(0.25);
    EXPECT_EQ(bar.rootLayer().shownOpacity(), 1.0F);
    EXPECT_EQ(bar.alphaValue(), 1.0);
}

TEST_F(BarMotion, showOfAShownBar_onlyStoresTheRequest) {
    stage.step(0.1);
    bar.setSb_isHidden(true);
    bar.setHidden(false);
    EXPECT_FALSE(bar.sb_isHidden());
    EXPECT_NEAR(stripesX(), -20.0, 1e-9);
    EXPECT_FALSE(bar.scene().isEnding());
}

TEST_F(BarMotion, requestWithdrawnDuringTheFade_doesNotHideButStops) {
    bar.setHidden(true);
    bar.setSb_isHidden(false);
    stage.step(0.25);
    EXPECT_FALSE(bar.isHidden());
    EXPECT_FALSE(runs());
}

TEST_F(BarMotion, showWithoutAnimates_doesNotStartTheStripes) {
    bar.setAnimates(false);
    bar.setHidden(true);
    stage.step(0.25);
    bar.setHidden(false);
    stage.step(0.25);
    EXPECT_FALSE(runs());
    EXPECT_EQ(bar.rootLayer().shownOpacity(), 1.0F);
}

TEST_F(BarMotion, valueThroughTheAnimator_easesInAndOut) {
    bar.animator().setFloatValue(1.0);
    EXPECT_EQ(bar.floatValue(), 0.0);
    stage.step(0.05);
    EXPECT_NEAR(bar.floatValue(), 0.08166, 1e-4);
    EXPECT_NEAR(bar.innerClipLayer().frame().width(), 198 * 0.08166, 0.02);
    stage.step(0.075);
    EXPECT_NEAR(bar.floatValue(), 0.5, 1e-6);
    stage.step(0.125);
    EXPECT_EQ(bar.floatValue(), 1.0);
    EXPECT_EQ(bar.innerClipLayer().frame().width(), 198.0);
}

TEST_F(BarMotion, animatorTurnedElsewhere_continuesFromWhereItIs) {
    bar.animator().setFloatValue(1.0);
    stage.step(0.125);
    bar.animator().setFloatValue(0.0);
    EXPECT_NEAR(bar.floatValue(), 0.5, 1e-6);
    stage.step(0.125);
    EXPECT_NEAR(bar.floatValue(), 0.25, 1e-6);
    stage.step(0.125);
    EXPECT_EQ(bar.floatValue(), 0.0);
}

TEST_F(BarMotion, directValueDuringAnAnimatedOne_stays) {
    bar.animator().setFloatValue(1.0);
    stage.step(0.1);
    bar.setFloatValue(0.75);
    stage.step(0.1);
    EXPECT_EQ(bar.floatValue(), 0.75);
    stage.step(0.1);
    EXPECT_EQ(bar.floatValue(), 0.75);
    EXPECT_EQ(bar.innerClipLayer().frame().width(), 148.5);
}

TEST_F(BarMotion, directValueThatTheAnimationHasJustStored_staysToo) {
    bar.animator().setFloatValue(1.0);
    bar.setFloatValue(0.0);
    stage.step(0.1);
    EXPECT_EQ(bar.floatValue(), 0.0);
    bar.animator().setFloatValue(1.0);
    stage.step(0.125);
    const double half = bar.floatValue();
    EXPECT_NEAR(half, 0.5, 1e-6);
    bar.setFloatValue(half);
    stage.step(0.1);
    EXPECT_EQ(bar.floatValue(), half);
}

TEST_F(BarMotion, showOfABarWhoseStripesRun_startsThemAnew) {
    bar.hide();
    stage.step(0.1);
    EXPECT_NEAR(stripesX(), -20.0, 1e-6);
    bar.setHidden(false);
    EXPECT_NEAR(stripesX(), -30.0, 1e-6);
}

TEST_F(BarMotion, animator_refusesWhatTheBarRefuses) {
    EXPECT_THROW(bar.animator().setFloatValue(1.01), InvalidValue);
    EXPECT_THROW(bar.animator().setFloatValue(-0.01), InvalidValue);
    stage.step(0.5);
    EXPECT_EQ(bar.floatValue(), 0.0);
}

TEST_F(BarMotion, barDestroyedDuringItsFades_leavesNoWork) {
    auto* const other = new SBProgressBar([this] { return stage.seconds; });
    other->setAnimates(false);
    other->setHidden(true);
    other->animator().setFloatValue(1.0);
    delete other;
    stage.step(1.0);
    EXPECT_TRUE(runs());
}

}  // namespace
}  // namespace kelvo
