#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <utility>

#include "AppHarness.h"
#include "Driver.h"
#include "LoadDataWindowController.h"
#include "LogListener.h"
#include "NSApplicationMain.h"
#include "RVHidClass.h"
#include "SBProgressBar.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const QString kNoDevice = QStringLiteral("No device connected. Please connected your KR310");

QString cell(const SlotTableView& table, int row) {
    return table.model()->index(row, 0).data().toString();
}

TEST(Application, isNamedAsItsDesktopEntryIs) {
    nameApplication();
    EXPECT_EQ(QApplication::desktopFileName(), "local.kelvo.kelvo");
    EXPECT_EQ(QApplication::applicationDisplayName(), "Kelvo");
    EXPECT_EQ(QApplication::applicationName(), "kelvo");
    EXPECT_FALSE(QApplication::windowIcon().isNull());
    EXPECT_FALSE(QApplication::quitOnLastWindowClosed());
    EXPECT_TRUE(QFile::exists(KELVO_PACKAGING "/local.kelvo.kelvo.desktop"));
}

TEST(StartUp, withAPedal_sleepsTwoSecondsThenOneAndFillsBothTables) {
    RunningApp app;
    app.start();
    EXPECT_THAT(app.services.sleeps, ElementsAre(2, 1));
    EXPECT_THAT(app.services.alerts, IsEmpty());
    const Kr310Memory memory = app.pedal.memory();
    for (int row = 0; row < 10; ++row) {
        const auto slot = static_cast<std::size_t>(row);
        const QString cab = QStringLiteral("%1.%2").arg(27 + row).arg(QString::fromStdString(memory.cab[slot].name));
        const QString amp = QString::fromStdString(memory.amp[slot].name).leftJustified(10);
        EXPECT_EQ(cell(app.controller.ImportIRTableV(), row), cab);
        EXPECT_EQ(cell(app.controller.ImportCabTableV(), row), QStringLiteral("%1.%2").arg(56 + row).arg(amp));
    }
}

TEST(StartUp, sendsTheConnectFrameOnceWithAZeroDataByte) {
    RunningApp app;
    app.start();
    const auto reports = app.manager.activity().outputReports;
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_THAT(std::vector<int>(reports[0].begin(), reports[0].begin() + 9),
                ElementsAre(8, 0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25));
}

/// Makes a new window the active one a moment after it has been painted.
class SlowWindowManager : public QObject {
public:
    explicit SlowWindowManager(QWidget& window) : window_(window) {
        before_.show();
        window_.installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint && !std::exchange(hasSeen_, true)) {
            before_.activateWindow();
            QTimer::singleShot(std::chrono::milliseconds(50), &window_, [this] { window_.activateWindow(); });
        }
        return false;
    }

private:
    QWidget& window_;
    QWidget before_;
    bool hasSeen_ = false;
};

// A window manager that gets no answer from a new window takes the program for one that does not respond.
TEST(StartUp, theWindowIsThereAndActiveBeforeItSleeps) {
    RunningApp app;
    const SlowWindowManager manager(app.controller.window());
    bool active = false;
    app.services.onSleep = [&](unsigned seconds) {
        active = active || (seconds == 2 && app.controller.window().isActiveWindow() &&
                            app.controller.window().testAttribute(Qt::WA_Mapped));
    };
    app.controller.applicationDidFinishLaunching();
    EXPECT_TRUE(active);
}

/// Notes of each painting of the table whether it showed names, and whether they could be used.
class PaintedNames : public QObject {
public:
    explicit PaintedNames(SlotTableView& table) : table_(table) { table.viewport()->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint && !cell(table_, 0).isEmpty()) {
            ++(table_.isEnabled() ? live : dead);
        }
        return false;
    }
    int live = 0;
    int dead = 0;

private:
    SlotTableView& table_;
};

TEST(StartUp, theNamesAreNotPaintedBeforeTheyCanBeUsed) {
    RunningApp app;
    const PaintedNames painted(app.controller.ImportIRTableV());
    app.start();
    ASSERT_TRUE(serveUntil([&] { return painted.live > 0; }));
    EXPECT_EQ(painted.dead, 0);
}

TEST(StartUp, latePedal_isOpenedAndGetsNoQuery) {
    RunningApp app;
    app.controller.applicationDidFinishLaunching();
    app.manager.plug();
    ASSERT_TRUE(app.manager.waitFor([](const auto& activity) { return activity.arrivals == 1; }));
    EXPECT_TRUE(isOpenDevice);
    EXPECT_THAT(app.manager.activity().outputReports, IsEmpty());
    EXPECT_EQ(app.services.alerts.size(), 1U);
    // Its end adds an alert, which ends the process, too.
    app.manager.unplug();
    ASSERT_TRUE(serveUntil([&] { return app.services.alerts.size() == 2; }));
    EXPECT_EQ(app.services.alerts[1].alert.buttons, QStringList{"Exit"});
    app.services.alerts[1].answer(1000);
    EXPECT_THAT(app.services.exits, ElementsAre(0));
}

void expectCentred(const QWidget& window) {
    const QRect screen = window.screen()->availableGeometry();
    const QRect place = window.geometry();
    // The frame, of which nothing is known before the window is shown, may move it by its width.
    EXPECT_LE(std::abs((place.left() - screen.left()) - (screen.right() - place.right())), 8);
    EXPECT_LE(std::abs((place.top() - screen.top()) - (screen.bottom() - place.bottom())), 8);
}

TEST(StartUp, withAMutePedal_staysInTheLoadingWindowAndReloadsNothing) {
    RunningApp app({.silentFromPhase = 0});
    app.whileLoading = [&] {
        const LoadDataWindowController& loading = app.controller.loadWindow();
        int ticks = 0;
        const auto counting = QObject::connect(loading.timer(), &QTimer::timeout, [&ticks] { ++ticks; });
        EXPECT_TRUE(serveUntil([&] { return ticks == 2; }));
        QObject::disconnect(counting);
        EXPECT_TRUE(loading.window()->isVisible());
        expectCentred(*loading.window());
        // X would minimise both windows together.
        EXPECT_EQ(loading.window()->windowHandle()->transientParent(), nullptr);
        EXPECT_EQ(loading.loadDataLabel()->text(), "0%");
        EXPECT_EQ(app.manager.activity().outputReports.size(), 1U);
        EXPECT_EQ(cell(app.controller.ImportIRTableV(), 0), "");
        EXPECT_THAT(app.services.sleeps, ElementsAre(2));
        loading.progressBar()->setFloatValue(1.0);
    };
    app.start();
    EXPECT_FALSE(app.controller.loadWindow().window()->isVisible());
    expectCentred(app.controller.window());
}

TEST(StartUp, namesThatArriveInTheLastSecondAreInTheTables) {
    RunningApp app({.namesAfterDone = std::chrono::milliseconds(0)});
    app.services.onSleep = [&, found = app.services.onSleep](unsigned seconds) {
        found(seconds);
        if (seconds == 1) {
            EXPECT_TRUE(
                serveUntil([&] { return app.ampLabel(9).startsWith("65.") && app.cabLabel(9).startsWith("36."); }));
        }
    };
    app.start();
    EXPECT_TRUE(cell(app.controller.ImportIRTableV(), 9).startsWith("36."));
    EXPECT_TRUE(cell(app.controller.ImportCabTableV(), 9).startsWith("65."));
}

TEST(StartUp, progress199BeforeAnyName_showsEmptyRows) {
    RunningApp app({.namesAfterDone = std::chrono::seconds(3600)});
    app.start();
    EXPECT_THAT(app.services.sleeps, ElementsAre(2, 1));
    for (int row = 0; row < 10; ++row) {
        EXPECT_EQ(cell(app.controller.ImportIRTableV(), row), "");
        EXPECT_EQ(cell(app.controller.ImportCabTableV(), row), "");
    }
}

bool isUsable(const KelvoAppDelegate& controller) {
    const QList<const QWidget*> controls{&controller.addIR(), &controller.deleteIR(), &controller.addAMP(),
                                         &controller.ImportIRTableV(), &controller.ImportCabTableV()};
    const auto enabled = std::ranges::count_if(controls, [](const QWidget* control) { return control->isEnabled(); });
    EXPECT_TRUE(enabled == 0 || enabled == 5);
    return enabled == 5;
}

TEST(StartUp, withoutAPedal_showsTheAlertAndEndsTheProcessWithStatusZeroAtAnyAnswer) {
    RunningApp app;
    app.controller.applicationDidFinishLaunching();
    ASSERT_EQ(app.services.alerts.size(), 1U);
    const Alert& alert = app.services.alerts[0].alert;
    EXPECT_EQ(alert.messageText, kNoDevice);
    EXPECT_EQ(alert.buttons, QStringList{"exit"});
    EXPECT_EQ(alert.style, AlertStyle::Critical);
    EXPECT_THAT(app.services.sleeps, ElementsAre(2));
    EXPECT_FALSE(isUsable(app.controller));
    EXPECT_THAT(app.services.exits, IsEmpty());
    for (const int answer : {1000, 1001, 0}) {
        app.services.alerts[0].answer(answer);
    }
    EXPECT_THAT(app.services.exits, ElementsAre(0, 0, 0));
    EXPECT_THAT(app.manager.activity().outputReports, IsEmpty());
}

TEST(StartUp, buttonsAndTablesAreDisabledUntilTheNamesAreThere) {
    RunningApp app;
    std::vector<bool> usable;
    app.services.onSleep = [&, found = app.services.onSleep](unsigned seconds) {
        found(seconds);
        usable.push_back(isUsable(app.controller));
    };
    app.whileLoading = [&] { usable.push_back(isUsable(app.controller)); };
    app.start();
    EXPECT_THAT(usable, ElementsAre(false, false, false));
    EXPECT_TRUE(isUsable(app.controller));
}

TEST(StartUp, everyButtonHasAnIcon) {
    RunningApp app;
    for (const QPushButton* const button : app.controller.window().findChildren<QPushButton*>()) {
        EXPECT_FALSE(button->icon().isNull()) << button->objectName().toStdString();
    }
}

TEST(StartUp, thenTheFirstRowOfEachTableIsSelectedAndTheCabTableHasTheFocus) {
    RunningApp app;
    app.start();
    EXPECT_EQ(app.controller.ImportIRTableV().selectedRow(), 0);
    EXPECT_EQ(app.controller.ImportCabTableV().selectedRow(), 0);
    EXPECT_EQ(app.controller.window().focusWidget(), &app.controller.ImportIRTableV());
    click(app.controller.addAMP());
    EXPECT_EQ(app.controller.ImportCabTableV().selectedRow(), 0);
}

TEST(StartUp, aClickDuringTheLastSecondIsLostAsItsButtonWasDead) {
    RunningApp app;
    app.services.onSleep = [&, found = app.services.onSleep](unsigned seconds) {
        found(seconds);
        if (seconds == 1) {
            for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
                QCoreApplication::postEvent(&app.controller.deleteIR(),
                                            new QMouseEvent(type, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton,
                                                            Qt::LeftButton, Qt::NoModifier));
            }
        }
    };
    app.start();
    QCoreApplication::processEvents();
    EXPECT_THAT(app.services.alerts, IsEmpty());
    click(app.controller.deleteIR());
    EXPECT_EQ(app.services.alerts.size(), 1U);
}

TEST(StartUp, progressThatIsHandledBeforeTheLoadingWindowExistsIsNotLost) {
    RunningApp app({.silentFromPhase = 0});
    std::array<std::uint8_t, kFrameBufferSize> frame{0xAA, 0x55, 0x02, 0x00, 0xA5, 199};
    app.controller.CMD_CallBack(frame);
    frame[5] = 255;
    app.controller.CMD_CallBack(frame);
    app.start();
    EXPECT_THAT(app.services.sleeps, ElementsAre(2, 1));
}

TEST(MainWindow, itsCloseButtonEndsTheProcessAtOnceWithoutAQuestion) {
    RunningApp app;
    app.start();
    app.controller.window().close();
    EXPECT_THAT(app.services.exits, ElementsAre(0));
    EXPECT_THAT(app.services.alerts, IsEmpty());
}

TEST(MainWindow, cannotBeMaximisedButMinimised) {
    RunningApp app;
    app.start();
    const Qt::WindowFlags flags = app.controller.window().windowFlags();
    EXPECT_FALSE(flags & Qt::WindowMaximizeButtonHint);
    EXPECT_TRUE(flags & Qt::WindowMinimizeButtonHint);
    EXPECT_TRUE(flags & Qt::WindowCloseButtonHint);
}

TEST(Unplug, whileThePedalIsIdle_showsTheExitAlertOnTheMainThreadAndEndsWithStatusZero) {
    RunningApp app;
    app.start();
    app.manager.unplug();
    ASSERT_TRUE(serveUntil([&] { return !app.services.alerts.empty(); }));
    EXPECT_EQ(app.services.alerts[0].thread, std::this_thread::get_id());
    EXPECT_EQ(app.services.alerts[0].alert.messageText, kNoDevice);
    EXPECT_EQ(app.services.alerts[0].alert.buttons, QStringList{"Exit"});
    EXPECT_EQ(app.services.alerts[0].alert.style, AlertStyle::Critical);
    app.services.alerts[0].answer(1000);
    EXPECT_THAT(app.services.exits, ElementsAre(0));
    EXPECT_FALSE(isOpenDevice);
}

}  // namespace
}  // namespace kelvo::test
