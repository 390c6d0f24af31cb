// What happens before what while the utility starts.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTimer>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <mutex>

#include "AppHarness.h"
#include "LoadDataWindowController.h"
#include "LogListener.h"
#include "SBProgressBar.h"
#include "SlotTableView.h"
#include "WatchedDevice.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;

std::ptrdiff_t threads() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

TEST(StartOrder, theQuery_isSentBeforeTheReceiveThreadExists) {
    std::vector<std::ptrdiff_t> counts;
    const auto device = std::make_shared<WatchedDevice>([&] { counts.push_back(threads()); });
    ScriptedHidManager manager;
    ScriptedServices services;
    KelvoAppDelegate controller(manager, services.functions());
    services.onSleep = [&](unsigned seconds) {
        if (seconds == 2) {
            manager.attach(device);
            EXPECT_TRUE(manager.settle());
            QTimer::singleShot(0, [&] { controller.loadWindow().progressBar()->setFloatValue(1.0); });
        }
        counts.push_back(threads());
    };
    controller.applicationDidFinishLaunching();
    ASSERT_EQ(counts.size(), 3U);
    EXPECT_EQ(counts[1], counts[0]);
    EXPECT_EQ(counts[2], counts[0] + 1);
}

TEST(StartOrder, bothTables_showTheNotice) {
    RunningApp app;
    const auto says = [](SlotTableView& table, const QString& notice) {
        const QImage shown = table.grab().toImage();
        table.setNotice(notice);
        return table.grab().toImage() == shown;
    };
    const auto bothSay = [&](const QString& notice) {
        return says(app.controller.ImportIRTableV(), notice) && says(app.controller.ImportCabTableV(), notice);
    };
    std::vector<bool> said;
    app.services.onSleep = [&, found = app.services.onSleep](unsigned seconds) {
        if (seconds == 2) {
            said = {bothSay("Looking for the KR310…"), bothSay({})};
        }
        found(seconds);
    };
    // The loading window would cover a part of it.
    app.whileLoading = [&] { said.push_back(bothSay({})); };
    app.start();
    said.push_back(bothSay({}));
    EXPECT_THAT(said, ElementsAre(true, false, true, true));
}

TEST(StartOrder, theControllerIsTheApplicationFromBeforeItsWindowIsShownUntilItsEnd) {
    class ShowFilter : public QObject {
    public:
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::Show) {
                atShow.push_back(AppClassPoint);
            }
            return false;
        }
        std::vector<AppClass*> atShow;
    };
    {
        RunningApp app;
        ShowFilter filter;
        app.controller.window().installEventFilter(&filter);
        app.start();
        EXPECT_THAT(filter.atShow, ElementsAre(&app.controller));
    }
    EXPECT_EQ(AppClassPoint, nullptr);
}

TEST(StartOrder, allCabLabelsAreLoggedInOneLineAfterTheLastSecond) {
    std::vector<std::string> events;
    std::mutex mutex;
    const auto note = [&](std::string event) {
        const std::lock_guard lock(mutex);
        events.push_back(std::move(event));
    };
    const LogListener listener([&](std::string_view line) {
        if (line.starts_with("27.")) {
            note(std::string(line));
        }
    });
    RunningApp app;
    app.services.onSleep = [&, found = app.services.onSleep](unsigned seconds) {
        found(seconds);
        note("sleep " + std::to_string(seconds));
    };
    app.start();
    EXPECT_THAT(events, ElementsAre("sleep 2", "sleep 1",
                                    "27.OPEN 1X12, 28.CLOSED2X12, 29.VINTAGE412, 30.MODERN 412, 31.TWEED 1X8, 32., "
                                    "33.BASS 4X10, 34., 35.ACOUSTIC, 36."));
}

TEST(DesktopServices, sleepForWholeSeconds) {
    const auto begin = std::chrono::steady_clock::now();
    desktopServices().sleep(1);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

}  // namespace
}  // namespace kelvo::test
