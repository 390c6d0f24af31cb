#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>

/// Replaces pread(2) while it is set; it may call the real one. The test that sets it resets it.
extern std::function<ssize_t(int fd, void* buffer, std::size_t size, off_t offset)> readHook;

// The linker's --wrap=pread64 gives this name.
extern "C" ssize_t __real_pread64(int fd, void* buffer, std::size_t size,
                                  off_t offset);  // NOLINT(bugprone-reserved-identifier)
