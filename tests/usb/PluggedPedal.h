#pragma once

#include <sys/types.h>

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "UniqueFd.h"

namespace kelvo::test {

/// kr310-usb in a separate process, plugged into this machine's kernel. Ends with the object.
class PluggedPedal {
public:
    /// Starts it, plugs it in and waits for its node.
    PluggedPedal();
    ~PluggedPedal();
    PluggedPedal(const PluggedPedal&) = delete;
    PluggedPedal& operator=(const PluggedPedal&) = delete;

    /// Gives a command and waits for the answer. Throws std::runtime_error when another one comes, or none.
    void tell(const std::string& command, const std::string& answer);

    /// "plug", and the wait for the node.
    void plug();
    void unplug() { tell("unplug", "unplugged"); }

    /// Waits until a line has come, at most 20 s; false when it did not.
    [[nodiscard]] bool says(const std::string& line);

    /// The twenty lines of the pedal's memory.
    [[nodiscard]] std::vector<std::string> memory();

private:
    void start();
    void collect();
    /// The lines from number `first` on, once they end with `last` or an error.
    std::vector<std::string> linesUpTo(std::size_t first, const std::string& last);
    std::size_t write(const std::string& command);

    UniqueFd commands_;
    UniqueFd answers_;
    pid_t process_ = 0;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> lines_;
    std::thread reader_;
};

/// The device node of the only KR310 that is plugged in; empty when there is none.
[[nodiscard]] std::string hidrawNode();

}  // namespace kelvo::test
