#include "UsbConsole.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "Faults.h"
#include "MemoryLines.h"

namespace kelvo {
namespace {

constexpr std::string_view kFault = "fault ";
constexpr std::string_view kPace = "pace ";
constexpr unsigned kSlowestPace = 10'000;
constexpr auto kListed = "listed";

}  // namespace

struct UsbConsole::Command {
    std::string_view name;
    void (UsbConsole::*run)();
};

const UsbConsole::Command UsbConsole::kCommands[] = {
    {"plug", &UsbConsole::plug},
    {"unplug", &UsbConsole::unplug},
    {"hang", &UsbConsole::hang},
    {"stall", &UsbConsole::stall},
    {"go", &UsbConsole::go},
    {"memory", &UsbConsole::listMemory},
    {"faults", &UsbConsole::listFaults},
    {"sound", &UsbConsole::clearFaults},
};

UsbConsole::UsbConsole(VirtualKr310& pedal, UsbKr310& device, UsbCable& cable, Plug plug, LineSink sink)
    : pedal_(pedal), device_(device), cable_(cable), plug_(std::move(plug)), sink_(std::move(sink)) {}

bool UsbConsole::obey(std::string_view line) {
    if (line == "quit") {
        return false;
    }
    try {
        const auto command = std::ranges::find(kCommands, line, &Command::name);
        if (command != std::end(kCommands)) {
            (this->*command->run)();
        } else if (line.starts_with(kFault)) {
            setFault(line.substr(kFault.size()));
        } else if (line.starts_with(kPace)) {
            setPace(line.substr(kPace.size()));
        } else {
            sink_("error: unknown command: " + std::string(line));
        }
    } catch (const std::runtime_error& error) {
        sink_(std::string("error: ") + error.what());
    }
    return true;
}

void UsbConsole::plug() {
    if (!cable_.isPlugged()) {
        cable_.plug(plug_());
    }
    sink_("plugged");
}

void UsbConsole::unplug() {
    if (cable_.isPlugged()) {
        cable_.unplug();
    }
    sink_("unplugged");
}

void UsbConsole::hang() {
    device_.setOutput(UsbKr310::Output::kHang, UsbKr310::Clock::now());
    sink_("hanging");
}

void UsbConsole::stall() {
    device_.setOutput(UsbKr310::Output::kStall, UsbKr310::Clock::now());
    sink_("stalling");
}

void UsbConsole::go() {
    device_.setOutput(UsbKr310::Output::kTake, UsbKr310::Clock::now());
    sink_("going");
}

void UsbConsole::listMemory() {
    std::ranges::for_each(memoryLines(pedal_.memory()), sink_);
    sink_(kListed);
}

void UsbConsole::setFault(std::string_view text) {
    Faults faults = pedal_.faults();
    if (!parseFault(text, faults)) {
        throw std::runtime_error("unknown fault: " + std::string(text));
    }
    pedal_.setFaults(faults);
    sink_(std::string(kFault) + std::string(text));
}

void UsbConsole::listFaults() {
    for (const FaultEntry& fault : faultTable()) {
        sink_(fault.argument.empty() ? std::string(fault.name)
                                     : std::string(fault.name) + "=N " + std::string(fault.argument));
    }
    sink_(kListed);
}

void UsbConsole::clearFaults() {
    pedal_.setFaults({});
    sink_("sound");
}

void UsbConsole::setPace(std::string_view text) {
    unsigned milliseconds = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, milliseconds);
    if (error != std::errc() || stop != end || milliseconds > kSlowestPace) {
        throw std::runtime_error("no pace: " + std::string(text));
    }
    pedal_.setStartup({.progressPace = std::chrono::milliseconds(milliseconds)});
    sink_(std::string(kPace) + std::string(text));
}

}  // namespace kelvo
