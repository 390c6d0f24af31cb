// The colours below are worked out by hand from the bar's description, for a pixel's middle. In a bar of 20 points with
// the fill's layers one point further down, at y + 1/2:
//   trough   0.55 - 0.15 (y + 0.5) / 20
//   fill     0.75 + 0.25 (y - 0.5) / 20, then 0.96 of it under a stripe and 0.04 more beside one
//   line     0.4 of that + 0.6, in the fill's first row
//   tint     0.8 of that + 0.2 of the tint
// A stripe covers the point (u, v) of a tile, in shares of its sides, where u + v is below 1/2 or between 1 and 3/2.
// The first whole tile begins at x = 1 when the stripes begin to move.

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

#include "SBProgressBarStage.h"

namespace kelvo {
namespace {

void expectGrey(const QImage& image, int x, int y, int grey) {
    const QRgb pixel = image.pixel(x, y);
    EXPECT_EQ(qAlpha(pixel), 255) << x << ',' << y;
    EXPECT_NEAR(qRed(pixel), grey, 1) << x << ',' << y;
    EXPECT_EQ(qRed(pixel), qGreen(pixel)) << x << ',' << y;
    EXPECT_EQ(qRed(pixel), qBlue(pixel)) << x << ',' << y;
}

TEST(SBProgressBarPixels, trough_runsFromItsFirstColourToItsLast) {
    BarStage stage(200, 20);
    const QImage image = stage.shot();
    expectGrey(image, 100, 1, 137);
    expectGrey(image, 100, 9, 122);
    expectGrey(image, 100, 18, 105);

    BarStage tall(400, 200);
    const QImage tallImage = tall.shot();
    expectGrey(tallImage, 200, 1, 140);    // 0.55
    expectGrey(tallImage, 200, 198, 102);  // 0.4
}

TEST(SBProgressBarPixels, border_isOnePointOfItsColourAllAround) {
    BarStage stage(200, 20);
    const QImage image = stage.shot();
    for (const int x : {12, 100, 187}) {
        expectGrey(image, x, 0, 74);  // 0.291
        expectGrey(image, x, 19, 74);
    }
    for (const int x : {0, 199}) {
        EXPECT_GE(qAlpha(image.pixel(x, 10)), 240);
        EXPECT_NEAR(qRed(image.pixel(x, 10)) * 255.0 / qAlpha(image.pixel(x, 10)), 74, 4);  // and a little trough
    }
    EXPECT_GT(qRed(image.pixel(2, 10)), 115);
}

TEST(SBProgressBarPixels, corners_areTransparentAndTheEndsRound) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(1.0);
    const QImage image = stage.shot();
    for (const QPoint corner : {QPoint(0, 0), QPoint(199, 0), QPoint(0, 19), QPoint(199, 19), QPoint(1, 1),
                                QPoint(198, 18), QPoint(3, 0), QPoint(0, 3)}) {
        EXPECT_EQ(image.pixel(corner), 0x00000000U) << corner.x() << ',' << corner.y();
    }
    // The circle of radius 10 about (10, 10) passes through (4, 2) and (2, 4).
    EXPECT_NEAR(qAlpha(image.pixel(2, 3)), 128, 60);
    EXPECT_EQ(qAlpha(image.pixel(4, 4)), 255);
    EXPECT_EQ(qAlpha(image.pixel(195, 15)), 255);
}

TEST(SBProgressBarPixels, fill_runsFromItsFirstColourToItsLastUnderAndBesideTheStripes) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    const QImage image = stage.shot();
    expectGrey(image, 36, 2, 188);   // 0.76875, u = 0.183, v = 0.075
    expectGrey(image, 51, 2, 198);   // u = 0.683
    expectGrey(image, 54, 10, 213);  // 0.86875, u = 0.783, v = 0.475
    expectGrey(image, 39, 10, 223);  // u = 0.283
    expectGrey(image, 42, 18, 237);  // 0.96875, u = 0.383, v = 0.875
    expectGrey(image, 55, 18, 247);  // u = 0.816
}

TEST(SBProgressBarPixels, tallFill_showsTheGradientsEnds) {
    BarStage stage(800, 400);
    stage.bar.setFloatValue(1.0);
    stage.bar.setAnimates(false);
    stage.step(0.25);
    const QImage image = stage.shot();
    expectGrey(image, 400, 2, 191);    // 0.75
    expectGrey(image, 400, 398, 255);  // 1.0
}

TEST(SBProgressBarPixels, highlight_isTheFillsFirstRow) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    const QImage image = stage.shot();
    expectGrey(image, 36, 1, 227);  // 0.75625 under a stripe
    expectGrey(image, 52, 1, 231);  // beside one
    expectGrey(image, 36, 0, 74);
    expectGrey(image, 36, 2, 188);
}

TEST(SBProgressBarPixels, tint_liesOverFillAndHighlightAtAFifth) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    stage.bar.setColorTint(QColor(0, 90, 255));
    const QImage image = stage.shot();
    const struct {
        QPoint at;
        int red, green, blue;
    } rows[] = {{{54, 10}, 170, 188, 221}, {{39, 10}, 178, 196, 229}, {{36, 1}, 182, 200, 233}};
    for (const auto& row : rows) {
        const QRgb pixel = image.pixel(row.at);
        // The toolkit rounds an opacity of 0.2 and its product with a colour, each downward.
        EXPECT_NEAR(qRed(pixel), row.red, 2);
        EXPECT_NEAR(qGreen(pixel), row.green, 2);
        EXPECT_NEAR(qBlue(pixel), row.blue, 2);
    }
    expectGrey(image, 36, 0, 74);
    expectGrey(image, 150, 9, 122);
}

TEST(SBProgressBarPixels, fill_endsWhereTheValueSaysInARoundEnd) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    const QImage image = stage.shot();
    EXPECT_GT(qRed(image.pixel(99, 10)), 200);
    expectGrey(image, 100, 10, 120);
    // The end is a circle of radius 9 about (91, 10).
    expectGrey(image, 98, 1, 137);
    EXPECT_GT(qRed(image.pixel(96, 10)), 205);
    expectGrey(image, 98, 18, 105);
}

// Fill 0.86875 and trough 0.47125, by the share of the column left of the end, less 1.4 for the end's roundness.
TEST(SBProgressBarPixels, fillThatEndsWithinAColumn_mixesThereWithTheTroughAlone) {
    constexpr struct {
        double share;
        int grey;
    } kColumns[] = {{0.25, 144}, {0.5, 169}, {0.75, 195}};
    for (const auto& column : kColumns) {
        BarStage stage(200, 20);
        stage.bar.setAnimates(false);
        stage.step(0.25);
        stage.bar.setFloatValue((99.0 + column.share) / 198.0);
        const QImage image = stage.shot();
        expectGrey(image, 99, 10, 221);
        expectGrey(image, 100, 10, column.grey);
        expectGrey(image, 101, 10, 120);
    }
}

TEST(SBProgressBarPixels, fillsRoundEnd_isNowhereDarkerThanTheTrough) {
    for (const double ratio : {1.0, 1.5, 2.0}) {
        BarStage stage(200, 20);
        const QImage trough = stage.shot(ratio);
        stage.bar.setFloatValue(0.5);
        const QImage image = stage.shot(ratio);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = static_cast<int>(20 * ratio); x < image.width(); ++x) {
                ASSERT_GE(qRed(image.pixel(x, y)), qRed(trough.pixel(x, y)) - 1) << ratio << ": " << x << ',' << y;
            }
        }
    }
}

TEST(SBProgressBarPixels, zero_showsTheBareTrough) {
    BarStage stage(200, 20);
    const QImage empty = stage.shot();
    for (const int x : {2, 10, 100, 190}) {
        EXPECT_NEAR(qRed(empty.pixel(x, 10)), 120, 1) << x;
    }
    stage.bar.setFloatValue(0.7);
    stage.bar.setFloatValue(0.0);
    EXPECT_EQ(stage.shot(), empty);
}

TEST(SBProgressBarPixels, smallFill_isThere) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.01);  // from 1 to 2.98
    const QImage image = stage.shot();
    EXPECT_GT(qRed(image.pixel(1, 10)), 195);
    EXPECT_GT(qRed(image.pixel(2, 10)), 195);
    EXPECT_NEAR(qRed(image.pixel(3, 10)), 120, 2);
}

TEST(SBProgressBarPixels, onePeriodLater_theFrameIsTheSame) {
    for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
        BarStage stage(200, 20);
        stage.bar.setFloatValue(0.8);
        stage.step(0.07);
        const QImage before = stage.shot(ratio);
        stage.step(0.3);
        EXPECT_EQ(stage.shot(ratio), before) << ratio;
        stage.step(0.1);
        EXPECT_NE(stage.shot(ratio), before) << ratio;
    }
}

TEST(SBProgressBarPixels, shareOfAPeriodLater_theStripesStandSoMuchFurtherRight) {
    for (const int points : {1, 5, 12, 29}) {
        BarStage stage(200, 20);
        stage.bar.setFloatValue(1.0);
        stage.step(0.1);
        const QImage before = stage.shot();
        stage.step(0.3 * points / 30);
        const QImage after = stage.shot();
        for (int y = 0; y < 20; ++y) {
            for (int x = 12; x < 187 - points; ++x) {
                ASSERT_EQ(before.pixel(x, y), after.pixel(x + points, y)) << points << " at " << x << ',' << y;
            }
        }
    }
}

TEST(SBProgressBarPixels, stripesTurnedOff_leaveTheBareFill) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(1.0);
    stage.bar.setAnimates(false);
    stage.step(0.25);
    const QImage image = stage.shot();
    for (int x = 20; x < 180; ++x) {
        expectGrey(image, x, 10, 222);  // 0.86875
    }
}

TEST(SBProgressBarPixels, halfFadedBar_isHalfTransparentWithoutShowingWhatLiesBeneathItsFill) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    const QRgb opaque = stage.shot().pixel(54, 10);
    stage.bar.setHidden(true);
    stage.step(0.0);
    stage.seconds += 0.0625;  // the default timing has gone 0.40851 of the way
    const QRgb faded = stage.shot().pixel(54, 10);
    EXPECT_NEAR(qAlpha(faded), 151, 1);
    EXPECT_NEAR(qRed(faded) * 255.0 / qAlpha(faded), qRed(opaque), 2);
    stage.step(1.0);
    EXPECT_EQ(stage.shot().pixel(54, 10), 0x00000000U);
}

TEST(SBProgressBarPixels, borderShadowAndStripes_showTheirChangeAtTheNextResizeOnly) {
    const QImage reference = BarStage(200, 20).shot();
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    const QImage before = stage.shot();
    stage.bar.setBorderColor(Qt::red);
    stage.bar.setBorderWidth(2.0);
    stage.bar.setShadowWidth(2.0);
    stage.bar.setStripesImage(SBProgressBar::stripesImageWithSize({10, 20}));
    EXPECT_EQ(stage.shot(), before);
    // Not even when something else is drawn anew, or at another resolution.
    stage.bar.setColorTint(QColor(Qt::green));
    stage.bar.setColorTint(std::nullopt);
    EXPECT_EQ(stage.shot(), before);
    EXPECT_EQ(qRed(stage.shot(2.0).pixel(300, 0)), 74);

    stage.bar.resize(201, 20);
    const QImage after = stage.shot();
    EXPECT_EQ(after.pixel(150, 0), 0xffff0000U);
    EXPECT_EQ(after.pixel(150, 1), 0xffff0000U);
    EXPECT_NE(after.pixel(150, 2), 0xffff0000U);
    EXPECT_GT(qRed(after.pixel(50, 2)), 225);
    EXPECT_GT(qRed(after.pixel(50, 3)), 225);
    EXPECT_LT(qRed(after.pixel(50, 4)), 210);
    expectGrey(reference, 150, 0, 74);
}

TEST(SBProgressBarPixels, borderChangedBeforeTheFirstFrame_isStillShownAsItWas) {
    BarStage stage(200, 20);
    stage.bar.setBorderColor(Qt::red);
    expectGrey(stage.shot(), 100, 0, 74);
}

TEST(SBProgressBarPixels, newTroughColours_showAtOnce) {
    BarStage stage(200, 20);
    stage.shot();
    stage.bar.setBackgroundColors({QColor(Qt::blue), QColor(Qt::blue)});
    EXPECT_EQ(stage.shot().pixel(100, 10), 0xff0000ffU);
}

TEST(SBProgressBarPixels, geometryInPoints_isTheSameAtEveryResolution) {
    for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
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

TEST(SBProgressBarPixels, middle_hasNoSeamAtAnyResolution) {
    for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
        BarStage stage(200, 20);
        stage.bar.setFloatValue(0.7);
        stage.step(0.11);
        const QImage image = stage.shot(ratio);
        for (int x = static_cast<int>(11 * ratio); x < static_cast<int>(188 * ratio); ++x) {
            // From column to column only the stripes differ, and their diagonals by less than a row each.
            const bool isFill = x < static_cast<int>(130 * ratio);
            for (int y = 0; y < image.height(); ++y) {
                ASSERT_EQ(qAlpha(image.pixel(x, y)), 255) << ratio << ": " << x << ',' << y;
                const int step = qRed(image.pixel(x, y)) - qRed(image.pixel(x - 1, y));
                ASSERT_LE(std::abs(step), isFill                              ? 11
                                          : x > static_cast<int>(143 * ratio) ? 0
                                                                              : 255)
                    << ratio << ": " << x << ',' << y;
            }
        }
    }
}

// Whatever a bar has shown before, it looks like one that was made so: no layer keeps a picture that is out of date.
TEST(SBProgressBarPixels, barThatHasShownOtherLooks_looksLikeANewOne) {
    constexpr double kTime = 0.0371;
    BarStage old(64, 48);
    int round = 0;
    for (const QSize size : {QSize(200, 20), QSize(21, 33), QSize(45, 21), QSize(400, 40), QSize(20, 100)}) {
        for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
            for (const double value : {0.0, 0.003, 0.13, 0.377, 0.93, 0.995, 1.0}) {
                ++round;
                BarStage fresh(64, 48);
                for (BarStage* const stage : {&old, &fresh}) {
                    SBProgressBar& bar = stage->bar;
                    bar.setShadowWidth(0.0);
                    bar.setBorderWidth(0.5 * (round % 5));
                    bar.setShadowWidth(0.25 * (round % 3) * bar.borderWidth());
                    bar.setBorderColor(round % 2 == 0 ? Qt::red : Qt::darkGray);
                    bar.setColorTint(round % 3 == 0 ? std::optional<QColor>(Qt::blue) : std::nullopt);
                    bar.setBackgroundColors({QColor(0, round, 0), QColor(0, 0, round, 60)});
                    bar.setStripesImage(SBProgressBar::stripesImageWithSize({10.0 + round % 7, 20.0}));
                    bar.setFloatValue(value);
                    bar.resize(size);
                    bar.resizeLayers();
                    bar.setAnimationDuration(0.3);
                    stage->step(1.0);
                    stage->step(kTime);
                }
                ASSERT_EQ(old.shot(ratio), fresh.shot(ratio))
                    << size.width() << 'x' << size.height() << " at " << ratio << ", value " << value;
            }
        }
    }
}

}  // namespace
}  // namespace kelvo
