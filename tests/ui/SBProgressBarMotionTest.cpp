#include <gtest/gtest.h>

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

TEST_F(BarMotion, stripes_moveByOneTileForEver) {
    const BasicAnimation expected{.keyPath = "position.x",
                                  .fromValue = -30.0,
                                  .byValue = 30.0,
                                  .duration = 0.3,
                                  .repeatCount = std::numeric_limits<double>::infinity(),
                                  .removedOnCompletion = false};
    EXPECT_EQ(bar.stripesAnimation(), expected);
    EXPECT_EQ(*bar.stripesLayer().animation("x"), expected);
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

/// A switch turned off and on again, each state for a time, and the bar after the last one.
struct Toggles {
    std::vector<double> times;
    bool isOn;
    double stripesXOfAnimates, stripesXOfHidden;
};

class BarToggles : public BarMotion, public testing::WithParamInterface<Toggles> {};

// A fade that is turned back leaves the stripes as they move; after the end of a fade they begin again.
TEST_P(BarToggles, ofTheAnimation_stopTheStripesAtTheEndOfTheirFade) {
    for (const double time : GetParam().times) {
        bar.setAnimates(!bar.animates());
        stage.step(time);
    }
    EXPECT_EQ(runs(), GetParam().isOn);
    EXPECT_NEAR(stripesX(), GetParam().stripesXOfAnimates, 1e-6);
    EXPECT_EQ(bar.stripesLayer().shownOpacity() > 0.0F, GetParam().isOn);
    EXPECT_EQ(bar.scene().isAnimating(), GetParam().isOn);
    EXPECT_EQ(bar.stripesLayer().opacity(), bar.animates() ? 0.04F : 0.0F);
}

// Every show begins the stripes again.
TEST_P(BarToggles, ofTheBar_hideItAtTheEndOfItsFade) {
    for (const double time : GetParam().times) {
        bar.setHidden(!bar.sb_isHidden());
        stage.step(time);
    }
    EXPECT_EQ(!bar.isHidden(), GetParam().isOn);
    EXPECT_EQ(runs(), GetParam().isOn);
    EXPECT_NEAR(stripesX(), GetParam().stripesXOfHidden, 1e-6);
    EXPECT_EQ(bar.rootLayer().shownOpacity() > 0.0F, GetParam().isOn && GetParam().times.back() > 0.0);
    EXPECT_EQ(bar.scene().isAnimating(), GetParam().isOn);
    EXPECT_EQ(bar.alphaValue(), bar.sb_isHidden() ? 0.0 : 1.0);
    EXPECT_TRUE(bar.animates());
}

INSTANTIATE_TEST_SUITE_P(At, BarToggles,
                         testing::Values(Toggles{{0.24}, true, -6.0, -6.0}, Toggles{{0.25}, false, -30.0, -30.0},
                                         Toggles{{0.1, 1.0}, true, -10.0, -20.0},
                                         Toggles{{0.25, 0.1}, true, -20.0, -20.0},
                                         Toggles{{0.1, 0.1, 0.15}, true, -25.0, -5.0},
                                         Toggles{{0.1, 0.1, 0.25}, false, -30.0, -30.0}));

TEST_F(BarMotion, animationWhileHidden_waitsForTheShow) {
    bar.setAnimates(false);
    bar.setHidden(true);
    stage.step(0.25);
    bar.setHidden(false);
    EXPECT_FALSE(runs());
    bar.setHidden(true);
    stage.step(0.25);
    bar.setAnimates(true);
    EXPECT_FALSE(runs());
    bar.setHidden(false);
    EXPECT_TRUE(runs());
}

TEST_F(BarMotion, newDuration_appliesAtOnceUnlessTheBarIsStill) {
    stage.step(0.1);
    bar.setAnimationDuration(0.6);
    EXPECT_EQ(bar.animationDuration(), 0.6);
    EXPECT_TRUE(bar.animates());
    stage.step(0.3);
    EXPECT_NEAR(stripesX(), -15.0, 1e-9);
    EXPECT_EQ(bar.stripesLayer().shownOpacity(), 0.04F);
    bar.setAnimates(false);
    stage.step(0.25);
    bar.setAnimationDuration(2.0);
    EXPECT_FALSE(runs());
    for (const double bad : {std::numeric_limits<double>::quiet_NaN(), -std::numeric_limits<double>::infinity()}) {
        bar.setAnimationDuration(bad);
    }
    bar.setAnimates(true);
    EXPECT_EQ(bar.stripesLayer().animation("x")->duration, 2.0);
}

TEST_F(BarMotion, hideTwice_fadesOnce_andAShowIsVisibleAtOnce) {
    bool ended = false;
    bar.scene().setCompletionBlock([&ended] { ended = true; });
    bar.setHidden(true);
    EXPECT_FALSE(ended);  // the hide is a separate transaction
    EXPECT_EQ(bar.rootLayer().shownOpacity(), 1.0F);
    stage.step(0.2);
    bar.setHidden(true);
    EXPECT_FALSE(bar.isHidden());
    stage.step(0.05);
    EXPECT_TRUE(bar.isHidden());
    bar.setHidden(true);
    EXPECT_FALSE(bar.scene().isAnimating());
    bar.setHidden(false);
    EXPECT_FALSE(bar.isHidden());
    EXPECT_EQ(bar.rootLayer().shownOpacity(), 0.0F);
    stage.step(0.25);
    EXPECT_EQ(bar.rootLayer().shownOpacity(), 1.0F);
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

TEST_F(BarMotion, valueThroughTheAnimator_easesInAndOutFromWhereItIs) {
    bar.animator().setFloatValue(1.0);
    EXPECT_EQ(bar.floatValue(), 0.0);
    stage.step(0.05);
    EXPECT_NEAR(bar.floatValue(), 0.08166, 1e-4);
    EXPECT_NEAR(bar.innerClipLayer().frame().width(), 198 * 0.08166, 0.02);
    stage.step(0.2);
    EXPECT_EQ(bar.floatValue(), 1.0);
    bar.animator().setFloatValue(0.0);
    stage.step(0.125);
    EXPECT_NEAR(bar.floatValue(), 0.5, 1e-6);
    bar.animator().setFloatValue(1.0);
    EXPECT_NEAR(bar.floatValue(), 0.5, 1e-6);
    stage.step(0.125);
    EXPECT_NEAR(bar.floatValue(), 0.75, 1e-6);
}

TEST_F(BarMotion, directValueDuringAnAnimatedOne_stays) {
    bar.animator().setFloatValue(1.0);
    stage.step(0.1);
    bar.setFloatValue(0.75);
    stage.step(0.1);
    stage.step(0.1);
    EXPECT_EQ(bar.floatValue(), 0.75);
    EXPECT_EQ(bar.innerClipLayer().frame().width(), 148.5);
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
