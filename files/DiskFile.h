#pragma once

#include <sys/types.h>

#include <QByteArray>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stop_token>

#include "LittleEndian.h"

namespace kelvo {

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

/// A regular file that is open for reading. One thread at a time.
class DiskFile {
public:
    /// The longest part.
    static constexpr std::size_t kLongestPart = 32768;

    /// Opens a file by its name in the system's own bytes. It fails for one that is missing, unreadable, not regular
    /// (directory, FIFO, socket, device) or longer than kLargestFile. Never waits for the other end of a FIFO. After a
    /// stop request nothing more is read.
    explicit DiskFile(const QByteArray& path, std::stop_token stop = {});
    ~DiskFile();
    DiskFile(const DiskFile&) = delete;
    DiskFile& operator=(const DiskFile&) = delete;

    /// The first thing that failed; a stop request counts as a read that fails with ECANCELED. Nothing can be read
    /// after it.
    [[nodiscard]] const std::optional<ReadFailure>& failure() const { return failure_; }

    /// The length that the file had when it was opened. What is appended later is not read.
    [[nodiscard]] std::size_t size() const { return size_; }

    /// Fills `bytes` with those that stand from `offset` on, all of which must lie within size(). Returns whether it
    /// could.
    bool read(std::size_t offset, std::span<std::uint8_t> bytes);

    /// Up to `length` bytes, at most kLongestPart, from `offset` on: fewer at the end of the file, none after a
    /// failure. They are valid until the next call. What the last part held is not read again.
    [[nodiscard]] ByteView part(std::size_t offset, std::size_t length);

private:
    [[nodiscard]] std::optional<ReadFailure> open(const QByteArray& path);
    [[nodiscard]] ReadFailure brokenOff(std::size_t offset, int error) const;

    int fd_ = -1;
    std::size_t size_ = 0;
    std::optional<ReadFailure> failure_;
    std::stop_token stop_;
    std::size_t partOffset_ = 0;
    std::size_t partSize_ = 0;
    std::array<std::uint8_t, kLongestPart> part_;
};

}  // namespace kelvo
