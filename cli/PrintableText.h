#pragma once

#include <QByteArrayView>
#include <QString>

namespace kelvo {

/// Whether a character is visible or a space. False for control and format characters, line and paragraph separators,
/// unassigned code points and the replacement character for invalid UTF-8. Any thread.
[[nodiscard]] bool isShown(char32_t character);

/// The bytes of the first character of `utf8`, which is not empty. Empty if `utf8` does not begin with valid UTF-8. Any
/// thread.
[[nodiscard]] QByteArrayView firstCharacter(QByteArrayView utf8);

/// Makes untrusted text safe for a terminal: writes each byte of a character that is not shown, of invalid UTF-8 and of
/// a backslash as \xNN. All other characters stay. Any thread.
[[nodiscard]] QString printableText(QByteArrayView utf8);

}  // namespace kelvo
