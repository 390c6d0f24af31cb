#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "FileView.h"

namespace kelvo {

// The layout of an impulse-response file: pure functions over its bytes. Any thread.

using FourChars = std::array<char, 4>;

// The decoded records of a wave file. Each member has the offset of its field in the file.
struct RIFF_HEADER {
    FourChars id{};
    std::uint32_t size = 0;  ///< not used
    FourChars formType{};
};

struct WAVE_FORMAT {
    std::uint16_t formatTag = 0;  ///< not used
    std::uint16_t channels = 0;
    std::uint32_t sampleRate = 0;  ///< Hz
    std::uint32_t byteRate = 0;    ///< not used
    std::uint16_t blockAlign = 0;  ///< not used
    std::uint16_t bitsPerSample = 0;
};

struct FMT_BLOCK {
    FourChars id{};
    std::uint32_t size = 0;  ///< not used
    WAVE_FORMAT format;
};

struct DATA_BLOCK {
    FourChars id{};
    std::uint32_t size = 0;  ///< bytes of samples that follow, as declared
};

/// The rules for a wave file, in the order in which they are checked.
enum class WaveRule { RiffMark, WaveMark, FmtChunk, DataChunk, Channels, Depth, None };

/// What was found before the first broken rule; all other members have their defaults.
struct WaveLayout {
    WaveRule broken = WaveRule::None;  ///< Channels: none declared. Depth: fewer than 8 bits.
    RIFF_HEADER riffheader;
    std::size_t fmtOffset = 0;  ///< of the chunk's id; the file's size if the chunk is missing
    FMT_BLOCK fmt_block;
    std::size_t dataOffset = 0;  ///< as fmtOffset
    DATA_BLOCK data_block;
    std::size_t samplesOffset = 0;  ///< where the samples begin
    std::size_t samplesSize = 0;    ///< bytes from there to the end of the file
    std::uint32_t frames = 0;       ///< sample frames that the data chunk declares
};

/// Finds the first "fmt " and the first "data" at any offset, even inside another chunk. A record that the end of the
/// file cuts off breaks its rule; missing samples do not. Ignores the sizes of the RIFF header and the fmt chunk, the
/// format tag, the byte rate and the block align. The conversion checks rate and depth.
[[nodiscard]] WaveLayout findWave(FileView file);

/// Whether the file has the device's own format. It has no rules but its magic.
[[nodiscard]] bool isInternalIR(FileView file);

/// Offset of the samples in such a file, 3 bytes each.
inline constexpr std::size_t kInternalSamples = 512;

/// Names of the device's own impulse responses. The table is empty so far, and an empty entry gives an empty name. It
/// must be filled before a file is opened.
extern std::array<std::string_view, 30> FileNameBuff;

/// At most kInternalNameLength bytes of the entry of FileNameBuff that such a file refers to; empty if there is none.
[[nodiscard]] std::string_view internalName(FileView file);

inline constexpr std::size_t kInternalNameLength = 15;

}  // namespace kelvo
