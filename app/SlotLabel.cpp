#include "SlotLabel.h"

#include <QList>
#include <algorithm>

#include "PrintableText.h"

namespace kelvo {
namespace {

constexpr char32_t kMiddleDot = 0x00B7;

bool isDigit(QChar character) {
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

}  // namespace

SlotLabel splitLabel(const QString& label) {
    const auto digits = std::find_if_not(label.begin(), label.end(), isDigit) - label.begin();
    const bool hasDot = digits < label.size() && label.at(digits) == QLatin1Char('.');
    const QString name = label.mid(digits + (hasDot ? 1 : 0));
    const bool isCleared = !hasDot && name == QLatin1String("EMPTY");
    // The pedal pads names with plain spaces; any other character means that the slot holds something.
    const bool isBlank = name.count(QLatin1Char(' ')) == name.size();
    return {label.left(label.size() - name.size()), printable(name), isCleared || isBlank};
}

QString spokenLabel(const QString& label) {
    const SlotLabel pieces = splitLabel(label);
    if (label.isEmpty()) {
        return {};
    }
    return pieces.number + QLatin1Char(' ') + (pieces.isEmpty ? QStringLiteral("empty") : pieces.name.trimmed());
}

QString printable(const QString& text) {
    QString result;
    for (const char32_t character : text.toUcs4()) {
        const bool isSeen = isShown(character) && (character == U' ' || !QChar::isSpace(character));
        result += QStringView(QChar::fromUcs4(isSeen ? character : kMiddleDot));
    }
    return result;
}

}  // namespace kelvo
