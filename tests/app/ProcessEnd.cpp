// Runs the whole utility, desktop services included, and ends it in one of the ways in which a user's session ends. The
// process's status is the test's result: anything but the utility's own end gives another one.

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "Driver.h"
#include "KelvoAppDelegate.h"
#include "LoadDataWindowController.h"
#include "NSApplicationMain.h"
#include "SlotTableView.h"
#include "VirtualHidManager.h"
#include "VirtualKr310.h"

namespace {

using namespace std::string_view_literals;
using kelvo::StepDriver;

struct Session {
    kelvo::KelvoAppDelegate& controller;
    kelvo::VirtualHidManager& manager;

    StepDriver::Step loading(std::function<void()> act) const {
        return {"loading window",
                [this] {
                    const QWidget* const window = controller.loadWindow().window();
                    return window != nullptr && window->isVisible();
                },
                std::move(act)};
    }
    StepDriver::Step ready(std::function<void()> act) const {
        return {"filled tables", [this] { return controller.window().isEnabled(); }, std::move(act)};
    }
    StepDriver::Step unplugOver(QWidget* (*find)()) const {
        return {"open dialog", [find] { return find() != nullptr; }, [this] { manager.unplug(); }};
    }
    /// The alert must take the click although other windows are open below it.
    static StepDriver::Step press(const char* button) {
        const auto find = [button]() -> QAbstractButton* {
            for (QWidget* const window : QApplication::topLevelWidgets()) {
                const auto* const box = qobject_cast<QMessageBox*>(window);
                QAbstractButton* const found = box != nullptr ? kelvo::buttonOf(*box, button) : nullptr;
                if (found != nullptr && box->isVisible() && QApplication::activeModalWidget() == window) {
                    return found;
                }
            }
            return nullptr;
        };
        return {"alert", [find] { return find() != nullptr; }, [find] { kelvo::click(*find()); }};
    }

    std::vector<StepDriver::Step> steps(std::string_view way) const {
        const auto unplug = [this] { manager.unplug(); };
        if (way == "main-window") {
            return {ready([this] { controller.window().close(); })};
        }
        if (way == "loading-window") {
            return {loading([this] { controller.loadWindow().window()->close(); })};
        }
        if (way == "no-device") {
            return {press("exit")};
        }
        if (way == "unplug-idle") {
            return {ready(unplug), press("Exit")};
        }
        if (way == "unplug-loading") {
            return {loading(unplug), press("Exit")};
        }
        if (way == "unplug-chooser") {
            return {ready([this] { kelvo::click(controller.addIR()); }),
                    unplugOver([]() -> QWidget* { return kelvo::visibleFileDialog(); }), press("Exit")};
        }
        return {ready([this] { kelvo::click(controller.deleteIR()); }),
                unplugOver([]() -> QWidget* { return kelvo::visibleMessageBox(); }), press("Exit")};
    }
};

}  // namespace

int main(int argc, char** argv) {
    const std::string_view way = argc == 2 ? argv[1] : "";
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const auto application = kelvo::makeApplication(argc, argv);
    kelvo::VirtualKr310 pedal;
    kelvo::VirtualHidManager manager(pedal);
    if (way != "no-device"sv) {
        manager.plug();
    }
    kelvo::KelvoAppDelegate controller(manager, kelvo::desktopServices());
    const Session session{controller, manager};
    StepDriver driver(session.steps(way), [](const std::string& step) {
        std::fprintf(stderr, "timed out waiting for: %s\n", step.c_str());
        std::_Exit(1);
    });
    driver.start();
    QTimer::singleShot(0, application.get(), [&controller] { controller.applicationDidFinishLaunching(); });
    QApplication::exec();
    return 3;
}
