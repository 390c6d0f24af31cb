#pragma once

#include <functional>
#include <string_view>

namespace kelvo::test {

/// While it lives, it is given what the code under test logs; the newest of several wins. A program that is linked with
/// it has an NSLog without the system log: lines without a listener are dropped. The listener runs on the thread
/// that logs, one call at a time.
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

}  // namespace kelvo::test
