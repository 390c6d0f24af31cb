#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <vector>

#include "Response.h"

namespace kelvo {

/// The plan for a prepared copy of an impulse response.
struct Prepared {
    QByteArray path;          ///< of the original
    QString leftOut;          ///< why there is no copy: a clause; empty if there is one
    double rate = 0.0;        ///< of the original, Hz
    std::size_t begin = 0;    ///< first frame of the original that is kept
    std::size_t padding = 0;  ///< points of silence that make the copy long enough
    double level = kNoGain;   ///< meanLevel of the copy before its gain, dB
    double peak = 0.0;        ///< the largest absolute level of the copy before its gain
};

/// Reads the file at `path`, whether Kelvo accepts it or not. Any thread.
[[nodiscard]] Prepared prepare(const QByteArray& path);

/// The names of the copies, without extension: at most ten capital letters, digits and signs. All are different and
/// keep the beginning and the end of the originals' names.
[[nodiscard]] QStringList preparedNames(const std::vector<Prepared>& set);

/// A script for a POSIX shell that makes `folder` if it is missing and the copies in it. All copies have the same
/// level: the set's median, or the highest below it that keeps every sample below full scale. The script is printable
/// except for its line ends, runs only mkdir, test and sox, and overwrites no file.
[[nodiscard]] QString prepareScript(const QByteArray& folder, const std::vector<Prepared>& set);

}  // namespace kelvo
