#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace kelvo {

/// A file's bytes in memory. Not a vector, which would write zeros first; that takes as long as reading.
struct FileContent {
    std::unique_ptr<std::uint8_t[]> bytes;
    std::size_t size = 0;

    operator std::span<const std::uint8_t>() const { return {bytes.get(), size}; }
};

/// Reads a complete file, which may be empty, into memory. Returns nothing for a file that DiskFile does not open, that
/// does not fit into memory, or that becomes shorter while it is read. Any thread.
[[nodiscard]] std::optional<FileContent> readWholeFile(const QString& path);

}  // namespace kelvo
