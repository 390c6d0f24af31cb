#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "FileView.h"
#include "IRLayout.h"

namespace kelvo {

/// The complete first channel of a wave file, decoded by its format tag: 8-bit samples have their silence at 0x80, and
/// floats beyond full scale keep their value. Read in blocks. One thread at a time.
class Recording {
public:
    /// Returns nothing for samples other than integers of up to 32 bits and floats of 32 or 64 bits.
    [[nodiscard]] static std::optional<Recording> of(FileView file, const WaveLayout& wave);

    [[nodiscard]] double rate() const { return rate_; }
    [[nodiscard]] std::size_t frames() const { return frames_; }

    /// Passes the samples from `begin` to before `end`, or to the end of the recording, to `take` in blocks, until that
    /// returns false.
    void read(std::size_t begin, std::size_t end, const std::function<bool(std::span<const double>)>& take) const;

    /// The index of the first sample with at least a tenth of `peak`, the recording's largest absolute level.
    [[nodiscard]] std::size_t onset(double peak) const;

private:
    FileView file_;
    std::size_t offset_ = 0;
    std::size_t frames_ = 0;
    std::size_t width_ = 0;   ///< bytes of a sample
    std::size_t stride_ = 0;  ///< bytes of a frame
    bool isFloat_ = false;
    double rate_ = 0.0;
};

/// Figures of a complete recording.
struct RecordingFacts {
    double rate = 0.0;
    double peak = 0.0;    ///< the largest absolute level, as a fraction of full scale
    double onset = 0.0;   ///< time of Recording::onset, ms
    double energy = 0.0;  ///< the fraction of the energy within the time of the pedal's points, 0 to 1
    /// The recording folded into one second: sample i is the sum of those at i plus any number of seconds. At a whole
    /// number of Hz this has the gain of the complete recording.
    std::vector<double> second;
};

/// Returns nothing for silence.
[[nodiscard]] std::optional<RecordingFacts> factsOf(const Recording& recording);

}  // namespace kelvo
