// kr310-usb: the virtual KR310, plugged into this machine's own kernel. Commands come on standard input.

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "Arguments.h"
#include "StandardStreams.h"
#include "UsbLoop.h"
#include "VhciPort.h"

namespace {

void printLine(std::string_view line) {
    std::printf("%.*s\n", static_cast<int>(line.size()), line.data());
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    kelvo::keepStandardStreams();
    const kelvo::ProgramText text{
        .name = QStringLiteral("kr310-usb"),
        .synopsis = QStringLiteral("[OPTION]"),
        .help = QStringLiteral("Plugs a virtual KR310 into this machine's kernel. Needs root and the module vhci-hcd.\n"
                               "Commands come on standard input, one a line: \"help\" lists them.\n\n"
                               "  -h, --help           show this help\n"
                               "  -v, --version        show the version\n"),
    };
    QCommandLineParser parser;
    if (const auto status = answer(kelvo::readArguments(parser, kelvo::argumentList(argc, argv), 0), text)) {
        return *status;
    }
    // A pedal that is stopped by Ctrl+Z would keep the host's programs waiting in the kernel.
    std::signal(SIGTSTP, SIG_IGN);
    kelvo::VirtualKr310 pedal(kelvo::Kr310Memory::factory(), printLine);
    kelvo::UsbKr310 device(pedal);
    kelvo::UsbCable cable(device);
    kelvo::UsbConsole console(
        pedal, device, cable, [] { return kelvo::plugIntoKernel(); }, printLine);
    kelvo::runUsbLoop(0, console, cable, printLine);
    if (std::ferror(stdout) != 0) {
        complain(text, QStringLiteral("the answers cannot be written"));
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
