// kr310-usb: plugs the virtual KR310 into this machine's kernel. Reads commands from standard input.

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "Arguments.h"
#include "StandardStreams.h"
#include "UsbLoop.h"
#include "VhciPort.h"

int main(int argc, char** argv) {
    kelvo::keepStandardStreams();
    const kelvo::ProgramText text{
        .name = QStringLiteral("kr310-usb"),
        .synopsis = QStringLiteral("[OPTION]"),
        .help = QStringLiteral("Plugs a virtual KR310 into this machine's kernel. Needs root and the module vhci-hcd.\n"
                               "Reads commands from standard input, one per line; \"help\" lists them.\n\n"
                               "  -h, --help           show this help\n"
                               "  -v, --version        show the version\n"),
    };
    QCommandLineParser parser;
    if (const auto status = answer(kelvo::readArguments(parser, kelvo::argumentList(argc, argv), 0), text)) {
        return *status;
    }
    // If Ctrl+Z stopped the pedal, the host's programs would block in the kernel.
    std::signal(SIGTSTP, SIG_IGN);
    kelvo::VirtualKr310 pedal(kelvo::Kr310Memory::factory(), kelvo::printLine);
    kelvo::UsbKr310 device(pedal);
    kelvo::UsbCable cable(device);
    kelvo::UsbConsole console(
        pedal, device, cable, [] { return kelvo::plugIntoKernel(); }, kelvo::printLine);
    kelvo::runUsbLoop(0, console, cable, kelvo::printLine);
    if (std::ferror(stdout) != 0) {
        printError(text, QStringLiteral("the answers cannot be written"));
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
