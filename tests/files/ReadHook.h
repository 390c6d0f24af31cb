#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>

/// Replaces read(2) while it is set; it may call the real one. Reset by whoever sets it.
extern std::function<ssize_t(int fd, void* buffer, std::size_t size)> readHook;

// The linker's --wrap=read gives this name.
extern "C" ssize_t __real_read(int fd, void* buffer, std::size_t size);  // NOLINT(bugprone-reserved-identifier)
