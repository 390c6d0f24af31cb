#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <vector>

#include "Response.h"

namespace kelvo {

/// What a prepared copy of an impulse response would be.
struct Prepared {
    QByteArray path;          ///< of the original
    QString leftOut;          ///< why there is no copy: a clause; else empty
    double rate = 0.0;        ///< of the original, Hz
    std::size_t begin = 0;    ///< the original's frames before this one are cut
    std::size_t padding = 0;  ///< points of silence that make the copy long enough
    double level = kNoGain;   ///< meanLevel of the copy before its gain, dB
    double peak = 0.0;        ///< its largest distance from 0
};

/// Reads the file at `path`, whatever Kelvo makes of it. Any thread.
[[nodiscard]] Prepared prepare(const QByteArray& path);

/// The names of the copies, without their endings: ten capital letters, digits and signs at most, all different, which
/// keep the beginning and the end of the originals' names.
[[nodiscard]] QStringList preparedNames(const std::vector<Prepared>& set);

/// A script for a POSIX shell by which sox makes the copies in `folder`, which is made where it is missing. All have
/// the same level: the set's median, or as much less as keeps every sample of every copy below full scale. Printable
/// beside its line ends. It runs nothing but mkdir, test and sox, and makes only files that are not there.
[[nodiscard]] QString prepareScript(const QByteArray& folder, const std::vector<Prepared>& set);

}  // namespace kelvo
