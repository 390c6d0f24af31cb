#pragma once

#include <QByteArray>
#include <QJsonObject>

#include "CheckFile.h"

namespace kelvo {

/// The facts of reportText for programs: one JSON object on one line, in ASCII. Missing facts have no member.
[[nodiscard]] QByteArray reportJson(const FileReport& report);

/// The object as one line of ASCII, with its line end.
[[nodiscard]] QByteArray jsonLine(const QJsonObject& object);

/// Rounds to two decimals, as figures are printed for programs.
[[nodiscard]] double hundredths(double value);

}  // namespace kelvo
