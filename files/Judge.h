#pragma once

#include <QString>
#include <optional>
#include <stop_token>

#include "AMPFile.h"
#include "DiskFile.h"
#include "FileView.h"
#include "IRLayout.h"

namespace kelvo {

// Whether an import would accept a file. Applies the readers' rules and reads only the bytes that these check. Any
// thread.

/// Whether RVIRFile accepts a file, and why not.
struct IRVerdict {
    std::optional<ReadFailure> failure;  ///< if set, the other members are meaningless
    bool isInternal = false;             ///< has the device's own format, which is always accepted
    WaveLayout wave;                     ///< of any other file

    [[nodiscard]] bool isAccepted() const;
};

/// Whether AMPFile accepts a file, and why not.
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
