#include "Recording.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "IRConversion.h"
#include "Notes.h"

namespace kelvo {
namespace {

/// The level of the sample in `bytes`.
double sampleLevel(ByteView bytes, bool isFloat) {
    if (isFloat && bytes.size() == 8) {
        const std::uint64_t high = littleEndian(bytes.last<4>());
        return std::bit_cast<double>(high << 32U | littleEndian(bytes.first<4>()));
    }
    const std::uint32_t word = littleEndian(bytes);
    if (isFloat) {
        return static_cast<double>(std::bit_cast<float>(word));
    }
    // Shift the sign to bit 31. 8-bit samples are unsigned.
    const std::uint32_t top = word << (32U - 8U * static_cast<std::uint32_t>(bytes.size()));
    return static_cast<double>(static_cast<std::int32_t>(bytes.size() == 1 ? top ^ 0x80000000U : top)) / 2147483648.0;
}

}  // namespace

std::optional<Recording> Recording::of(FileView file, const WaveLayout& wave) {
    const WAVE_FORMAT& format = wave.fmt_block.format;
    const std::uint32_t tag = formatTag(file, wave);
    Recording recording;
    recording.file_ = file;
    recording.offset_ = wave.samplesOffset;
    recording.width_ = (std::size_t{format.bitsPerSample} + 7) / 8;
    recording.stride_ = recording.width_ * format.channels;
    recording.isFloat_ = tag == kFloatTag;
    recording.rate_ = static_cast<double>(format.sampleRate);
    const bool isKnown = recording.isFloat_ ? recording.width_ == 4 || recording.width_ == 8
                                            : tag == kIntegerTag && recording.width_ <= 4;
    if (!isKnown || format.bitsPerSample < 8 || format.channels == 0 || format.sampleRate == 0) {
        return std::nullopt;
    }
    recording.frames_ = std::min<std::size_t>(wave.data_block.size, wave.samplesSize) / recording.stride_;
    return recording;
}

void Recording::read(std::size_t begin, std::size_t end,
                     const std::function<bool(std::span<const double>)>& take) const {
    const std::size_t most = std::max<std::size_t>((DiskFile::kLongestPart - width_) / stride_, 1);
    std::vector<double> samples;
    bool continues = true;
    for (end = std::min(end, frames_); continues && begin < end; begin += samples.size()) {
        samples.resize(std::min(most, end - begin));
        const std::size_t length = (samples.size() - 1) * stride_ + width_;
        const ByteView bytes = file_.part(offset_ + begin * stride_, length);
        if (bytes.size() < length) {
            return;
        }
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const double level = sampleLevel(bytes.subspan(i * stride_, width_), isFloat_);
            samples[i] = std::isfinite(level) ? level : 0.0;
        }
        continues = take(samples);
    }
}

std::size_t Recording::onset(double peak) const {
    std::size_t frame = 0;
    read(0, frames_, [&frame, peak](std::span<const double> samples) {
        const auto found =
            std::ranges::find_if(samples, [peak](double sample) { return std::abs(sample) >= peak / 10.0; });
        frame += static_cast<std::size_t>(found - samples.begin());
        return found == samples.end();
    });
    return frame;
}

std::optional<RecordingFacts> factsOf(const Recording& recording) {
    RecordingFacts facts{.rate = recording.rate()};
    facts.second.resize(std::min(recording.frames(), static_cast<std::size_t>(facts.rate)));
    const auto within = static_cast<std::size_t>(kPointCount * facts.rate / kIRPointRate);
    std::size_t frame = 0;
    std::size_t place = 0;
    double energy = 0.0;
    double energyWithin = 0.0;
    recording.read(0, recording.frames(), [&](std::span<const double> samples) {
        for (const double sample : samples) {
            facts.second[place] += sample;
            place = place + 1 == facts.second.size() ? 0 : place + 1;
            facts.peak = std::max(facts.peak, std::abs(sample));
            energy += sample * sample;
            energyWithin = ++frame == within ? energy : energyWithin;
        }
        return true;
    });
    if (facts.peak == 0.0) {
        return std::nullopt;
    }
    facts.energy = frame < within ? 1.0 : energyWithin / energy;
    facts.onset = 1000.0 * static_cast<double>(recording.onset(facts.peak)) / facts.rate;
    return facts;
}

}  // namespace kelvo
