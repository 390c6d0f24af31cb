#pragma once

#include <QString>

#include "CheckFile.h"

namespace kelvo {

/// The lines that tell of one file, each with its line end. Whatever the file and its name hold, the text has only
/// printable characters beside its line ends (see printableText).
[[nodiscard]] QString reportText(const FileReport& report);

}  // namespace kelvo
