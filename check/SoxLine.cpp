#include "SoxLine.h"

#include <QRegularExpression>

#include "IRConversion.h"
#include "Notes.h"
#include "PrintableText.h"

namespace kelvo {
namespace {

QString shellWord(const QString& word) {
    const QByteArray utf8 = word.toUtf8();
    if (printableText(utf8) == word) {
        return QLatin1Char('\'') + QString(word).replace(QLatin1Char('\''), QStringLiteral("'\\''")) +
               QLatin1Char('\'');
    }
    QString octal;
    for (const char byte : utf8) {
        octal += QStringLiteral("\\0%1").arg(static_cast<std::uint8_t>(byte), 3, 8, QLatin1Char('0'));
    }
    return QStringLiteral("\"$(printf '%b' '%1')\"").arg(octal);
}

/// A file for sox. Without a directory in front, sox takes some names for options, pipes, home directories or URLs, and
/// hands a URL to a shell. It expands patterns in any name.
QString soxFile(const QString& path) {
    static const QRegularExpression pattern(QStringLiteral(R"([*?\[{\\])"));
    const bool hasDirectory = path.startsWith(QLatin1Char('/')) || path.startsWith(QLatin1String("./"));
    return (path.contains(pattern) ? QStringLiteral("--no-glob ") : QString()) +
           shellWord(hasDirectory ? path : QStringLiteral("./") + path);
}

/// The ending keeps its case, so that two inputs never share an output.
QString convertedPath(const QString& path) {
    return path.chopped(4) + QStringLiteral("-converted") + path.right(4);
}

}  // namespace

QString soxLine(const QString& path, FileView file, const WaveLayout& wave) {
    if (wave.broken != WaveRule::None && wave.broken != WaveRule::Depth) {
        return {};
    }
    const WAVE_FORMAT& format = wave.fmt_block.format;
    const std::uint32_t bits = format.bitsPerSample;
    const bool keepsSound = bits == 16 || bits == 24 || (bits == kFloatBits && formatTag(file, wave) == kFloatTag);
    return QStringLiteral("sox --no-clobber ") + soxFile(path) +
           (keepsSound ? QString() : QStringLiteral(" -b 24 -e signed-integer")) + QLatin1Char(' ') +
           soxFile(convertedPath(path)) + (hasUsableChannel(format.channels) ? QString() : QStringLiteral(" remix 1")) +
           (findIRRate(format.sampleRate) != nullptr ? QString() : QStringLiteral(" rate %1").arg(kIRPointRate));
}

}  // namespace kelvo
