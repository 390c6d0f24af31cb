#include "ReportJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>

#include "PrintableText.h"

namespace kelvo {
namespace {

void addWave(QJsonObject& object, const WaveFacts& wave) {
    object[QStringLiteral("kind")] = QStringLiteral("impulse response");
    if (wave.format) {
        object[QStringLiteral("rate")] = qint64{wave.format->sampleRate};
        object[QStringLiteral("bits")] = wave.format->bitsPerSample;
        object[QStringLiteral("channels")] = wave.format->channels;
    }
    object[QStringLiteral("framesInFile")] = static_cast<qint64>(wave.framesInFile);
    object[QStringLiteral("framesUsed")] = static_cast<qint64>(wave.framesUsed);
    object[QStringLiteral("peak")] = wave.peak;
    if (wave.level) {
        object[QStringLiteral("level")] = hundredths(*wave.level);
    }
    if (wave.whole) {
        object[QStringLiteral("onset")] = hundredths(wave.whole->onset);
        object[QStringLiteral("energy")] = hundredths(100.0 * wave.whole->energy);
    }
    if (wave.deviation) {
        object[QStringLiteral("deviation")] = QJsonObject{{QStringLiteral("db"), hundredths(wave.deviation->decibels)},
                                                          {QStringLiteral("hz"), wave.deviation->frequency}};
    }
}

void addAmp(QJsonObject& object, const AmpLayout& amp) {
    object[QStringLiteral("kind")] = QStringLiteral("amp model");
    object[QStringLiteral("words")] = static_cast<qint64>(amp.words);
    if (amp.checksum) {
        object[QStringLiteral("checksum")] = qint64{*amp.checksum};
    }
}

/// In JSON only strings contain non-ASCII characters, so each of these can be escaped.
QByteArray ascii(const QString& json) {
    QByteArray result;
    for (const QChar unit : json) {
        result += unit.unicode() < 0x7F ? QByteArray(1, unit.toLatin1())
                                        : "\\u" + QByteArray::number(unit.unicode(), 16).rightJustified(4, '0');
    }
    return result;
}

}  // namespace

QByteArray reportJson(const FileReport& report) {
    QJsonObject object{{QStringLiteral("file"), QString::fromUtf8(report.path)},
                       {QStringLiteral("accepted"), report.refusal.isEmpty()}};
    if (!report.refusal.isEmpty()) {
        object[QStringLiteral("refusal")] = report.refusal;
    } else {
        object[QStringLiteral("name")] = QString::fromUtf8(report.name);
        object[QStringLiteral("nameBytes")] = QString::fromLatin1(report.name.toHex());
        object[QStringLiteral("sentName")] = printableText(report.name);
        object[QStringLiteral("notes")] = QJsonArray::fromStringList(report.notes);
    }
    if (!report.soxLine.isEmpty()) {
        object[QStringLiteral("sox")] = report.soxLine;
    }
    if (report.wave) {
        addWave(object, *report.wave);
    }
    if (report.amp) {
        addAmp(object, *report.amp);
    }
    return jsonLine(object);
}

QByteArray jsonLine(const QJsonObject& object) {
    return ascii(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact))) + '\n';
}

double hundredths(double value) {
    return std::round(value * 100.0) / 100.0;
}

}  // namespace kelvo
