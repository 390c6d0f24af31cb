#include "SleepRecord.h"

#include <ctime>
#include <mutex>

namespace kelvo::test {
namespace {

std::mutex sleepMutex;
std::vector<std::chrono::nanoseconds> sleeps;  // guarded by sleepMutex

}  // namespace

SleepRecord::SleepRecord() {
    const std::lock_guard lock(sleepMutex);
    sleeps.clear();
}

std::vector<std::chrono::nanoseconds> SleepRecord::times() const {
    const std::lock_guard lock(sleepMutex);
    return sleeps;
}

}  // namespace kelvo::test

// The linker's --wrap=nanosleep gives these names.
extern "C" int __real_nanosleep(const timespec* time, timespec* left);   // NOLINT(bugprone-reserved-identifier)
extern "C" int __wrap_nanosleep(const timespec* time, timespec* left) {  // NOLINT(bugprone-reserved-identifier)
    {
        const std::lock_guard lock(kelvo::test::sleepMutex);
        kelvo::test::sleeps.push_back(std::chrono::seconds(time->tv_sec) + std::chrono::nanoseconds(time->tv_nsec));
    }
    return __real_nanosleep(time, left);
}
