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

/// The levels of the points that are sent to the pedal, as fractions of full scale: -1.0 to below 1.0.
using PointLevels = std::array<double, kPointCount>;

/// Facts about an accepted impulse response.
struct WaveFacts {
    std::optional<WAVE_FORMAT> format;  ///< none: the file has the pedal's own format
    std::size_t framesInFile = 0;       ///< complete frames
    std::size_t framesUsed = 0;
    PointLevels levels{};
    double peak = 0.0;                    ///< the largest absolute level
    std::optional<double> level;          ///< meanLevel of the points; none for silence
    std::optional<RecordingFacts> whole;  ///< of the complete file; none for silence and unknown sample formats
    std::optional<Deviation> deviation;   ///< of the points from the complete file
};

/// The result of checking one file. Exactly one of `refusal`, `wave` and `amp` is set.
struct FileReport {
    QByteArray path;                ///< as given, in the system's encoding
    QString refusal;                ///< why the file is refused: a clause that begins with "it" or "its"
    QString soxLine;                ///< a command that converts the file, see soxLine; empty if sox cannot help
    QByteArray name;                ///< the slot's name, as sent to the pedal
    std::optional<WaveFacts> wave;  ///< for a CAB slot
    std::optional<AmpLayout> amp;   ///< for an AMP slot
    QStringList notes;              ///< why an accepted file may not sound as expected: printable clauses
};

/// Whether the file's name has the extension for a CAB slot.
[[nodiscard]] bool isForCabSlot(const QByteArray& path);

/// Replaces each folder among the arguments by its .wav and .amp files, sorted by name, without hidden files. A folder
/// that has none or cannot be read stays.
[[nodiscard]] QByteArrayList withFilesOfFolders(const QByteArrayList& arguments);

/// Checks the file at `path`, which may be relative, as the utility does when the user chooses it for a slot of its
/// type. Reads the file in blocks and has no other effect. Any thread.
[[nodiscard]] FileReport checkFile(const QByteArray& path);

}  // namespace kelvo
