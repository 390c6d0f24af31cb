#pragma once

#include <QByteArray>
#include <QString>

#include "FileView.h"
#include "IRLayout.h"

namespace kelvo {

/// Quotes a file's name, which may contain any bytes, as one word for a POSIX shell. Printable.
[[nodiscard]] QString shellWord(const QByteArray& path);

/// The same as an argument of sox, with an option before it if needed. sox treats some names as options, pipes,
/// patterns or URLs, and passes URLs to a shell.
[[nodiscard]] QString soxFile(const QByteArray& path);

/// Replaces each byte that is not valid UTF-8 by a percent sign and its hexadecimal value.
[[nodiscard]] QByteArray validName(const QByteArray& name);

/// A shell command by which sox converts the refused wave file at `path` to an accepted one beside it. It changes only
/// what is wrong: to 44100 Hz, 24-bit integers or the first channel. Depths that are accepted but change the sound, 8
/// bits and 32-bit integers, count as wrong. The command runs only sox, whatever the file's name is, and overwrites no
/// file. Printable. Empty for a file that is refused for other reasons or that is in a folder whose name is not valid
/// UTF-8. Any thread.
[[nodiscard]] QString soxLine(const QByteArray& path, FileView file, const WaveLayout& wave);

}  // namespace kelvo
