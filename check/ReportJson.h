#pragma once

#include <QByteArray>
#include <QJsonObject>

#include "CheckFile.h"

namespace kelvo {

/// What reportText tells, for programs: one JSON object on one line, in ASCII. A fact that a file does not have is not
/// there.
[[nodiscard]] QByteArray reportJson(const FileReport& report);

/// An object on one line, in ASCII, with its line end.
[[nodiscard]] QByteArray jsonLine(const QJsonObject& object);

/// A figure as it is printed for programs: rounded to two decimals.
[[nodiscard]] double hundredths(double value);

}  // namespace kelvo
