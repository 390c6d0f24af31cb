#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include "AMPFile.h"
#include "RVIRFile.h"

namespace kelvo {

// Why a file that is accepted may not become what its maker thinks: one printable clause for each reason. Any thread.

/// `sent` is what the pedal gets of the name `whole`.
[[nodiscard]] QStringList nameNotes(QByteArrayView sent, const QString& whole);

/// `file` has just been converted; `isSilent`: all its points are zero.
[[nodiscard]] QStringList waveNotes(const RVIRFile& file, bool isSilent);

/// `file` is open.
[[nodiscard]] QStringList ampNotes(const AMPFile& file);

}  // namespace kelvo
