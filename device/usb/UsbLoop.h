#pragma once

#include "UsbConsole.h"

namespace kelvo {

/// Serves one cable and one command line until "quit" or the end of the commands, and pulls the cable then. Sleeps in
/// ppoll(2) until there is something to do; when that fails, it says so with a line "error: " and ends. A cable that is
/// pulled by anything but a command is reported by a line "unplugged: " and the reason.
void runUsbLoop(int commands, UsbConsole& console, UsbCable& cable, const UsbConsole::LineSink& sink);

}  // namespace kelvo
