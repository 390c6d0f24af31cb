#pragma once

#include <array>
#include <cstdint>

namespace kelvo {

/// The import with libsndfile and libsamplerate: opens the file, reads only the frames for 512 points, extracts the
/// first channel, resamples it linearly to 44100 Hz and truncates it to 24 bits. Throws std::runtime_error when either
/// library fails.
[[nodiscard]] std::array<std::uint32_t, 512> importWithSndfile(const char* path);

}  // namespace kelvo
