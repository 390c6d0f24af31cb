#include "SndfileImport.h"

#include <samplerate.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <vector>

namespace kelvo {
namespace {

constexpr int kRate = 44100;
constexpr float kLargest = 8388607.0F;

}  // namespace

std::array<std::uint32_t, 512> importWithSndfile(const char* path) {
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> file(sf_open(path, SFM_READ, &info), sf_close);
    if (!file) {
        throw std::runtime_error("libsndfile refuses the file");
    }
    std::array<std::uint32_t, 512> points{};
    // Two frames after that of the last point, for the interpolation.
    const auto frames = info.samplerate == kRate ? 512 : 512 * info.samplerate / kRate + 2;
    const auto channels = static_cast<std::size_t>(info.channels);
    std::vector<float> samples(static_cast<std::size_t>(frames) * channels);
    const auto read = static_cast<std::size_t>(sf_readf_float(file.get(), samples.data(), frames));
    for (std::size_t i = 0; channels > 1 && i < read; ++i) {
        samples[i] = samples[i * channels];
    }
    std::array<float, 512> resampled{};
    std::size_t count = std::min(read, resampled.size());
    const float* source = samples.data();
    if (info.samplerate != kRate) {
        SRC_DATA work{};
        work.data_in = samples.data();
        work.data_out = resampled.data();
        work.input_frames = static_cast<long>(read);
        work.output_frames = static_cast<long>(resampled.size());
        work.src_ratio = static_cast<double>(kRate) / info.samplerate;
        if (src_simple(&work, SRC_LINEAR, 1) != 0) {
            throw std::runtime_error("libsamplerate refuses the samples");
        }
        count = static_cast<std::size_t>(work.output_frames_gen);
        source = resampled.data();
    }
    for (std::size_t k = 0; k < count; ++k) {
        const float value = std::clamp(source[k], -1.0F, 1.0F) * kLargest;
        points[k] = static_cast<std::uint32_t>(std::lrint(value)) & 0xFFFFFFU;
    }
    return points;
}

}  // namespace kelvo
