#pragma once

#include <sys/syscall.h>
#include <sys/types.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>

namespace kelvo {

/// The system call that `thread` of this process sleeps in (SYS_...), -1 when it runs. Which of the two calls a library
/// polls with depends on its version, and some processors have one only; both are given as SYS_ppoll.
inline long systemCallOf(const std::string& thread) {
    long current = -1;
    std::ifstream("/proc/self/task/" + thread + "/syscall") >> current;
#ifdef SYS_poll
    return current == SYS_poll ? SYS_ppoll : current;
#else
    return current;
#endif
}

/// Waits for something that has no event, since the kernel only tells when asked.
inline void waitUntil(const std::function<bool()>& there, const std::string& what) {
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!there()) {
        if (std::chrono::steady_clock::now() > giveUp) {
            throw std::runtime_error("timed out waiting for " + what);
        }
        std::this_thread::yield();
    }
}

/// Waits until `thread` of this process sleeps in the system call `number` (SYS_...).
inline void waitUntilThreadIsIn(long number, pid_t thread) {
    waitUntil([&] { return systemCallOf(std::to_string(thread)) == number; },
              "thread " + std::to_string(thread) + " to come to rest");
}

/// Waits until `count` threads of this process sleep in the system call `number`.
inline void waitUntilThreadsAreIn(long number, std::ptrdiff_t count) {
    const auto sleeps = [&](const auto& thread) { return systemCallOf(thread.path().filename()) == number; };
    waitUntil(
        [&] { return std::ranges::count_if(std::filesystem::directory_iterator("/proc/self/task"), sleeps) >= count; },
        std::to_string(count) + " threads to come to rest");
}

}  // namespace kelvo
