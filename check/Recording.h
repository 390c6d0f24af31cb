#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "FileView.h"
#include "IRLayout.h"

namespace kelvo {

/// The first channel of a wave file as its maker means it, over its whole length: integers by their format tag, 8 bits
/// with their silence at 0x80, floats beyond full scale as they are. Read in blocks. One thread at a time.
class Recording {
public:
    /// Nothing for samples that are neither integers of up to 32 bits nor floats of 32 or 64.
    [[nodiscard]] static std::optional<Recording> of(FileView file, const WaveLayout& wave);

    [[nodiscard]] double rate() const { return rate_; }
    [[nodiscard]] std::size_t frames() const { return frames_; }

    /// Hands over the samples from `begin` to before `end`, or to the end of the recording, block by block, until
    /// `take` returns false.
    void read(std::size_t begin, std::size_t end, const std::function<bool(std::span<const double>)>& take) const;

    /// The first sample that has at least a tenth of the largest one's level, which is `peak`.
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

/// Figures of a whole recording.
struct RecordingFacts {
    double rate = 0.0;
    double peak = 0.0;    ///< the largest distance of a sample from 0, as a part of full scale
    double onset = 0.0;   ///< ms before Recording::onset
    double energy = 0.0;  ///< the part of its energy that lies within the time of the pedal's points, 0 to 1
    /// The recording folded into one second: what is a whole number of seconds apart is added up. At a frequency in
    /// whole Hz this has the gain of the whole recording.
    std::vector<double> second;
};

/// Nothing for silence.
[[nodiscard]] std::optional<RecordingFacts> factsOf(const Recording& recording);

}  // namespace kelvo
