#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <atomic>
#include <memory>
#include <thread>

#include "SBProgressBarStage.h"

namespace kelvo {
namespace {

// Serves events until `done`; a generous limit keeps a failure from hanging.
void serveUntil(const std::function<bool()>& done) {
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] { done() ? loop.quit() : void(); });
    poll.start(1);
    QTimer::singleShot(20000, &loop, &QEventLoop::quit);
    loop.exec();
}

TEST(SBProgressBarThreads, valueFromAnotherThread_isStoredAtOnceAndShownAtTheMainThreadsTurn) {
    BarStage stage(200, 20);
    std::thread([&] {
        stage.bar.setFloatValue(0.5);
        EXPECT_EQ(stage.bar.floatValue(), 0.5);
    }).join();
    EXPECT_EQ(stage.bar.floatValue(), 0.5);
    EXPECT_EQ(stage.bar.innerClipLayer().frame().width(), 0.0);
    serveUntil([&] { return stage.bar.innerClipLayer().frame().width() > 0.0; });
    EXPECT_EQ(stage.bar.innerClipLayer().frame().width(), 99.0);
}

TEST(SBProgressBarThreads, valueAfterOneThatHasBeenShown_isShownAsWell) {
    BarStage stage(200, 20);
    for (const double value : {0.5, 1.0}) {
        std::thread([&] { stage.bar.setFloatValue(value); }).join();
        QCoreApplication::sendPostedEvents();
        EXPECT_EQ(stage.bar.innerClipLayer().frame().width(), 198.0 * value);
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
    serveUntil([&] { return stage.bar.innerClipLayer().frame().width() == 198.0; });
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
    serveUntil([&] { return other.bar.innerClipLayer().frame().width() > 0.0; });
    EXPECT_EQ(other.bar.innerClipLayer().frame().width(), 99.0);
}

}  // namespace
}  // namespace kelvo
