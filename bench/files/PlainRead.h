#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace kelvo {

/// A file, read into memory as cheaply as possible.
struct PlainFile {
    std::unique_ptr<std::uint8_t[]> bytes;
    std::size_t size = 0;
};

/// Gets the length, allocates uninitialised memory and reads once. Throws std::runtime_error if that read does not
/// return the complete file.
[[nodiscard]] PlainFile readPlainly(const char* path);

/// One pass of memchr for a byte that should not occur in the file; true if it does.
[[nodiscard]] bool passOnce(const PlainFile& file, std::uint8_t absent);

}  // namespace kelvo
