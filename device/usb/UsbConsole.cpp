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
constexpr auto kListed = "listed";

}  // namespace

struct UsbConsole::Command {
    std::string_view name;
    std::string_view argument;  ///< what stands behind it; empty for nothing
    std::string_view help;
    void (UsbConsole::*run)(std::string_view argument);
};

const UsbConsole::Command UsbConsole::kCommands[] = {
    {"plug", "", "plugs the pedal in, freshly powered up", &UsbConsole::plug},
    {"unplug", "", "pulls the cable", &UsbConsole::unplug},
    {"hang", "", "the pedal takes no output report", &UsbConsole::hang},
    {"stall", "", "the pedal refuses every output report", &UsbConsole::stall},
    {"go", "", "undoes hang and stall", &UsbConsole::go},
    {"memory", "", "lists what the pedal holds", &UsbConsole::listMemory},
    {"reports", "", "prints each output report from now on, in hexadecimal", &UsbConsole::printReports},
    {"fault", "NAME[=N]", "switches a fault on", &UsbConsole::setFault},
    {"faults", "", "lists the faults", &UsbConsole::listFaults},
    {"sound", "", "switches all faults off", &UsbConsole::clearFaults},
    {"pace", "MS", "milliseconds from one progress value of the start to the next, 10 at first", &UsbConsole::setPace},
    {"help", "", "lists the commands", &UsbConsole::listCommands},
    {"quit", "", "unplugs and ends", &UsbConsole::quit},
};

UsbConsole::UsbConsole(VirtualKr310& pedal, UsbKr310& device, UsbCable& cable, Plug plug, LineSink sink)
    : pedal_(pedal), device_(device), cable_(cable), plug_(std::move(plug)), sink_(std::move(sink)) {}

bool UsbConsole::obey(std::string_view line) {
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
        (this->*command->run)(argument);
    } catch (const std::runtime_error& error) {
        sink_(std::string("error: ") + error.what());
    }
    return going_;
}

void UsbConsole::plug(std::string_view) {
    if (!cable_.isPlugged()) {
        cable_.plug(plug_());
    }
    sink_("plugged");
}

void UsbConsole::unplug(std::string_view) {
    if (cable_.isPlugged()) {
        cable_.unplug();
    }
    sink_("unplugged");
}

void UsbConsole::hang(std::string_view) {
    device_.setOutput(UsbKr310::Output::kHang, UsbKr310::Clock::now());
    sink_("hanging");
}

void UsbConsole::stall(std::string_view) {
    device_.setOutput(UsbKr310::Output::kStall, UsbKr310::Clock::now());
    sink_("stalling");
}

void UsbConsole::go(std::string_view) {
    device_.setOutput(UsbKr310::Output::kTake, UsbKr310::Clock::now());
    sink_("going");
}

void UsbConsole::listMemory(std::string_view) {
    std::ranges::for_each(memoryLines(pedal_.memory()), sink_);
    sink_(kListed);
}

void UsbConsole::printReports(std::string_view) {
    device_.setReportSink([this](std::span<const std::uint8_t> report) {
        constexpr std::string_view digits = "0123456789abcdef";
        std::string line = "report ";
        for (const std::uint8_t byte : report) {
            line += {digits[byte >> 4], digits[byte & 0xF]};
        }
        sink_(line);
    });
    sink_("reporting");
}

void UsbConsole::setFault(std::string_view text) {
    Faults faults = pedal_.faults();
    if (const auto mistake = switchOn(text, faults)) {
        throw std::runtime_error(*mistake);
    }
    pedal_.setFaults(faults);
    sink_("fault " + std::string(text));
}

void UsbConsole::listFaults(std::string_view) {
    for (const FaultEntry& fault : faultTable()) {
        const std::string name(fault.name);
        sink_(fault.argument.empty() ? name : name + "=N " + std::string(fault.argument) + ", " + numbersOf(fault));
    }
    sink_(kListed);
}

void UsbConsole::clearFaults(std::string_view) {
    pedal_.setFaults({});
    sink_("sound");
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
    sink_("pace " + std::string(text));
}

void UsbConsole::listCommands(std::string_view) {
    for (const Command& command : kCommands) {
        const std::string space = command.argument.empty() ? "" : " ";
        sink_(std::string(command.name) + space + std::string(command.argument) + ": " + std::string(command.help));
    }
    sink_(kListed);
}

void UsbConsole::quit(std::string_view) {
    going_ = false;
}

}  // namespace kelvo
