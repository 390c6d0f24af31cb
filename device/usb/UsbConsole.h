#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "UniqueFd.h"
#include "UsbCable.h"

namespace kelvo {

/// The commands of kr310-usb, one a line, and their answers. One thread.
///
///     plug            plugged            the pedal is on the cable, freshly powered up
///     unplug          unplugged
///     hang            hanging            the pedal takes no output report
///     stall           stalling           the pedal refuses every output report with a stall
///     go              going              undoes both
///     memory          20 lines, listed   one line for each slot
///     reports         reporting          from now on each output report is a line: "report" and its bytes in
///     hexadecimal fault NAME[=N]  fault NAME[=N]     switches a fault on; those of a sound pedal stay on faults names,
///     listed      the faults there are sound           sound              switches all faults off pace MS         pace
///     MS            milliseconds from one progress value of the start-up to the next; 10 at first help commands,
///     listed   the commands there are quit            (none)             unplugs and ends
///
/// Everything else, and what cannot be done, is answered by one line that begins with "error: ". A plugged pedal is not
/// plugged again, nor an unplugged one unplugged; the answer is the same.
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

    void plug(std::string_view);
    void unplug(std::string_view);
    void hang(std::string_view);
    void stall(std::string_view);
    void go(std::string_view);
    void listMemory(std::string_view);
    void printReports(std::string_view);
    void setFault(std::string_view text);
    void listFaults(std::string_view);
    void clearFaults(std::string_view);
    void setPace(std::string_view text);
    void listCommands(std::string_view);
    void quit(std::string_view);

    VirtualKr310& pedal_;
    UsbKr310& device_;
    UsbCable& cable_;
    const Plug plug_;
    const LineSink sink_;
    bool going_ = true;
};

}  // namespace kelvo
