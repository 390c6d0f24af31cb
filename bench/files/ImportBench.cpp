// Measures the processor time to open, check and convert an impulse response, and to refuse other files.
//
//   Import/...     one import, compared with libsndfile and libsamplerate
//   Length/...     the same by the file's length in seconds, compared with one read of the complete file
//   Refuse/...     by the file's size in MiB, compared with one read and one pass of memchr
//
// The files are in a temporary folder and in the page cache.

#include <benchmark/benchmark.h>

#include <QByteArray>
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <span>
#include <stdexcept>
#include <string>

#include "PlainRead.h"
#include "RVIRFile.h"
#include "SampleFiles.h"
#include "SndfileImport.h"

namespace {

using kelvo::FileBytes;
using Points = std::array<std::uint32_t, kelvo::kPointCount>;

constexpr std::size_t kMiB = 1U << 20U;
/// A byte that no refused file contains.
constexpr std::uint8_t kAbsent = 0xFF;

struct Format {
    const char* name;
    double seconds;
    std::uint32_t sampleRate;
    std::uint32_t bitsPerSample;
    std::uint32_t channels;
};

constexpr std::array<Format, 3> kFormats{{
    {"20ms-mono-16bit-44100", 0.02, 44100, 16, 1},
    {"200ms-stereo-24bit-48000", 0.2, 48000, 24, 2},
    {"500ms-mono-float-96000", 0.5, 96000, 32, 1},
}};

/// A file of the format with a slow, decaying wave, for which two resamplers give the same result.
FileBytes wave(const Format& format) {
    kelvo::WaveFile file{
        .sampleRate = format.sampleRate, .bitsPerSample = format.bitsPerSample, .channels = format.channels};
    const auto frames = static_cast<int>(format.seconds * format.sampleRate);
    const int width = static_cast<int>(format.bitsPerSample / 8);
    for (int frame = 0; frame < frames; ++frame) {
        const double at = static_cast<double>(frame) / format.sampleRate;
        const double value = 0.9 * std::exp(-at * 20.0) * std::cos(2.0 * std::numbers::pi * 100.0 * at);
        const std::uint32_t sample =
            width == 4 ? std::bit_cast<std::uint32_t>(static_cast<float>(value))
                       : static_cast<std::uint32_t>(std::lrint(value * ((1 << (format.bitsPerSample - 1)) - 1)));
        for (std::uint32_t channel = 0; channel < format.channels; ++channel) {
            kelvo::append(file.data, sample, width);
        }
    }
    return file.bytes();
}

class Files {
public:
    QString write(const std::string& name, const FileBytes& bytes) const {
        return folder_.write(QString::fromStdString(name), bytes);
    }

private:
    kelvo::SampleDir folder_;
};

Points import(const QString& path) {
    kelvo::RVIRFile file;
    Points points{};
    if (!file.OpenFilePath(path) || !file.GetIRDataBuffer(points)) {
        throw std::runtime_error("refused: " + path.toStdString());
    }
    return points;
}

double level(std::uint32_t word) {
    return (static_cast<std::int32_t>(word << 8U) >> 8) / 8388608.0;
}

/// Both imports must give the same points, or the comparison is meaningless.
void requireAgreement(const QString& path) {
    const Points ours = import(path);
    const Points theirs = kelvo::importWithSndfile(path.toLocal8Bit().constData());
    for (std::size_t i = 0; i < ours.size(); ++i) {
        if (std::abs(level(ours[i]) - level(theirs[i])) > 0.02) {
            throw std::runtime_error("the two imports differ at point " + std::to_string(i));
        }
    }
}

void addImports(const Files& files) {
    for (const Format& format : kFormats) {
        const QString path = files.write(std::string(format.name) + ".wav", wave(format));
        requireAgreement(path);
        benchmark::RegisterBenchmark((std::string("Import/") + format.name + "/kelvo").c_str(),
                                     [path](benchmark::State& state) {
                                         for (auto _ : state) {
                                             benchmark::DoNotOptimize(import(path));
                                         }
                                     });
        benchmark::RegisterBenchmark((std::string("Import/") + format.name + "/libsndfile").c_str(),
                                     [path = path.toLocal8Bit()](benchmark::State& state) {
                                         for (auto _ : state) {
                                             benchmark::DoNotOptimize(kelvo::importWithSndfile(path.constData()));
                                         }
                                     });
    }
}

void addLengths(const Files& files) {
    for (const int seconds : {10, 60}) {
        const std::string name = std::to_string(seconds);
        const QString path = files.write(name + "s.wav", wave({"", static_cast<double>(seconds), 48000, 24, 2}));
        benchmark::RegisterBenchmark(("Length/" + name + "/kelvo").c_str(), [path](benchmark::State& state) {
            for (auto _ : state) {
                benchmark::DoNotOptimize(import(path));
            }
        });
        benchmark::RegisterBenchmark(("Length/" + name + "/read").c_str(),
                                     [path = path.toLocal8Bit()](benchmark::State& state) {
                                         for (auto _ : state) {
                                             benchmark::DoNotOptimize(kelvo::readPlainly(path.constData()));
                                         }
                                     });
    }
}

/// Random bytes, none of them kAbsent.
FileBytes disorder(std::size_t size) {
    FileBytes bytes(size);
    std::uint32_t seed = 1;
    for (std::uint8_t& byte : bytes) {
        seed = seed * 1664525U + 1013904223U;
        byte = static_cast<std::uint8_t>((seed >> 24U) % kAbsent);
    }
    return bytes;
}

FileBytes marked(FileBytes bytes) {
    std::ranges::copy(std::string_view("RIFF    WAVE"), bytes.begin());
    return bytes;
}

void addRefusal(const Files& files, const std::string& name, const FileBytes& content) {
    const QString path = files.write(name, content);
    benchmark::RegisterBenchmark(("Refuse/" + name + "/kelvo").c_str(), [path](benchmark::State& state) {
        kelvo::RVIRFile file;
        for (auto _ : state) {
            if (file.OpenFilePath(path)) {
                state.SkipWithError("taken");
            }
        }
    })->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("Refuse/" + name + "/memchr").c_str(), [path = path.toLocal8Bit()](
                                                                             benchmark::State& state) {
        for (auto _ : state) {
            if (passOnce(kelvo::readPlainly(path.constData()), kAbsent)) {
                state.SkipWithError("found");
            }
        }
    })->Unit(benchmark::kMillisecond);
}

void addRefusals(const Files& files) {
    addRefusal(files, "neither-mark", marked(disorder(16 * kMiB)));
    addRefusal(files, "all-f", FileBytes(16 * kMiB, 'f'));
    addRefusal(files, "all-f-after-RIFF", marked(FileBytes(16 * kMiB, 'f')));
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const Files files;
    addImports(files);
    addLengths(files);
    addRefusals(files);
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
