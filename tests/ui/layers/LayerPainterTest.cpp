#include <gtest/gtest.h>

#include <QPainter>

#include "layers/GradientLayer.h"
#include "layers/LayerPainter.h"

namespace kelvo {
namespace {

class LayerPainterTest : public testing::Test {
protected:
    double seconds = 0.0;
    LayerScene scene{[this] { return seconds; }};
    Layer root{scene};

    QImage paint(QSize size, double ratio = 1.0, const Layer* omitted = nullptr) {
        return paintLayers(root, {{0.0, 0.0}, size, ratio}, omitted);
    }
    static LayerImage redLeftHalf(QSizeF size) {
        return {size, [size](QPainter& painter) {
                    painter.fillRect(QRectF(0, 0, size.width() / 2, size.height()), Qt::red);
                }};
    }
};

TEST_F(LayerPainterTest, backgroundColor_fillsTheFrameAndNothingElse) {
    root.setFrame({1, 1, 2, 2});
    root.setBackground(QColor(10, 20, 30));
    const QImage image = paint({4, 4});
    EXPECT_EQ(image.pixel(0, 0), 0x00000000U);
    EXPECT_EQ(image.pixel(1, 1), 0xff0a141eU);
    EXPECT_EQ(image.pixel(2, 2), 0xff0a141eU);
    EXPECT_EQ(image.pixel(3, 2), 0x00000000U);
}

TEST_F(LayerPainterTest, sublayers_lieInTheBoundsOfTheirSuperlayerOverItsBackground) {
    Layer sublayer(scene);
    root.setFrame({10, 0, 4, 1});
    root.setBackground(QColor(Qt::blue));
    root.addSublayer(sublayer);
    sublayer.setFrame({2, 0, 1, 1});
    sublayer.setBackground(QColor(Qt::green));
    QImage image = paint({20, 1});
    EXPECT_EQ(image.pixel(11, 0), 0xff0000ffU);
    EXPECT_EQ(image.pixel(12, 0), 0xff00ff00U);

    root.setBounds({1, 0, 4, 1});
    image = paint({20, 1});
    EXPECT_EQ(image.pixel(11, 0), 0xff00ff00U);
    EXPECT_EQ(image.pixel(10, 0), 0xff0000ffU);
}

TEST_F(LayerPainterTest, mask_cutsSublayersAtTheBounds) {
    Layer sublayer(scene);
    root.setFrame({1, 0, 2, 1});
    root.addSublayer(sublayer);
    sublayer.setFrame({-5, 0, 20, 1});
    sublayer.setBackground(QColor(Qt::red));
    EXPECT_EQ(paint({4, 1}).pixel(3, 0), 0xffff0000U);
    root.setMasksToBounds(true);
    const QImage image = paint({4, 1});
    EXPECT_EQ(image.pixel(0, 0), 0x00000000U);
    EXPECT_EQ(image.pixel(1, 0), 0xffff0000U);
    EXPECT_EQ(image.pixel(3, 0), 0x00000000U);
}

TEST_F(LayerPainterTest, maskAPixelShortOfTheArea_cutsThere) {
    Layer sublayer(scene);
    root.setMasksToBounds(true);
    root.addSublayer(sublayer);
    sublayer.setFrame({-5, -5, 20, 20});
    sublayer.setBackground(QColor(Qt::red));
    root.setFrame({0, 0, 4, 3});
    EXPECT_EQ(paint({4, 4}).pixel(2, 2), 0xffff0000U);
    EXPECT_EQ(paint({4, 4}).pixel(2, 3), 0x00000000U);
    root.setFrame({0, 1, 4, 3});
    EXPECT_EQ(paint({4, 4}).pixel(2, 0), 0x00000000U);
    root.setFrame({0, 0, 3, 4});
    EXPECT_EQ(paint({4, 4}).pixel(3, 2), 0x00000000U);
    root.setFrame({1, 0, 3, 4});
    EXPECT_EQ(paint({4, 4}).pixel(0, 2), 0x00000000U);
}

TEST_F(LayerPainterTest, maskOfAnEmptyLayer_leavesNothing) {
    Layer sublayer(scene);
    root.setFrame({1, 0, 0, 1});
    root.setMasksToBounds(true);
    root.addSublayer(sublayer);
    sublayer.setFrame({0, 0, 4, 1});
    sublayer.setBackground(QColor(Qt::red));
    EXPECT_EQ(paint({4, 1}).pixel(1, 0), 0x00000000U);
}

TEST_F(LayerPainterTest, roundMask_coversAnEdgePixelOnceHoweverManyLayersLieThere) {
    Layer below(scene);
    Layer above(scene);
    root.setFrame({0, 0, 1.5, 1});
    root.setMasksToBounds(true);
    for (Layer* const layer : {&below, &above}) {
        root.addSublayer(*layer);
        layer->setFrame({0, 0, 9, 1});
        layer->setBackground(QColor(Qt::white));
    }
    EXPECT_NEAR(qAlpha(paint({3, 1}).pixel(1, 0)), 128, 1);
}

TEST_F(LayerPainterTest, cornerRadius_isAtMostHalfTheShorterSide) {
    root.setFrame({0, 0, 40, 20});
    root.setCornerRadius(100);
    root.setBackground(QColor(Qt::white));
    const QImage image = paint({40, 20});
    EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);
    EXPECT_EQ(qAlpha(image.pixel(39, 19)), 0);
    EXPECT_GT(qAlpha(image.pixel(10, 0)), 250);
    EXPECT_GT(qAlpha(image.pixel(0, 10)), 240);
}

TEST_F(LayerPainterTest, opacity_fadesTheLayerAsAWhole) {
    Layer sublayer(scene);
    root.setFrame({0, 0, 2, 1});
    root.setBackground(QColor(Qt::white));
    root.addSublayer(sublayer);
    sublayer.setFrame({0, 0, 1, 1});
    sublayer.setBackground(QColor(Qt::black));
    root.setOpacity(0.5F);
    const QImage image = paint({2, 1});
    // The white below does not show through the black.
    EXPECT_NEAR(qAlpha(image.pixel(0, 0)), 128, 1);
    EXPECT_NEAR(qRed(image.pixel(0, 0)), 0, 1);
    EXPECT_NEAR(qAlpha(image.pixel(1, 0)), 128, 1);
    EXPECT_EQ(qRed(image.pixel(1, 0)), qAlpha(image.pixel(1, 0)));  // premultiplied white
}

TEST_F(LayerPainterTest, zeroOpacity_hidesTheSublayersToo) {
    Layer sublayer(scene);
    root.addSublayer(sublayer);
    sublayer.setFrame({0, 0, 1, 1});
    sublayer.setBackground(QColor(Qt::black));
    root.setOpacity(0.0F);
    scene.update();
    seconds = 1.0;
    scene.update();
    EXPECT_EQ(paint({1, 1}).pixel(0, 0), 0x00000000U);
}

TEST_F(LayerPainterTest, animatedPosition_isWhereTheLayerIsPainted) {
    root.setAnchorPoint({0, 0.5});
    root.setFrame({0, 0, 1, 1});
    root.setBackground(QColor(Qt::red));
    root.addAnimation({.keyPath = "position.x", .fromValue = 0.0, .toValue = 4.0, .duration = 1.0}, "x");
    seconds = 0.5;
    const QImage image = paint({4, 1});
    EXPECT_EQ(image.pixel(2, 0), 0xffff0000U);
    EXPECT_EQ(image.pixel(0, 0), 0x00000000U);
}

TEST_F(LayerPainterTest, contents_fillTheBoundsAtTheResolutionOfTheArea) {
    root.setFrame({0, 0, 2, 1});
    root.setContents(redLeftHalf({20, 10}));
    const QImage image = paint({8, 4}, 4.0);
    EXPECT_EQ(image.pixel(3, 3), 0xffff0000U);
    EXPECT_EQ(image.pixel(4, 0), 0x00000000U);
}

TEST_F(LayerPainterTest, emptyContents_paintNothing) {
    bool drawn = false;
    root.setFrame({0, 0, 2, 1});
    root.setContents(LayerImage({0, 10}, [&drawn](QPainter&) { drawn = true; }));
    EXPECT_EQ(paint({2, 1}).pixel(0, 0), 0x00000000U);
    EXPECT_FALSE(drawn);
}

TEST_F(LayerPainterTest, pattern_repeatsFromTheBoundsCorner) {
    root.setFrame({3, 0, 8, 2});
    root.setBackground(redLeftHalf({4, 2}));
    const QImage image = paint({12, 2});
    for (const int x : {3, 4, 7, 8}) {
        EXPECT_EQ(image.pixel(x, 1), 0xffff0000U) << x;
    }
    for (const int x : {0, 2, 5, 6, 9, 10, 11}) {
        EXPECT_EQ(image.pixel(x, 1), 0x00000000U) << x;
    }
}

TEST_F(LayerPainterTest, pattern_isRepeatedAnewAtAnotherResolutionAndForAnotherImage) {
    root.setFrame({0, 0, 8, 2});
    root.setBackground(redLeftHalf({4, 2}));
    EXPECT_EQ(paint({8, 2}).pixel(4, 0), 0xffff0000U);
    EXPECT_EQ(paint({16, 4}, 2.0).pixel(4, 0), 0x00000000U);
    root.setBackground(redLeftHalf({2, 2}));
    EXPECT_EQ(paint({16, 4}, 2.0).pixel(4, 0), 0xffff0000U);
}

TEST_F(LayerPainterTest, pattern_isDrawnOnceForAResolution) {
    int drawn = 0;
    root.setFrame({0, 0, 4, 2});
    root.setBackground(LayerImage({2, 2}, [&drawn](QPainter&) { ++drawn; }));
    paint({4, 2});
    paint({4, 2});
    EXPECT_EQ(drawn, 1);
    paint({4, 2}, 2.0);
    paint({4, 2}, 2.0);
    EXPECT_EQ(drawn, 2);
}

TEST_F(LayerPainterTest, gradient_runsFromTopToBottomAtEvenDistances) {
    GradientLayer gradient(scene);
    root.addSublayer(gradient);
    gradient.setFrame({0, 0, 1, 200});
    gradient.setColors({QColor(255, 0, 0), QColor(0, 255, 0), QColor(0, 0, 255)});
    const QImage image = paint({1, 200});
    EXPECT_NEAR(qRed(image.pixel(0, 0)), 254, 1);
    EXPECT_NEAR(qGreen(image.pixel(0, 99)), 254, 2);
    EXPECT_NEAR(qBlue(image.pixel(0, 199)), 254, 1);
    EXPECT_NEAR(qRed(image.pixel(0, 50)), 126, 2);
}

TEST_F(LayerPainterTest, gradientOfOneColour_isPlainAndOfNone_isNothing) {
    GradientLayer gradient(scene);
    root.addSublayer(gradient);
    gradient.setFrame({0, 0, 1, 9});
    gradient.setColors({QColor(1, 2, 3)});
    EXPECT_EQ(paint({1, 9}).pixel(0, 0), 0xff010203U);
    EXPECT_EQ(paint({1, 9}).pixel(0, 8), 0xff010203U);
    gradient.setColors({});
    EXPECT_EQ(paint({1, 9}).pixel(0, 4), 0x00000000U);
}

TEST_F(LayerPainterTest, area_mayBeginAnywhereEvenBetweenPixels) {
    root.setFrame({2, 0, 1, 1});
    root.setBackground(QColor(Qt::white));
    EXPECT_EQ(paintLayers(root, {{2.0, 0.0}, {1, 1}, 1.0}).pixel(0, 0), 0xffffffffU);
    EXPECT_NEAR(qAlpha(paintLayers(root, {{1.75, 0.0}, {1, 1}, 1.0}).pixel(0, 0)), 191, 1);
    EXPECT_EQ(paintLayers(root, {{4.0, 0.0}, {1, 1}, 2.0}).pixel(0, 0), 0xffffffffU);
}

TEST_F(LayerPainterTest, areaWithinARoundMask_looksAsItDoesInTheWhole) {
    Layer sublayer(scene);
    root.setFrame({0.5, 1, 60, 20});
    root.setCornerRadius(10);
    root.setMasksToBounds(true);
    root.setBackground(QColor(0, 0, 200, 100));
    root.addSublayer(sublayer);
    sublayer.setFrame({-5, 3, 80, 9});
    sublayer.setBackground(QColor(200, 0, 0, 100));
    const QImage whole = paint({62, 22});
    for (const QRect area : {QRect(11, 1, 30, 20), QRect(11, 0, 30, 22), QRect(9, 1, 30, 20), QRect(40, 1, 22, 20)}) {
        EXPECT_EQ(paintLayers(root, {area.topLeft(), area.size(), 1.0}), whole.copy(area)) << area.x();
    }
}

TEST_F(LayerPainterTest, omittedLayer_isLeftOutWithItsSublayers) {
    Layer omitted(scene);
    Layer below(scene);
    Layer other(scene);
    root.addSublayer(omitted);
    omitted.addSublayer(below);
    root.addSublayer(other);
    for (Layer* const layer : {&omitted, &below, &other}) {
        layer->setFrame({layer == &other ? 1.0 : 0.0, 0, 1, 1});
        layer->setBackground(QColor(Qt::white));
    }
    const QImage image = paint({2, 1}, 1.0, &omitted);
    EXPECT_EQ(image.pixel(0, 0), 0x00000000U);
    EXPECT_EQ(image.pixel(1, 0), 0xffffffffU);
}

TEST(RoundedRect, ofTheSmallestRadius_isRound) {
    EXPECT_FALSE(roundedRect({0, 0, 10, 10}, 1.0).contains(QPointF(0.1, 0.1)));
    EXPECT_TRUE(roundedRect({0, 0, 10, 10}, 0.0).contains(QPointF(0.1, 0.1)));
}

}  // namespace
}  // namespace kelvo
