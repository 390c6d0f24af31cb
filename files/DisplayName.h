#pragma once

#include <QString>
#include <array>
#include <cstddef>

namespace kelvo {

/// A slot's name as the file readers give it: at most 10 bytes of UTF-8 and a NUL; what lies behind the NUL means
/// nothing.
using CharName = std::array<char, 20>;

/// The longest name that the device keeps, in bytes.
inline constexpr std::size_t kNameLength = 10;

/// The name of the file at `path`, taken from its last component. With one `extension` in it, or none, the name is what
/// stands before the extension. With several it is everything up to and including the last one, each replaced by
/// `joint`. The comparison is case-sensitive.
[[nodiscard]] QString displayName(const QString& path, const QString& extension, const QString& joint);

/// Writes the first n bytes of `name` in UTF-8 and a NUL, where n is the name's length in UTF-16 code units, at most
/// kNameLength. Since units are counted but bytes are copied, a name with non-ASCII letters may end inside one.
/// The bytes behind the NUL stay as they are.
void storeName(const QString& name, CharName& destination);

}  // namespace kelvo
