#pragma once

#include <array>
#include <cstdint>

namespace kelvo {

/// The import as one would write it with libsndfile and libsamplerate: opens the file, reads only the frames that 512
/// points need, takes the first channel, brings it to 44100 Hz by linear interpolation, and cuts it to 24 bits.
/// Throws std::runtime_error when either library refuses.
[[nodiscard]] std::array<std::uint32_t, 512> importWithSndfile(const char* path);

}  // namespace kelvo
