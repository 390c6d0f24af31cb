#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QStringList>
#include <array>
#include <cstddef>
#include <optional>

#include "AMPFile.h"
#include "IRConversion.h"
#include "Recording.h"
#include "Response.h"

namespace kelvo {

/// The levels of the points that the pedal gets, as fractions of full scale: -1.0 to below 1.0.
using PointLevels = std::array<double, kPointCount>;

/// What becomes of an impulse response that is accepted.
struct WaveFacts {
    std::optional<WAVE_FORMAT> format;  ///< none: the file has the pedal's own format
    std::size_t framesInFile = 0;       ///< those that are there whole
    std::size_t framesUsed = 0;
    PointLevels levels{};
    double peak = 0.0;                    ///< the largest distance of a level from 0
    std::optional<double> level;          ///< meanLevel of the points; none for silence
    std::optional<RecordingFacts> whole;  ///< of the file; none for silence and where its samples are not understood
    std::optional<Deviation> deviation;   ///< of the points beside the whole file
};

/// What the utility makes of one file. Either `refusal`, `wave` or `amp` is there.
struct FileReport {
    QByteArray path;                ///< as it was given, in the system's own bytes
    QString refusal;                ///< why the file is refused: a clause that begins with "it" or "its"
    QString soxLine;                ///< what would mend it, see soxLine; empty where sox is no help
    QByteArray name;                ///< the slot's name, in the bytes that the pedal gets
    std::optional<WaveFacts> wave;  ///< for a CAB slot
    std::optional<AmpLayout> amp;   ///< for an AMP slot
    QStringList notes;              ///< why what is accepted may not sound as its maker thinks: clauses, printable
};

/// Whether the utility offers the file at `path` for a CAB slot; only its name counts.
[[nodiscard]] bool isForCabSlot(const QByteArray& path);

/// The arguments with the .wav and .amp files of each folder among them, in the order of their names, in its place.
/// Hidden files are left out. A folder that has none, or cannot be read, stays.
[[nodiscard]] QByteArrayList withFilesOfFolders(const QByteArrayList& arguments);

/// Treats the file at `path`, absolute or from the working directory on, as the utility does when it is chosen for the
/// slots of its extension. Reads the file, in blocks, and does nothing else. Any thread.
[[nodiscard]] FileReport checkFile(const QByteArray& path);

}  // namespace kelvo
