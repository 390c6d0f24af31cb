#include <gtest/gtest.h>

#include <QPainter>

#include "Layer.h"
#include "LayerPainter.h"

namespace kelvo {
namespace {

class LayerPainterTest : public testing::Test {
protected:
    double seconds = 0.0;
    LayerScene scene{[this] { return seconds; }};
    Layer root{scene};
    Layer sublayer{scene};

    LayerPainterTest() { scene.setRoot(&root); }
    QImage compose(QSize size, double ratio = 1.0) { return composeLayers(root, size, ratio); }
    void addSublayer(const QRectF& frame, const QColor& color) {
        root.addSublayer(sublayer);
        sublayer.setFrame(frame);
        sublayer.setBackground(Layer::Gradient{color});
    }
    static LayerImage redLeftHalf(QSizeF size) {
        return {size, [size](QPainter& painter) {
                    painter.fillRect(QRectF(0, 0, size.width() / 2, size.height()), Qt::red);
                }};
    }
};

TEST_F(LayerPainterTest, background_fillsTheFrameAndNothingElse) {
    root.setFrame({1, 1, 2, 2});
    root.setBackground(Layer::Gradient{QColor(10, 20, 30)});
    const QImage image = compose({4, 4});
    EXPECT_EQ(image.pixel(0, 0), 0x00000000U);
    EXPECT_EQ(image.pixel(1, 1), 0xff0a141eU);
    EXPECT_EQ(image.pixel(2, 2), 0xff0a141eU);
    EXPECT_EQ(image.pixel(3, 2), 0x00000000U);
}

TEST_F(LayerPainterTest, sublayers_lieInTheSuperlayersCoordinatesOverItsBackground) {
    root.setFrame({10, 0, 4, 1});
    root.setBackground(Layer::Gradient{Qt::blue});
    addSublayer({2, 0, 1, 1}, Qt::green);
    const QImage image = compose({20, 1});
    EXPECT_EQ(image.pixel(11, 0), 0xff0000ffU);
    EXPECT_EQ(image.pixel(12, 0), 0xff00ff00U);
    EXPECT_EQ(image.pixel(13, 0), 0xff0000ffU);
}

TEST_F(LayerPainterTest, mask_cutsOffAtTheBounds) {
    addSublayer({-5, -5, 20, 20}, Qt::red);
    root.setFrame({1, 1, 2, 2});
    EXPECT_EQ(compose({4, 4}).pixel(3, 2), 0xffff0000U);
    root.setMasksToBounds(true);
    const QImage image = compose({4, 4});
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 4; ++x) {
            const bool isInside = x >= 1 && x <= 2 && y >= 1 && y <= 2;
            EXPECT_EQ(image.pixel(x, y), isInside ? 0xffff0000U : 0x00000000U) << x << ',' << y;
        }
    }
    root.setFrame({1, 0, 0, 4});
    EXPECT_EQ(compose({4, 4}).pixel(1, 1), 0x00000000U);
}

TEST_F(LayerPainterTest, maskTurnedOffAgain_cutsNothingOff) {
    root.setFrame({0, 0, 4, 4});
    root.setCornerRadius(2.0);
    root.setMasksToBounds(true);
    addSublayer({0, 0, 4, 4}, Qt::red);
    EXPECT_LT(qAlpha(compose({4, 4}).pixel(0, 0)), 255);
    root.setCornerRadius(0.0);
    EXPECT_EQ(compose({4, 4}).pixel(0, 0), 0xffff0000U);
    root.setCornerRadius(2.0);
    root.setMasksToBounds(false);
    EXPECT_EQ(compose({4, 4}).pixel(0, 0), 0xffff0000U);
    root.setOpacity(0.5F);
    seconds = 1.0;
    EXPECT_EQ(compose({4, 4}).pixel(0, 0), 0x80800000U);
}

TEST_F(LayerPainterTest, mask_coversAnEdgePixelOnceHoweverManyLayersLieThere) {
    Layer above(scene);
    root.setFrame({0, 0, 1.5, 1});
    root.setMasksToBounds(true);
    addSublayer({0, 0, 9, 1}, Qt::white);
    root.addSublayer(above);
    above.setFrame({0, 0, 9, 1});
    above.setBackground(Layer::Gradient{Qt::white});
    EXPECT_EQ(compose({3, 1}).pixel(0, 0), 0xffffffffU);
    EXPECT_NEAR(qAlpha(compose({3, 1}).pixel(1, 0)), 128, 1);
}

TEST_F(LayerPainterTest, maskOverOtherLayers_mixesWithThemAtItsEdge) {
    Layer masked(scene);
    Layer inside(scene);
    root.setFrame({0, 0, 4, 1});
    root.setBackground(Layer::Gradient{Qt::black});
    root.addSublayer(masked);
    masked.setFrame({0, 0, 2.5, 1});
    masked.setMasksToBounds(true);
    masked.addSublayer(inside);
    inside.setFrame({0, 0, 4, 1});
    inside.setBackground(Layer::Gradient{Qt::white});
    const QImage image = compose({4, 1});
    EXPECT_EQ(image.pixel(1, 0), 0xffffffffU);
    EXPECT_NEAR(qRed(image.pixel(2, 0)), 128, 1);
    EXPECT_EQ(qAlpha(image.pixel(2, 0)), 255);
    EXPECT_EQ(image.pixel(3, 0), 0xff000000U);
}

TEST_F(LayerPainterTest, cornerRadius_isAtMostHalfTheShorterSide) {
    root.setFrame({0, 0, 40, 20});
    root.setCornerRadius(100);
    root.setBackground(Layer::Gradient{Qt::white});
    const QImage image = compose({40, 20});
    EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);
    EXPECT_EQ(qAlpha(image.pixel(39, 19)), 0);
    EXPECT_GT(qAlpha(image.pixel(10, 0)), 250);
    EXPECT_GT(qAlpha(image.pixel(0, 10)), 240);
}

TEST_F(LayerPainterTest, opacity_fadesTheLayerAsAWhole) {
    root.setFrame({0, 0, 2, 1});
    root.setBackground(Layer::Gradient{Qt::white});
    addSublayer({0, 0, 1, 1}, Qt::black);
    root.setOpacity(0.5F);
    seconds = 0.25;
    const QImage image = compose({2, 1});
    // The white below does not show through the black.
    EXPECT_EQ(image.pixel(0, 0), 0x80000000U);
    EXPECT_EQ(image.pixel(1, 0), 0x80808080U);  // premultiplied white
    root.setOpacity(0.0F);
    seconds = 0.5;
    EXPECT_EQ(compose({2, 1}).pixel(1, 0), 0x00000000U);
}

TEST_F(LayerPainterTest, animatedPosition_isWhereTheLayerIsShown) {
    root.setAnchorPoint({0, 0.5});
    root.setFrame({0, 0, 1, 1});
    root.setBackground(Layer::Gradient{Qt::red});
    root.addAnimation({.keyPath = "position.x", .fromValue = 0.0, .toValue = 4.0, .duration = 1.0}, "x");
    seconds = 0.5;
    const QImage image = compose({4, 1});
    EXPECT_EQ(image.pixel(2, 0), 0xffff0000U);
    EXPECT_EQ(image.pixel(0, 0), 0x00000000U);
}

TEST_F(LayerPainterTest, contents_fillTheBoundsAtTheResolutionAsked) {
    root.setFrame({0, 0, 2, 1});
    root.setContents(redLeftHalf({20, 10}));
    const QImage image = compose({8, 4}, 4.0);
    EXPECT_EQ(image.pixel(3, 3), 0xffff0000U);
    EXPECT_EQ(image.pixel(4, 0), 0x00000000U);
}

TEST_F(LayerPainterTest, emptyContents_areNotDrawn) {
    int drawn = 0;
    root.setFrame({0, 0, 2, 1});
    for (const QSizeF size : {QSizeF(0, 10), QSizeF(10, -1)}) {
        root.setContents(LayerImage(size, [&drawn](QPainter&) { ++drawn; }));
        EXPECT_EQ(compose({2, 1}).pixel(0, 0), 0x00000000U);
    }
    EXPECT_EQ(drawn, 0);
    EXPECT_TRUE(LayerImage().isEmpty());
}

TEST_F(LayerPainterTest, pattern_repeatsFromTheBoundsCorner) {
    root.setFrame({3, 0, 8, 2});
    root.setBackground(redLeftHalf({4, 2}));
    const QImage image = compose({12, 2});
    for (const int x : {3, 4, 7, 8}) {
        EXPECT_EQ(image.pixel(x, 1), 0xffff0000U) << x;
    }
    for (const int x : {0, 2, 5, 6, 9, 10, 11}) {
        EXPECT_EQ(image.pixel(x, 1), 0x00000000U) << x;
    }
}

TEST_F(LayerPainterTest, patternOfTilesThatEndWithinAPixel_hasNoGap) {
    root.setFrame({0, 0, 90, 20});
    root.setBackground(LayerImage({30, 20}, [](QPainter& painter) {
        painter.fillRect(QRectF(0, 0, 30, 20), Qt::white);
        painter.fillRect(QRectF(0, 0, 15, 20), Qt::black);
    }));
    const QImage image = compose({112, 25}, 1.25);
    for (int x = 0; x < 112; ++x) {
        EXPECT_EQ(image.pixel(x, 12), x % 38 < 19 ? 0xff000000U : 0xffffffffU) << x;
    }
}

TEST_F(LayerPainterTest, patternOfATileSmallerThanAPixel_isThere) {
    root.setFrame({0, 0, 4, 1});
    root.setBackground(LayerImage({0.01, 0.01}, [](QPainter& painter) { painter.fillRect(0, 0, 1, 1, Qt::red); }));
    EXPECT_EQ(compose({4, 1}).pixel(3, 0), 0xffff0000U);
    root.setBackground(LayerImage({0, 20}, [](QPainter& painter) { painter.fillRect(0, 0, 1, 1, Qt::red); }));
    EXPECT_EQ(compose({4, 1}).pixel(3, 0), 0x00000000U);
}

TEST_F(LayerPainterTest, picture_isPaintedOnceUntilItChanges) {
    int drawn = 0;
    const auto drawnBy = [&](QSize size, double ratio) {
        const int before = drawn;
        compose(size, ratio);
        return drawn - before;
    };
    root.setFrame({0, 0, 4, 2});
    root.setContents(LayerImage({2, 2}, [&drawn](QPainter&) { ++drawn; }));
    EXPECT_EQ(drawnBy({4, 2}, 1.0), 1);
    EXPECT_EQ(drawnBy({4, 2}, 1.0), 0);
    root.setFrame({1, 0, 4, 2});
    EXPECT_EQ(drawnBy({4, 2}, 1.0), 0);
    EXPECT_EQ(drawnBy({8, 4}, 2.0), 1);
    EXPECT_EQ(drawnBy({8, 4}, 2.0), 0);
    root.setFrame({1, 0, 5, 2});
    EXPECT_EQ(drawnBy({8, 4}, 2.0), 1);
    root.setBackground(Layer::Gradient{Qt::red});
    EXPECT_EQ(drawnBy({8, 4}, 2.0), 1);
    root.setCornerRadius(1.0);
    EXPECT_EQ(drawnBy({8, 4}, 2.0), 1);
    root.setContents(root.contents());
    EXPECT_EQ(drawnBy({8, 4}, 2.0), 1);
}

TEST_F(LayerPainterTest, gradient_runsFromTopToBottomAtEvenDistances) {
    addSublayer({0, 0, 1, 200}, Qt::red);
    sublayer.setBackground(Layer::Gradient{QColor(255, 0, 0), QColor(0, 255, 0), QColor(0, 0, 255)});
    const QImage image = compose({1, 200});
    EXPECT_NEAR(qRed(image.pixel(0, 0)), 254, 1);
    EXPECT_NEAR(qGreen(image.pixel(0, 99)), 254, 2);
    EXPECT_NEAR(qBlue(image.pixel(0, 199)), 254, 1);
    EXPECT_NEAR(qRed(image.pixel(0, 50)), 126, 2);
}

TEST_F(LayerPainterTest, gradientOfNoColours_isNothing) {
    addSublayer({0, 0, 1, 9}, Qt::red);
    sublayer.setBackground(Layer::Gradient{});
    EXPECT_EQ(compose({1, 9}).pixel(0, 4), 0x00000000U);
}

TEST_F(LayerPainterTest, layerFarLargerThanThePicture_isBounded) {
    root.setFrame({0, 0, 4, 1});
    root.setMasksToBounds(true);
    addSublayer({0, 0, 1e6, 1}, Qt::red);
    EXPECT_EQ(compose({4, 1}).pixel(3, 0), 0xffff0000U);
    EXPECT_EQ(sublayer.picture(1.0).width(), 16384);
}

TEST(RoundedRect, ofTheSmallestRadius_isRound) {
    EXPECT_FALSE(roundedRect({0, 0, 10, 10}, 1.0).contains(QPointF(0.1, 0.1)));
    EXPECT_TRUE(roundedRect({0, 0, 10, 10}, 0.0).contains(QPointF(0.1, 0.1)));
}

}  // namespace
}  // namespace kelvo
