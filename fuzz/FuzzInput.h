#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <vector>

namespace kelvo::fuzz {

/// Ends the process as a finding when the program and its model disagree.
inline void check(bool holds, const char* promise) {
    if (!holds) {
        std::fprintf(stderr, "broken promise: %s\n", promise);
        std::abort();
    }
}

/// One fuzzer input, read from the front. All bytes after its end are zero, so that every input is valid.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

    [[nodiscard]] bool empty() const { return rest_.empty(); }

    std::uint8_t byte() {
        if (rest_.empty()) {
            return 0;
        }
        const std::uint8_t value = rest_.front();
        rest_ = rest_.subspan(1);
        return value;
    }
    /// A number below `limit`, which is at most 256.
    std::size_t below(std::size_t limit) { return byte() % limit; }

    std::vector<std::uint8_t> bytes(std::size_t count) {
        const auto taken = rest_.first(std::min(count, rest_.size()));
        rest_ = rest_.subspan(taken.size());
        std::vector<std::uint8_t> result(taken.begin(), taken.end());
        result.resize(count);
        return result;
    }

private:
    std::span<const std::uint8_t> rest_;
};

}  // namespace kelvo::fuzz
