#include <gtest/gtest.h>

#include <QPainter>
#include <algorithm>
#include <functional>
#include <optional>

#include "ApprovedPicture.h"
#include "SBProgressBarStage.h"

namespace kelvo {
namespace {

/// Pictures in lines on a window's grey.
class Sheet {
public:
    explicit Sheet(QSize size) : image_(size, QImage::Format_RGB32) { image_.fill(QColor(239, 240, 241)); }
    void add(QImage picture) {
        constexpr int kGap = 8;
        picture.setDevicePixelRatio(1.0);
        if (x_ + picture.width() > image_.width()) {
            x_ = kGap;
            y_ += height_ + kGap;
            height_ = 0;
        }
        QPainter(&image_).drawImage(x_, y_, picture);
        x_ += picture.width() + kGap;
        height_ = std::max(height_, picture.height());
    }
    /// A bar a third of a stripe's way after its start.
    void addBar(
        double value, QSize size = {200, 20}, double ratio = 1.0,
        const std::function<void(BarStage&)>& change = [](BarStage&) {}) {
        BarStage stage(size.width(), size.height());
        stage.bar.setFloatValue(value);
        change(stage);
        stage.bar.resizeLayers();
        stage.step(0.1);
        add(stage.shot(ratio));
    }
    /// Drawn with a pen, which must not matter.
    void addImage(const LayerImage& image, double ratio) {
        QImage picture((image.size() * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::red, 5.0));
        painter.scale(ratio, ratio);
        image.draw(painter);
        painter.end();
        add(picture);
    }
    testing::AssertionResult isApproved(const char* name) const {
        return test::isApproved(image_, QStringLiteral(KELVO_PICTURES "/") + name);
    }

private:
    QImage image_;
    int x_ = 8;
    int y_ = 8;
    int height_ = 0;
};

TEST(SBProgressBarPicture, values_areShownAtEverySizeAndResolution) {
    Sheet sheet({1470, 450});
    // Two values end within a column.
    for (const double value : {0.0, 0.01, 0.1, 0.5, 99.25 / 198.0, 99.75 / 198.0, 0.995, 1.0}) {
        for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
            sheet.addBar(value, {200, 20}, ratio);
        }
        sheet.addBar(value, {21, 20});
        sheet.addBar(value, {10, 20});
        sheet.addBar(value, {60, 31}, 1.5);
        sheet.addBar(value, {60, 7}, 2.0);
    }
    EXPECT_TRUE(sheet.isApproved("bar-values.png"));
}

TEST(SBProgressBarPicture, changedLooks_areShown) {
    Sheet sheet({740, 330});
    const std::function<void(BarStage&)> changes[] = {
        [](BarStage& stage) { stage.bar.setColorTint(QColor(0, 90, 255)); },
        [](BarStage& stage) {
            stage.bar.setBorderWidth(3.0);
            stage.bar.setShadowWidth(2.0);
            stage.bar.setBorderColor(QColor(200, 0, 0));
        },
        [](BarStage& stage) { stage.bar.setBorderWidth(0.0); },
        [](BarStage& stage) {
            stage.bar.setBackgroundColors({QColor(0, 90, 0), QColor(0, 200, 0), QColor(0, 0, 90)});
            stage.bar.setStripesImage(SBProgressBar::stripesImageWithSize({50, 20}));
        },
        [](BarStage& stage) {
            stage.bar.setAnimates(false);
            stage.step(0.25);
        },
        [](BarStage& stage) { stage.bar.setHidden(true); },
    };
    for (const auto& change : changes) {
        sheet.addBar(0.5, {200, 20}, 1.0, change);
        sheet.addBar(1.0, {200, 20}, 2.0, change);
        sheet.addBar(1.0, {42, 22}, 2.0, change);
    }
    EXPECT_TRUE(sheet.isApproved("bar-looks.png"));
}

TEST(SBProgressBarPicture, borderAndStripesImages_areDrawn) {
    Sheet sheet({500, 280});
    SBProgressBar bar;
    for (const QSizeF size : {QSizeF(60, 20), QSizeF(10, 20)}) {
        for (const bool innerShadow : {false, true}) {
            sheet.addImage(bar.borderImageForSize_withInnerShadow(size, innerShadow), 1.0);
            sheet.addImage(bar.borderImageForSize_withInnerShadow(size, innerShadow), 4.0);
        }
    }
    sheet.addImage(SBProgressBar::stripesImageWithSize({30, 20}), 1.0);
    sheet.addImage(SBProgressBar::stripesImageWithSize({20, 20}), 3.0);
    // An image shows what the bar is set to when it is drawn.
    const LayerImage ring = bar.borderImageForSize_withInnerShadow({60, 20}, true);
    bar.setBorderWidth(3.0);
    bar.setShadowWidth(2.0);
    bar.setBorderColor(Qt::red);
    sheet.addImage(ring, 4.0);
    bar.setBorderWidth(0.0);
    sheet.addImage(ring, 1.0);
    EXPECT_TRUE(sheet.isApproved("bar-images.png"));
}

// The colours are computed from the bar's description, not by the program, for a pixel's middle, at y + 1/2:
//   trough   0.55 - 0.15 (y + 0.5) / 20
//   fill     0.75 + 0.25 (y - 0.5) / 20, then 0.96 of it under a stripe and 0.04 more beside one
//   line     0.4 of that + 0.6, in the fill's first row
// A stripe covers the point (u, v) of a tile, in shares of its sides, where u + v is below 1/2 or between 1 and 3/2.
// The first whole tile begins at x = 1 when the stripes begin to move.
TEST(SBProgressBarPicture, halfFilledBar_hasTheColoursOfItsDescription) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    const struct {
        int x, y, grey;
    } rows[] = {
        {150, 1, 137}, {150, 9, 122}, {150, 18, 105},                 // the trough
        {12, 0, 74},   {100, 0, 74},  {187, 0, 74},   {100, 19, 74},  // the border, 0.291
        {36, 2, 188},  {51, 2, 198},                                  // 0.76875: u = 0.183, v = 0.075; u = 0.683
        {54, 10, 213}, {39, 10, 223},                                 // 0.86875: u = 0.783, v = 0.475; u = 0.283
        {36, 1, 227},  {52, 1, 231},                                  // the highlight: under and beside a stripe
    };
    const QImage image = stage.shot();
    for (const auto& row : rows) {
        EXPECT_NEAR(qRed(image.pixel(row.x, row.y)), row.grey, 1) << row.x << ',' << row.y;
    }
}

TEST(SBProgressBarPicture, borderShadowAndStripes_showTheirChangeAtTheNextResizeOnly) {
    BarStage reference(200, 20);
    reference.bar.setFloatValue(0.5);
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    stage.bar.setBorderColor(Qt::red);
    stage.bar.setBorderWidth(2.0);
    stage.bar.setShadowWidth(2.0);
    stage.bar.setStripesImage(SBProgressBar::stripesImageWithSize({10, 20}));
    // Not even in the first frame, or at another resolution.
    EXPECT_EQ(stage.shot(), reference.shot());
    EXPECT_EQ(stage.shot(2.0), reference.shot(2.0));
    stage.bar.resize(201, 20);
    EXPECT_EQ(stage.shot().pixel(150, 1), 0xffff0000U);
}

TEST(SBProgressBarPicture, newTroughColours_showAtOnce) {
    BarStage stage(200, 20);
    stage.shot();
    stage.bar.setBackgroundColors({Qt::blue});
    EXPECT_EQ(stage.shot().pixel(100, 10), 0xff0000ffU);
}

// No layer keeps a picture that is out of date.
TEST(SBProgressBarPicture, barThatHasShownOtherLooks_looksLikeANewOne) {
    BarStage old(64, 48);
    int round = 0;
    for (const QSize size : {QSize(200, 20), QSize(21, 33), QSize(20, 100)}) {
        for (const double ratio : {1.0, 1.25, 2.0}) {
            for (const double value : {0.0, 0.003, 0.377, 0.995, 1.0}) {
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
                    stage->step(0.0371);
                }
                ASSERT_EQ(old.shot(ratio), fresh.shot(ratio))
                    << size.width() << 'x' << size.height() << " at " << ratio << ", value " << value;
            }
        }
    }
}

}  // namespace
}  // namespace kelvo
