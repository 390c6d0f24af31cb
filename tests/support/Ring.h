#pragma once

#include <cstdint>
#include <vector>

#include "CircleBuffer.h"

namespace kelvo::test {

/// Takes all that is in the receive ring.
inline std::vector<std::uint8_t> takeRing() {
    std::vector<std::uint8_t> bytes;
    for (std::uint8_t byte = 0; getRX_buffer(1, &byte);) {
        bytes.push_back(byte);
    }
    return bytes;
}

}  // namespace kelvo::test
