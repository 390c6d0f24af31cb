#include "ProcessFigures.h"

#include <unistd.h>

#include <ctime>
#include <fstream>

namespace kelvo {
namespace {

std::int64_t read(clockid_t clock) {
    timespec time{};
    ::clock_gettime(clock, &time);
    return time.tv_sec * std::int64_t{1'000'000'000} + time.tv_nsec;
}

}  // namespace

std::int64_t monotonicNow() {
    return read(CLOCK_MONOTONIC);
}

std::int64_t residentKiB() {
    std::ifstream pages("/proc/self/statm");
    std::int64_t whole = 0;
    std::int64_t resident = 0;
    pages >> whole >> resident;
    return resident * (::sysconf(_SC_PAGESIZE) / 1024);
}

std::chrono::nanoseconds processorTime() {
    return std::chrono::nanoseconds(read(CLOCK_PROCESS_CPUTIME_ID));
}

}  // namespace kelvo
