#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

namespace kelvo {

/// Reads a whole regular file into memory. Nothing is returned for a file that is missing, unreadable, empty, not
/// regular (directory, FIFO, socket, device), larger than the memory or than a 32-bit length, or that gets shorter
/// while it is read. What is appended meanwhile is not read. Never waits for the other end of a FIFO. Any thread.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> readWholeFile(const QString& path);

}  // namespace kelvo
