#pragma once

#include <QString>

#include "SlotContent.h"

namespace kelvo {

/// The name of the impulse response at `path`, in capitals, taken from the path's last component. With one ".wav" in
/// it, or none, that is what stands before the extension; with several, everything up to and including the last one.
/// The comparison is case-sensitive.
[[nodiscard]] QString irName(const QString& path);

/// The same for an amp model and ".amp", but each of several becomes ".apm": names with several extensions are known to
/// users in this form. Letters keep their case.
[[nodiscard]] QString ampName(const QString& path);

/// Writes the first n bytes of `name` in UTF-8 and a NUL, where n is the name's length in UTF-16 code units, at most
/// kNameLength. Since units are counted but bytes are copied, a name with non-ASCII letters may end inside one.
/// The bytes behind the NUL stay as they are.
void storeName(const QString& name, NameBuffer& destination);

}  // namespace kelvo
