#pragma once

#include <sys/types.h>

#include <QByteArray>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stop_token>

#include "LittleEndian.h"
#include "UniqueFd.h"

namespace kelvo {

/// Why a file could not be read.
struct ReadFailure {
    enum class Step { Open, Type, Length, Read };

    Step step = Step::Open;
    int error = 0;            ///< errno of Open and Read; 0 for a name with a NUL and a file that became shorter
    mode_t mode = 0;          ///< the mode with the refused type, for Type
    std::uintmax_t size = 0;  ///< of the file, from Length on
    std::size_t held = 0;     ///< bytes that could be read, for Read
};

/// The size of the largest file that is read, in bytes.
inline constexpr std::uintmax_t kLargestFile = 0xFFFFFFFF;

/// A regular file open for reading. One thread at a time.
class DiskFile {
public:
    /// The most bytes that `part` returns.
    static constexpr std::size_t kLongestPart = 32768;

    /// Opens a file by its name in the system's encoding. Fails for one that is missing, unreadable, not regular
    /// (directory, FIFO, socket, device) or larger than kLargestFile. Never waits for the other end of a FIFO. After a
    /// stop request every read fails.
    explicit DiskFile(const QByteArray& path, std::stop_token stop = {});

    /// The first failure, after which nothing can be read. A stop request makes a read fail with ECANCELED.
    [[nodiscard]] const std::optional<ReadFailure>& failure() const { return failure_; }

    /// Bytes of the file when it was opened. Bytes appended later are not read.
    [[nodiscard]] std::size_t size() const { return size_; }

    /// Fills `bytes` from `offset` on. The range must lie within size(). Returns false after a failure.
    bool read(std::size_t offset, std::span<std::uint8_t> bytes);

    /// Up to `length` bytes, at most kLongestPart, from `offset` on: fewer at the end of the file, none after a
    /// failure. The view is valid until the next call. Bytes of the previous part are not read again.
    [[nodiscard]] ByteView part(std::size_t offset, std::size_t length);

private:
    [[nodiscard]] std::optional<ReadFailure> open(const QByteArray& path);
    [[nodiscard]] ReadFailure brokenOff(std::size_t offset, int error) const;

    UniqueFd fd_;
    std::size_t size_ = 0;
    std::optional<ReadFailure> failure_;
    std::stop_token stop_;
    std::size_t partOffset_ = 0;
    std::size_t partSize_ = 0;
    std::array<std::uint8_t, kLongestPart> part_;
};

}  // namespace kelvo
