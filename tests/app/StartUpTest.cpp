#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QIcon>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <filesystem>
#include <iterator>
#include <mutex>
#include <utility>

#include "AppHarness.h"
#include "Driver.h"
#include "LoadDataWindowController.h"
#include "LogListener.h"
#include "NSApplicationMain.h"
#include "OnEvent.h"
#include "RVHidClass.h"
#include "SBProgressBar.h"
#include "SlotTableView.h"
#include "WatchedDevice.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

QString cell(const SlotTableView& table, int row) {
    return table.model()->index(row, 0).data().toString();
}

class StartUp : public testing::Test {
protected:
    /// Does this in each sleep, after what the harness does there.
    void atSleep(const std::function<void(unsigned seconds)>& act) {
        app_.services.onSleep = [act, found = app_.services.onSleep](unsigned seconds) {
            found(seconds);
            act(seconds);
        };
    }
    bool isUsable() const {
        const QList<const QWidget*> controls{&controller_.addIR(), &controller_.deleteIR(), &controller_.addAMP(),
                                             &cab_, &amp_};
        const auto enabled = std::ranges::count_if(controls, &QWidget::isEnabled);
        EXPECT_TRUE(enabled == 0 || enabled == 5);
        return enabled == 5;
    }

    RunningApp app_;
    KelvoAppDelegate& controller_ = app_.controller;
    SlotTableView& cab_ = controller_.ImportIRTableV();
    SlotTableView& amp_ = controller_.ImportCabTableV();
};

TEST(Application, hasItsNamesAndItsOwnIconWhereNothingIsInstalled) {
    const QStringList themes = QIcon::themeSearchPaths();
    const QStringList fallbacks = QIcon::fallbackSearchPaths();
    QIcon::setThemeSearchPaths({});
    QIcon::setFallbackSearchPaths({});
    nameApplication();
    const QImage icon = QApplication::windowIcon().pixmap(256, 256).toImage();
    QIcon::setThemeSearchPaths(themes);
    QIcon::setFallbackSearchPaths(fallbacks);
    ASSERT_EQ(icon.size(), QSize(256, 256));
    EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(icon.pixelColor(128, 128).name(), "#272e36");
    EXPECT_EQ(QApplication::desktopFileName(), "local.kelvo.kelvo");
    EXPECT_TRUE(QFile::exists(KELVO_PACKAGING "/local.kelvo.kelvo.desktop"));
    EXPECT_EQ(QApplication::applicationDisplayName(), "Kelvo");
    EXPECT_EQ(QApplication::applicationName(), "kelvo");
    EXPECT_FALSE(QApplication::quitOnLastWindowClosed());
}

TEST_F(StartUp, withAPedal_asksForTheNamesAndFillsBothTablesBeforeTheyCanBeUsed) {
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
    atSleep([&](unsigned seconds) { note("sleep " + std::to_string(seconds) + (isUsable() ? ", usable" : "")); });
    app_.whileLoading = [&] { note(isUsable() ? "loading, usable" : "loading"); };
    app_.start();
    EXPECT_THAT(events, ElementsAre("sleep 2", "loading", "sleep 1",
                                    "27.OPEN 1X12, 28.CLOSED2X12, 29.VINTAGE412, 30.MODERN 412, 31.TWEED 1X8, 32., "
                                    "33.BASS 4X10, 34., 35.ACOUSTIC, 36."));
    EXPECT_TRUE(isUsable());
    EXPECT_EQ(cell(cab_, 0), "27.OPEN 1X12");
    EXPECT_EQ(cell(cab_, 9), "36.");
    EXPECT_EQ(cell(amp_, 2), "58.LEAD      ");
    EXPECT_EQ(cell(amp_, 9), "65.          ");
    EXPECT_EQ(cab_.selectedRow(), 0);
    EXPECT_EQ(amp_.selectedRow(), 0);
    EXPECT_EQ(controller_.window().focusWidget(), &cab_);
    EXPECT_THAT(app_.services.alerts, IsEmpty());
    const auto reports = app_.manager.activity().outputReports;
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_THAT(std::vector<int>(reports[0].begin(), reports[0].begin() + 9),
                ElementsAre(8, 0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25));
}

TEST_F(StartUp, withoutAPedal_showsAlertsThatEndTheProcessAndAsksALatePedalNothing) {
    const QString noDevice = QStringLiteral("No device connected. Please connected your KR310");
    controller_.applicationDidFinishLaunching();
    app_.manager.plug();
    ASSERT_TRUE(app_.manager.waitFor([](const auto& activity) { return activity.arrivals == 1; }));
    EXPECT_TRUE(isOpenDevice);
    app_.manager.unplug();
    ASSERT_TRUE(serveUntil([&] { return app_.services.alerts.size() == 2; }));
    EXPECT_FALSE(isOpenDevice);
    for (const auto& [alert, button] :
         {std::pair(app_.services.alerts[0], "exit"), {app_.services.alerts[1], "Exit"}}) {
        EXPECT_EQ(alert.alert.messageText, noDevice);
        EXPECT_EQ(alert.alert.buttons, QStringList{button});
        EXPECT_EQ(alert.alert.style, AlertStyle::Critical);
        EXPECT_EQ(alert.thread, std::this_thread::get_id());
        EXPECT_THAT(std::exchange(app_.services.exits, {}), IsEmpty());
        alert.answer(1000);
        alert.answer(0);
        EXPECT_THAT(std::exchange(app_.services.exits, {}), ElementsAre(0, 0));
    }
    EXPECT_THAT(app_.services.sleeps, ElementsAre(2));
    EXPECT_FALSE(isUsable());
    EXPECT_THAT(app_.manager.activity().outputReports, IsEmpty());
}

// A window manager that gets no answer from a new window takes the program for one that does not respond.
TEST_F(StartUp, theWindowIsThereAndActiveBeforeItSleeps) {
    QWidget& window = controller_.window();
    QWidget before;
    before.show();
    // A slow window manager makes a new window the active one a moment after it has been painted.
    bool hasSeen = false;
    const OnEvent painted(window, QEvent::Paint, [&] {
        EXPECT_EQ(AppClassPoint, &controller_);
        if (!std::exchange(hasSeen, true)) {
            before.activateWindow();
            QTimer::singleShot(50, &window, [&window] { window.activateWindow(); });
        }
    });
    bool isActive = false;
    app_.services.onSleep = [&](unsigned) {
        isActive = window.isActiveWindow() && window.testAttribute(Qt::WA_Mapped);
    };
    controller_.applicationDidFinishLaunching();
    EXPECT_TRUE(isActive);
}

TEST_F(StartUp, theNamesAreNotPaintedBeforeTheyCanBeUsed) {
    int live = 0;
    int dead = 0;
    const OnEvent painted(*cab_.viewport(), QEvent::Paint,
                          [&] { (cab_.isEnabled() ? live : dead) += cell(cab_, 0).isEmpty() ? 0 : 1; });
    app_.start();
    ASSERT_TRUE(serveUntil([&] { return live > 0; }));
    EXPECT_EQ(dead, 0);
}

void expectCentred(const QWidget& window) {
    const QRect screen = window.screen()->availableGeometry();
    const QRect place = window.geometry();
    // The frame, of which nothing is known before the window is shown, may move it by its width.
    EXPECT_LE(std::abs((place.left() - screen.left()) - (screen.right() - place.right())), 8);
    EXPECT_LE(std::abs((place.top() - screen.top()) - (screen.bottom() - place.bottom())), 8);
}

TEST_F(StartUp, withAMutePedal_staysInTheLoadingWindowAndReloadsNothing) {
    app_.pedal.setFaults({.silentFromPhase = 0});
    app_.whileLoading = [&] {
        const LoadDataWindowController& loading = controller_.loadWindow();
        int ticks = 0;
        const OnEvent ticking(*loading.timer(), QEvent::Timer, [&] { ++ticks; });
        loading.timer()->setInterval(0);
        EXPECT_TRUE(serveUntil([&] { return ticks > 0; }));
        EXPECT_TRUE(loading.window()->isVisible());
        expectCentred(*loading.window());
        // X would minimise both windows together.
        EXPECT_EQ(loading.window()->windowHandle()->transientParent(), nullptr);
        EXPECT_EQ(loading.loadDataLabel()->text(), "0%");
        EXPECT_EQ(cell(cab_, 0), "");
        EXPECT_THAT(app_.services.sleeps, ElementsAre(2));
        loading.progressBar()->setFloatValue(1.0);
    };
    app_.start();
    EXPECT_FALSE(controller_.loadWindow().window()->isVisible());
    expectCentred(controller_.window());
}

TEST_F(StartUp, namesThatArriveInTheLastSecondAreInTheTables) {
    app_.pedal.setFaults({.namesAfterDone = std::chrono::milliseconds(0)});
    atSleep([&](unsigned seconds) {
        EXPECT_TRUE(seconds == 2 ||
                    serveUntil([&] { return app_.ampLabel(9).startsWith("65.") && app_.cabLabel(9) == "36."; }));
    });
    app_.start();
    EXPECT_EQ(cell(cab_, 9), "36.");
    EXPECT_TRUE(cell(amp_, 9).startsWith("65."));
}

TEST_F(StartUp, progressThatIsHandledBeforeTheLoadingWindowExistsIsNotLost) {
    app_.pedal.setFaults({.silentFromPhase = 0});
    std::array<std::uint8_t, kFrameBufferSize> frame{0xAA, 0x55, 0x02, 0x00, 0xA5, 199};
    controller_.CMD_CallBack(frame);
    frame[5] = 255;
    controller_.CMD_CallBack(frame);
    app_.start();
    EXPECT_THAT(app_.services.sleeps, ElementsAre(2, 1));
}

TEST_F(StartUp, aClickDuringTheLastSecondIsLostAsItsButtonWasDisabled) {
    atSleep([&](unsigned seconds) {
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            if (seconds == 1) {
                QCoreApplication::postEvent(&controller_.deleteIR(),
                                            new QMouseEvent(type, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton,
                                                            Qt::LeftButton, Qt::NoModifier));
            }
        }
    });
    app_.start();
    QCoreApplication::processEvents();
    EXPECT_THAT(app_.services.alerts, IsEmpty());
    click(controller_.deleteIR());
    EXPECT_EQ(app_.services.alerts.size(), 1U);
}

TEST_F(StartUp, bothTablesShowTheNoticeUntilTheLoadingWindowCoversIt) {
    const auto says = [](SlotTableView& table, const QString& notice) {
        const QImage shown = table.grab().toImage();
        table.setNotice(notice);
        return table.grab().toImage() == shown;
    };
    const auto bothSay = [&](const QString& notice) { return says(cab_, notice) && says(amp_, notice); };
    std::vector<bool> said;
    app_.services.onSleep = [&, found = app_.services.onSleep](unsigned seconds) {
        if (seconds == 2) {
            said = {bothSay("Looking for the KR310…"), bothSay({})};
        }
        found(seconds);
    };
    app_.whileLoading = [&] { said.push_back(bothSay({})); };
    app_.start();
    EXPECT_THAT(said, ElementsAre(true, false, true));
}

TEST_F(StartUp, theWindowCanBeMinimisedAndEndsTheProcessWhenItIsClosed) {
    app_.start();
    const Qt::WindowFlags flags = controller_.window().windowFlags();
    EXPECT_FALSE(flags & Qt::WindowMaximizeButtonHint);
    EXPECT_TRUE(flags & Qt::WindowMinimizeButtonHint);
    EXPECT_TRUE(flags & Qt::WindowCloseButtonHint);
    controller_.window().close();
    EXPECT_THAT(app_.services.exits, ElementsAre(0));
    EXPECT_THAT(app_.services.alerts, IsEmpty());
}

TEST(StartOrder, theQueryIsSentBeforeTheReceiveThreadExists) {
    const auto threads = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}); };
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
    EXPECT_EQ(AppClassPoint, nullptr);
    controller.applicationDidFinishLaunching();
    ASSERT_EQ(counts.size(), 3U);
    EXPECT_EQ(counts[1], counts[0]);
    EXPECT_EQ(counts[2], counts[0] + 1);
}

}  // namespace
}  // namespace kelvo::test
