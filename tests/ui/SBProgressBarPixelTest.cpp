// The colours below are computed from the bar's description, not by the program, for a pixel's middle. In a bar of 20
// points with the fill's layers one point further down, at y + 1/2:
//   trough   0.55 - 0.15 (y + 0.5) / 20
//   fill     0.75 + 0.25 (y - 0.5) / 20, then 0.96 of it under a stripe and 0.04 more beside one
//   line     0.4 of that + 0.6, in the fill's first row
//   tint     0.8 of that + 0.2 of the tint
// A stripe covers the point (u, v) of a tile, in shares of its sides, where u + v is below 1/2 or between 1 and 3/2.
// The first whole tile begins at x = 1 when the stripes begin to move.

#include <gtest/gtest.h>

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

TEST(SBProgressBarPixels, halfFilledBar_hasTheColoursOfItsDescription) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    const struct {
        int x, y, grey;
    } rows[] = {
        {150, 1, 137},  {150, 9, 122}, {150, 18, 105},                 // the trough
        {12, 0, 74},    {100, 0, 74},  {187, 0, 74},   {100, 19, 74},  // the border, 0.291
        {36, 2, 188},   {51, 2, 198},                                  // 0.76875: u = 0.183, v = 0.075; u = 0.683
        {54, 10, 213},  {39, 10, 223},                                 // 0.86875: u = 0.783, v = 0.475; u = 0.283
        {42, 18, 237},  {55, 18, 247},                                 // 0.96875: u = 0.383, v = 0.875; u = 0.816
        {36, 1, 227},   {52, 1, 231},                                  // the highlight: under and beside a stripe
        {100, 10, 120}, {98, 1, 137},  {98, 18, 105},                  // beside the end, a circle of 9 about (91, 10)
    };
    const QImage image = stage.shot();
    for (const auto& row : rows) {
        expectGrey(image, row.x, row.y, row.grey);
    }
}

TEST(SBProgressBarPixels, tallBars_showTheGradientsEnds) {
    expectGrey(BarStage(400, 200).shot(), 200, 1, 140);    // 0.55
    expectGrey(BarStage(400, 200).shot(), 200, 198, 102);  // 0.4
    BarStage stage(800, 400);
    stage.bar.setFloatValue(1.0);
    stage.bar.setAnimates(false);
    stage.step(0.25);
    expectGrey(stage.shot(), 400, 2, 191);    // 0.75
    expectGrey(stage.shot(), 400, 398, 255);  // 1.0
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

TEST(SBProgressBarPixels, borderShadowAndStripes_showTheirChangeAtTheNextResizeOnly) {
    BarStage reference(200, 20);
    reference.bar.setFloatValue(0.5);
    const QImage before = reference.shot();
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    stage.bar.setBorderColor(Qt::red);
    stage.bar.setBorderWidth(2.0);
    stage.bar.setShadowWidth(2.0);
    stage.bar.setStripesImage(SBProgressBar::stripesImageWithSize({10, 20}));
    // Not even in the first frame, when something else is drawn again, or at another resolution.
    EXPECT_EQ(stage.shot(), before);
    stage.bar.setColorTint(QColor(Qt::green));
    stage.bar.setColorTint(std::nullopt);
    EXPECT_EQ(stage.shot(), before);
    EXPECT_EQ(stage.shot(2.0), reference.shot(2.0));

    stage.bar.resize(201, 20);
    const QImage after = stage.shot();
    EXPECT_EQ(after.pixel(150, 0), 0xffff0000U);
    EXPECT_EQ(after.pixel(150, 1), 0xffff0000U);
    EXPECT_NE(after.pixel(150, 2), 0xffff0000U);
    EXPECT_GT(qRed(after.pixel(50, 2)), 225);
    EXPECT_GT(qRed(after.pixel(50, 3)), 225);
    EXPECT_LT(qRed(after.pixel(50, 4)), 210);
}

TEST(SBProgressBarPixels, newTroughColours_showAtOnce) {
    BarStage stage(200, 20);
    stage.shot();
    const std::vector<QColor> blue{QColor(Qt::blue), QColor(Qt::blue)};
    stage.bar.setBackgroundColors(blue);
    EXPECT_EQ(stage.bar.backgroundColors(), blue);
    EXPECT_EQ(stage.shot().pixel(100, 10), 0xff0000ffU);
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
