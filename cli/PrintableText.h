#pragma once

#include <QByteArrayView>
#include <QString>

namespace kelvo {

/// Whether there is something to see of a character: not of a control or a format character, a line separator, a code
/// point without a character, or the one that stands for bytes which are no UTF-8. Any thread.
[[nodiscard]] bool isShown(char32_t character);

/// UTF-8 that comes from a stranger in a form that a terminal shows and does not obey: every byte of a character that
/// is not shown, of what is no UTF-8, and of a backslash is written \xNN; all else stays. Any thread.
[[nodiscard]] QString printableText(QByteArrayView utf8);

}  // namespace kelvo
