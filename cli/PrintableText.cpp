#include "PrintableText.h"

#include <QChar>
#include <QList>
#include <algorithm>

namespace kelvo {

bool isShown(char32_t character) {
    return QChar::isPrint(character) && character != QChar::LineSeparator && character != QChar::ParagraphSeparator &&
           character != QChar::ReplacementCharacter;
}

QByteArrayView firstCharacter(QByteArrayView utf8) {
    constexpr qsizetype kLongestCharacter = 4;
    for (qsizetype length = 1; length <= std::min(kLongestCharacter, utf8.size()); ++length) {
        if (utf8.first(length).isValidUtf8()) {
            return utf8.first(length);
        }
    }
    return {};
}

QString printableText(QByteArrayView utf8) {
    QString result;
    while (!utf8.isEmpty()) {
        const QByteArrayView bytes = utf8.first(std::max<qsizetype>(1, firstCharacter(utf8).size()));
        const QString character = QString::fromUtf8(bytes);
        const char32_t code = character.toUcs4().value(0);
        if (isShown(code) && code != U'\\') {
            result += character;
        } else {
            for (const char byte : bytes) {
                result += QStringLiteral("\\x%1").arg(static_cast<std::uint8_t>(byte), 2, 16, QLatin1Char('0'));
            }
        }
        utf8 = utf8.sliced(bytes.size());
    }
    return result;
}

}  // namespace kelvo
