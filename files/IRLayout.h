#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "FileView.h"

namespace kelvo {

// What an impulse-response file holds, and where: pure functions over its bytes. Any thread.

using FourChars = std::array<char, 4>;

// The records of a wave file, decoded. Their members stand where the fields stand in the file.
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

/// What a wave file must have, in the order in which it is looked at.
enum class WaveRule { RiffMark, WaveMark, FmtChunk, DataChunk, Channels, Depth, None };

/// What was found up to the first rule that is broken; the rest is as it was made.
struct WaveLayout {
    WaveRule broken = WaveRule::None;  ///< Channels: there is none. Depth: fewer than 8 bits.
    RIFF_HEADER riffheader;
    std::size_t fmtOffset = 0;  ///< of the chunk's id; the file's size if there is none
    FMT_BLOCK fmt_block;
    std::size_t dataOffset = 0;  ///< likewise
    DATA_BLOCK data_block;
    std::size_t samplesOffset = 0;  ///< where the samples begin
    std::size_t samplesSize = 0;    ///< bytes from there to the end of the file
    std::uint32_t frames = 0;       ///< sample frames that the data chunk declares
};

/// Finds the first "fmt " and the first "data", wherever they stand, also inside another chunk. A chunk that the end of
/// the file cuts off, before the samples, counts as broken. Nothing is decided by the sizes of the RIFF header and the
/// fmt chunk, the format tag, the byte rate and the block align; rate and depth are judged by the conversion.
[[nodiscard]] WaveLayout findWave(FileView file);

/// Whether the file has the device's own format, which has no rules behind its magic.
[[nodiscard]] bool isInternalIR(FileView file);

/// Where the samples of such a file, 3 bytes each, begin.
inline constexpr std::size_t kInternalSamples = 512;

/// Names of the device's own impulse responses. Nobody fills the table: an empty entry gives an empty name. Whoever
/// fills it one day must do so before a file is opened.
extern std::array<std::string_view, 30> FileNameBuff;

/// At most kInternalNameLength bytes of the entry of FileNameBuff that such a file names; empty where there is none.
[[nodiscard]] std::string_view internalName(FileView file);

inline constexpr std::size_t kInternalNameLength = 15;

}  // namespace kelvo
