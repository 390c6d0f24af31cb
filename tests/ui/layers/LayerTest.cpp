#include <gtest/gtest.h>

#include <limits>

#include "layers/GradientLayer.h"
#include "layers/Layer.h"

namespace kelvo {
namespace {

class LayerTest : public testing::Test {
protected:
    double seconds = 0.0;
    LayerScene scene{[this] { return seconds; }};
    Layer parent{scene};
    Layer layer{scene};

    void step(double duration) {
        seconds += duration;
        scene.update();
    }
};

TEST_F(LayerTest, newLayer_isEmptyOpaqueAndAnchoredInItsMiddle) {
    EXPECT_EQ(layer.frame(), QRectF(0, 0, 0, 0));
    EXPECT_EQ(layer.anchorPoint(), QPointF(0.5, 0.5));
    EXPECT_EQ(layer.opacity(), 1.0F);
    EXPECT_EQ(layer.cornerRadius(), 0.0);
    EXPECT_FALSE(layer.masksToBounds());
    EXPECT_TRUE(std::holds_alternative<std::monostate>(layer.background()));
    EXPECT_TRUE(layer.contents().isEmpty());
    EXPECT_EQ(layer.superlayer(), nullptr);
    EXPECT_TRUE(layer.sublayers().empty());
}

TEST_F(LayerTest, frame_placesThePositionByTheAnchorPoint) {
    layer.setFrame({10, 20, 40, 8});
    EXPECT_EQ(layer.position(), QPointF(30, 24));
    EXPECT_EQ(layer.bounds(), QRectF(0, 0, 40, 8));

    layer.setAnchorPoint({0.0, 0.5});
    EXPECT_EQ(layer.frame(), QRectF(30, 20, 40, 8));
    layer.setFrame({10, 20, 40, 8});
    EXPECT_EQ(layer.position(), QPointF(10, 24));
}

TEST_F(LayerTest, positionAndBounds_moveTheFrame) {
    layer.setBounds({5, 6, 40, 8});
    layer.setPosition({100, 50});
    EXPECT_EQ(layer.frame(), QRectF(80, 46, 40, 8));
    EXPECT_EQ(layer.bounds(), QRectF(5, 6, 40, 8));
    layer.setFrame({0, 0, 2, 2});
    EXPECT_EQ(layer.bounds(), QRectF(5, 6, 2, 2));
}

TEST_F(LayerTest, negativeSizes_countAsZero) {
    layer.setFrame({10, 20, -4, -8});
    EXPECT_EQ(layer.frame(), QRectF(10, 20, 0, 0));
    layer.setBounds({0, 0, -1, 3});
    EXPECT_EQ(layer.bounds(), QRectF(0, 0, 0, 3));
}

TEST_F(LayerTest, sublayers_standInTheOrderTheyWereAdded) {
    Layer second(scene);
    parent.addSublayer(layer);
    parent.addSublayer(second);
    EXPECT_EQ(parent.sublayers(), (std::vector<Layer*>{&layer, &second}));
    EXPECT_EQ(layer.superlayer(), &parent);

    parent.addSublayer(layer);
    EXPECT_EQ(parent.sublayers(), (std::vector<Layer*>{&second, &layer}));
    second.addSublayer(layer);
    EXPECT_EQ(parent.sublayers(), (std::vector<Layer*>{&second}));
    EXPECT_EQ(layer.superlayer(), &second);
}

TEST_F(LayerTest, destroyedLayer_leavesItsTree) {
    {
        Layer middle(scene);
        parent.addSublayer(middle);
        middle.addSublayer(layer);
        middle.addAnimation({.keyPath = "opacity", .fromValue = 0.0}, "a");
    }
    EXPECT_TRUE(parent.sublayers().empty());
    EXPECT_EQ(layer.superlayer(), nullptr);
    step(1.0);
    EXPECT_FALSE(scene.isAnimating());
}

TEST_F(LayerTest, opacityOfALayerInATree_fadesInAQuarterSecond) {
    parent.addSublayer(layer);
    layer.setOpacity(0.0F);
    EXPECT_EQ(layer.opacity(), 0.0F);
    EXPECT_EQ(layer.shownOpacity(), 1.0F);
    QEasingCurve pace(QEasingCurve::BezierSpline);
    pace.addCubicBezierSegment({0.25, 0.1}, {0.25, 1.0}, {1.0, 1.0});
    ASSERT_NE(layer.animation("opacity"), nullptr);
    EXPECT_EQ(*layer.animation("opacity"),
              (BasicAnimation{
                  .keyPath = "opacity", .fromValue = 1.0, .toValue = 0.0, .duration = 0.25, .timingFunction = pace}));
    step(0.125);
    EXPECT_NEAR(layer.shownOpacity(), 1.0F - 0.80240F, 1e-4F);
    step(0.125);
    EXPECT_EQ(layer.shownOpacity(), 0.0F);
    EXPECT_EQ(layer.animation("opacity"), nullptr);
}

TEST_F(LayerTest, opacityTurnedBackDuringItsFade_startsFromWhatIsShown) {
    parent.addSublayer(layer);
    layer.setOpacity(0.0F);
    step(0.125);
    layer.setOpacity(1.0F);
    EXPECT_NEAR(layer.shownOpacity(), 0.1976F, 1e-4F);
    step(0.25);
    EXPECT_EQ(layer.shownOpacity(), 1.0F);
}

TEST_F(LayerTest, opacityWithoutATreeOrWithoutActions_changesAtOnce) {
    layer.setOpacity(0.5F);
    EXPECT_EQ(layer.shownOpacity(), 0.5F);
    parent.addSublayer(layer);
    {
        const ActionlessTransaction transaction(scene);
        layer.setOpacity(0.25F);
    }
    EXPECT_EQ(layer.shownOpacity(), 0.25F);
    EXPECT_FALSE(scene.isAnimating());
}

TEST_F(LayerTest, opacityOfTheRoot_fadesToo) {
    layer.setOpacity(0.5F);
    scene.setRoot(&layer);
    layer.setOpacity(1.0F);
    EXPECT_EQ(layer.shownOpacity(), 0.5F);
    step(0.25);
    EXPECT_EQ(layer.shownOpacity(), 1.0F);
}

TEST_F(LayerTest, sameOpacityAgain_changesNothing) {
    parent.addSublayer(layer);
    const auto before = scene.revision();
    layer.setOpacity(1.0F);
    EXPECT_EQ(scene.revision(), before);
    EXPECT_EQ(layer.animation("opacity"), nullptr);
}

TEST_F(LayerTest, positionAnimation_movesWhatIsShownButNotTheProperty) {
    layer.setPosition({3, 4});
    layer.addAnimation({.keyPath = "position.x", .fromValue = -30.0, .byValue = 30.0, .duration = 0.5}, "x");
    step(0.25);
    EXPECT_EQ(layer.shownPosition(), QPointF(-15, 4));
    EXPECT_EQ(layer.position(), QPointF(3, 4));
    layer.removeAnimation("x");
    EXPECT_EQ(layer.shownPosition(), QPointF(3, 4));
}

TEST_F(LayerTest, animationWithoutDuration_takesAQuarterSecond) {
    for (const double duration : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        layer.addAnimation({.keyPath = "opacity", .duration = duration}, "a");
        EXPECT_EQ(layer.animation("a")->duration, 0.25);
    }
}

TEST_F(LayerTest, endedAnimation_isRemovedUnlessItIsToBeKept) {
    layer.addAnimation({.keyPath = "opacity", .fromValue = 0.0, .toValue = 0.5}, "removed");
    layer.addAnimation({.keyPath = "position.x", .fromValue = 1.0, .toValue = 2.0, .removedOnCompletion = false},
                       "kept");
    step(0.25);
    EXPECT_EQ(layer.animation("removed"), nullptr);
    EXPECT_NE(layer.animation("kept"), nullptr);
    EXPECT_EQ(layer.shownPosition(), QPointF(0, 0));
    EXPECT_FALSE(scene.isAnimating());
}

TEST_F(LayerTest, animationUnderTheSameKey_replacesTheFormer) {
    layer.addAnimation({.keyPath = "opacity", .fromValue = 0.1, .toValue = 0.1}, "a");
    layer.addAnimation({.keyPath = "opacity", .fromValue = 0.7, .toValue = 0.7}, "a");
    EXPECT_FLOAT_EQ(layer.shownOpacity(), 0.7F);
    layer.removeAnimation("a");
    EXPECT_EQ(layer.shownOpacity(), 1.0F);
    layer.removeAnimation("a");
    EXPECT_EQ(layer.animation("a"), nullptr);
}

TEST_F(LayerTest, animationOfAnyOtherName_onlyGivesItsValue) {
    layer.addAnimation({.keyPath = "progress", .fromValue = 0.0, .toValue = 10.0, .duration = 1.0}, "p");
    step(0.5);
    EXPECT_EQ(layer.animatedValue("progress"), 5.0);
    EXPECT_FALSE(layer.animatedValue("opacity").has_value());
    step(0.5);
    EXPECT_FALSE(layer.animatedValue("progress").has_value());
}

TEST_F(LayerTest, everyChange_raisesTheRevision) {
    GradientLayer gradient(scene);
    auto last = scene.revision();
    const auto raised = [&] { return std::exchange(last, scene.revision()) < scene.revision(); };
    layer.setFrame({0, 0, 1, 1});
    EXPECT_TRUE(raised());
    layer.setBounds({0, 0, 2, 2});
    EXPECT_TRUE(raised());
    layer.setAnchorPoint({0, 0});
    EXPECT_TRUE(raised());
    layer.setPosition({1, 1});
    EXPECT_TRUE(raised());
    layer.setCornerRadius(3);
    EXPECT_TRUE(raised());
    layer.setMasksToBounds(true);
    EXPECT_TRUE(raised());
    layer.setOpacity(0.5F);
    EXPECT_TRUE(raised());
    layer.setBackground(QColor(Qt::red));
    EXPECT_TRUE(raised());
    layer.setContents(LayerImage({1, 1}, [](QPainter&) {}));
    EXPECT_TRUE(raised());
    parent.addSublayer(layer);
    EXPECT_TRUE(raised());
    gradient.setColors({Qt::red});
    EXPECT_TRUE(raised());
    layer.addAnimation({}, "a");
    EXPECT_TRUE(raised());
    layer.removeAnimation("a");
    EXPECT_TRUE(raised());
}

}  // namespace
}  // namespace kelvo
