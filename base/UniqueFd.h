#pragma once

#include <unistd.h>

#include <utility>

namespace kelvo {

/// Owns one file descriptor, or none (-1), and closes it on destruction.
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

    /// Closes the owned descriptor and takes ownership of `fd`. On Linux close(2) frees the number even when it reports
    /// an error, so it is never repeated.
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
