#pragma once

#include <chrono>
#include <cstdint>

namespace kelvo {

/// Nanoseconds of the monotonic clock, which all processes share.
[[nodiscard]] std::int64_t monotonicNow();

/// Resident memory of this process, in KiB.
[[nodiscard]] std::int64_t residentKiB();

/// Processor time that all threads of this process have used, user and system.
[[nodiscard]] std::chrono::nanoseconds processorTime();

}  // namespace kelvo
