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
#include <string>
#include <system_error>

namespace kelvo {
namespace {

using Clock = UsbCable::Clock;

/// Time until `due` for ppoll(2), no less than nothing.
timespec timeUntil(Clock::time_point due) {
    const std::chrono::nanoseconds left = std::max<Clock::duration>(due - Clock::now(), {});
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
    return {seconds.count(), (left - seconds).count()};
}

/// Cuts what is read from a descriptor into lines for the console.
class CommandReader {
public:
    CommandReader(int fd, UsbConsole& console) : fd_(fd), console_(console) {}

    /// Reads once and obeys every line that became complete. False at the end.
    bool serve() {
        std::array<char, 4096> buffer{};
        const ssize_t length = read(fd_, buffer.data(), buffer.size());
        if (length <= 0) {
            return false;
        }
        held_.append(buffer.data(), static_cast<std::size_t>(length));
        for (std::size_t end = held_.find('\n'); end != std::string::npos; end = held_.find('\n')) {
            const std::string line = held_.substr(0, end);
            held_.erase(0, end + 1);
            if (!console_.obey(line)) {
                return false;
            }
        }
        return true;
    }

private:
    const int fd_;
    UsbConsole& console_;
    std::string held_;
};

}  // namespace

void runUsbLoop(int commands, UsbConsole& console, UsbCable& cable, const UsbConsole::LineSink& sink) {
    CommandReader reader(commands, console);
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
