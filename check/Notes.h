#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include "CheckFile.h"

namespace kelvo {

// Why a file that is accepted may not become what its maker thinks: one printable clause for each reason. Any thread.

/// `sent` is what the pedal gets of the name `whole`, in UTF-8.
[[nodiscard]] QStringList nameNotes(QByteArrayView sent, const QByteArray& whole);

/// What the header says of the samples, such as one of the two below. That of the sub-format where there is one.
[[nodiscard]] std::uint32_t formatTag(FileView file, const WaveLayout& wave);

inline constexpr std::uint32_t kIntegerTag = 1;
inline constexpr std::uint32_t kFloatTag = 3;

/// Whether the sizes of the chunks lead from the first one to one at `offset`. If not, what was found there may be
/// inside another chunk.
[[nodiscard]] bool isChunk(FileView file, std::size_t offset);

/// `facts` tell what became of the file.
[[nodiscard]] QStringList waveNotes(FileView file, const WaveLayout& wave, const WaveFacts& facts);

/// The same for a file in the device's own format.
[[nodiscard]] QStringList internalNotes(const WaveFacts& facts);

[[nodiscard]] QStringList ampNotes(const AmpLayout& amp);

}  // namespace kelvo
