#pragma once

#include <QByteArray>

#include "CheckFile.h"

namespace kelvo {

/// What reportText tells, for programs: one JSON object on one line, in ASCII. A fact that a file does not have is not
/// there.
[[nodiscard]] QByteArray reportJson(const FileReport& report);

}  // namespace kelvo
