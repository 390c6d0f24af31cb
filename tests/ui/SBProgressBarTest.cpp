#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "LogListener.h"
#include "SBProgressBar.h"
#include "SBProgressBarStage.h"

namespace kelvo {
namespace {

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

QColor white(float level) {
    return QColor::fromRgbF(level, level, level, 1.0F);
}

Layer::Gradient colorsOf(const Layer& layer) {
    return std::get<Layer::Gradient>(layer.background());
}

TEST(SBProgressBar, newBar_hasTheDefaults) {
    SBProgressBar bar;
    EXPECT_EQ(bar.floatValue(), 0.0);
    EXPECT_FALSE(bar.colorTint().has_value());
    EXPECT_EQ(bar.colorTintOpacity(), 0.20000000298023224);
    EXPECT_TRUE(bar.animates());
    EXPECT_EQ(bar.animationDuration(), 0.3);
    EXPECT_EQ(bar.borderWidth(), 1.0);
    EXPECT_EQ(bar.borderColor(), white(0.291F));
    EXPECT_EQ(bar.shadowWidth(), 1.0);
    EXPECT_EQ(bar.stripesImage().size(), QSizeF(30, 20));
    EXPECT_EQ(bar.backgroundColors(), (std::vector<QColor>{white(0.55F), white(0.4F)}));
    EXPECT_EQ(bar.stripesLayer().anchorPoint(), QPointF(0.0, 0.5));
    EXPECT_EQ(bar.stripesLayer().opacity(), 0.04F);
    EXPECT_EQ(bar.focusPolicy(), Qt::NoFocus);
}

TEST(SBProgressBar, newBar_hasItsLayersInTheirTree) {
    SBProgressBar bar;
    EXPECT_EQ(bar.layer(), &bar.rootLayer());
    EXPECT_EQ(bar.rootLayer().sublayers(), (std::vector<Layer*>{&bar.clipLayer()}));
    EXPECT_EQ(bar.clipLayer().sublayers(),
              (std::vector<Layer*>{&bar.backgroundLayer(), &bar.borderLayer(), &bar.innerClipLayer()}));
    EXPECT_EQ(bar.innerClipLayer().sublayers(), (std::vector<Layer*>{&bar.fillLayer(), &bar.stripesLayer(),
                                                                     &bar.innerShadowLayer(), &bar.colorTintLayer()}));
    EXPECT_EQ(bar.rootLayer().superlayer(), nullptr);
}

TEST(SBProgressBar, valuesFromZeroToOne_areAccepted) {
    SBProgressBar bar;
    for (const double value : {1.0, 0.0, 0.376, 198.0 / 199.0}) {
        bar.setFloatValue(value);
        EXPECT_EQ(bar.floatValue(), value);
    }
    bar.setFloatValue(199 / 199.0);
    EXPECT_EQ(bar.floatValue(), 1.0);
}

TEST(SBProgressBar, valueOutOfRange_isRefusedWithNameAndReason) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    for (const double value : {-0.01, 1.01, kNotANumber, std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity(), std::nextafter(1.0, 2.0)}) {
        try {
            stage.bar.setFloatValue(value);
            ADD_FAILURE() << value << " was accepted";
        } catch (const InvalidValue& error) {
            EXPECT_STREQ(error.name(), "Invalid value");
            EXPECT_STREQ(error.reason(),
                         "Invalid value passed for `setFloatValue:`. Value must be between 0.0 and 1.0");
            EXPECT_STREQ(error.what(), error.reason());
        }
        EXPECT_EQ(stage.bar.floatValue(), 0.5);
        EXPECT_EQ(stage.bar.innerClipLayer().frame(), QRectF(1, 1, 99, 18));
    }
}

class RefreshCount : public SBProgressBar {
public:
    void updateLayer() override { ++refreshes; }
    int refreshes = 0;
};

TEST(SBProgressBar, newRingOrStripes_askTheViewToRefreshItsLayer) {
    const struct {
        std::function<void(SBProgressBar& bar)> change;
        int refreshes;
    } rows[] = {
        {[](SBProgressBar& bar) { bar.setBorderWidth(1.0); }, 1},  // as it is, and as wide as the shadow
        {[](SBProgressBar& bar) { bar.setBorderColor(Qt::red); }, 1},
        {[](SBProgressBar& bar) { bar.setBorderWidth(2.0); }, 1},
        {[](SBProgressBar& bar) { bar.setShadowWidth(1.5); }, 1},
        {[](SBProgressBar& bar) {
             bar.setStripesImage(SBProgressBar::stripesImageWithSize({10, 10}));
         },
         1},
        {[](SBProgressBar& bar) { bar.setBorderWidth(1.0); }, 2},  // the shadow's width with it
        {[](SBProgressBar& bar) { bar.setShadowWidth(9.0); }, 0},
    };
    RefreshCount bar;
    for (const auto& row : rows) {
        bar.refreshes = 0;
        row.change(bar);
        EXPECT_EQ(bar.refreshes, row.refreshes) << &row - rows;
    }
}

TEST(SBProgressBar, shadow_isNeverWiderThanTheBorder) {
    std::vector<std::string> log;
    const test::LogListener listener([&log](std::string_view message) { log.emplace_back(message); });
    SBProgressBar bar;
    bar.setShadowWidth(2.0);
    EXPECT_EQ(bar.shadowWidth(), 1.0);
    EXPECT_EQ(log, std::vector<std::string>{"Warning: Line width must be at least as large as shadow width"});
    log.clear();
    bar.setShadowWidth(1.0);
    bar.setBorderWidth(0.5);
    EXPECT_EQ(bar.borderWidth(), 0.5);
    EXPECT_EQ(bar.shadowWidth(), 0.5);
    bar.setBorderWidth(3.0);
    EXPECT_EQ(bar.borderWidth(), 3.0);
    EXPECT_EQ(bar.shadowWidth(), 0.5);
    bar.setShadowWidth(2.0);
    EXPECT_EQ(bar.shadowWidth(), 2.0);
    bar.setShadowWidth(0.25);
    EXPECT_EQ(bar.shadowWidth(), 0.25);
    EXPECT_TRUE(log.empty());
}

TEST(SBProgressBar, borderNarrowerThanNothing_isStoredAndPullsTheShadowDown) {
    BarStage stage(200, 20);
    stage.bar.setFloatValue(0.5);
    stage.bar.setBorderWidth(-3.0);
    EXPECT_EQ(stage.bar.borderWidth(), -3.0);
    EXPECT_EQ(stage.bar.shadowWidth(), -3.0);
    stage.bar.resizeLayers();
    EXPECT_EQ(stage.bar.innerClipLayer().frame(), QRectF(-3, -3, 103, 26));
    EXPECT_EQ(qAlpha(stage.shot().pixel(0, 0)), 0);
    EXPECT_EQ(qAlpha(stage.shot().pixel(100, 0)), 255);
}

TEST(SBProgressBar, widthsAndDurationThatAreNotFinite_areIgnored) {
    SBProgressBar bar;
    for (const double bad :
         {kNotANumber, std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()}) {
        bar.setBorderWidth(bad);
        bar.setShadowWidth(bad);
        bar.setAnimationDuration(bad);
    }
    EXPECT_EQ(bar.borderWidth(), 1.0);
    EXPECT_EQ(bar.shadowWidth(), 1.0);
    EXPECT_EQ(bar.animationDuration(), 0.3);
}

TEST(SBProgressBar, tint_changesItsColourAtOnceAndFadesToItsOpacity) {
    BarStage stage(200, 20);
    SBProgressBar& bar = stage.bar;
    bar.setColorTint(QColor(Qt::blue));
    EXPECT_EQ(bar.colorTint(), QColor(Qt::blue));
    EXPECT_EQ(colorsOf(bar.colorTintLayer()), std::vector<QColor>{Qt::blue});
    bar.setColorTintOpacity(0.7);
    EXPECT_EQ(bar.colorTintOpacity(), 0.7);
    EXPECT_EQ(bar.colorTintLayer().shownOpacity(), 0.2F);
    stage.step(0.25);
    EXPECT_EQ(bar.colorTintLayer().shownOpacity(), 0.7F);
    bar.setColorTint(std::nullopt);
    EXPECT_TRUE(colorsOf(bar.colorTintLayer()).empty());
}

class CountingBar : public SBProgressBar {
public:
    using SBProgressBar::SBProgressBar;
    void viewResized() override {
        ++resized;
        SBProgressBar::viewResized();
    }
    int resized = 0;
};

TEST(SBProgressBar, everyMoveToAWindow_registersAgainForFrameChanges) {
    QWidget first;
    QWidget second;
    auto* const box = new QWidget(&first);
    CountingBar bar(&first);
    const auto resizedBy = [&bar](int width) {
        bar.resized = 0;
        bar.resize(width, 20);
        EXPECT_EQ(bar.clipLayer().frame(), QRectF(0, 0, width, 20));
        return bar.resized;
    };
    for (QWidget* const window : {&first, &second}) {
        window->setAttribute(Qt::WA_DontShowOnScreen);
        window->show();
    }
    bar.show();
    EXPECT_EQ(resizedBy(150), 1);
    bar.setParent(box);  // in the same window
    bar.show();
    EXPECT_EQ(resizedBy(155), 1);
    bar.setParent(&second);
    bar.show();
    EXPECT_EQ(resizedBy(160), 2);
    bar.viewDidMoveToWindow();
    bar.resized = 0;
    bar.move(5, 5);
    EXPECT_EQ(bar.resized, 3);
    bar.setParent(nullptr);
}

TEST(SBProgressBar, defaultAnimation_existsForTheValueOnly) {
    const auto animation = SBProgressBar::defaultAnimationForKey("floatValue");
    ASSERT_TRUE(animation.has_value());
    QEasingCurve pace(QEasingCurve::BezierSpline);
    pace.addCubicBezierSegment({0.42, 0.0}, {0.58, 1.0}, {1.0, 1.0});
    EXPECT_EQ(*animation, (BasicAnimation{.timingFunction = pace}));
    EXPECT_FALSE(SBProgressBar::defaultAnimationForKey("colorTint").has_value());
    EXPECT_FALSE(SBProgressBar::defaultAnimationForKey("").has_value());
}

}  // namespace
}  // namespace kelvo
