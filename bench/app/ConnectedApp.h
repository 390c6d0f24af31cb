#pragma once

#include <QUrl>

#include "KelvoAppDelegate.h"
#include "VirtualHidManager.h"
#include "VirtualKr310.h"

namespace kelvo {

/// The complete utility on a virtual pedal that sends its names and progress at once. There are no start-up sleeps,
/// choosers answer automatically, and an alert, which is not expected, ends the process.
///
/// Main thread, with an application object.
class ConnectedApp {
public:
    explicit ConnectedApp(const VirtualHidManager::Options& cable = {}, VirtualKr310::LineSink sink = {});

    /// Plugs the pedal in and runs start-up until both tables are filled.
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
