#include <gtest/gtest.h>

#include <QPainter>
#include <map>
#include <string>

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
    /// A letter for the colour of each pixel.
    std::string drawn(QSize size, double ratio = 1.0) {
        const std::map<QRgb, char> letters{{0U, '.'},          {0xffff0000U, 'r'}, {0xff00ff00U, 'g'},
                                           {0xff0000ffU, 'b'}, {0xff000000U, 'k'}, {0xffffffffU, 'w'}};
        const QImage image = compose(size, ratio);
        std::string drawn;
        for (int i = 0; i < size.width() * size.height(); ++i) {
            const auto letter = letters.find(image.pixel(i % size.width(), i / size.width()));
            drawn += letter != letters.end() ? letter->second : '?';
        }
        return drawn;
    }
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

TEST_F(LayerPainterTest, sublayers_lieInTheSuperlayersCoordinatesOverItsBackground) {
    root.setFrame({2, 1, 4, 1});
    root.setBackground(Layer::Gradient{Qt::blue});
    addSublayer({2, 0, 1, 1}, Qt::green);
    EXPECT_EQ(drawn({8, 3}),
              "........"
              "..bbgb.."
              "........");
}

TEST_F(LayerPainterTest, mask_cutsOffAtTheBounds) {
    addSublayer({-5, -5, 20, 20}, Qt::red);
    root.setFrame({1, 1, 2, 2});
    EXPECT_EQ(drawn({4, 4}), std::string(16, 'r'));
    root.setMasksToBounds(true);
    EXPECT_EQ(drawn({4, 4}),
              "...."
              ".rr."
              ".rr."
              "....");
    root.setCornerRadius(1.0);
    EXPECT_EQ(drawn({4, 4}),
              "...."
              ".??."
              ".??."
              "....");
    root.setFrame({1, 0, 0, 4});
    EXPECT_EQ(drawn({4, 4}), std::string(16, '.'));
    root.setMasksToBounds(false);
    root.setOpacity(0.5F);  // so that the layer's coverage is used
    seconds = 1.0;
    EXPECT_EQ(compose({4, 4}).pixel(0, 0), 0x80800000U);
}

TEST_F(LayerPainterTest, mask_mixesAnEdgePixelOnceHoweverManyLayersLieThere) {
    Layer above(scene);
    root.setFrame({0, 0, 4, 1});
    root.setBackground(Layer::Gradient{Qt::black});
    addSublayer({0, 0, 2.5, 1}, Qt::white);
    sublayer.setMasksToBounds(true);
    sublayer.addSublayer(above);
    above.setFrame({0, 0, 9, 1});
    above.setBackground(Layer::Gradient{Qt::white});
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
    EXPECT_FALSE(roundedRect({0, 0, 10, 10}, 1.0).contains(QPointF(0.1, 0.1)));
}

TEST_F(LayerPainterTest, opacity_fadesTheCompleteLayer) {
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
    EXPECT_EQ(compose({2, 1}).pixel(1, 0), 0U);
    // A layer without sublayers fades alone.
    root.setOpacity(1.0F);
    sublayer.setOpacity(0.5F);
    seconds = 0.75;
    EXPECT_NEAR(qRed(compose({2, 1}).pixel(0, 0)), 128, 1);
}

TEST_F(LayerPainterTest, animatedPosition_isWhereTheLayerIsShown) {
    root.setAnchorPoint({0, 0.5});
    root.setFrame({0, 0, 1, 1});
    root.setBackground(Layer::Gradient{Qt::red});
    root.addAnimation({.keyPath = "position.x", .fromValue = 0.0, .toValue = 4.0, .duration = 1.0}, "x");
    seconds = 0.5;
    EXPECT_EQ(drawn({4, 1}), "..r.");
}

TEST_F(LayerPainterTest, contents_fillTheBoundsAtTheRequestedResolution) {
    root.setFrame({0, 0, 2, 1});
    root.setContents(redLeftHalf({20, 10}));
    EXPECT_EQ(drawn({8, 2}, 4.0),
              "rrrr...."
              "rrrr....");
    root.setContents(LayerImage({10, -1}, [](QPainter&) { ADD_FAILURE(); }));
    EXPECT_EQ(drawn({2, 1}), "..");
}

TEST_F(LayerPainterTest, pattern_repeatsFromTheBoundsCorner) {
    root.setFrame({3, 0, 8, 2});
    root.setBackground(redLeftHalf({4, 2}));
    EXPECT_EQ(drawn({12, 2}),
              "...rr..rr..."
              "...rr..rr...");
    root.setBackground(redLeftHalf({0, 20}));
    EXPECT_EQ(drawn({4, 1}), "....");
    // A tile that ends within a pixel leaves no gap, and one smaller than a pixel is there.
    root.setBackground(Layer::Gradient{});
    addSublayer({-3, 0, 90, 20}, Qt::red);
    sublayer.setBackground(LayerImage({30, 20}, [](QPainter& painter) {
        painter.fillRect(QRectF(0, 0, 30, 20), Qt::white);
        painter.fillRect(QRectF(0, 0, 15, 20), Qt::black);
    }));
    const std::string tile = std::string(19, 'k') + std::string(19, 'w');
    EXPECT_EQ(drawn({112, 1}, 1.25), (tile + tile + tile).substr(0, 112));
    sublayer.setBackground(LayerImage({0.01, 0.01}, [](QPainter& painter) { painter.fillRect(0, 0, 1, 1, Qt::red); }));
    EXPECT_EQ(drawn({4, 1}), "rrrr");
}

TEST_F(LayerPainterTest, picture_isPaintedOnceUntilItChanges) {
    int drawings = 0;
    const auto paintsAfter = [&](const std::function<void()>& change, double ratio = 2.0) {
        const int before = drawings;
        change();
        compose({8, 4}, ratio);
        return drawings - before;
    };
    root.setContents(LayerImage({2, 2}, [&drawings](QPainter&) { ++drawings; }));
    EXPECT_EQ(paintsAfter([this] { root.setFrame({0, 0, 4, 2}); }, 1.0), 1);
    EXPECT_EQ(paintsAfter([this] { root.setFrame({1, 0, 4, 2}); }, 1.0), 0);
    EXPECT_EQ(paintsAfter([] {}), 1);
    EXPECT_EQ(paintsAfter([] {}), 0);
    EXPECT_EQ(paintsAfter([this] { root.setFrame({1, 0, 5, 2}); }), 1);
    EXPECT_EQ(paintsAfter([this] { root.setBackground(Layer::Gradient{Qt::red}); }), 1);
    EXPECT_EQ(paintsAfter([this] { root.setCornerRadius(1.0); }), 1);
    EXPECT_EQ(paintsAfter([this] { root.setContents(root.contents()); }), 1);
}

TEST_F(LayerPainterTest, gradient_runsFromTopToBottomAtEvenDistances) {
    root.setFrame({0, 0, 1, 200});
    root.setBackground(Layer::Gradient{QColor(255, 0, 0), QColor(0, 255, 0), QColor(0, 0, 255)});
    const QImage image = compose({1, 200});
    EXPECT_NEAR(qRed(image.pixel(0, 0)), 254, 1);
    EXPECT_NEAR(qGreen(image.pixel(0, 99)), 254, 2);
    EXPECT_NEAR(qBlue(image.pixel(0, 199)), 254, 1);
    EXPECT_NEAR(qRed(image.pixel(0, 50)), 126, 2);
}

TEST_F(LayerPainterTest, layerFarLargerThanThePicture_isBounded) {
    root.setFrame({0, 0, 1e6, 1});
    root.setBackground(Layer::Gradient{Qt::red});
    EXPECT_EQ(root.picture(1.0).width(), 16384);
}

}  // namespace
}  // namespace kelvo
