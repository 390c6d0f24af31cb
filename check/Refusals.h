#pragma once

#include <QString>

#include "AMPFile.h"
#include "IRLayout.h"
#include "WholeFile.h"

namespace kelvo {

// Why a file is refused: a printable clause that begins with "it" or "its". Any thread.

[[nodiscard]] QString unreadable(const QString& path, const ReadFailure& failure);

/// For a file that breaks a rule of findWave, or else one that convertWave does not take.
[[nodiscard]] QString waveRefusal(ByteView file, const WaveLayout& wave);

/// Empty for a good file.
[[nodiscard]] QString ampRefusal(ByteView file, const AmpLayout& amp);

}  // namespace kelvo
