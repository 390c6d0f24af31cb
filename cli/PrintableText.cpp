#include "PrintableText.h"

#include <QChar>
#include <QList>
#include <algorithm>

namespace kelvo {
namespace {

constexpr qsizetype kLongestCharacter = 4;

/// The first character of `utf8`, which is not empty; empty when that does not begin with one.
QString firstCharacter(QByteArrayView utf8) {
    for (qsizetype length = 1; length <= std::min(kLongestCharacter, utf8.size()); ++length) {
        const QByteArrayView bytes = utf8.first(length);
        // What the decoder had to mend or leave out does not come back.
        if (QString text = QString::fromUtf8(bytes); text.toUtf8() == bytes) {
            return text;
        }
    }
    return {};
}

}  // namespace

bool isShown(char32_t character) {
    return QChar::isPrint(character) && character != QChar::LineSeparator && character != QChar::ParagraphSeparator &&
           character != QChar::ReplacementCharacter;
}

QString printableText(QByteArrayView utf8) {
    QString result;
    while (!utf8.isEmpty()) {
        const QString character = firstCharacter(utf8);
        const QByteArrayView bytes = utf8.first(std::max<qsizetype>(1, character.toUtf8().size()));
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
