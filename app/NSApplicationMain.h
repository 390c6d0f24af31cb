#pragma once

namespace kelvo {

class HidManager;

/// Runs the whole utility on the devices that `manager` finds: its application object, its controller and its event
/// loop. Call once, from main; returns the process's status. The utility mostly ends the process itself before that.
int NSApplicationMain(int argc, char** argv, HidManager& manager);

/// What NSApplicationMain does to the toolkit before and after the application object exists; for a program that brings
/// an event loop of its own.
void prepareToolkit();
void nameApplication();

}  // namespace kelvo
