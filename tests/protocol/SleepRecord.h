#pragma once

#include <chrono>
#include <vector>

namespace kelvo::test {

/// The times that the threads of this program have asked the system to sleep for since this object was made. A busy
/// machine makes a sleep longer, but not what was asked for. One at a time.
class SleepRecord {
public:
    SleepRecord();

    [[nodiscard]] std::vector<std::chrono::nanoseconds> times() const;
};

}  // namespace kelvo::test
