#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include "SBProgressBarStage.h"

namespace kelvo {
namespace {

QImage drawn(const LayerImage& image, double ratio = 1.0) {
    QImage target((image.size() * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    target.fill(Qt::transparent);
    QPainter painter(&target);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.scale(ratio, ratio);
    image.draw(painter);
    return target;
}

TEST(SBProgressBarGeometry, barOf200x20_hasItsFrames) {
    BarStage stage(200, 20);
    SBProgressBar& bar = stage.bar;
    EXPECT_EQ(bar.clipLayer().frame(), QRectF(0, 0, 200, 20));
    EXPECT_EQ(bar.clipLayer().cornerRadius(), 10.0);
    EXPECT_EQ(bar.backgroundLayer().frame(), QRectF(0, 0, 200, 20));
    EXPECT_EQ(bar.borderLayer().frame(), QRectF(0, 0, 200, 20));
    EXPECT_EQ(bar.fillLayer().frame(), QRectF(0, 0, 200, 20));
    EXPECT_EQ(bar.colorTintLayer().frame(), QRectF(0, 0, 200, 20));
    EXPECT_EQ(bar.stripesLayer().frame(), QRectF(-30, 0, 240, 20));
    EXPECT_EQ(bar.stripesLayer().position(), QPointF(-30, 10));
    EXPECT_EQ(bar.borderLayer().contents().size(), QSizeF(200, 20));
    EXPECT_EQ(std::get<LayerImage>(bar.stripesLayer().background()).size(), QSizeF(30, 20));
}

struct Fill {
    double value;
    QRectF inner, shadow;
};

TEST(SBProgressBarGeometry, fill_followsTheValue) {
    BarStage stage(200, 20);
    SBProgressBar& bar = stage.bar;
    const Fill fills[] = {
        {0.0, {1, 1, 0, 18}, {-1, -1, 2, 20}},
        {0.5, {1, 1, 99, 18}, {-1, -1, 101, 20}},
        {0.25, {1, 1, 49.5, 18}, {-1, -1, 51.5, 20}},
        {1.0, {1, 1, 198, 18}, {-1, -1, 200, 20}},
    };
    for (const Fill& fill : fills) {
        bar.setFloatValue(fill.value);
        EXPECT_EQ(bar.innerClipLayer().frame(), fill.inner);
        EXPECT_EQ(bar.innerClipLayer().cornerRadius(), 9.0);
        EXPECT_EQ(bar.innerShadowLayer().frame(), fill.shadow);
        EXPECT_EQ(bar.innerShadowLayer().cornerRadius(), 10.0);
        EXPECT_EQ(bar.innerShadowLayer().contents().size(), fill.shadow.size());
    }
}

TEST(SBProgressBarGeometry, stripesLayer_isOneTileLongerThanCoversTheBar) {
    const struct {
        int width;
        double stripes;
    } rows[] = {{1, 60}, {20, 60}, {30, 60}, {31, 90}, {200, 240}, {210, 240}, {211, 270}, {1600, 1650}};
    for (const auto& row : rows) {
        BarStage stage(row.width, 20);
        EXPECT_EQ(stage.bar.stripesLayer().frame(), QRectF(-30, 0, row.stripes, 20)) << row.width;
    }
}

TEST(SBProgressBarGeometry, stripesLayerWithoutAnImage_isEmpty) {
    BarStage stage(200, 20);
    stage.bar.setStripesImage({});
    stage.bar.resizeLayers();
    EXPECT_EQ(stage.bar.stripesLayer().frame().width(), 0.0);
}

TEST(SBProgressBarGeometry, resize_laysOutEverythingWithoutAnyFade) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    stage.bar.resize(102, 42);
    EXPECT_EQ(stage.bar.clipLayer().frame(), QRectF(0, 0, 102, 42));
    EXPECT_EQ(stage.bar.clipLayer().cornerRadius(), 21.0);
    EXPECT_EQ(stage.bar.innerClipLayer().frame(), QRectF(1, 1, 50, 40));
    EXPECT_EQ(stage.bar.innerClipLayer().cornerRadius(), 20.0);
    EXPECT_EQ(stage.bar.stripesLayer().frame(), QRectF(-30, 0, 150, 42));
    for (Layer* const layer : {&stage.bar.rootLayer(), &stage.bar.clipLayer(), &stage.bar.innerClipLayer()}) {
        EXPECT_EQ(layer->animation("opacity"), nullptr);
    }
}

TEST(SBProgressBarGeometry, borderWidth_insetsTheFillFromTheNextLayoutOn) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    stage.bar.setBorderWidth(3.0);
    EXPECT_EQ(stage.bar.innerClipLayer().frame(), QRectF(1, 1, 99, 18));
    stage.bar.resizeLayers();
    EXPECT_EQ(stage.bar.innerClipLayer().frame(), QRectF(3, 3, 97, 14));
    EXPECT_EQ(stage.bar.innerShadowLayer().frame(), QRectF(-3, -3, 103, 20));
}

TEST(SBProgressBarGeometry, borderThickerThanTheBar_leavesNoFill) {
    BarStage stage(40, 20);
    stage.bar.setBorderWidth(50.0);
    stage.bar.setFloatValue(1.0);
    EXPECT_EQ(stage.bar.innerClipLayer().frame(), QRectF(50, 50, 0, 0));
    EXPECT_EQ(stage.shot().size(), QSize(40, 20));
}

TEST(SBProgressBarGeometry, emptyBar_hasNoBorderImage) {
    for (const QSize size : {QSize(0, 20), QSize(20, 0), QSize(0, 0)}) {
        QWidget window;
        SBProgressBar bar(&window);
        bar.setGeometry(QRect(QPoint(0, 0), size));
        bar.resizeLayers();
        EXPECT_TRUE(bar.borderLayer().contents().isEmpty());
        EXPECT_EQ(bar.stripesLayer().frame().width(), size.width() == 0 ? 30.0 : 60.0);
    }
}

TEST(SBProgressBarGeometry, borderImageOfZeroOrNegativeSize_isNone) {
    const SBProgressBar bar;
    for (const QSizeF size : {QSizeF(0, 20), QSizeF(20, 0), QSizeF(-1, 20), QSizeF(20, -1)}) {
        EXPECT_TRUE(bar.borderImageForSize_withInnerShadow(size, false).isEmpty());
        EXPECT_TRUE(bar.borderImageForSize_withInnerShadow(size, true).isEmpty());
    }
    EXPECT_EQ(bar.borderImageForSize_withInnerShadow({7, 5}, true).size(), QSizeF(7, 5));
}

TEST(SBProgressBarGeometry, borderImage_isARingOfTheBorderWidth) {
    SBProgressBar bar;
    QImage image = drawn(bar.borderImageForSize_withInnerShadow({60, 20}, false));
    EXPECT_EQ(image.pixel(30, 0), 0xff4a4a4aU);  // 0.291 of 255
    EXPECT_EQ(image.pixel(30, 1), 0x00000000U);
    EXPECT_EQ(image.pixel(30, 10), 0x00000000U);
    EXPECT_EQ(image.pixel(30, 18), 0x00000000U);
    EXPECT_EQ(image.pixel(30, 19), 0xff4a4a4aU);
    EXPECT_EQ(image.pixel(0, 0), 0x00000000U);
    // The outer edge turns by an ellipse of 10.5 by 10, since the line's middle turns by one of 10 by 9.5.
    EXPECT_NEAR(qAlpha(image.pixel(0, 10)), 251, 1);
    EXPECT_NEAR(qAlpha(image.pixel(6, 0)), 61, 2);
    EXPECT_NEAR(qAlpha(image.pixel(2, 10)), 0, 1);
}

TEST(SBProgressBarGeometry, borderOfNoWidth_isNotThere) {
    SBProgressBar bar;
    bar.setBorderWidth(0.0);
    QImage blank(60, 20, QImage::Format_ARGB32_Premultiplied);
    blank.fill(Qt::transparent);
    EXPECT_EQ(drawn(bar.borderImageForSize_withInnerShadow({60, 20}, false)), blank);
}

TEST(SBProgressBarGeometry, borderImageNarrowerThanHigh_isRoundAboveAndBelow) {
    const SBProgressBar bar;
    const QImage image = drawn(bar.borderImageForSize_withInnerShadow({10, 20}, false));
    QPainterPath ring;
    ring.addRoundedRect(0, 0, 10, 20, 5, 5);
    ring.addRoundedRect(1, 1, 8, 18, 4, 4);
    QImage large(16 * image.size(), image.format());
    large.fill(Qt::transparent);
    QPainter painter(&large);
    painter.scale(16, 16);
    painter.fillPath(ring, QColor(0x4a, 0x4a, 0x4a));
    const QImage expected = large.scaled(image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 10; ++x) {
            EXPECT_NEAR(qAlpha(image.pixel(x, y)), qAlpha(expected.pixel(x, y)), 4) << x << ", " << y;
        }
    }
}

TEST(SBProgressBarGeometry, borderImageWithInnerShadow_hasALightLineBelowTheRing) {
    SBProgressBar bar;
    QImage image = drawn(bar.borderImageForSize_withInnerShadow({60, 20}, true));
    EXPECT_EQ(image.pixel(30, 0), 0xff4a4a4aU);
    EXPECT_EQ(image.pixel(30, 1), 0x99999999U);  // white of 0.6, premultiplied
    EXPECT_EQ(image.pixel(30, 2), 0x00000000U);
    EXPECT_EQ(image.pixel(30, 19), 0xff4a4a4aU);
    // As far on the left as on the right.
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 30; ++x) {
            EXPECT_NEAR(qAlpha(image.pixel(x, y)), qAlpha(image.pixel(59 - x, y)), 3) << x << ", " << y;
        }
    }
}

TEST(SBProgressBarGeometry, innerShadow_isAsThickAboveEveryColumnOfTheFill) {
    BarStage stage(42, 22);
    stage.bar.setFloatValue(1.0);
    const QImage image = drawn(stage.bar.innerShadowLayer().contents(), 40.0);
    ASSERT_EQ(image.size(), QSize(1680, 880));
    for (int column = 0; column < 1680; ++column) {
        int covered = 0;
        for (int row = 0; row < 880; ++row) {
            covered += qAlpha(image.pixel(column, row));
        }
        const bool isInside = column >= 40 && column < 1640;
        EXPECT_NEAR(covered, isInside ? 6120 : 0, isInside ? 60 : 0) << column;  // 40 pixels of 0.6
    }
    EXPECT_EQ(qAlpha(image.pixel(840, 39)), 0);
    EXPECT_EQ(qAlpha(image.pixel(840, 41)), 153);
    EXPECT_EQ(qAlpha(image.pixel(840, 81)), 0);
}

TEST(SBProgressBarGeometry, borderImage_drawsWithTheBarsLookOfTheMoment) {
    SBProgressBar bar;
    const LayerImage image = bar.borderImageForSize_withInnerShadow({60, 20}, true);
    bar.setBorderWidth(3.0);
    bar.setShadowWidth(2.0);
    bar.setBorderColor(Qt::red);
    const QImage pixels = drawn(image);
    EXPECT_EQ(pixels.pixel(30, 0), 0xffff0000U);
    EXPECT_EQ(pixels.pixel(30, 2), 0xffff0000U);
    EXPECT_EQ(qAlpha(pixels.pixel(30, 3)), 153);
    EXPECT_EQ(qAlpha(pixels.pixel(30, 4)), 153);
    EXPECT_EQ(qAlpha(pixels.pixel(30, 5)), 0);
}

TEST(SBProgressBarGeometry, borderImageWithoutABorder_isEmpty) {
    SBProgressBar bar;
    bar.setBorderWidth(0.0);
    EXPECT_EQ(drawn(bar.borderImageForSize_withInnerShadow({60, 20}, true)).pixel(30, 0), 0x00000000U);
}

// Black where the point lies in the upper left corner or in the band, in shares of the tile: x + y below 1/2, or
// between 1 and 3/2.
TEST(SBProgressBarGeometry, stripesImage_hasACornerAndABandRisingToTheRight) {
    const QImage tile = drawn(SBProgressBar::stripesImageWithSize({30, 20}));
    ASSERT_EQ(tile.size(), QSize(30, 20));
    for (const QPoint black : {QPoint(0, 0), QPoint(12, 0), QPoint(0, 8), QPoint(29, 1), QPoint(15, 10), QPoint(28, 9),
                               QPoint(2, 19), QPoint(14, 19), QPoint(22, 13)}) {
        EXPECT_EQ(tile.pixel(black), 0xff000000U) << black.x() << ',' << black.y();
    }
    for (const QPoint white : {QPoint(16, 0), QPoint(27, 0), QPoint(0, 11), QPoint(7, 7), QPoint(14, 9), QPoint(29, 19),
                               QPoint(17, 19), QPoint(29, 12)}) {
        EXPECT_EQ(tile.pixel(white), 0xffffffffU) << white.x() << ',' << white.y();
    }
    // An edge pixel that the diagonal halves.
    EXPECT_NEAR(qRed(drawn(SBProgressBar::stripesImageWithSize({20, 20})).pixel(4, 5)), 127, 3);
}

TEST(SBProgressBarGeometry, stripesImage_isTheSameWhateverPenItsPainterHolds) {
    QImage image(30, 20, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setPen(QPen(Qt::red, 5.0));
    SBProgressBar::stripesImageWithSize({30, 20}).draw(painter);
    painter.end();
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 30; ++x) {
            ASSERT_EQ(qRed(image.pixel(x, y)), qBlue(image.pixel(x, y))) << x << ',' << y;
        }
    }
}

TEST(SBProgressBarGeometry, stripesImageWithoutSize_isEmptyAndHidesTheStripes) {
    BarStage stage(60, 20);
    stage.bar.setFloatValue(1.0);
    stage.bar.setStripesImage(SBProgressBar::stripesImageWithSize({0, 20}));
    stage.bar.resizeLayers();
    EXPECT_TRUE(stage.bar.stripesImage().isEmpty());
    EXPECT_EQ(stage.bar.stripesLayer().frame().width(), 0.0);
    const QImage image = stage.shot();
    EXPECT_EQ(image.pixel(20, 10), image.pixel(40, 10));
    EXPECT_NEAR(qRed(image.pixel(30, 10)), 222, 1);  // the bare fill: 0.86875
}

TEST(SBProgressBarGeometry, widerStripesTile_isLaidOutAtTheNextResize) {
    BarStage stage(200, 20);
    stage.bar.setStripesImage(SBProgressBar::stripesImageWithSize({50, 20}));
    EXPECT_EQ(stage.bar.stripesLayer().frame(), QRectF(-30, 0, 240, 20));
    stage.bar.resizeLayers();
    EXPECT_EQ(stage.bar.stripesLayer().frame(), QRectF(-50, 0, 250, 20));
    EXPECT_EQ(stage.bar.stripesAnimation().fromValue, -50.0);
    EXPECT_EQ(stage.bar.stripesAnimation().byValue, 50.0);
}

}  // namespace
}  // namespace kelvo
