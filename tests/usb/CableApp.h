#pragma once

#include <QString>
#include <functional>

#include "AppHarness.h"
#include "HidrawManager.h"
#include "KelvoAppDelegate.h"
#include "PluggedPedal.h"

namespace kelvo::test {

inline const QString kWave = QStringLiteral(KELVO_SAMPLES "/Bright.wav");

/// The whole utility on the real cable; only the desktop is scripted.
class CableApp {
public:
    /// Starts on a pedal that is plugged in already. `pace` is the pedal's: milliseconds from one progress value to the
    /// next.
    explicit CableApp(PluggedPedal& pedal, int pace = 3);

    /// Goes through start-up until both tables are filled.
    void start();

    void importIR(int row, const QString& path);
    void importAMP(int row, const QString& path);
    void deleteCAB(int row);

    /// Runs once the loading window serves events.
    std::function<void()> whileLoading;

    /// Called, besides what is noted in `services`, when an alert is to be shown.
    std::function<void(QWidget& window, const Alert& alert)> onAlert;

    ScriptedServices services;
    HidrawManager manager;
    KelvoAppDelegate controller{manager, functions()};

private:
    AppServices functions();
    void found();
};

}  // namespace kelvo::test
