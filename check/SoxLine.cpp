#include "SoxLine.h"

#include <algorithm>

#include "IRConversion.h"
#include "Notes.h"
#include "PrintableText.h"

namespace kelvo {
namespace {

/// A name beside `path`. The extension keeps its case, so that two inputs never share an output.
QByteArray convertedPath(const QByteArray& path) {
    const qsizetype name = path.lastIndexOf('/') + 1;
    return path.first(name) + validName(path.sliced(name).chopped(4)) + "-converted" + path.last(4);
}

}  // namespace

QString shellWord(const QByteArray& path) {
    const QString text = QString::fromUtf8(path);
    if (printableText(path) == text) {
        return QLatin1Char('\'') + QString(text).replace(QLatin1Char('\''), QStringLiteral("'\\''")) +
               QLatin1Char('\'');
    }
    QString octal;
    for (const char byte : path) {
        octal += QStringLiteral("\\0%1").arg(static_cast<std::uint8_t>(byte), 3, 8, QLatin1Char('0'));
    }
    return QStringLiteral("\"$(printf '%b' '%1')\"").arg(octal);
}

QString soxFile(const QByteArray& path) {
    const bool isPattern = std::ranges::any_of(path, [](char byte) { return QByteArrayView("*?[{\\").contains(byte); });
    const bool hasDirectory = path.startsWith('/') || path.startsWith("./");
    return (isPattern ? QStringLiteral("--no-glob ") : QString()) + shellWord(hasDirectory ? path : "./" + path);
}

QByteArray validName(const QByteArray& name) {
    QByteArray result;
    for (QByteArrayView rest = name; !rest.isEmpty();) {
        const QByteArray character = firstCharacter(rest).toByteArray();
        result += character.isEmpty() ? '%' + rest.first(1).toByteArray().toHex().toUpper() : character;
        rest = rest.sliced(std::max<qsizetype>(1, character.size()));
    }
    return result;
}

QString soxLine(const QByteArray& path, FileView file, const WaveLayout& wave) {
    const QByteArray output = convertedPath(path);
    if ((wave.broken != WaveRule::None && wave.broken != WaveRule::Depth) || !output.isValidUtf8()) {
        return {};
    }
    const WAVE_FORMAT& format = wave.fmt_block.format;
    const std::uint32_t bits = format.bitsPerSample;
    const bool keepsSound = bits == 16 || bits == 24 || (bits == kFloatBits && formatTag(file, wave) == kFloatTag);
    return QStringLiteral("sox --no-clobber ") + soxFile(path) +
           (keepsSound ? QString() : QStringLiteral(" -b 24 -e signed-integer")) + QLatin1Char(' ') + soxFile(output) +
           (hasUsableChannel(format.channels) ? QString() : QStringLiteral(" remix 1")) +
           (findIRRate(format.sampleRate) != nullptr ? QString() : QStringLiteral(" rate %1").arg(kIRPointRate));
}

}  // namespace kelvo
