#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include "SBProgressBarStage.h"

namespace kelvo {
namespace {

QImage drawn(const LayerImage& image) {
    QImage target(image.size().toSize(), QImage::Format_ARGB32_Premultiplied);
    target.fill(Qt::transparent);
    QPainter painter(&target);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
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
    } rows[] = {{0, 30}, {1, 60}, {20, 60}, {30, 60}, {31, 90}, {200, 240}, {210, 240}, {211, 270}, {1600, 1650}};
    for (const auto& row : rows) {
        QWidget window;
        SBProgressBar bar(&window);
        bar.setGeometry(0, 0, row.width, 20);
        bar.resizeLayers();
        EXPECT_EQ(bar.stripesLayer().frame(), QRectF(-30, 0, row.stripes, 20)) << row.width;
        EXPECT_EQ(bar.borderLayer().contents().isEmpty(), row.width == 0);
    }
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
}

TEST(SBProgressBarGeometry, borderImageOfZeroOrNegativeSize_isNone) {
    const SBProgressBar bar;
    for (const QSizeF size : {QSizeF(0, 20), QSizeF(20, 0), QSizeF(-1, 20), QSizeF(20, -1)}) {
        EXPECT_TRUE(bar.borderImageForSize_withInnerShadow(size, false).isEmpty());
        EXPECT_TRUE(bar.borderImageForSize_withInnerShadow(size, true).isEmpty());
    }
    EXPECT_EQ(bar.borderImageForSize_withInnerShadow({7, 5}, true).size(), QSizeF(7, 5));
}

TEST(SBProgressBarGeometry, borderImage_drawsARingAndALightLineBelowItWithTheLookOfTheMoment) {
    SBProgressBar bar;
    const LayerImage ring = bar.borderImageForSize_withInnerShadow({60, 20}, false);
    const LayerImage both = bar.borderImageForSize_withInnerShadow({60, 20}, true);
    for (const auto& [y, color] : {std::pair(0, 0xff4a4a4aU), {1, 0U}, {10, 0U}, {18, 0U}, {19, 0xff4a4a4aU}}) {
        EXPECT_EQ(drawn(ring).pixel(30, y), color) << y;  // 0.291 of 255
    }
    for (const auto& [y, color] : {std::pair(0, 0xff4a4a4aU), {1, 0x99999999U}, {2, 0U}, {19, 0xff4a4a4aU}}) {
        EXPECT_EQ(drawn(both).pixel(30, y), color) << y;  // white of 0.6, premultiplied
    }
    bar.setBorderWidth(3.0);
    bar.setShadowWidth(2.0);
    bar.setBorderColor(Qt::red);
    for (const auto& [y, color] :
         {std::pair(0, 0xffff0000U), {2, 0xffff0000U}, {3, 0x99999999U}, {4, 0x99999999U}, {5, 0U}}) {
        EXPECT_EQ(drawn(both).pixel(30, y), color) << y;
    }
    bar.setBorderWidth(0.0);
    EXPECT_EQ(drawn(both).pixel(30, 0), 0U);
}

// Black in the upper left corner and in the band, in shares of the tile: x + y below 1/2, or between 1 and 3/2.
TEST(SBProgressBarGeometry, stripesImage_hasACornerAndABandRisingToTheRightWhateverThePen) {
    QImage image(30, 20, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::red, 5.0));
    SBProgressBar::stripesImageWithSize({30, 20}).draw(painter);
    painter.end();
    for (const QPoint black : {QPoint(0, 0), QPoint(12, 0), QPoint(0, 8), QPoint(29, 1), QPoint(15, 10), QPoint(28, 9),
                               QPoint(2, 19), QPoint(14, 19), QPoint(22, 13)}) {
        EXPECT_EQ(image.pixel(black), 0xff000000U) << black.x() << ',' << black.y();
    }
    for (const QPoint white : {QPoint(16, 0), QPoint(27, 0), QPoint(0, 11), QPoint(7, 7), QPoint(14, 9), QPoint(29, 19),
                               QPoint(17, 19), QPoint(29, 12)}) {
        EXPECT_EQ(image.pixel(white), 0xffffffffU) << white.x() << ',' << white.y();
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
