#pragma once

#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kelvo {

using FileBytes = std::vector<std::uint8_t>;

inline void append(FileBytes& bytes, std::string_view text) {
    std::ranges::copy(text, std::back_inserter(bytes));
}

inline void append(FileBytes& bytes, std::uint32_t value, int width) {
    for (int i = 0; i < width; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

[[nodiscard]] inline FileBytes textBytes(std::string_view text) {
    return {text.begin(), text.end()};
}

[[nodiscard]] inline FileBytes joinedFiles(std::initializer_list<FileBytes> pieces) {
    FileBytes all;
    for (const FileBytes& piece : pieces) {
        std::ranges::copy(piece, std::back_inserter(all));
    }
    return all;
}

/// `bytes` with `text` written over them at `offset`.
[[nodiscard]] inline FileBytes withTextAt(std::size_t offset, std::string_view text, FileBytes bytes) {
    std::ranges::copy(text, bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    return bytes;
}

/// A RIFF/WAVE file as its fields say, right or wrong. The header is 44 bytes long.
struct WaveFile {
    std::uint32_t sampleRate = 44100;
    std::uint32_t bitsPerSample = 16;
    std::uint32_t channels = 1;
    FileBytes data;
    std::int64_t declaredDataSize = -1;  ///< -1: the real one

    [[nodiscard]] FileBytes bytes() const {
        const auto dataSize = static_cast<std::uint32_t>(declaredDataSize < 0 ? data.size() : declaredDataSize);
        const std::uint32_t frameSize = bitsPerSample / 8 * channels;
        FileBytes file;
        append(file, "RIFF");
        append(file, 36 + dataSize, 4);
        append(file, "WAVEfmt ");
        append(file, 16, 4);
        append(file, bitsPerSample == 32 ? 3 : 1, 2);
        append(file, channels, 2);
        append(file, sampleRate, 4);
        append(file, sampleRate * frameSize, 4);
        append(file, frameSize, 2);
        append(file, bitsPerSample, 2);
        append(file, "data");
        append(file, dataSize, 4);
        std::ranges::copy(data, std::back_inserter(file));
        return file;
    }
};

/// An amp model file: `words`, zeros up to 512 words, the checksum and the trailer "2.0".
inline FileBytes ampFile(std::span<const std::uint32_t> words) {
    FileBytes file;
    std::uint32_t sum = 0;
    for (const std::uint32_t word : words) {
        append(file, word, 4);
        sum += word;
    }
    file.resize(2048);
    append(file, sum, 4);
    append(file, "2.0");
    return file;
}

/// A directory that lives as long as this object, and files in it.
class SampleDir {
public:
    SampleDir() {
        if (!dir_.isValid()) {
            throw std::runtime_error("no temporary directory");
        }
    }

    [[nodiscard]] QString path(const QString& name) const { return dir_.filePath(name); }

    /// Writes a file, over an older one of that name, and returns its path.
    QString write(const QString& name, std::span<const std::uint8_t> bytes) const {
        QFile file(path(name));
        const std::string content(bytes.begin(), bytes.end());
        if (!file.open(QIODevice::WriteOnly) ||
            file.write(content.data(), std::ssize(content)) != std::ssize(content)) {
            throw std::runtime_error("cannot write a sample file");
        }
        return path(name);
    }

private:
    QTemporaryDir dir_;
};

}  // namespace kelvo
