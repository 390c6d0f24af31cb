// The utility on a virtual KR310 in the same process. Arguments switch on faults of the pedal.

#include <cstdio>
#include <string_view>

#include "Faults.h"
#include "NSApplicationMain.h"
#include "VirtualHidManager.h"
#include "VirtualKr310.h"

namespace {

void printLine(std::string_view line) {
    std::printf("%.*s\n", static_cast<int>(line.size()), line.data());
    std::fflush(stdout);
}

int printUsage() {
    std::fputs("usage: kelvo-demo [FAULT[=NUMBER]] ...\nFaults of the virtual KR310:\n", stderr);
    for (const kelvo::FaultEntry& fault : kelvo::faultTable()) {
        std::fprintf(stderr, "  %-28.*s %.*s\n", static_cast<int>(fault.name.size()), fault.name.data(),
                     static_cast<int>(fault.argument.size()), fault.argument.data());
    }
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    kelvo::Faults faults;
    for (int i = 1; i < argc; ++i) {
        if (!kelvo::parseFault(argv[i], faults)) {
            return printUsage();
        }
    }
    kelvo::VirtualKr310 pedal(kelvo::Kr310Memory::factory(), printLine);
    pedal.setFaults(faults);
    kelvo::VirtualHidManager manager(pedal);
    manager.plug();
    return kelvo::NSApplicationMain(argc, argv, manager);
}
