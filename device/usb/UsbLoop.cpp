#include "UsbLoop.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <ctime>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <utility>

namespace kelvo {
namespace {

using Clock = UsbCable::Clock;

/// Time until `due` for ppoll(2), no less than nothing.
timespec timeUntil(Clock::time_point due) {
    const std::chrono::nanoseconds left = std::max<Clock::duration>(due - Clock::now(), {});
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
    return {.tv_sec = static_cast<time_t>(seconds.count()), .tv_nsec = static_cast<long>((left - seconds).count())};
}

constexpr std::size_t kLongestCommand = 256;

/// Cuts what is read from a descriptor into lines for the console.
class CommandReader {
public:
    CommandReader(int fd, UsbConsole& console, const UsbConsole::LineSink& sink)
        : fd_(fd), console_(console), sink_(sink) {}

    /// Reads once and obeys every line that became complete. False at the end.
    bool serve() {
        std::array<char, 4096> buffer{};
        const ssize_t length = read(fd_, buffer.data(), buffer.size());
        if (length <= 0) {
            return false;
        }
        bool going = true;
        for (const char character : std::span(buffer).first(static_cast<std::size_t>(length))) {
            if (character != '\n') {
                // One more than is allowed is kept, so that the line is known to be too long.
                if (line_.size() <= kLongestCommand) {
                    line_ += character;
                }
            } else if (const std::string line = std::exchange(line_, {}); line.size() > kLongestCommand) {
                sink_("error: a command has at most " + std::to_string(kLongestCommand) + " bytes");
            } else {
                going = going && console_.obey(line);
            }
        }
        return going;
    }

private:
    const int fd_;
    UsbConsole& console_;
    const UsbConsole::LineSink& sink_;
    std::string line_;
};

}  // namespace

void runUsbLoop(int commands, UsbConsole& console, UsbCable& cable, const UsbConsole::LineSink& sink) {
    CommandReader reader(commands, console, sink);
    for (bool going = true; going;) {
        const std::optional<Clock::time_point> due = cable.nextDue();
        const timespec patience = due ? timeUntil(*due) : timespec{};
        std::array<pollfd, 2> fds{{{commands, POLLIN, 0}, {cable.fd(), cable.events(), 0}}};
        if (ppoll(fds.data(), fds.size(), due ? &patience : nullptr, nullptr) < 0) {
            if (errno == EINTR) {
                continue;
            }
            sink("error: nothing can be waited for: " + std::generic_category().message(errno));
            break;
        }
        // The cable first: its descriptor is the one that was waited for only until a command is obeyed.
        if (const auto end = cable.serve(fds[1].revents, Clock::now())) {
            sink("unplugged: " + *end);
        }
        if (fds[0].revents != 0) {
            going = reader.serve();
        }
    }
    if (cable.isPlugged()) {
        cable.unplug();
    }
}

}  // namespace kelvo
