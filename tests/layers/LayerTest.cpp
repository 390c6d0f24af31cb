#include <gtest/gtest.h>

#include <limits>

#include "Layer.h"

namespace kelvo {
namespace {

class LayerTest : public testing::Test {
protected:
    double seconds = 0.0;
    LayerScene scene{[this] { return seconds; }};
    Layer root{scene};
    Layer layer{scene};

    LayerTest() {
        scene.setRoot(&root);
        root.addSublayer(layer);
    }
    void step(double duration) {
        seconds += duration;
        scene.update();
    }
};

TEST_F(LayerTest, frame_placesThePositionByTheAnchorPoint) {
    layer.setFrame({10, 20, 40, 8});
    EXPECT_EQ(layer.position(), QPointF(30, 24));
    EXPECT_EQ(layer.bounds(), QRectF(0, 0, 40, 8));

    layer.setAnchorPoint({0.0, 0.5});
    EXPECT_EQ(layer.frame(), QRectF(30, 20, 40, 8));
    layer.setFrame({10, 20, 40, 8});
    EXPECT_EQ(layer.position(), QPointF(10, 24));
    layer.setFrame({10, 20, -4, -8});
    EXPECT_EQ(layer.frame(), QRectF(10, 20, 0, 0));
}

TEST_F(LayerTest, sublayers_areInTheOrderTheyWereAdded) {
    Layer second(scene);
    root.addSublayer(second);
    EXPECT_EQ(root.sublayers(), (std::vector<Layer*>{&layer, &second}));
    EXPECT_EQ(layer.superlayer(), &root);

    root.addSublayer(layer);
    EXPECT_EQ(root.sublayers(), (std::vector<Layer*>{&second, &layer}));
    second.addSublayer(layer);
    EXPECT_EQ(root.sublayers(), (std::vector<Layer*>{&second}));
    EXPECT_EQ(layer.superlayer(), &second);
}

TEST_F(LayerTest, destroyedLayer_leavesItsTree) {
    {
        Layer middle(scene);
        root.addSublayer(middle);
        middle.addSublayer(layer);
        middle.addAnimation({.keyPath = "opacity"}, "a");
    }
    EXPECT_TRUE(root.sublayers().empty());
    EXPECT_EQ(layer.superlayer(), nullptr);
    EXPECT_FALSE(scene.isAnimating());
    step(1.0);
}

TEST_F(LayerTest, opacityInATree_fadesInAQuarterSecondFromWhatIsShown) {
    layer.setOpacity(0.0F);
    EXPECT_EQ(layer.opacity(), 0.0F);
    EXPECT_EQ(layer.shownOpacity(), 1.0F);
    step(0.125);
    EXPECT_NEAR(layer.shownOpacity(), 0.1976F, 1e-4F);
    layer.setOpacity(1.0F);
    EXPECT_NEAR(layer.shownOpacity(), 0.1976F, 1e-4F);
    step(0.24);
    EXPECT_LT(layer.shownOpacity(), 1.0F);
    step(0.01);
    EXPECT_EQ(layer.shownOpacity(), 1.0F);
    EXPECT_EQ(layer.animation("opacity"), nullptr);
    root.setOpacity(0.0F);
    EXPECT_EQ(root.shownOpacity(), 1.0F);
}

TEST_F(LayerTest, opacity_changesAtOnceWithoutATreeWithoutActionsOrWithoutAChange) {
    Layer alone(scene);
    alone.setOpacity(0.5F);
    EXPECT_EQ(alone.shownOpacity(), 0.5F);
    layer.setOpacity(1.0F);
    EXPECT_EQ(layer.animation("opacity"), nullptr);
    const ActionlessTransaction transaction(scene);
    layer.setOpacity(0.25F);
    EXPECT_EQ(layer.shownOpacity(), 0.25F);
}

TEST_F(LayerTest, positionAnimation_movesWhatIsShownButNotTheProperty) {
    layer.setFrame({2, 3, 2, 2});
    layer.addAnimation({.keyPath = "position.x", .fromValue = -30.0, .byValue = 30.0, .duration = 0.5}, "x");
    step(0.25);
    EXPECT_EQ(layer.shownPosition(), QPointF(-15, 4));
    EXPECT_EQ(layer.shownFrame(), QRectF(-16, 3, 2, 2));
    EXPECT_EQ(layer.position(), QPointF(3, 4));
    layer.removeAnimation("x");
    EXPECT_EQ(layer.shownPosition(), QPointF(3, 4));
}

TEST_F(LayerTest, animationWithoutDuration_lastsAQuarterSecond) {
    for (const double duration : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        layer.addAnimation({.keyPath = "opacity", .duration = duration}, "a");
        EXPECT_EQ(layer.animation("a")->duration, 0.25);
    }
}

TEST_F(LayerTest, endedAnimation_isRemovedUnlessItIsToBeKept) {
    layer.addAnimation({.keyPath = "opacity", .fromValue = 0.0, .toValue = 0.5}, "removed");
    layer.addAnimation({.keyPath = "position.x", .fromValue = 1.0, .toValue = 2.0, .removedOnCompletion = false},
                       "kept");
    seconds = 0.25;
    EXPECT_EQ(layer.shownOpacity(), 1.0F);
    scene.update();
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

}  // namespace
}  // namespace kelvo
