#pragma once

#include <memory>

class QApplication;

namespace kelvo {

class HidManager;

/// Runs the whole utility on the devices that `manager` finds: its application object, its controller and its event
/// loop. Call once, from main; returns the process's status. The utility mostly ends the process itself before that.
int NSApplicationMain(int& argc, char** argv, HidManager& manager);

/// The application object of NSApplicationMain, for a program with another event loop. If no display can be opened, the
/// process ends with one sentence on standard error and status 1.
[[nodiscard]] std::unique_ptr<QApplication> makeApplication(int& argc, char** argv);

/// Sets the names and the icon of the application object.
void nameApplication();

}  // namespace kelvo
