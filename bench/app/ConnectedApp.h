#pragma once

#include <QUrl>

#include "KelvoAppDelegate.h"
#include "VirtualHidManager.h"
#include "VirtualKr310.h"

namespace kelvo {

/// The whole utility on a virtual pedal that tells its names and its progress at once. The ordered sleeps are taken
/// out, choosers answer by themselves, and an alert ends the process: nothing here should lead to one.
///
/// Main thread, with an application object around it.
class ConnectedApp {
public:
    explicit ConnectedApp(const VirtualHidManager::Options& cable = {}, VirtualKr310::LineSink sink = {});

    /// Plugs the pedal in and goes through start-up until both tables are filled.
    void start();

    /// Imports into row 0 as if the user had chosen the file; returns when the first packet has been sent.
    void importIR(const QString& path);
    void importAMP(const QString& path);

    VirtualKr310 pedal;
    VirtualHidManager manager;

private:
    AppServices services();

    QUrl choice_;
    KelvoAppDelegate controller_{manager, services()};
};

}  // namespace kelvo
