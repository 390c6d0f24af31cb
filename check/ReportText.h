#pragma once

#include <QString>

#include "CheckFile.h"

namespace kelvo {

/// The report on one file: lines with line ends. The text is otherwise printable (see printableText), whatever the file
/// and its name contain.
[[nodiscard]] QString reportText(const FileReport& report);

}  // namespace kelvo
