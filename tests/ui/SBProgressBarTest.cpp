// SBProgressBarPictureTest.cpp has the bar's look, SBProgressBarMotionTest.cpp its animations.

#include <gtest/gtest.h>

#include <QAccessible>
#include <QCoreApplication>
#include <atomic>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "LogListener.h"
#include "SBProgressBarAccessible.h"
#include "SBProgressBarStage.h"

namespace kelvo {
namespace {

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Notes the calls of the methods that a subclass can replace.
class RecordingBar : public SBProgressBar {
public:
    using SBProgressBar::SBProgressBar;
    void updateLayer() override { ++refreshes; }
    void viewResized() override {
        ++resizes;
        SBProgressBar::viewResized();
    }
    int refreshes = 0;
    int resizes = 0;
    std::vector<int> announced;

protected:
    void announce(int percent) override {
        announced.push_back(percent);
        SBProgressBar::announce(percent);
    }
};

Layer::Gradient colorsOf(const Layer& layer) {
    return std::get<Layer::Gradient>(layer.background());
}

TEST(SBProgressBar, valueOutOfRange_isRefusedWithNameAndReason) {
    BarStage stage(200, 20);
    for (const double value : {1.0, 0.0, 0.376, 0.5}) {
        stage.bar.setFloatValue(value);
        EXPECT_EQ(stage.bar.floatValue(), value);
    }
    for (const double value : {-0.01, kNotANumber, kInfinity, -kInfinity, std::nextafter(1.0, 2.0)}) {
        try {
            stage.bar.setFloatValue(value);
            ADD_FAILURE() << value << " was accepted";
        } catch (const InvalidValue& error) {
            EXPECT_STREQ(error.name(), "Invalid value");
            EXPECT_STREQ(error.what(), "Invalid value passed for `setFloatValue:`. Value must be between 0.0 and 1.0");
        }
        EXPECT_THROW(stage.bar.animator().setFloatValue(value), InvalidValue);
        EXPECT_EQ(stage.bar.floatValue(), 0.5);
        EXPECT_EQ(stage.bar.innerClipLayer().frame(), QRectF(1, 1, 99, 18));
    }
}

TEST(SBProgressBar, layers_haveTheirFrames) {
    const struct {
        QSize size;
        double value, border, tile;
        QRectF inner, shadow, stripes;
    } rows[] = {
        {{200, 20}, 0.0, 1, 30, {1, 1, 0, 18}, {-1, -1, 2, 20}, {-30, 0, 240, 20}},
        {{200, 20}, 0.25, 1, 30, {1, 1, 49.5, 18}, {-1, -1, 51.5, 20}, {-30, 0, 240, 20}},
        {{200, 20}, 1.0, 1, 30, {1, 1, 198, 18}, {-1, -1, 200, 20}, {-30, 0, 240, 20}},
        {{102, 42}, 0.5, 1, 30, {1, 1, 50, 40}, {-1, -1, 52, 42}, {-30, 0, 150, 42}},
        {{200, 20}, 0.5, 3, 30, {3, 3, 97, 14}, {-3, -3, 103, 20}, {-30, 0, 240, 20}},
        {{200, 20}, 0.5, -3, 30, {-3, -3, 103, 26}, {3, 3, 97, 20}, {-30, 0, 240, 20}},
        {{40, 20}, 1.0, 50, 30, {50, 50, 0, 0}, {-50, -50, 100, 100}, {-30, 0, 90, 20}},
        // The stripes are one tile longer than covers the bar.
        {{0, 20}, 0.0, 1, 30, {1, 1, 0, 18}, {-1, -1, 2, 20}, {-30, 0, 30, 20}},
        {{1, 20}, 0.0, 1, 30, {1, 1, 0, 18}, {-1, -1, 2, 20}, {-30, 0, 60, 20}},
        {{30, 20}, 0.0, 1, 30, {1, 1, 0, 18}, {-1, -1, 2, 20}, {-30, 0, 60, 20}},
        {{31, 20}, 0.0, 1, 30, {1, 1, 0, 18}, {-1, -1, 2, 20}, {-30, 0, 90, 20}},
        {{200, 20}, 0.0, 1, 50, {1, 1, 0, 18}, {-1, -1, 2, 20}, {-50, 0, 250, 20}},
        {{200, 20}, 0.0, 1, 0, {1, 1, 0, 18}, {-1, -1, 2, 20}, {0, 0, 0, 20}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        QWidget window;
        SBProgressBar bar(&window);
        bar.setGeometry({{}, row.size});
        bar.setFloatValue(row.value);
        bar.setBorderWidth(row.border);
        bar.setStripesImage(SBProgressBar::stripesImageWithSize({row.tile, 20}));
        bar.resizeLayers();
        for (Layer* const layer :
             {&bar.clipLayer(), &bar.backgroundLayer(), &bar.borderLayer(), &bar.fillLayer(), &bar.colorTintLayer()}) {
            EXPECT_EQ(layer->frame(), QRectF({}, row.size));
        }
        EXPECT_EQ(bar.clipLayer().cornerRadius(), row.size.height() / 2.0);
        EXPECT_EQ(bar.innerClipLayer().frame(), row.inner);
        EXPECT_EQ(bar.innerClipLayer().cornerRadius(), row.inner.height() / 2.0);
        EXPECT_EQ(bar.innerShadowLayer().frame(), row.shadow);
        EXPECT_EQ(bar.innerShadowLayer().cornerRadius(), row.shadow.height() / 2.0);
        EXPECT_EQ(bar.stripesLayer().frame(), row.stripes);
        EXPECT_EQ(bar.stripesLayer().position(), QPointF(-row.tile, row.size.height() / 2.0));
        EXPECT_EQ(bar.stripesAnimation().fromValue, -row.tile);
    }
}

TEST(SBProgressBar, newRingOrStripes_refreshTheLayerAndKeepTheShadowNarrow) {
    using Change = std::function<void(SBProgressBar & bar)>;
    const auto border = [](double width) -> Change { return [=](SBProgressBar& bar) { bar.setBorderWidth(width); }; };
    const auto shadow = [](double width) -> Change { return [=](SBProgressBar& bar) { bar.setShadowWidth(width); }; };
    const struct {
        Change change;
        double border, shadow;
        int refreshes, warnings;
    } rows[] = {
        {shadow(2.0), 1.0, 1.0, 0, 1},
        {border(1.0), 1.0, 1.0, 1, 0},
        {border(0.5), 0.5, 0.5, 2, 0},  // the shadow is refreshed as well
        {border(3.0), 3.0, 0.5, 1, 0},
        {shadow(2.0), 3.0, 2.0, 1, 0},
        {shadow(0.25), 3.0, 0.25, 1, 0},
        {border(kNotANumber), 3.0, 0.25, 0, 0},
        {border(-kInfinity), 3.0, 0.25, 0, 0},
        {shadow(kNotANumber), 3.0, 0.25, 0, 0},
        {shadow(-kInfinity), 3.0, 0.25, 0, 0},
        {[](SBProgressBar& bar) { bar.setBorderColor(Qt::red); }, 3.0, 0.25, 1, 0},
        {[](SBProgressBar& bar) { bar.setStripesImage({}); }, 3.0, 0.25, 1, 0},
        {border(-3.0), -3.0, -3.0, 2, 0},
    };
    int warnings = 0;
    const test::LogListener listener([&warnings](std::string_view message) {
        EXPECT_EQ(message, "Warning: Line width must be at least as large as shadow width");
        ++warnings;
    });
    RecordingBar bar;
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        bar.refreshes = warnings = 0;
        row.change(bar);
        EXPECT_EQ(bar.borderWidth(), row.border);
        EXPECT_EQ(bar.shadowWidth(), row.shadow);
        EXPECT_EQ(bar.refreshes, row.refreshes);
        EXPECT_EQ(warnings, row.warnings);
    }
}

TEST(SBProgressBar, tint_changesItsColourAtOnceAndFadesToItsOpacity) {
    BarStage stage(200, 20);
    SBProgressBar& bar = stage.bar;
    bar.setColorTint(QColor(Qt::blue));
    EXPECT_EQ(bar.colorTint(), QColor(Qt::blue));
    EXPECT_EQ(colorsOf(bar.colorTintLayer()), Layer::Gradient{Qt::blue});
    bar.setColorTintOpacity(0.7);
    EXPECT_EQ(bar.colorTintOpacity(), 0.7);
    EXPECT_EQ(bar.colorTintLayer().shownOpacity(), 0.2F);
    stage.step(0.25);
    EXPECT_EQ(bar.colorTintLayer().shownOpacity(), 0.7F);
    bar.setColorTint(std::nullopt);
    EXPECT_TRUE(colorsOf(bar.colorTintLayer()).empty());
}

TEST(SBProgressBar, everyMoveToAWindow_registersAgainForFrameChanges) {
    QWidget first;
    QWidget second;
    auto* const box = new QWidget(&first);
    RecordingBar bar(&first);
    const auto resizedBy = [&bar](int width) {
        bar.resizes = 0;
        bar.resize(width, 20);
        EXPECT_EQ(bar.clipLayer().frame(), QRectF(0, 0, width, 20));
        return bar.resizes;
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
    bar.resizes = 0;
    bar.move(5, 5);
    EXPECT_EQ(bar.resizes, 3);
    bar.setParent(nullptr);
}

TEST(SBProgressBar, valuesFromAnotherThread_areStoredAtOnceAndShownWhenEventsAreServed) {
    BarStage stage(200, 20);
    double shown = 0.0;
    for (const double value : {0.5, 1.0}) {
        std::thread([&] { stage.bar.setFloatValue(value); }).join();
        EXPECT_EQ(stage.bar.floatValue(), value);
        EXPECT_EQ(stage.bar.innerClipLayer().frame().width(), shown);
        QCoreApplication::sendPostedEvents();
        shown = 198.0 * value;
        EXPECT_EQ(stage.bar.innerClipLayer().frame().width(), shown);
    }
}

TEST(SBProgressBar, valuesSetByAThreadDuringFrames_endWithTheLastOneShown) {
    BarStage stage(200, 20);
    std::atomic<bool> finished = false;
    std::thread setter([&] {
        for (int i = 0; i <= 20000; ++i) {
            stage.bar.setFloatValue(i / 20000.0);
        }
        finished = true;
    });
    double last = 0.0;
    while (!finished) {
        const double value = stage.bar.floatValue();
        EXPECT_GE(value, last);
        last = value;
        stage.step(1.0 / 60.0);
        stage.shot();
        QCoreApplication::processEvents();
    }
    setter.join();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(stage.bar.innerClipLayer().frame().width(), 198.0);
}

TEST(SBProgressBar, isAReadOnlyProgressBarToAssistiveTools) {
    SBProgressBar bar;
    bar.setFloatValue(0.376);
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&bar);
    ASSERT_NE(interface, nullptr);
    EXPECT_EQ(interface->role(), QAccessible::ProgressBar);
    EXPECT_TRUE(interface->state().readOnly);
    EXPECT_FALSE(interface->state().focusable);
    EXPECT_EQ(interface->text(QAccessible::Value), "38%");
    QAccessibleValueInterface* const value = interface->valueInterface();
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->minimumValue().toInt(), 0);
    EXPECT_EQ(value->maximumValue().toInt(), 100);
    EXPECT_EQ(value->minimumStepSize().toInt(), 1);
    value->setCurrentValue(70);
    EXPECT_EQ(value->currentValue().toInt(), 38);
    QWidget other;
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&other)->role(), QAccessible::Client);
}

TEST(SBProgressBar, everyNewPercent_isAnnouncedOnce) {
    RecordingBar bar;
    for (const double value : {0.0, 0.004, 0.01, 0.0101, 0.5, 0.5, 1.0}) {
        bar.setFloatValue(value);
    }
    auto* const movement = bar.findChild<QVariantAnimation*>();
    bar.animator().setFloatValue(0.0);
    movement->setCurrentTime(250);
    bar.animator().setFloatValue(0.5);  // announces nothing by itself
    movement->setCurrentTime(250);
    EXPECT_EQ(bar.announced, (std::vector<int>{1, 50, 100, 0, 50}));
}

TEST(ProgressPercent, isRoundedAsThePercentageOfTheLabel) {
    for (const auto& [value, percent] :
         {std::pair(0.0, 0), {0.004, 0}, {0.006, 1}, {0.125, 12}, {198 / 199.0, 99}, {1.0, 100}}) {
        EXPECT_EQ(progressPercent(value), percent) << value;
    }
}

}  // namespace
}  // namespace kelvo
