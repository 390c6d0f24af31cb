#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace kelvo::fuzz {

/// A second, simple reader of the amp model format. Returns whether the file is accepted. `words` contains the words of
/// an earlier file and gets those of this one, even if it is refused. Shares no code with `files/`.
[[nodiscard]] inline bool modelAmp(std::span<const std::uint8_t> file, std::array<std::uint32_t, 512>& words) {
    std::uint64_t sum = 0;
    std::uint64_t expected = 0;
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < file.size() && i < 513 * 4; ++i) {
        word += std::uint64_t{file[i]} << (i % 4 * 8);
        if (i % 4 < 3) {
            continue;
        }
        if (i / 4 == 512) {
            expected = word;
        } else {
            words[i / 4] = static_cast<std::uint32_t>(word);
            sum += word;
        }
        word = 0;
    }
    const std::size_t n = file.size();
    return n >= 3 && file[n - 3] == '2' && file[n - 2] == '.' && file[n - 1] == '0' && sum % 0x100000000U == expected;
}

}  // namespace kelvo::fuzz
