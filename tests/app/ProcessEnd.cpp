// Runs the whole utility, desktop services included, and ends it in one of the ways in which a user's session ends. The
// process's status is the test's result: anything but the utility's own end gives another one.

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "Driver.h"
#include "KelvoAppDelegate.h"
#include "LoadDataWindowController.h"
#include "NSApplicationMain.h"
#include "SlotTableView.h"
#include "VirtualHidManager.h"
#include "VirtualKr310.h"

namespace {

using Step = kelvo::StepDriver::Step;

/// The alert must take the click although other windows are open below it.
Step press(const char* button) {
    const auto find = [button]() -> QAbstractButton* {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        return box != nullptr && box->isVisible() ? kelvo::buttonOf(*box, button) : nullptr;
    };
    return {"alert", [find] { return find() != nullptr; }, [find] { kelvo::click(*find()); }};
}

std::map<std::string, std::vector<Step>> waysToEnd(kelvo::KelvoAppDelegate& controller,
                                                   kelvo::VirtualHidManager& manager) {
    const auto loading = [&controller](const std::function<void()>& act) -> Step {
        const auto isOpen = [&controller] {
            const QWidget* const window = controller.loadWindow().window();
            return window != nullptr && window->isVisible();
        };
        return {"loading window", isOpen, act};
    };
    const auto ready = [&controller](const std::function<void()>& act) -> Step {
        return {"filled tables", [&controller] { return controller.window().isEnabled(); }, act};
    };
    const auto unplug = [&manager] { manager.unplug(); };
    return {
        {"main-window", {ready([&controller] { controller.window().close(); })}},
        {"loading-window", {loading([&controller] { controller.loadWindow().window()->close(); })}},
        {"no-device", {press("exit")}},
        {"unplug-idle", {ready(unplug), press("Exit")}},
        {"unplug-loading", {loading(unplug), press("Exit")}},
        {"unplug-chooser",
         {ready([&controller] { kelvo::click(controller.addIR()); }),
          {"chooser", [] { return kelvo::visibleFileDialog() != nullptr; }, unplug},
          press("Exit")}},
        {"unplug-question",
         {ready([&controller] { kelvo::click(controller.deleteIR()); }),
          {"question", [] { return kelvo::visibleMessageBox() != nullptr; }, unplug},
          press("Exit")}},
    };
}

}  // namespace

int main(int argc, char** argv) {
    const std::string way = argc == 2 ? argv[1] : "";
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const auto application = kelvo::makeApplication(argc, argv);
    kelvo::VirtualKr310 pedal;
    // Loading takes two seconds for those that end it.
    pedal.setStartup({.progressStep = way.ends_with("loading") || way.starts_with("loading") ? 1U : 199U});
    kelvo::VirtualHidManager manager(pedal);
    kelvo::AppServices services = kelvo::desktopServices();
    services.sleep = [](unsigned) {};
    if (way != "no-device") {
        manager.plug();
        services.sleep = [&manager](unsigned) {
            static_cast<void>(manager.waitFor([](const auto& activity) { return activity.arrivals > 0; }));
        };
    }
    kelvo::KelvoAppDelegate controller(manager, services);
    kelvo::StepDriver driver(waysToEnd(controller, manager).at(way), [](const std::string& step) {
        std::fprintf(stderr, "timed out waiting for: %s\n", step.c_str());
        std::_Exit(1);
    });
    driver.start();
    QTimer::singleShot(0, application.get(), [&controller] { controller.applicationDidFinishLaunching(); });
    QApplication::exec();
    return 3;
}
