#pragma once

#include <QString>

#include "AMPFile.h"
#include "DiskFile.h"
#include "IRLayout.h"

namespace kelvo {

// Why a file is refused: a printable clause that begins with "it" or "its". Any thread.

[[nodiscard]] QString unreadable(const ReadFailure& failure);

/// For a file that breaks a rule of findWave or that convertWave does not support.
[[nodiscard]] QString waveRefusal(FileView file, const WaveLayout& wave);

/// Empty for an accepted file.
[[nodiscard]] QString ampRefusal(FileView file, const AmpLayout& amp);

}  // namespace kelvo
