#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace kelvo {

/// Writes one line to the system log, syslog(3), with priority "notice". `message` is UTF-8 and is taken as it stands,
/// never as a format. Any thread.
void NSLog(std::string_view message);

/// While it lives, takes what NSLog is given instead of the system log; the newest of several wins. For tests.
/// The listener runs on the thread that logs, one call at a time.
class LogListener {
public:
    using Listener = std::function<void(std::string_view message)>;

    explicit LogListener(Listener listener);
    ~LogListener();
    LogListener(const LogListener&) = delete;
    LogListener& operator=(const LogListener&) = delete;

private:
    Listener previous_;
};

}  // namespace kelvo
