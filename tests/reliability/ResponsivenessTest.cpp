// Neither a pedal that answers nothing nor a file that cannot be read holds up the event loop.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTimer>
#include <fstream>

#include "Driver.h"
#include "FileDrag.h"
#include "LoadDataWindowController.h"
#include "ReliabilityApp.h"
#include "SBProgressBar.h"
#include "SlotTableView.h"
#include "UniqueFd.h"

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

    /// Serves events for 1.2 s and 40 turns, doing `act` at every tenth turn; again, if that was too slow.
    void serve(std::function<void()> act = [] {}) {
        act_ = std::move(act);
        for (int attempt = 0; attempt < kAttempts; ++attempt) {
            longest_ = nanoseconds(0);
            begin();
            const Clock::time_point end = Clock::now() + milliseconds(1200);
            EXPECT_TRUE(serveUntil([&] { return Clock::now() >= end && turns_ >= 40; }));
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

TEST(EventLoop, doesNotStallDuringImportsWithoutAnswers) {
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

/// Lays a file system over a folder that answers nothing as long as this object lives: each access hangs.
class HangingFolder {
public:
    explicit HangingFolder(const QString& folder) : folder_(QFile::encodeName(folder)) {
        const std::string options = "fd=" + std::to_string(kernel_.get()) + ",rootmode=40000,user_id=0,group_id=0";
        isMounted_ = ::mount("hanging", folder_.constData(), "fuse", MS_NOSUID | MS_NODEV, options.c_str()) == 0;
    }
    /// What hangs fails once the descriptor is closed.
    ~HangingFolder() { static_cast<void>(::umount2(folder_.constData(), MNT_DETACH)); }
    HangingFolder(const HangingFolder&) = delete;
    HangingFolder& operator=(const HangingFolder&) = delete;

    [[nodiscard]] bool isMounted() const { return isMounted_; }

private:
    const QByteArray folder_;
    const UniqueFd kernel_{::open("/dev/fuse", O_RDWR | O_CLOEXEC)};
    bool isMounted_ = false;
};

/// A window, and files that are dragged over it and stepped through.
class OtherFiles : public testing::Test {
protected:
    OtherFiles() { startQuickly(app_); }

    void import(int row, const QString& path) {
        app_.importIR(row, path);
        ASSERT_TRUE(serveUntil([&] { return app_.controller.transferState().IRProgress.acknowledged == 4; }));
        ASSERT_TRUE(
            serveUntil([&] { return next_.isEnabled() && next_.accessibleDescription().startsWith("Imports "); }));
    }
    /// A second of drags over the table and steps of these rows.
    void dragAndStep(const QList<QUrl>& dragged, const std::vector<int>& rows) {
        std::size_t count = 0;
        watch_.serve([&] {
            FileDrag drag(table_, dragged);
            EXPECT_TRUE(drag.enter(5));
            EXPECT_TRUE(drag.moveTo(6));
            drag.leave();
            table_.selectRow(rows[count++ % rows.size()]);
            click(next_);
        });
        EXPECT_GT(count, rows.size());
        EXPECT_LT(watch_.longest(), kLongestStall);
    }

    SampleDir files_;
    RunningApp app_;
    SlotTableView& table_ = app_.controller.ImportIRTableV();
    QPushButton& next_ = *app_.controller.window().findChild<QPushButton*>("nextIR");
    LoopWatch watch_;
};

TEST_F(OtherFiles, inAFolderThatHangs_stallNothing) {
    ASSERT_TRUE(QDir(files_.path("")).mkdir("share"));
    QList<QUrl> shared;
    for (const char* const name : {"share/1.wav", "share/2.wav"}) {
        shared.append(QUrl::fromLocalFile(files_.write(name, waveOf(1))));
    }
    for (int i = 1; i <= 9; ++i) {
        files_.write(QString("%1.wav").arg(i), waveOf(1));
    }
    import(0, shared[0].toLocalFile());
    import(1, files_.path("1.wav"));
    const HangingFolder hanging(files_.path("share"));
    if (!hanging.isMounted()) {
        GTEST_SKIP() << "this user may not mount a file system";
    }
    dragAndStep(shared, {0, 1});
    EXPECT_TRUE(serveUntil([&] { return app_.pedal.memory().cab[1].name != "1"; }));
    EXPECT_EQ(app_.pedal.memory().cab[0].name, "1");
}

TEST_F(OtherFiles, thatAreLargeAndRefused_stallNothing) {
    const FileBytes noChunks{'R', 'I', 'F', 'F', 0, 0, 0, 0, 'W', 'A', 'V', 'E'};
    files_.write("99.wav", waveOf(1));
    import(0, files_.write("00.wav", waveOf(1)));
    QList<QUrl> large;
    for (int i = 10; i < 50; ++i) {
        // Each must be read to its end.
        const QString path = files_.write(QString("%1.wav").arg(i), noChunks);
        ASSERT_EQ(::truncate(QFile::encodeName(path).constData(), 900'000'000), 0);
        large.append(QUrl::fromLocalFile(path));
    }
    dragAndStep(large, {0});
}

}  // namespace
}  // namespace kelvo::test
