#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include "CheckFile.h"

namespace kelvo {

// Why an accepted file may not sound as expected: one printable clause for each reason. Any thread.

/// `sent` is the part of the name `whole` that is sent to the pedal. Both are UTF-8.
[[nodiscard]] QStringList nameNotes(QByteArrayView sent, const QByteArray& whole);

/// The format tag in the header, or that of the sub-format if there is one.
[[nodiscard]] std::uint32_t formatTag(FileView file, const WaveLayout& wave);

inline constexpr std::uint32_t kIntegerTag = 1;
inline constexpr std::uint32_t kFloatTag = 3;

/// Whether a chunk begins at `offset` according to the sizes of the chunks before it. If not, the id at `offset` may be
/// inside another chunk.
[[nodiscard]] bool isChunk(FileView file, std::size_t offset);

[[nodiscard]] QStringList waveNotes(FileView file, const WaveLayout& wave, const WaveFacts& facts);

/// The same for a file in the device's own format.
[[nodiscard]] QStringList internalNotes(const WaveFacts& facts);

[[nodiscard]] QStringList ampNotes(const AmpLayout& amp);

}  // namespace kelvo
