// With a pedal that takes everything and answers nothing, the event loop stays at the user's service.

#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QTimer>
#include <fstream>

#include "LoadDataWindowController.h"
#include "ReliabilityApp.h"
#include "SBProgressBar.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr milliseconds kLongestStall{50};

/// A stall of ours comes every time; one that another process causes does not.
constexpr int kAttempts = 5;

/// How long this thread was ready to run but other processes had the processor; that is no stall of ours.
nanoseconds timeInQueue() {
    std::ifstream file("/proc/self/task/" + std::to_string(::syscall(SYS_gettid)) + "/schedstat");
    std::int64_t running = 0;
    std::int64_t waiting = 0;
    file >> running >> waiting;
    return nanoseconds(waiting);
}

/// Measures the longest time between two turns of a timer that is due every 2 ms.
class LoopWatch {
public:
    LoopWatch() {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { turn(); });
        timer_.start(2);
    }

    /// Serves events for 1.2 s, doing `act` at every tenth turn; again, if that was too slow.
    void serve(std::function<void()> act = [] {}) {
        act_ = std::move(act);
        for (int attempt = 0; attempt < kAttempts; ++attempt) {
            longest_ = nanoseconds(0);
            begin();
            const Clock::time_point end = Clock::now() + milliseconds(1200);
            EXPECT_TRUE(serveUntil([&] { return Clock::now() >= end; }));
            if (longest_ < kLongestStall) {
                return;
            }
        }
    }

    [[nodiscard]] milliseconds longest() const { return std::chrono::duration_cast<milliseconds>(longest_); }
    [[nodiscard]] int turns() const { return turns_; }

private:
    void begin() {
        last_ = Clock::now();
        queued_ = timeInQueue();
    }
    void turn() {
        const nanoseconds gap = Clock::now() - last_ - (timeInQueue() - queued_);
        longest_ = std::max(longest_, gap);
        begin();
        if (++turns_ % 10 == 0) {
            act_();
        }
    }

    QTimer timer_;
    std::function<void()> act_ = [] {};
    Clock::time_point last_ = Clock::now();
    nanoseconds queued_ = timeInQueue();
    nanoseconds longest_{0};
    int turns_ = 0;
};

TEST(EventLoop, isNotHeldUpByAMutePedalWhileLoading) {
    RunningApp app({.silentFromPhase = 0});
    milliseconds longest{0};
    int turns = 0;
    app.whileLoading = [&] {
        LoopWatch watch;
        watch.serve();
        longest = watch.longest();
        turns = watch.turns();
        app.controller.loadWindow().progressBar()->setFloatValue(1.0);
    };
    app.start();
    EXPECT_GT(turns, 20);
    EXPECT_LT(longest, kLongestStall);
}

TEST(EventLoop, isNotHeldUpByImportsAndDeletionsThatAMutePedalNeverAnswers) {
    const SampleDir files;
    const QString wave = files.write("a.wav", waveOf(0x123456));
    const QString amp = files.write("a.amp", ampOf(0x12345678));
    RunningApp app;
    startQuickly(app);
    app.pedal.setFaults({.silentFromPhase = 0});
    LoopWatch watch;
    int count = 0;
    watch.serve([&] {
        switch (count++ % 3) {
            case 0:
                return app.importIR(count % 10, wave);
            case 1:
                return app.importAMP(count % 10, amp);
            default:
                app.controller.deleteCAB();
                return app.services.alerts.back().answer(kAlertFirstButtonReturn);
        }
    });
    EXPECT_GT(count, 2);
    EXPECT_LT(watch.longest(), kLongestStall);
}

TEST(EventLoop, isNotHeldUpByAWireThatTakesAMillisecondForEveryReport) {
    const SampleDir files;
    const QString wave = files.write("a.wav", waveOf(0x123456));
    VirtualKr310 pedal;
    VirtualHidManager manager(pedal, {.wirePace = milliseconds(1)});
    ScriptedServices services;
    KelvoAppDelegate controller(manager, services.functions());
    std::array<std::uint8_t, kFrameBufferSize> done{0xAA, 0x55, 0x02, 0x00, 0xA5, 199};
    controller.CMD_CallBack(done);
    services.onSleep = [&](unsigned seconds) {
        if (seconds == 2) {
            EXPECT_TRUE(manager.waitFor([](const auto& activity) { return activity.arrivals > 0; }));
        }
    };
    manager.plug();
    controller.applicationDidFinishLaunching();
    controller.ImportIRTableV().selectRow(2);
    services.choice = QUrl::fromLocalFile(wave);
    LoopWatch watch;
    watch.serve([&] { controller.importIrButtonClick(); });
    EXPECT_GT(watch.turns(), 20);
    EXPECT_LT(watch.longest(), kLongestStall);
}

}  // namespace
}  // namespace kelvo::test
