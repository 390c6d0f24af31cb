#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "UniqueFd.h"
#include "UsbCable.h"

namespace kelvo {

/// The command line of kr310-usb. The table in the source says what each command does and answers; the answer to one
/// that takes an argument is the command itself. What cannot be done is answered by one line that begins with "error:
/// ". One thread.
class UsbConsole {
public:
    using LineSink = std::function<void(std::string_view line)>;
    /// Gives the device's end of a new cable to the host; throws std::runtime_error when it cannot.
    using Plug = std::function<UniqueFd()>;

    /// All that is referred to outlives this object.
    UsbConsole(VirtualKr310& pedal, UsbKr310& device, UsbCable& cable, Plug plug, LineSink sink);

    /// Carries out one line, without its line end. False after "quit".
    [[nodiscard]] bool obey(std::string_view line);

private:
    struct Command;
    static const Command kCommands[];

    void plug();
    void unplug();
    void setOutput(UsbKr310::Output output);
    void listMemory();
    void printReports();
    void setFault(std::string_view text);
    void listFaults();
    void setPace(std::string_view text);
    void listCommands();

    VirtualKr310& pedal_;
    UsbKr310& device_;
    UsbCable& cable_;
    const Plug plug_;
    const LineSink sink_;
    bool going_ = true;
};

}  // namespace kelvo
