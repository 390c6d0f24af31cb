#pragma once

#include <QString>

#include "IRLayout.h"

namespace kelvo {

/// The line for a POSIX shell by which sox makes, of the wave file that is refused at `path`, one beside it that is
/// taken: 44100 Hz, 24-bit integers, the first channel, of which it names only what is wrong with the file. Depths that
/// are taken but do not keep the sound, 8 bits and 32-bit integers, count as wrong. The line runs nothing but sox,
/// whatever the file is called, and overwrites no file. Printable; empty for a file that is refused for something else.
/// Any thread.
[[nodiscard]] QString soxLine(const QString& path, FileView file, const WaveLayout& wave);

}  // namespace kelvo
