#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace kelvo {

/// A file in memory as cheaply as it gets there.
struct PlainFile {
    std::unique_ptr<std::uint8_t[]> bytes;
    std::size_t size = 0;
};

/// Asks for the length, allocates so much, leaves it uninitialised, and reads once. Throws std::runtime_error when that
/// one read does not give the whole file.
[[nodiscard]] PlainFile readPlainly(const char* path);

/// One pass of memchr for a byte that the file does not hold; true when it is there after all.
[[nodiscard]] bool passOnce(const PlainFile& file, std::uint8_t absent);

}  // namespace kelvo
