#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "layers/Layer.h"
#include "layers/LayerScene.h"

namespace kelvo {
namespace {

class LayerSceneTest : public testing::Test {
protected:
    double seconds = 0.0;
    LayerScene scene{[this] { return seconds; }};
    Layer layer{scene};
    std::string done;

    void step(double duration) {
        seconds += duration;
        scene.update();
    }
    void complete(const std::string& name) {
        scene.setCompletionBlock([this, name] { done += name; });
    }
    void animate(const std::string& key, double duration = 1.0, double repeatCount = 1.0) {
        layer.addAnimation({.keyPath = "opacity", .duration = duration, .repeatCount = repeatCount}, key);
    }
};

TEST_F(LayerSceneTest, completion_comesWhenTheLastAnimationHasEnded) {
    scene.begin();
    complete("a");
    animate("1", 1.0);
    animate("2", 2.0);
    scene.commit();
    step(1.0);
    EXPECT_EQ(done, "");
    step(1.0);
    EXPECT_EQ(done, "a");
    step(1.0);
    EXPECT_EQ(done, "a");
}

TEST_F(LayerSceneTest, completionWithoutAnimations_comesAtTheCommit) {
    scene.begin();
    complete("a");
    EXPECT_EQ(done, "");
    scene.commit();
    EXPECT_EQ(done, "a");
}

TEST_F(LayerSceneTest, completion_comesWhenTheAnimationIsReplacedOrRemoved) {
    scene.begin();
    complete("a");
    animate("1");
    scene.commit();
    animate("1");
    EXPECT_EQ(done, "a");

    scene.begin();
    complete("b");
    animate("2");
    scene.commit();
    layer.removeAnimation("2");
    EXPECT_EQ(done, "ab");
}

TEST_F(LayerSceneTest, animationRemovedWithinItsTransaction_completesAtTheCommit) {
    scene.begin();
    complete("a");
    animate("1");
    layer.removeAnimation("1");
    EXPECT_EQ(done, "");
    scene.commit();
    EXPECT_EQ(done, "a");
}

TEST_F(LayerSceneTest, completion_ignoresAnimationsAddedBeforeIt) {
    scene.begin();
    animate("endless", 1.0, std::numeric_limits<double>::infinity());
    complete("a");
    animate("1");
    scene.commit();
    step(1.0);
    EXPECT_EQ(done, "a");
}

TEST_F(LayerSceneTest, secondCompletion_waitsForItsOwnAnimationsOnly) {
    scene.begin();
    complete("a");
    animate("1", 2.0);
    complete("b");
    animate("2", 1.0);
    scene.commit();
    step(1.0);
    EXPECT_EQ(done, "b");
    step(1.0);
    EXPECT_EQ(done, "ba");
}

TEST_F(LayerSceneTest, changesOutsideOfATransaction_areCommittedByTheNextUpdate) {
    complete("a");
    EXPECT_EQ(scene.nextEnd(), 0.0);
    EXPECT_EQ(done, "");
    step(0.0);
    EXPECT_EQ(done, "a");
    EXPECT_FALSE(scene.nextEnd().has_value());
}

TEST_F(LayerSceneTest, commitWithoutBegin_endsTheImplicitTransaction) {
    complete("a");
    scene.commit();
    EXPECT_EQ(done, "a");
    scene.commit();
    EXPECT_EQ(done, "a");
}

TEST_F(LayerSceneTest, innerTransaction_isIndependentOfTheOuterOne) {
    scene.begin();
    complete("outer");
    scene.begin();
    complete("inner");
    animate("1");
    scene.commit();
    scene.commit();
    EXPECT_EQ(done, "outer");
    step(1.0);
    EXPECT_EQ(done, "outerinner");
}

TEST_F(LayerSceneTest, disabledActions_areTakenOverInwardsButNotOutwards) {
    EXPECT_FALSE(scene.disableActions());
    {
        const ActionlessTransaction outer(scene);
        EXPECT_TRUE(scene.disableActions());
        scene.begin();
        EXPECT_TRUE(scene.disableActions());
        scene.setDisableActions(false);
        EXPECT_FALSE(scene.disableActions());
        scene.commit();
        EXPECT_TRUE(scene.disableActions());
    }
    EXPECT_FALSE(scene.disableActions());
}

TEST_F(LayerSceneTest, completionMayAddAnimationsAndTransactions) {
    scene.begin();
    scene.setCompletionBlock([this] {
        done += "a";
        scene.begin();
        complete("b");
        animate("1", 1.0);
        scene.commit();
    });
    animate("1", 1.0);
    scene.commit();
    step(1.0);
    EXPECT_EQ(done, "a");
    EXPECT_TRUE(scene.isAnimating());
    step(1.0);
    EXPECT_EQ(done, "ab");
    EXPECT_FALSE(scene.isAnimating());
}

TEST_F(LayerSceneTest, nextEnd_isThatOfTheFirstFiniteAnimationToEnd) {
    EXPECT_FALSE(scene.nextEnd().has_value());
    animate("endless", 1.0, std::numeric_limits<double>::infinity());
    scene.update();
    EXPECT_TRUE(scene.isAnimating());
    EXPECT_FALSE(scene.nextEnd().has_value());
    step(5.0);
    animate("long", 3.0);
    animate("short", 2.0);
    scene.update();
    EXPECT_EQ(scene.nextEnd(), 7.0);
    step(2.0);
    EXPECT_EQ(scene.nextEnd(), 8.0);
}

TEST_F(LayerSceneTest, nextEnd_isThatOfWhicheverLayerEndsFirst) {
    Layer first(scene);
    Layer last(scene);
    animate("middle", 2.0);
    first.addAnimation({.keyPath = "opacity", .duration = 1.0}, "first");
    last.addAnimation({.keyPath = "opacity", .duration = 3.0}, "last");
    scene.update();
    EXPECT_EQ(scene.nextEnd(), 1.0);
}

TEST_F(LayerSceneTest, listener_hearsOncePerOutermostTransaction) {
    int heard = 0;
    scene.setListener([&heard] { ++heard; });
    layer.setPosition({1, 1});
    EXPECT_EQ(heard, 1);
    scene.begin();
    scene.begin();
    layer.setPosition({2, 2});
    layer.setPosition({3, 3});
    scene.commit();
    EXPECT_EQ(heard, 1);
    scene.commit();
    EXPECT_EQ(heard, 2);
    scene.begin();
    scene.commit();
    EXPECT_EQ(heard, 2);
}

TEST_F(LayerSceneTest, listener_hearsOfAnAnimationsEnd) {
    animate("1");
    scene.update();
    int heard = 0;
    scene.setListener([&heard] { ++heard; });
    step(0.5);
    EXPECT_EQ(heard, 0);
    step(0.5);
    EXPECT_EQ(heard, 1);
}

}  // namespace
}  // namespace kelvo
