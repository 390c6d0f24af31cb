#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <vector>

#include "FrameSearch.h"

namespace kelvo::fuzz {

/// A simple model of ring and unpacker: a queue of bytes and a buffer of 1024, whose first `held` bytes begin with
/// 0xAA. Shares no code with `link/` and `protocol/`.
class UnpackerModel {
public:
    using Buffer = std::array<std::uint8_t, 1024>;

    /// Adds the bytes of one input report, or none of them if the ring's 10240 would overflow.
    void report(std::span<const std::uint8_t> bytes) {
        if (bytes.size() != 64) {
            return;
        }
        const auto payload = bytes.subspan(1, std::min<std::size_t>(bytes[0], 63));
        if (ring_.size() + payload.size() <= 10240) {
            ring_.insert(ring_.end(), payload.begin(), payload.end());
        }
    }

    /// One tick of the receive thread. Returns the buffer at each frame that is passed on.
    std::vector<Buffer> tick() {
        std::vector<Buffer> delivered;
        while (true) {
            if (held_ == 0) {
                if (!hold(1) || buffer_[0] != 0xAA) {
                    held_ = 0;
                    return delivered;
                }
            }
            if (!hold(2)) {
                return delivered;
            }
            if (buffer_[1] != 0x55) {
                search();
                continue;
            }
            if (!hold(4)) {
                return delivered;
            }
            const std::size_t length = buffer_[2] + 256U * buffer_[3];
            if (length > 1018) {
                search();
                continue;
            }
            const std::size_t size = length + 6;
            if (!hold(size)) {
                return delivered;
            }
            const test::Bytes frame(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(size));
            if (test::plainCrc(frame.begin() + 2, frame.end() - 2) != frame[size - 2] * 256U + frame[size - 1]) {
                search();
                continue;
            }
            delivered.push_back(buffer_);
            if (held_ == size) {
                held_ = 0;
            } else {
                drop(size, 1);
                search();
            }
        }
    }

    [[nodiscard]] std::size_t unread() const { return ring_.size(); }

private:
    bool hold(std::size_t count) {
        if (held_ < count && ring_.size() < count - held_) {
            return false;
        }
        for (; held_ < count; ++held_) {
            buffer_[held_] = ring_.front();
            ring_.pop_front();
        }
        return true;
    }
    /// Moves the held bytes from `from` on to `to`. Bytes after them stay.
    void drop(std::size_t from, std::size_t to) {
        for (; from < held_; ++from, ++to) {
            buffer_[to] = buffer_[from];
        }
        held_ = to;
    }
    void search() {
        std::size_t at = 1;
        while (at < held_ && buffer_[at] != 0xAA) {
            ++at;
        }
        drop(at, 0);
    }

    std::deque<std::uint8_t> ring_;
    Buffer buffer_{};
    std::size_t held_ = 0;
};

}  // namespace kelvo::fuzz
