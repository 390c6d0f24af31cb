#pragma once

#include <cstddef>

namespace kelvo::test {

/// How often this thread has taken memory with operator new, in a program that is linked with Allocations.cpp.
[[nodiscard]] std::size_t allocations();

}  // namespace kelvo::test
