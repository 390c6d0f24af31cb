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

/// Time until `due` for ppoll(2), not negative.
timespec timeUntil(Clock::time_point due) {
    const std::chrono::nanoseconds left = std::max<Clock::duration>(due - Clock::now(), {});
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
    return {.tv_sec = static_cast<time_t>(seconds.count()), .tv_nsec = static_cast<long>((left - seconds).count())};
}

constexpr std::size_t kLongestCommand = 256;

/// Splits the input into lines for the console.
class CommandReader {
public:
    CommandReader(int fd, UsbConsole& console, const UsbConsole::LineSink& sink)
        : fd_(fd), console_(console), sink_(sink) {}

    /// Reads once and executes every complete line. Returns false after "quit" and at the end of the input.
    bool serve() {
        std::array<char, 4096> buffer{};
        const ssize_t length = read(fd_, buffer.data(), buffer.size());
        if (length <= 0) {
            return false;
        }
        bool continues = true;
        for (const char character : std::span(buffer).first(static_cast<std::size_t>(length))) {
            if (character != '\n') {
                // One byte more than allowed is stored, to detect a line that is too long.
                if (line_.size() <= kLongestCommand) {
                    line_ += character;
                }
            } else if (const std::string line = std::exchange(line_, {}); line.size() > kLongestCommand) {
                sink_("error: a command has at most " + std::to_string(kLongestCommand) + " bytes");
            } else {
                continues = continues && console_.execute(line);
            }
        }
        return continues;
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
    for (bool continues = true; continues;) {
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
        // The cable first: a command may replace its descriptor.
        if (const auto end = cable.serve(fds[1].revents, Clock::now())) {
            sink("unplugged: " + *end);
        }
        if (fds[0].revents != 0) {
            continues = reader.serve();
        }
    }
    cable.unplug();
}

}  // namespace kelvo
