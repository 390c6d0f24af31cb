#include "AppHarness.h"

#include <QPushButton>
#include <QTimer>

#include "Driver.h"
#include "LoadDataWindowController.h"
#include "SBProgressBar.h"
#include "SlotTableView.h"

namespace kelvo::test {

AppServices ScriptedServices::functions() {
    return {
        .sleep =
            [this](unsigned seconds) {
                sleeps.push_back(seconds);
                if (onSleep) {
                    onSleep(seconds);
                }
            },
        .exitProcess = [this](int status) { exits.push_back(status); },
        .beginSheetModal =
            [this](QWidget&, const Alert& alert, AppServices::AlertCompletion answer) {
                alerts.push_back({alert, std::move(answer)});
            },
        .beginOpenPanel =
            [this](QWidget&, const OpenPanel& panel, const AppServices::OpenPanelCompletion& completion) {
                openPanels.push_back(panel.fileType);
                openPanelTitles.push_back(panel.title());
                completion(choice.isEmpty() ? kModalResponseCancel : kModalResponseOK, choice);
            },
    };
}

bool serveUntil(const std::function<bool()>& condition, std::chrono::milliseconds patience) {
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (condition()) {
            loop.quit();
        }
    });
    poll.start(2);
    QTimer::singleShot(patience, &loop, &QEventLoop::quit);
    if (!condition()) {
        loop.exec();
    }
    return condition();
}

std::vector<std::string> changedSlots(const VirtualKr310& pedal) {
    const Kr310Memory now = pedal.memory();
    const Kr310Memory before = Kr310Memory::factory();
    std::vector<std::string> changed;
    for (std::size_t i = 0; i < kSlotCount; ++i) {
        if (now.cab[i].words != before.cab[i].words || now.cab[i].name != before.cab[i].name) {
            changed.push_back("CAB " + std::to_string(27 + i));
        }
        if (now.amp[i].words != before.amp[i].words || now.amp[i].name != before.amp[i].name) {
            changed.push_back("AMP " + std::to_string(56 + i));
        }
    }
    return changed;
}

RunningApp::RunningApp(const Faults& faults, const Kr310Startup& startup) {
    pedal.setFaults(faults);
    pedal.setStartup(startup);
    services.onSleep = [this](unsigned seconds) {
        if (seconds == 2) {
            if (plugged_) {
                static_cast<void>(manager.waitFor([](const auto& activity) { return activity.arrivals > 0; }));
            }
            if (whileLoading) {
                // By a timer's event: a posted one would hold up those that were posted with it while it serves others.
                QTimer::singleShot(1, [this] { whileLoading(); });
            }
        }
    };
}

void RunningApp::start() {
    manager.plug();
    plugged_ = true;
    // Without these the loading window would look at its bar twice a second only, and the offscreen platform would
    // activate no window in its place.
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [this] {
        const LoadDataWindowController& loading = controller.loadWindow();
        if (loading.window() == nullptr) {
            return;
        }
        if (!loading.timer()->isActive()) {
            controller.window().activateWindow();
        } else if (loading.progressBar()->floatValue() == 1.0) {
            loading.timer()->setInterval(0);
        }
    });
    poll.start(2);
    controller.applicationDidFinishLaunching();
}

void RunningApp::importIR(int row, const QString& path) {
    controller.ImportIRTableV().selectRow(row);
    services.choice = QUrl::fromLocalFile(path);
    click(controller.addIR());
}

void RunningApp::importAMP(int row, const QString& path) {
    controller.ImportCabTableV().selectRow(row);
    services.choice = QUrl::fromLocalFile(path);
    click(controller.addAMP());
}

bool RunningApp::waitForChanges(std::size_t n) const {
    return manager.waitFor([n](const auto& activity) { return activity.changes.size() >= n; });
}

}  // namespace kelvo::test
