#pragma once

#include <sys/types.h>

#include <chrono>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>

namespace kelvo {

/// Waits until `thread` of this process sleeps in the system call `number` (SYS_...). The kernel has no event for that;
/// it only tells when asked.
inline void waitUntilThreadIsIn(long number, pid_t thread) {
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < giveUp) {
        long current = -1;
        if (std::ifstream("/proc/self/task/" + std::to_string(thread) + "/syscall") >> current && current == number) {
            return;
        }
        std::this_thread::yield();
    }
    throw std::runtime_error("thread " + std::to_string(thread) + " does not come to rest");
}

}  // namespace kelvo
