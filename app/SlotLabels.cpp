#include "SlotLabels.h"

#include <QList>
#include <algorithm>
#include <utility>

#include "PrintableText.h"

namespace kelvo {
namespace {

constexpr char32_t kMiddleDot = 0x00B7;
/// Characters of a tooltip; a file's name may have 255 bytes.
constexpr qsizetype kLongestToolTip = 120;

bool isDigit(QChar character) {
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

}  // namespace

QStringList SlotLabels::all() const {
    const std::lock_guard lock(mutex_);
    return {labels_.begin(), labels_.end()};
}

void SlotLabels::setAll(const QStringList& labels) {
    const std::lock_guard lock(mutex_);
    labels_ = {labels.begin(), labels.end()};
}

bool SlotLabels::store(int row, const QString& form, const QString& name) {
    const std::lock_guard lock(mutex_);
    if (row < 0 || static_cast<std::size_t>(row) >= labels_.size()) {
        return false;
    }
    const QString label = form.arg(QString::number(row + firstNumber_), name);
    return std::exchange(labels_[static_cast<std::size_t>(row)], label) != label;
}

SlotLabel splitLabel(const QString& label) {
    const auto digits = std::find_if_not(label.begin(), label.end(), isDigit) - label.begin();
    const bool hasDot = digits < label.size() && label.at(digits) == QLatin1Char('.');
    const QString name = label.mid(digits + (hasDot ? 1 : 0));
    const bool isCleared = !hasDot && name == QLatin1String("EMPTY");
    // The pedal pads names with spaces; any other character means that the slot is not empty.
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

QString plainToolTip(const QString& text) {
    if (text.isEmpty()) {
        return {};
    }
    const qsizetype half = kLongestToolTip / 2;
    const QString shown =
        text.size() <= kLongestToolTip ? text : text.first(half) + QStringLiteral("…") + text.last(half);
    // Marked as rich text, so that escaped text is never shown as plain text.
    return QStringLiteral("<qt>%1</qt>").arg(shown.toHtmlEscaped());
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
