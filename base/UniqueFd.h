#pragma once

#include <unistd.h>

#include <utility>

namespace kelvo {

/// Owns one file descriptor, or none (-1), and closes it at its end.
class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int fd) : fd_(fd) {}
    ~UniqueFd() { reset(); }
    UniqueFd(UniqueFd&& other) noexcept : fd_(other.release()) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept {
        reset(other.release());
        return *this;
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;

    [[nodiscard]] int get() const { return fd_; }
    [[nodiscard]] explicit operator bool() const { return fd_ >= 0; }

    /// Hands the descriptor to the caller, who closes it.
    [[nodiscard]] int release() { return std::exchange(fd_, -1); }

    /// Closes the descriptor that is held and takes `fd` instead. On Linux close(2) frees the number even when it
    /// reports an error, so it is never tried twice.
    void reset(int fd = -1) {
        const int old = std::exchange(fd_, fd);
        if (old >= 0) {
            ::close(old);
        }
    }

private:
    int fd_ = -1;
};

}  // namespace kelvo
