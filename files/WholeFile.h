#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "DiskFile.h"

namespace kelvo {

/// A file's bytes in memory. Not a vector, which would write zeros first: that costs as much as the reading.
struct FileContent {
    std::unique_ptr<std::uint8_t[]> bytes;
    std::size_t size = 0;

    operator std::span<const std::uint8_t>() const { return {bytes.get(), size}; }
};

/// Reads a whole file into memory, an empty one too. Nothing is returned for a file that DiskFile does not open, that
/// is larger than the memory, or that gets shorter while it is read; `failure`, if given, then says which. Any thread.
[[nodiscard]] std::optional<FileContent> readWholeFile(const QString& path, ReadFailure* failure = nullptr);

}  // namespace kelvo
