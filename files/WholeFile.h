#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace kelvo {

/// A file's bytes in memory. Not a vector, which would write zeros first: that costs as much as the reading.
struct FileContent {
    std::unique_ptr<std::uint8_t[]> bytes;
    std::size_t size = 0;

    operator std::span<const std::uint8_t>() const { return {bytes.get(), size}; }
};

/// Reads a whole regular file into memory. Nothing is returned for a file that is missing, unreadable, empty, not
/// regular (directory, FIFO, socket, device), larger than the memory or than a 32-bit length, or that gets shorter
/// while it is read; `refusal`, if given, then says which, in printable words for the user. What is appended meanwhile
/// is not read. Never waits for the other end of a FIFO. Any thread.
[[nodiscard]] std::optional<FileContent> readWholeFile(const QString& path, QString* refusal = nullptr);

}  // namespace kelvo
