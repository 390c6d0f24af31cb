#pragma once

#include <QString>
#include <QStringList>

#include "CheckFile.h"

namespace kelvo {

/// The lines that tell of one file, each with its line end. Whatever the file and its name hold, the text has only
/// printable characters beside its line ends (see printableText).
[[nodiscard]] QString reportText(const FileReport& report);

/// What stands under the reports of several files: how many of them are taken, and the lines for sox, as they are.
[[nodiscard]] QString summaryText(qsizetype taken, qsizetype files, const QStringList& soxLines);

}  // namespace kelvo
