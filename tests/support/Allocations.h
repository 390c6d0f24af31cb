#pragma once

#include <cstddef>

namespace kelvo::test {

// For a program that is linked with Allocations.cpp.

/// How often this thread has taken memory with operator new.
[[nodiscard]] std::size_t allocations();

/// From now on an allocation of just this size fails on this thread; 0: none does.
void failAllocationsOf(std::size_t size);

}  // namespace kelvo::test
