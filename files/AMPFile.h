#pragma once

#include <QString>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "DisplayName.h"
#include "FileView.h"
#include "SlotContent.h"
#include "WholeFile.h"

namespace kelvo {

inline constexpr std::size_t kAmpChecksumOffset = kPointCount * 4;

/// The content of an amp model file: 512 little-endian words, their sum modulo 2^32, any bytes, and "2.0" as the last
/// three bytes. A file that ends before its checksum is sound if its words sum to 0.
struct AmpLayout {
    std::size_t words = 0;                  ///< complete words in the file, at most kPointCount
    std::uint32_t sum = 0;                  ///< of these words, modulo 2^32
    std::optional<std::uint32_t> checksum;  ///< none if the file ends before it
    bool hasTrailer = false;

    [[nodiscard]] bool addsUp() const { return sum == checksum.value_or(0); }
    [[nodiscard]] bool isSound() const { return addsUp() && hasTrailer; }
};

/// Checks a file and copies its words; `words` beyond the end of a short file keep their values. Reads only the first
/// 2052 bytes and the last three. Any thread.
[[nodiscard]] AmpLayout scanAmp(FileView file, std::span<std::uint32_t, kPointCount> words);

/// The words of the last file that AMPFile::OpenFile accepted. A transfer copies them when it begins. Not guarded: only
/// one thread imports.
extern PointBuffer AmpPiontBuff;

/// One amp model file. One thread at a time.
class AMPFile {
public:
    AMPFile() { CharFileName.fill(' '); }

    /// Reads a file and fills ampSwBuffer, CharFileName and AmpPiontBuff. Returns false for a file that readWholeFile
    /// does not read, a wrong checksum or a wrong trailer. CharFileName and AmpPiontBuff are then unchanged;
    /// ampSwBuffer may already have the file's words.
    [[nodiscard]] bool OpenFile(const QString& path);

    /// Copies the words of ampSwBuffer.
    void GetBuffer(std::span<std::uint32_t, kPointCount> words) const;

    union {
        std::array<std::uint32_t, kPointCount> AmpIntBuffer{};
        std::array<float, kPointCount> AmpFloatBuffer;  ///< not used
    } ampSwBuffer;
    NameBuffer CharFileName;         ///< the slot's name; 20 spaces before the first file
    bool IsFileOpenSuccess = false;  ///< a file is open
    FileContent pFileBuff;           ///< the complete file, empty when none is open
    std::uint32_t FileSize = 0;      ///< length in bytes of the last file that could be read
};

}  // namespace kelvo
