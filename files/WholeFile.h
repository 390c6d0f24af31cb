#pragma once

#include <sys/types.h>

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

/// What could not be done with a file, and why.
struct ReadFailure {
    enum class Step { Open, Type, Length, Memory, Read };

    Step step = Step::Open;
    int error = 0;            ///< errno of Open and Read; 0 there: a name with a NUL, a file that got shorter meanwhile
    mode_t mode = 0;          ///< with the type that Type refuses
    std::uintmax_t size = 0;  ///< of the file, from Length on
    std::size_t held = 0;     ///< bytes of it that could be read, for Read
};

/// The longest file that is read.
inline constexpr std::uintmax_t kLargestFile = 0xFFFFFFFF;

/// Reads a whole regular file into memory, an empty one too. Nothing is returned for a file that is missing,
/// unreadable, not regular (directory, FIFO, socket, device), larger than the memory or than kLargestFile, or that gets
/// shorter while it is read; `failure`, if given, then says which. What is appended meanwhile is not read. Never waits
/// for the other end of a FIFO. Any thread.
[[nodiscard]] std::optional<FileContent> readWholeFile(const QString& path, ReadFailure* failure = nullptr);

}  // namespace kelvo
