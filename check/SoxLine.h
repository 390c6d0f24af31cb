#pragma once

#include <QByteArray>
#include <QString>

#include "FileView.h"
#include "IRLayout.h"

namespace kelvo {

/// The name of a file, in any bytes, as a word for a POSIX shell that expands to just that. Printable.
[[nodiscard]] QString shellWord(const QByteArray& path);

/// The same for an argument of sox, which takes some names for options, pipes, patterns or URLs and hands a URL to a
/// shell; with the option in front that it may need.
[[nodiscard]] QString soxFile(const QByteArray& path);

/// A name with what is not valid UTF-8 in it replaced: each such byte becomes a percent sign and its value.
[[nodiscard]] QByteArray validName(const QByteArray& name);

/// The line for a POSIX shell by which sox makes, of the wave file that is refused at `path`, one beside it that is
/// taken: 44100 Hz, 24-bit integers, the first channel, of which it names only what is wrong with the file. Depths that
/// are taken but do not keep the sound, 8 bits and 32-bit integers, count as wrong. The line runs nothing but sox,
/// whatever the file is called, and overwrites no file. Printable; empty for a file that is refused for something else,
/// or lies in a folder whose name is not valid UTF-8. Any thread.
[[nodiscard]] QString soxLine(const QByteArray& path, FileView file, const WaveLayout& wave);

}  // namespace kelvo
