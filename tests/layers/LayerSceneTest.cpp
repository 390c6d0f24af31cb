#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>

#include "Layer.h"
#include "LayerScene.h"

namespace kelvo {
namespace {

class LayerSceneTest : public testing::Test {
protected:
    double seconds = 0.0;
    int changes = 0;
    LayerScene scene{[this] { return seconds; }, [this] { ++changes; }};
    Layer layer{scene};
    std::string done;

    LayerSceneTest() { scene.setRoot(&layer); }
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

TEST_F(LayerSceneTest, completionRunsOnceWhenTheLastAnimationHasEnded) {
    scene.begin();
    complete("a");
    animate("1", 1.0);
    animate("2", 2.0);
    animate("3", 2.0);
    scene.commit();
    step(1.0);
    EXPECT_EQ(done, "");
    step(1.0);
    EXPECT_EQ(done, "a");
    step(1.0);
    EXPECT_EQ(done, "a");
}

TEST_F(LayerSceneTest, completionWithoutAnimationsRunsAtTheCommit) {
    scene.begin();
    complete("a");
    animate("1");
    layer.removeAnimation("1");
    EXPECT_EQ(done, "");
    scene.commit();
    EXPECT_EQ(done, "a");
}

TEST_F(LayerSceneTest, completionRunsWhenItsAnimationIsReplacedOrRemoved) {
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

TEST_F(LayerSceneTest, completionWaitsOnlyForTheAnimationsBetweenItAndTheNext) {
    scene.begin();
    animate("endless", 1.0, std::numeric_limits<double>::infinity());
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

TEST_F(LayerSceneTest, completionIsNotRunForALayerThatIsDestroyed) {
    {
        Layer other(scene);
        scene.begin();
        complete("a");
        other.addAnimation({.keyPath = "opacity"}, "1");
        scene.commit();
    }
    step(1.0);
    EXPECT_EQ(done, "");
}

TEST_F(LayerSceneTest, changesOutsideOfATransactionAreCommittedByTheNextUpdateOrCommit) {
    complete("a");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(done, "");
    step(0.0);
    EXPECT_EQ(done, "a");
    complete("b");
    scene.commit();
    EXPECT_EQ(done, "ab");
    scene.commit();
    EXPECT_EQ(done, "ab");
}

TEST_F(LayerSceneTest, innerTransactionIsIndependentOfTheOuterOne) {
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

TEST_F(LayerSceneTest, disabledActionsAreInheritedInwardsButNotOutwards) {
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
    scene.setDisableActions(true);
    step(0.0);
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

TEST_F(LayerSceneTest, onlyAFiniteAnimationIsEnding) {
    EXPECT_FALSE(scene.isAnimating());
    animate("endless", 1.0, std::numeric_limits<double>::infinity());
    EXPECT_TRUE(scene.isAnimating());
    EXPECT_FALSE(scene.isEnding());
    Layer below(scene);
    layer.addSublayer(below);
    below.addAnimation({.keyPath = "opacity", .duration = 2.0}, "1");
    EXPECT_TRUE(scene.isEnding());
    step(2.0);
    EXPECT_FALSE(scene.isEnding());
    EXPECT_TRUE(scene.isAnimating());
}

TEST_F(LayerSceneTest, everyChangeIsReported) {
    Layer other(scene);
    const std::pair<bool, std::function<void()>> rows[] = {
        {true,
         [&] {
             layer.setFrame({0, 0, 1, 1});
         }},
        {true,
         [&] {
             layer.setAnchorPoint({0, 0});
         }},
        {true, [&] { layer.setCornerRadius(3); }},
        {true, [&] { layer.setMasksToBounds(true); }},
        {true, [&] { layer.setOpacity(0.5F); }},
        {false, [&] { layer.setOpacity(0.5F); }},
        {true, [&] { layer.setBackground(Layer::Gradient{Qt::red}); }},
        {true,
         [&] {
             layer.setContents(LayerImage({1, 1}, [](QPainter&) {}));
         }},
        {true, [&] { layer.addSublayer(other); }},
        {true, [&] { animate("1"); }},
        {false, [&] { step(0.1); }},
        {true, [&] { step(0.9); }},
        {true, [&] { animate("2"); }},
        {true, [&] { layer.removeAnimation("2"); }},
        {false, [&] { layer.removeAnimation("2"); }},
    };
    for (const auto& [isReported, change] : rows) {
        const int before = changes;
        change();
        EXPECT_EQ(changes > before, isReported);
    }
}

}  // namespace
}  // namespace kelvo
