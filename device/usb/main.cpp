// kr310-usb: the virtual KR310, plugged into this machine's own kernel. Commands come on standard input.

#include <cstdio>
#include <string_view>

#include "UsbLoop.h"
#include "VhciPort.h"

namespace {

void printLine(std::string_view line) {
    std::printf("%.*s\n", static_cast<int>(line.size()), line.data());
    std::fflush(stdout);
}

}  // namespace

int main() {
    kelvo::VirtualKr310 pedal(kelvo::Kr310Memory::factory(), printLine);
    kelvo::UsbKr310 device(pedal);
    kelvo::UsbCable cable(device);
    kelvo::UsbConsole console(
        pedal, device, cable, [] { return kelvo::plugIntoKernel(); }, printLine);
    kelvo::runUsbLoop(0, console, cable, printLine);
}
