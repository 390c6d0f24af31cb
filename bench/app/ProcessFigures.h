#pragma once

#include <chrono>
#include <cstdint>

namespace kelvo {

/// Nanoseconds of the monotonic clock, which all processes share.
[[nodiscard]] std::int64_t monotonicNow();

/// Memory of this process that is resident now, in KiB.
[[nodiscard]] std::int64_t residentKiB();

/// Processor time that this process has used so far, all threads, user and system.
[[nodiscard]] std::chrono::nanoseconds processorTime();

}  // namespace kelvo
