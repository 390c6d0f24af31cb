#pragma once

#include "UsbConsole.h"

namespace kelvo {

/// Serves one cable and one command line until "quit" or the end of the commands, then unplugs the cable. Sleeps in
/// ppoll(2). If that fails, prints a line "error: " and the reason, and ends. If the cable is unplugged by anything but
/// a command, prints a line "unplugged: " and the reason.
void runUsbLoop(int commands, UsbConsole& console, UsbCable& cable, const UsbConsole::LineSink& sink);

}  // namespace kelvo
