#pragma once

#include <QString>

#include "SlotContent.h"

namespace kelvo {

/// The name of the impulse response at `path`: the path's last component in capitals. With at most one ".wav" in it,
/// the name ends before that; with several, it ends after the last one. ".wav" is case-sensitive.
[[nodiscard]] QString irName(const QString& path);

/// The same for an amp model and ".amp", but the letters keep their case and each of several ".amp" becomes ".apm":
/// users know such names in this form.
[[nodiscard]] QString ampName(const QString& path);

/// Writes the first n bytes of `name` in UTF-8 and a NUL, where n is the name's length in UTF-16 code units, at most
/// kNameLength. Since units are counted but bytes are copied, a name with non-ASCII letters may end inside one. The
/// bytes after the NUL do not change.
void storeName(const QString& name, NameBuffer& destination);

}  // namespace kelvo
