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

TEST_F(LayerSceneTest, completionRunsOnceAfterTheLastAnimationBetweenItAndTheNext) {
    scene.begin();
    animate("endless", 1.0, std::numeric_limits<double>::infinity());
    complete("a");
    animate("1", 1.0);
    animate("2", 2.0);
    animate("3", 2.0);
    complete("b");
    animate("4", 1.0);
    scene.commit();
    EXPECT_EQ(done, "");
    step(1.0);
    EXPECT_EQ(done, "b");
    step(1.0);
    EXPECT_EQ(done, "ba");
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
    const auto isReported = [this](const std::function<void()>& change) {
        const int before = changes;
        change();
        return changes > before;
    };
    Layer other(scene);
    const LayerImage image({1, 1}, [](QPainter&) {});
    const QRectF frame(0, 0, 1, 1);
    EXPECT_TRUE(isReported([&] { layer.setFrame(frame); }));
    EXPECT_TRUE(isReported([&] { layer.setAnchorPoint(QPointF()); }));
    EXPECT_TRUE(isReported([&] { layer.setCornerRadius(3); }));
    EXPECT_TRUE(isReported([&] { layer.setMasksToBounds(true); }));
    EXPECT_TRUE(isReported([&] { layer.setBackground(Layer::Gradient{Qt::red}); }));
    EXPECT_TRUE(isReported([&] { layer.setContents(image); }));
    EXPECT_TRUE(isReported([&] { layer.addSublayer(other); }));
    EXPECT_TRUE(isReported([&] { other.setOpacity(0.5F); }));
    EXPECT_FALSE(isReported([&] { other.setOpacity(0.5F); }));
    EXPECT_TRUE(isReported([&] { animate("1"); }));
    EXPECT_FALSE(isReported([&] { step(0.1); }));
    EXPECT_TRUE(isReported([&] { step(0.9); }));
    EXPECT_TRUE(isReported([&] { animate("2"); }));
    EXPECT_TRUE(isReported([&] { layer.removeAnimation("2"); }));
    EXPECT_FALSE(isReported([&] { layer.removeAnimation("2"); }));
}

}  // namespace
}  // namespace kelvo
