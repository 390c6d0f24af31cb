// Frames put together from pictures of its pieces, against the same layers painted from scratch.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "SBProgressBarFrame.h"
#include "SBProgressBarStage.h"
#include "layers/LayerPainter.h"

namespace kelvo {
namespace {

constexpr double kRatios[] = {1.0, 1.25, 1.5, 2.0};

QImage fromScratch(BarStage& stage, double ratio) {
    return paintLayers(stage.bar.rootLayer(), {{0.0, 0.0}, stage.shot(ratio).size(), ratio});
}

int difference(QRgb a, QRgb b) {
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b)),
                     std::abs(qAlpha(a) - qAlpha(b))});
}

// The greatest difference of a channel.
int difference(const QImage& a, const QImage& b) {
    int most = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            most = std::max(most, difference(a.pixel(x, y), b.pixel(x, y)));
        }
    }
    return most;
}

void expectLikeFromScratch(BarStage& stage, double ratio) {
    const QImage kept = stage.shot(ratio);
    const QImage exact = fromScratch(stage, ratio);
    ASSERT_EQ(kept.size(), exact.size());
    // Where a round end cuts a pixel, some of Qt's versions round its alpha by the column that painting began at.
    EXPECT_LE(difference(kept, exact), 1) << ratio;
}

TEST(SBProgressBarFrame, anyValueAtAnyTimeAndResolution_looksAsIfPaintedFromScratch) {
    BarStage stage(200, 20);
    for (const double value : {0.0, 0.003, 0.01, 0.05, 0.1, 0.13, 0.377, 0.5, 0.77, 0.93, 0.97, 0.995, 1.0}) {
        stage.bar.setFloatValue(value);
        stage.step(0.0371);
        for (const double ratio : kRatios) {
            SCOPED_TRACE(value);
            expectLikeFromScratch(stage, ratio);
        }
    }
}

TEST(SBProgressBarFrame, allValuesInARow_lookAsIfPaintedFromScratch) {
    BarStage stage(200, 20);
    for (int i = 0; i <= 199; ++i) {
        stage.bar.setFloatValue(i / 199.0);
        stage.step(0.0371);
        SCOPED_TRACE(i);
        expectLikeFromScratch(stage, 1.0);
    }
}

TEST(SBProgressBarFrame, anySize_looksAsIfPaintedFromScratch) {
    for (const QSize size : {QSize(20, 20), QSize(21, 33), QSize(45, 21), QSize(1600, 40), QSize(20, 100)}) {
        BarStage stage(size.width(), size.height());
        stage.step(0.1);
        for (const double value : {0.2, 0.6, 1.0}) {
            stage.bar.setFloatValue(value);
            for (const double ratio : kRatios) {
                SCOPED_TRACE(testing::Message() << size.width() << 'x' << size.height() << ' ' << value);
                expectLikeFromScratch(stage, ratio);
            }
        }
    }
}

TEST(SBProgressBarFrame, anyLook_looksAsIfPaintedFromScratch) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    stage.bar.setColorTint(QColor(200, 30, 30));
    stage.bar.setBorderWidth(2.5);
    stage.bar.setShadowWidth(1.5);
    stage.bar.setBackgroundColors({QColor(Qt::black), QColor(0, 0, 0, 60)});
    stage.bar.setStripesImage(LayerImage({14, 9}, [](QPainter& painter) {
        painter.fillRect(QRectF(0, 0, 7, 9), QColor(255, 120, 0, 130));
        painter.fillRect(QRectF(7, 3, 5, 3), QColor(20, 40, 255));
    }));
    stage.bar.resizeLayers();
    for (const double ratio : kRatios) {
        expectLikeFromScratch(stage, ratio);
    }
    stage.bar.setAnimates(false);
    stage.step(0.0);
    stage.seconds += 0.1;
    expectLikeFromScratch(stage, 1.0);
}

TEST(SBProgressBarFrame, fillThatReachesTheBarsEdge_looksAsIfPaintedFromScratch) {
    BarStage stage(200, 20);
    stage.bar.setShadowWidth(0.0);
    stage.bar.setBorderWidth(0.0);
    stage.bar.setFloatValue(1.0);
    stage.bar.resizeLayers();
    for (const double ratio : kRatios) {
        expectLikeFromScratch(stage, ratio);
    }
}

TEST(SBProgressBarFrame, geometryInPoints_isTheSameAtEveryResolution) {
    for (const double ratio : kRatios) {
        BarStage stage(200, 20);
        stage.bar.setFloatValue(0.5);
        const QImage image = stage.shot(ratio);
        ASSERT_EQ(image.size(), QSizeF(200 * ratio, 20 * ratio).toSize());
        const auto at = [&](double x, double y) {
            return qRed(image.pixel(static_cast<int>(x * ratio), static_cast<int>(y * ratio)));
        };
        EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);
        EXPECT_EQ(at(150, 0), 74);
        EXPECT_NEAR(at(150, 10.4), 122 - 3, 2);
        EXPECT_GT(at(99, 10.4), 200);
        EXPECT_LT(at(101, 10.4), 125);
        EXPECT_GT(at(52, 1.7), 205);  // the fill without its line would be 198
        // Darker under the stripe around u = 0.78, lighter around u = 0.28.
        EXPECT_NEAR(at(39.5, 10.5) - at(54.5, 10.5), 10, 2);
    }
}

TEST(SBProgressBarFrame, opaqueMiddle_hasNoGapsAtAnyResolution) {
    for (const double ratio : kRatios) {
        BarStage stage(200, 20);
        stage.bar.setFloatValue(0.7);
        stage.step(0.11);
        const QImage image = stage.shot(ratio);
        for (int x = static_cast<int>(11 * ratio); x < static_cast<int>(188 * ratio); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                ASSERT_EQ(qAlpha(image.pixel(x, y)), 255) << ratio << ": " << x << ',' << y;
            }
        }
    }
}

class PartCount : public testing::Test {
protected:
    BarStage stage{200, 20};
    SBProgressBarFrame frame{stage.bar};

    int paintedBy(double ratio = 1.0) {
        QImage image(400, 40, QImage::Format_RGB32);
        QPainter painter(&image);
        const int before = frame.paintedParts();
        frame.draw(painter, ratio, stage.bar.rect());
        return frame.paintedParts() - before;
    }
};

TEST_F(PartCount, onceTheStripesHaveGoneRound_nothingIsPaintedAgain) {
    stage.bar.setFloatValue(0.4);
    EXPECT_GT(paintedBy(), 0);
    for (int i = 0; i < 18; ++i) {
        stage.step(1.0 / 60.0);
        EXPECT_LE(paintedBy(), 2);  // the two ends
    }
    for (int i = 0; i < 50; ++i) {
        stage.step(1.0 / 60.0);
        EXPECT_EQ(paintedBy(), 0);
    }
}

TEST_F(PartCount, tileOf64Pixels_isKeptWhole) {
    stage.bar.setStripesImage(SBProgressBar::stripesImageWithSize({64, 20}));
    stage.bar.setFloatValue(0.4);
    stage.bar.resizeLayers();
    stage.bar.setAnimationDuration(1.0);
    stage.step(1.0);  // the stripes that began anew have faded in
    paintedBy();
    for (int i = 0; i < 2 * 64; ++i) {
        stage.step(1.0 / 64.0);
        EXPECT_LE(paintedBy(), i < 64 ? 2 : 0) << i;
    }
}

TEST_F(PartCount, newValue_paintsTheRightEndAndNothingElse) {
    stage.bar.setFloatValue(0.4);
    paintedBy();
    for (const double value : {0.45, 0.451, 0.452, 0.5, 0.6, 1.0}) {
        stage.bar.setFloatValue(value);
        EXPECT_EQ(paintedBy(), 1);
        EXPECT_EQ(paintedBy(), 0);
    }
}

TEST_F(PartCount, emptyBar_paintsNoFill) {
    stage.bar.setFloatValue(0.4);
    paintedBy();
    stage.bar.setFloatValue(0.0);
    EXPECT_EQ(paintedBy(), 0);
}

TEST_F(PartCount, newResolutionSizeOrLook_paintsAnew) {
    stage.bar.setFloatValue(0.5);
    paintedBy();
    EXPECT_GT(paintedBy(2.0), 0);
    EXPECT_EQ(paintedBy(2.0), 0);
    stage.bar.resize(210, 20);
    EXPECT_GT(paintedBy(2.0), 0);
    stage.bar.setColorTint(QColor(Qt::red));
    EXPECT_GT(paintedBy(2.0), 0);
    stage.bar.fillLayer().setColors({QColor(Qt::red)});
    EXPECT_GT(paintedBy(2.0), 0);
    EXPECT_EQ(paintedBy(2.0), 0);
}

TEST(SBProgressBarFrame, stripesOfOneColour_lookAsIfPaintedFromScratch) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    stage.bar.stripesLayer().setBackground(QColor(Qt::red));
    for (const double ratio : kRatios) {
        expectLikeFromScratch(stage, ratio);
    }
}

TEST_F(PartCount, troughOutsideOfThePart_isLeftOut) {
    stage.bar.setFloatValue(0.5);
    QImage image(200, 20, QImage::Format_RGB32);
    QPainter painter(&image);
    const auto isPaintedAt = [&](int x, const QRect& part) {
        image.fill(Qt::red);
        frame.draw(painter, 1.0, part);
        return image.pixel(x, 10) != 0xffff0000U;
    };
    EXPECT_TRUE(isPaintedAt(159, {140, 0, 20, 20}));
    EXPECT_FALSE(isPaintedAt(160, {140, 0, 20, 20}));
    EXPECT_TRUE(isPaintedAt(100, {0, 0, 101, 20}));
    EXPECT_FALSE(isPaintedAt(101, {0, 0, 101, 20}));
    EXPECT_TRUE(isPaintedAt(198, {0, 0, 500, 20}));
}

TEST_F(PartCount, transparentBar_paintsNothing) {
    stage.bar.setHidden(true);
    stage.step(0.25);
    EXPECT_EQ(paintedBy(), 0);
}

TEST_F(PartCount, fadingBar_leavesThePainterOpaque) {
    stage.bar.setHidden(true);
    stage.step(0.1);
    QImage image(200, 20, QImage::Format_RGB32);
    QPainter painter(&image);
    frame.draw(painter, 1.0, stage.bar.rect());
    EXPECT_GT(frame.paintedParts(), 0);
    EXPECT_EQ(painter.opacity(), 1.0);
}

TEST_F(PartCount, veryWideTile_keepsABoundedNumberOfPhasesAndStaysRight) {
    stage.bar.setStripesImage(SBProgressBar::stripesImageWithSize({500, 20}));
    stage.bar.setFloatValue(1.0);
    stage.bar.resizeLayers();
    stage.bar.setAnimationDuration(1.0);
    for (int i = 0; i < 20; ++i) {
        stage.step(0.128);  // 64 pixels, the number of kept phases
        expectLikeFromScratch(stage, 1.0);
    }
}

}  // namespace
}  // namespace kelvo
