#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "AppServices.h"
#include "KelvoAppDelegate.h"
#include "VirtualHidManager.h"
#include "VirtualKr310.h"

namespace kelvo::test {

/// Stands in for the desktop and the process: notes what the controller asks of them, and answers at once.
class ScriptedServices {
public:
    struct ShownAlert {
        Alert alert;
        AppServices::AlertCompletion answer;
        std::thread::id thread = std::this_thread::get_id();
    };

    /// The functions refer to this object.
    AppServices functions();

    /// What the next chooser gives; a cancel when empty.
    QUrl choice;
    /// What happens inside a sleep; nothing by default.
    std::function<void(unsigned seconds)> onSleep;

    std::vector<unsigned> sleeps;
    std::vector<int> exits;
    std::vector<ShownAlert> alerts;
    std::vector<QString> openPanels;
    std::vector<QString> openPanelTitles;
};

/// Serves events until the condition holds; false when it did not within the time.
[[nodiscard]] bool serveUntil(const std::function<bool()>& condition,
                              std::chrono::milliseconds patience = std::chrono::seconds(60));

/// The slots that differ from what the pedal left the factory with, as "CAB 27" or "AMP 56".
std::vector<std::string> changedSlots(const VirtualKr310& pedal);

/// The whole utility on a virtual pedal that answers at once; only the desktop is scripted.
class RunningApp {
public:
    explicit RunningApp(const Faults& faults = {},
                        const Kr310Startup& startup = {.progressStep = 199, .progressPace = {}});

    /// Plugs the pedal in and goes through start-up until both tables are filled.
    void start();

    /// Selects the row, chooses the file and presses the button.
    void importIR(int row, const QString& path);
    void importAMP(int row, const QString& path);

    /// Waits until the pedal has finished n changes of its memory in all.
    [[nodiscard]] bool waitForChanges(std::size_t n) const;

    QString cabLabel(int row) const { return controller.IRNameArr().at(row); }
    QString ampLabel(int row) const { return controller.AMPNameArr().at(row); }

    /// Runs once the loading window serves events.
    std::function<void()> whileLoading;

    ScriptedServices services;
    VirtualKr310 pedal;
    VirtualHidManager manager{pedal, {.record = true}};
    KelvoAppDelegate controller{manager, services.functions()};

private:
    /// The two seconds of the start last until the pedal is found.
    bool plugged_ = false;
};

}  // namespace kelvo::test
