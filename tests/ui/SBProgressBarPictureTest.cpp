// The bar on reviewed pictures. Its colours and lengths by numbers are in SBProgressBarPixelTest.cpp and
// SBProgressBarGeometryTest.cpp.

#include <gtest/gtest.h>

#include <QPainter>
#include <algorithm>
#include <functional>

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
    void addImage(const LayerImage& image, double ratio) {
        QImage picture((image.size() * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
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
    // The last but two end within a column.
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
    Sheet sheet({500, 190});
    const SBProgressBar bar;
    for (const QSizeF size : {QSizeF(60, 20), QSizeF(10, 20)}) {
        for (const bool innerShadow : {false, true}) {
            sheet.addImage(bar.borderImageForSize_withInnerShadow(size, innerShadow), 1.0);
            sheet.addImage(bar.borderImageForSize_withInnerShadow(size, innerShadow), 4.0);
        }
    }
    sheet.addImage(SBProgressBar::stripesImageWithSize({30, 20}), 1.0);
    sheet.addImage(SBProgressBar::stripesImageWithSize({20, 20}), 3.0);
    EXPECT_TRUE(sheet.isApproved("bar-images.png"));
}

}  // namespace
}  // namespace kelvo
