#include "ReportText.h"

#include <cmath>

#include "AMPFile.h"
#include "PrintableText.h"

namespace kelvo {
namespace {

QString line(const char* label, const QString& value) {
    return QStringLiteral("  %1 %2\n").arg(QLatin1StringView(label), -9).arg(value);
}

QString quoted(const QByteArray& name) {
    return QLatin1Char('"') + printableText(name) + QLatin1Char('"');
}

QString nameLine(const QByteArray& name) {
    if (name.isEmpty()) {
        return line("name:", QStringLiteral("none; the slot shows its number only"));
    }
    // Slot labels are capitals. A label shows a broken character as a mark, which has no capital.
    const QByteArray shown = QString::fromUtf8(name).toUpper().toUtf8();
    const bool isShownUnchanged = shown == name || !name.isValidUtf8();
    return line("name:", quoted(name) + (isShownUnchanged ? QString() : QStringLiteral(", shown as ") + quoted(shown)));
}

QString formatLines(const WAVE_FORMAT& format) {
    const bool isFloat = format.bitsPerSample == kFloatBits;
    const char* const used = !hasUsableChannel(format.channels) ? ", none of which is used"
                             : format.channels > 1              ? ", the first is used"
                                                                : "";
    return line("rate:", QStringLiteral("%1 Hz").arg(format.sampleRate)) +
           line("depth:", QStringLiteral("%1-bit %2")
                              .arg(format.bitsPerSample)
                              .arg(isFloat ? QStringLiteral("float") : QStringLiteral("integer"))) +
           line("channels:", QStringLiteral("%1%2").arg(format.channels).arg(QLatin1StringView(used)));
}

/// Rounded before printing, so that zero never has a minus sign.
QString rounded(double value, int decimals) {
    const double step = std::pow(10.0, decimals);
    return QString::number(std::round(value * step) / step + 0.0, 'f', decimals);
}

QString peakText(double peak) {
    return peak == 0.0 ? QStringLiteral("none")
                       : QStringLiteral("%1 dBFS (%2 of full scale)")
                             .arg(rounded(20.0 * std::log10(peak), 2))
                             .arg(peak, 0, 'f', 6);
}

QString soundLines(const WaveFacts& wave) {
    QString lines = line("peak:", peakText(wave.peak));
    if (wave.level) {
        lines += line("level:", QStringLiteral("%1 dB of a unit pulse").arg(rounded(*wave.level, 2)));
    }
    if (wave.whole) {
        lines += line("onset:", QStringLiteral("%1 ms").arg(rounded(wave.whole->onset, 2))) +
                 line("energy:", QStringLiteral("%1 % kept").arg(rounded(100.0 * wave.whole->energy, 1)));
    }
    if (wave.deviation) {
        lines += line("response:", QStringLiteral("up to %1 dB off the file's, at %2 Hz")
                                       .arg(rounded(std::abs(wave.deviation->decibels), 2))
                                       .arg(wave.deviation->frequency));
    }
    return lines;
}

QString waveLines(const QByteArray& name, const WaveFacts& wave) {
    const QString kind = wave.format ? QStringLiteral("impulse response, for a CAB slot")
                                     : QStringLiteral("impulse response in the pedal's own format, for a CAB slot");
    return line("kind:", kind) + nameLine(name) + (wave.format ? formatLines(*wave.format) : QString()) +
           line("frames:", QStringLiteral("%1 in the file, %2 used").arg(wave.framesInFile).arg(wave.framesUsed)) +
           soundLines(wave);
}

QString ampLines(const QByteArray& name, const AmpLayout& amp) {
    return line("kind:", QStringLiteral("amp model, for an AMP slot")) + nameLine(name) +
           line("words:", QStringLiteral("%1 of %2").arg(amp.words).arg(kPointCount)) +
           line("checksum:", amp.checksum ? QStringLiteral("0x%1").arg(*amp.checksum, 8, 16, QLatin1Char('0'))
                                          : QStringLiteral("none"));
}

}  // namespace

QString reportText(const FileReport& report) {
    const QString path = printableText(report.path);
    if (!report.refusal.isEmpty()) {
        return path + QStringLiteral(": refused: ") + report.refusal + QLatin1Char('\n');
    }
    QString text = path + QStringLiteral(": accepted\n");
    if (report.wave) {
        text += waveLines(report.name, *report.wave);
    }
    if (report.amp) {
        text += ampLines(report.name, *report.amp);
    }
    for (const QString& note : report.notes) {
        text += line("note:", note);
    }
    return text;
}

}  // namespace kelvo
