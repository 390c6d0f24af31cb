#pragma once

#include "UniqueFd.h"

namespace kelvo {

/// Wakes a thread that waits in poll(2): the descriptor is readable from `signal` to `clear`.
class WakeUp {
public:
    /// Throws std::runtime_error when the system has no descriptor left.
    WakeUp();

    /// Any thread.
    void signal() const;

    /// The waiting thread.
    void clear() const;

    [[nodiscard]] int fd() const { return fd_.get(); }

private:
    UniqueFd fd_;
};

}  // namespace kelvo
