#include "UsbConsole.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "Faults.h"
#include "Kr310Memory.h"

namespace kelvo {
namespace {

constexpr unsigned kSlowestPace = 10'000;

}  // namespace

struct UsbConsole::Command {
    std::string_view name;
    std::string_view argument;  ///< the argument after the name; empty for none
    std::string_view answer;    ///< empty if the answer is the line itself, and for "quit", which has no answer
    std::string_view help;
    void (*run)(UsbConsole& console, std::string_view argument);
};

// A test compares this list with the manual page.
const UsbConsole::Command UsbConsole::kCommands[] = {
    {"plug", "", "plugged", "plugs the pedal in, freshly powered up",
     [](UsbConsole& console, std::string_view) { console.plug(); }},
    {"unplug", "", "unplugged", "pulls the cable",
     [](UsbConsole& console, std::string_view) { console.cable_.unplug(); }},
    {"hang", "", "hanging", "the pedal takes no output report",
     [](UsbConsole& console, std::string_view) { console.setOutput(UsbKr310::Output::Hang); }},
    {"stall", "", "stalling", "the pedal refuses every output report",
     [](UsbConsole& console, std::string_view) { console.setOutput(UsbKr310::Output::Stall); }},
    {"go", "", "going", "undoes hang and stall",
     [](UsbConsole& console, std::string_view) { console.setOutput(UsbKr310::Output::Accept); }},
    {"memory", "", "listed", "lists the contents of the pedal, one line for each slot",
     [](UsbConsole& console, std::string_view) {
         std::ranges::for_each(memoryLines(console.pedal_.memory()), console.sink_);
     }},
    {"reports", "", "reporting", "prints each output report from now on, in hexadecimal",
     [](UsbConsole& console, std::string_view) { console.printReports(); }},
    {"fault", "NAME[=N]", "", "switches a fault on",
     [](UsbConsole& console, std::string_view text) { console.setFault(text); }},
    {"faults", "", "listed", "lists the faults", [](UsbConsole& console, std::string_view) { console.listFaults(); }},
    {"sound", "", "sound", "switches all faults off",
     [](UsbConsole& console, std::string_view) { console.pedal_.setFaults({}); }},
    {"pace", "MS", "", "milliseconds from one progress value of the start to the next, 10 at first",
     [](UsbConsole& console, std::string_view text) { console.setPace(text); }},
    {"help", "", "listed", "lists the commands", [](UsbConsole& console, std::string_view) { console.listCommands(); }},
    {"quit", "", "", "unplugs and ends", [](UsbConsole& console, std::string_view) { console.going_ = false; }},
};

UsbConsole::UsbConsole(VirtualKr310& pedal, UsbKr310& device, UsbCable& cable, Plug plug, LineSink sink)
    : pedal_(pedal), device_(device), cable_(cable), plug_(std::move(plug)), sink_(std::move(sink)) {}

bool UsbConsole::execute(std::string_view line) {
    const std::string_view name = line.substr(0, line.find(' '));
    const std::string_view argument = line.substr(std::min(name.size() + 1, line.size()));
    const auto command = std::ranges::find(kCommands, name, &Command::name);
    if (command == std::end(kCommands) || (command->argument.empty() && name != line)) {
        sink_("error: unknown command: " + std::string(line) + "; help lists them");
        return true;
    }
    if (!command->argument.empty() && argument.empty()) {
        sink_("error: " + std::string(name) + " wants " + std::string(command->argument));
        return true;
    }
    try {
        command->run(*this, argument);
        if (going_) {
            sink_(command->answer.empty() ? line : command->answer);
        }
    } catch (const std::runtime_error& error) {
        sink_(std::string("error: ") + error.what());
    }
    return going_;
}

void UsbConsole::plug() {
    if (!cable_.isPlugged()) {
        cable_.plug(plug_());
    }
}

void UsbConsole::setOutput(UsbKr310::Output output) {
    device_.setOutput(output, UsbKr310::Clock::now());
}

void UsbConsole::printReports() {
    device_.setReportSink([this](std::span<const std::uint8_t> report) {
        constexpr std::string_view digits = "0123456789abcdef";
        std::string line = "report ";
        for (const std::uint8_t byte : report) {
            line += {digits[byte >> 4], digits[byte & 0xF]};
        }
        sink_(line);
    });
}

void UsbConsole::setFault(std::string_view text) {
    Faults faults = pedal_.faults();
    if (const auto mistake = switchOn(text, faults)) {
        throw std::runtime_error(*mistake);
    }
    pedal_.setFaults(faults);
}

void UsbConsole::listFaults() {
    for (const FaultEntry& fault : faultTable()) {
        const std::string name(fault.name);
        sink_(fault.argument.empty() ? name : name + "=N " + std::string(fault.argument) + ", " + numbersOf(fault));
    }
}

void UsbConsole::setPace(std::string_view text) {
    unsigned milliseconds = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, milliseconds);
    if (error != std::errc() || stop != end || milliseconds > kSlowestPace) {
        throw std::runtime_error("pace wants 0 to " + std::to_string(kSlowestPace) + ", got '" + std::string(text) +
                                 "'");
    }
    pedal_.setStartup({.progressPace = std::chrono::milliseconds(milliseconds)});
}

void UsbConsole::listCommands() {
    for (const Command& command : kCommands) {
        const std::string space = command.argument.empty() ? "" : " ";
        sink_(std::string(command.name) + space + std::string(command.argument) + ": " + std::string(command.help));
    }
}

}  // namespace kelvo
