#include <gtest/gtest.h>

#include <cmath>
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
    EXPECT_FALSE(bar.sb_isHidden());
    EXPECT_EQ(bar.alphaValue(), 1.0);
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

TEST(SBProgressBar, newBar_hasItsLayersSetUp) {
    SBProgressBar bar;
    EXPECT_EQ(bar.clipLayer().frame(), QRectF(bar.rect()));
    EXPECT_TRUE(bar.clipLayer().masksToBounds());
    EXPECT_TRUE(bar.innerClipLayer().masksToBounds());
    for (Layer* const layer : {&bar.rootLayer(), &bar.backgroundLayer(), &bar.borderLayer(), &bar.fillLayer(),
                               &bar.stripesLayer(), &bar.innerShadowLayer(), &bar.colorTintLayer()}) {
        EXPECT_FALSE(layer->masksToBounds());
    }
    EXPECT_EQ(colorsOf(bar.backgroundLayer()), (std::vector<QColor>{white(0.55F), white(0.4F)}));
    EXPECT_EQ(colorsOf(bar.fillLayer()), (std::vector<QColor>{white(0.75F), white(1.0F)}));
    EXPECT_EQ(bar.stripesLayer().anchorPoint(), QPointF(0.0, 0.5));
    EXPECT_EQ(bar.stripesLayer().opacity(), 0.04F);
    EXPECT_EQ(bar.stripesLayer().shownOpacity(), 0.04F);
    EXPECT_EQ(bar.colorTintLayer().opacity(), 0.2F);
    EXPECT_TRUE(colorsOf(bar.colorTintLayer()).empty());
}

TEST(SBProgressBar, layerAccessors_alwaysAnswerTheSameLayer) {
    SBProgressBar bar;
    const Layer* const stripes = &bar.stripesLayer();
    bar.resizeLayers();
    bar.setAnimates(false);
    EXPECT_EQ(&bar.stripesLayer(), stripes);
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
    RefreshCount bar;
    bar.setBorderWidth(1.0);  // as it is, and as wide as the shadow
    EXPECT_EQ(bar.refreshes, 1);
    bar.refreshes = 0;
    bar.setBorderColor(Qt::red);
    EXPECT_EQ(bar.refreshes, 1);
    bar.setBorderWidth(2.0);
    EXPECT_EQ(bar.refreshes, 2);
    bar.setShadowWidth(1.5);
    EXPECT_EQ(bar.refreshes, 3);
    bar.setStripesImage(SBProgressBar::stripesImageWithSize({10, 10}));
    EXPECT_EQ(bar.refreshes, 4);
    bar.setBorderWidth(1.0);  // the shadow's width with it
    EXPECT_EQ(bar.refreshes, 6);
    bar.setShadowWidth(9.0);
    EXPECT_EQ(bar.refreshes, 6);
}

TEST(SBProgressBar, shadowWiderThanTheBorder_isLoggedAndRefused) {
    std::vector<std::string> log;
    const test::LogListener listener([&log](std::string_view message) { log.emplace_back(message); });
    SBProgressBar bar;
    bar.setShadowWidth(2.0);
    EXPECT_EQ(bar.shadowWidth(), 1.0);
    EXPECT_EQ(log, std::vector<std::string>{"Warning: Line width must be at least as large as shadow width"});

    bar.setShadowWidth(1.0);
    bar.setShadowWidth(0.25);
    EXPECT_EQ(bar.shadowWidth(), 0.25);
    EXPECT_EQ(log.size(), 1U);
}

TEST(SBProgressBar, borderThinnerThanTheShadow_pullsTheShadowDown) {
    std::vector<std::string> log;
    const test::LogListener listener([&log](std::string_view message) { log.emplace_back(message); });
    SBProgressBar bar;
    bar.setBorderWidth(0.5);
    EXPECT_EQ(bar.borderWidth(), 0.5);
    EXPECT_EQ(bar.shadowWidth(), 0.5);
    bar.setBorderWidth(3.0);
    EXPECT_EQ(bar.borderWidth(), 3.0);
    EXPECT_EQ(bar.shadowWidth(), 0.5);
    bar.setShadowWidth(2.0);
    EXPECT_EQ(bar.shadowWidth(), 2.0);
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

TEST(SBProgressBar, tint_goesToItsLayer) {
    BarStage stage(200, 20);
    SBProgressBar& bar = stage.bar;
    bar.setColorTint(QColor(Qt::blue));
    EXPECT_EQ(bar.colorTint(), QColor(Qt::blue));
    EXPECT_EQ(colorsOf(bar.colorTintLayer()), std::vector<QColor>{Qt::blue});
    EXPECT_EQ(bar.colorTintLayer().opacity(), 0.2F);

    bar.setColorTintOpacity(0.7);
    EXPECT_EQ(bar.colorTintOpacity(), 0.7);
    EXPECT_EQ(bar.colorTintLayer().opacity(), 0.7F);

    bar.setColorTint(std::nullopt);
    EXPECT_TRUE(colorsOf(bar.colorTintLayer()).empty());
}

TEST(SBProgressBar, tintOpacity_fadesWhileItsColourJumps) {
    BarStage stage(200, 20);
    stage.bar.setColorTintOpacity(0.7);
    EXPECT_EQ(stage.bar.colorTintLayer().shownOpacity(), 0.2F);
    stage.step(0.25);
    EXPECT_EQ(stage.bar.colorTintLayer().shownOpacity(), 0.7F);
}

TEST(SBProgressBar, backgroundColors_goToTheirLayerAtOnce) {
    SBProgressBar bar;
    const std::vector<QColor> colors{QColor(Qt::red), QColor(Qt::green)};
    bar.setBackgroundColors(colors);
    EXPECT_EQ(bar.backgroundColors(), colors);
    EXPECT_EQ(colorsOf(bar.backgroundLayer()), colors);
}

TEST(SBProgressBar, sbIsHidden_isAPlainStore) {
    SBProgressBar bar;
    bar.setSb_isHidden(true);
    EXPECT_TRUE(bar.sb_isHidden());
    EXPECT_EQ(bar.alphaValue(), 1.0);
    bar.setSb_isHidden(false);
    EXPECT_FALSE(bar.sb_isHidden());
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

TEST(SBProgressBar, everyMoveToAWindow_registersOnceMoreForFrameChanges) {
    QWidget first;
    QWidget second;
    CountingBar bar(&first);
    first.setAttribute(Qt::WA_DontShowOnScreen);
    second.setAttribute(Qt::WA_DontShowOnScreen);
    first.show();
    second.show();
    bar.show();

    bar.resized = 0;
    bar.resize(150, 20);
    EXPECT_EQ(bar.resized, 1);
    EXPECT_EQ(bar.clipLayer().frame(), QRectF(0, 0, 150, 20));

    bar.setParent(&second);
    bar.show();
    bar.resized = 0;
    bar.resize(160, 20);
    EXPECT_EQ(bar.resized, 2);
    EXPECT_EQ(bar.clipLayer().frame(), QRectF(0, 0, 160, 20));

    bar.viewDidMoveToWindow();
    bar.resized = 0;
    bar.move(5, 5);
    EXPECT_EQ(bar.resized, 3);
}

TEST(SBProgressBar, moveWithinTheSameWindow_doesNotRegisterAgain) {
    QWidget window;
    auto* const box = new QWidget(&window);
    CountingBar bar(&window);
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.show();
    bar.setParent(box);
    bar.show();
    bar.resized = 0;
    bar.resize(150, 20);
    EXPECT_EQ(bar.resized, 1);
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
