#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "UniqueFd.h"
#include "UsbCable.h"

namespace kelvo {

/// The commands of kr310-usb. The table in the source lists their effects and answers. A command with an argument is
/// answered by itself, a failed one by a line that begins with "error: ". One thread.
class UsbConsole {
public:
    using LineSink = std::function<void(std::string_view line)>;
    /// Connects a new cable with the host and returns the device's end. Throws std::runtime_error on failure.
    using Plug = std::function<UniqueFd()>;

    /// All referenced objects must outlive this one.
    UsbConsole(VirtualKr310& pedal, UsbKr310& device, UsbCable& cable, Plug plug, LineSink sink);

    /// Executes one command line, without its line end. Returns false after "quit".
    [[nodiscard]] bool execute(std::string_view line);

private:
    struct Command;
    static const Command kCommands[];

    void plug();
    void setOutput(UsbKr310::Output output);
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
