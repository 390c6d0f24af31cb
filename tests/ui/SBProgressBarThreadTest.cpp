#include <gtest/gtest.h>

#include <QCoreApplication>
#include <atomic>
#include <memory>
#include <thread>

#include "SBProgressBarStage.h"

namespace kelvo {
namespace {

TEST(SBProgressBarThreads, valuesFromAnotherThread_areStoredAtOnceAndShownAtTheMainThreadsTurn) {
    BarStage stage(200, 20);
    double shown = 0.0;
    for (const double value : {0.5, 1.0}) {
        std::thread([&] {
            stage.bar.setFloatValue(value);
            EXPECT_EQ(stage.bar.floatValue(), value);
        }).join();
        EXPECT_EQ(stage.bar.floatValue(), value);
        EXPECT_EQ(stage.bar.innerClipLayer().frame().width(), shown);
        QCoreApplication::sendPostedEvents();
        shown = 198.0 * value;
        EXPECT_EQ(stage.bar.innerClipLayer().frame().width(), shown);
    }
}

TEST(SBProgressBarThreads, valueOutOfRange_throwsInTheThreadThatSetsIt) {
    BarStage stage(200, 20);
    std::thread([&] {
        EXPECT_THROW(stage.bar.setFloatValue(1.01), InvalidValue);
        EXPECT_THROW(stage.bar.setFloatValue(-0.01), InvalidValue);
    }).join();
    EXPECT_EQ(stage.bar.floatValue(), 0.0);
}

TEST(SBProgressBarThreads, valuesSetWhileTheWindowTicks_endWithTheLastOneShown) {
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
    EXPECT_EQ(stage.bar.floatValue(), 1.0);
    EXPECT_EQ(stage.bar.innerClipLayer().frame().width(), 198.0);
}

TEST(SBProgressBarThreads, valueFromAnotherThreadDuringAnAnimatedOne_stays) {
    BarStage stage(200, 20);
    stage.bar.animator().setFloatValue(1.0);
    stage.step(0.1);
    std::thread([&] { stage.bar.setFloatValue(0.25); }).join();
    stage.step(0.1);
    stage.step(0.1);
    EXPECT_EQ(stage.bar.floatValue(), 0.25);
}

TEST(SBProgressBarThreads, barDestroyedWithALayoutStillQueued_isNotTouched) {
    BarStage other(200, 20);
    auto bar = std::make_unique<SBProgressBar>();
    std::thread([&] {
        bar->setFloatValue(0.5);
        other.bar.setFloatValue(0.5);
    }).join();
    bar.reset();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(other.bar.innerClipLayer().frame().width(), 99.0);
}

}  // namespace
}  // namespace kelvo
