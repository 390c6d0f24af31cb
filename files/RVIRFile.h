#pragma once

#include <QString>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "DisplayName.h"
#include "IRConversion.h"
#include "WholeFile.h"

namespace kelvo {

/// Names of the device's own impulse responses, of which the first 15 bytes are used. Nobody fills the table: an empty
/// entry gives an empty name. Whoever fills it one day must do so before a file is opened.
extern std::array<std::string_view, 30> FileNameBuff;

/// One impulse-response file: RIFF/WAVE, or the internal format that begins with "TavikIR".
///
/// Chunks are found by scanning for the first "fmt " and the first "data", wherever they stand; nothing is decided by
/// the sizes, format tag, byte rate and block align of the headers. One thread at a time.
class RVIRFile {
public:
    /// What is used of a fmt chunk, and its format tag, by which nothing is decided.
    struct WAVE_FORMAT {
        std::size_t offset = 0;       ///< of the chunk in the file
        std::uint32_t formatTag = 0;  ///< that of the sub-format where there is one
        std::uint32_t channels = 0;
        std::uint32_t sampleRate = 0;  ///< Hz
        std::uint32_t bitsPerSample = 0;
    };

    /// What a data chunk says and has.
    struct DATA_BLOCK {
        std::size_t offset = 0;          ///< of the chunk in the file
        std::uint32_t declaredSize = 0;  ///< bytes of samples, by its header
        std::size_t heldSize = 0;        ///< bytes from its first sample to the end of the file
        std::size_t heldFrames = 0;      ///< whole sample frames that are both declared and held
    };

    RVIRFile() { CharFileNane.fill(' '); }

    /// Closes the file that is open and opens another. Returns false, with no file open, for what readWholeFile does
    /// not read, and for a file without the internal magic that is shorter than 12 bytes, lacks a chunk or the
    /// "RIFF"/"WAVE" marks, whose fmt chunk or data header is cut off by the end of the file, or that has no channel or
    /// fewer than 8 bits per sample. Rate and depth are only judged by GetIRDataBuffer. A failure leaves CharFileNane.
    [[nodiscard]] bool OpenFilePath(const QString& path);

    /// Writes the device's form of the open file: 512 points at 44100 Hz, 24-bit two's complement with bits 24 to 31
    /// zero (floats beyond -1.0 to 1.0 excepted, see decodeFirstChannel). What the file lacks of the samples it
    /// declares is silence; of a frame that is cut off nothing is used. A channel count other than 1 or 2 gives
    /// silence. Returns false and leaves `points` when no file is open or the rate or depth is not supported.
    [[nodiscard]] bool GetIRDataBuffer(std::span<std::uint32_t, kIRPointCount> points);

    /// Whether the chunks' own sizes lead from the first chunk to one at `offset`. If not, what was found there may
    /// be inside another chunk. For an open WAVE file.
    [[nodiscard]] bool chunkBeginsAt(std::size_t offset) const;

    /// How many of the framesUsed are floats that wrap, see countBeyondFullScale. For an open WAVE file.
    [[nodiscard]] std::size_t framesBeyondFullScale() const;

    CharName CharFileNane;           ///< the slot's name; 20 spaces before the first file
    QString wholeName;               ///< what CharFileNane was made of
    bool isInteralIR = false;        ///< the last file had the internal magic
    bool IsFileOpenSuccess = false;  ///< a file is open
    std::uint32_t FileSize = 0;      ///< length in bytes of the last file that could be read
    std::uint32_t PointSize = 0;     ///< sample frames that the data chunk declares; WAVE only
    WAVE_FORMAT fmt_block;           ///< WAVE only
    DATA_BLOCK data_block;           ///< WAVE only
    std::size_t framesUsed = 0;      ///< of the file, by the last conversion that succeeded
    std::size_t framesWanted = 0;    ///< what that conversion takes from a file that is long enough
    QString refusal;                 ///< why the last call refused, in printable words for the user; else empty

private:
    bool refuse(const QString& reason);
    bool refuseFormat(const char* what, std::size_t field, std::uint32_t found, const char* allowed);
    bool refuseDepth();
    bool requireText(std::size_t offset, std::string_view text);
    [[nodiscard]] std::span<const std::uint8_t> findWhole(std::string_view id, std::size_t size);
    [[nodiscard]] bool openInternal();
    [[nodiscard]] bool openWave(const QString& path);
    [[nodiscard]] bool unpackInternal(std::span<std::uint32_t, kIRPointCount> points);
    [[nodiscard]] bool convertWave(std::span<std::uint32_t, kIRPointCount> points);

    FileContent pFileBuff;    // the whole file, empty when none is open
    std::size_t pIRData = 0;  // WAVE: offset of the first sample byte, at most the file's size; else 0
};

}  // namespace kelvo
