#pragma once

#include <QString>
#include <optional>
#include <stop_token>

#include "AMPFile.h"
#include "DiskFile.h"
#include "FileView.h"
#include "IRLayout.h"

namespace kelvo {

// Whether an import would accept a file, without the whole file in memory: by the readers' own rules, over what these
// rules look at and nothing else. Any thread.

/// What RVIRFile makes of a file.
struct IRVerdict {
    std::optional<ReadFailure> failure;  ///< what could not be read; then nothing else counts
    bool isInternal = false;             ///< it has the device's own format, which is always accepted
    WaveLayout wave;                     ///< of any other file

    [[nodiscard]] bool isAccepted() const;
};

/// What AMPFile makes of a file.
struct AmpVerdict {
    std::optional<ReadFailure> failure;
    AmpLayout amp;

    [[nodiscard]] bool isAccepted() const { return !failure && amp.isSound(); }
};

[[nodiscard]] IRVerdict judgeIR(DiskFile& file);
[[nodiscard]] AmpVerdict judgeAmp(DiskFile& file);

/// The same for the file at `path`. After a stop request the failure is a read with ECANCELED.
[[nodiscard]] IRVerdict judgeIRFile(const QString& path, const std::stop_token& stop = {});
[[nodiscard]] AmpVerdict judgeAmpFile(const QString& path, const std::stop_token& stop = {});

}  // namespace kelvo
