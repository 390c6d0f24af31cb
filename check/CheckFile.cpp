#include "CheckFile.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>
#include <algorithm>
#include <cmath>

#include "ChosenFile.h"
#include "DiskFile.h"
#include "Judge.h"
#include "Notes.h"
#include "Refusals.h"
#include "SoxLine.h"

namespace kelvo {
namespace {

const QString kEmpty = QStringLiteral("it is empty");

/// What a file chooser gives for the file.
QUrl chosenUrl(const QString& path) {
    QString absolute = path.startsWith(QLatin1Char('/')) ? path : QDir::currentPath() + QLatin1Char('/') + path;
    // Two slashes at the front would make a URL with a host.
    while (absolute.startsWith(QLatin1String("//"))) {
        absolute.remove(0, 1);
    }
    return QUrl::fromLocalFile(absolute);
}

void setName(FileReport& report, const QString& whole) {
    CharName name;
    storeName(whole, name);
    report.name = name.data();
    report.notes = nameNotes(report.name, whole.toUtf8());
}

void setPoints(WaveFacts& facts, IRPoints points) {
    std::ranges::transform(points, facts.levels.begin(), levelOf);
    for (const float level : facts.levels) {
        facts.peak = std::max(facts.peak, std::abs(level));
    }
}

void checkInternal(FileReport& report, FileView file) {
    std::array<std::uint32_t, kIRPointCount> points{};
    WaveFacts& facts = report.wave.emplace();
    facts.framesUsed = facts.framesInFile = unpackInternal(file.part(kInternalSamples, kMostSampleBytes), points);
    setPoints(facts, points);
    const std::string_view table = internalName(file);
    const QByteArray whole(table.data(), std::ssize(table));
    report.name = whole.left(kNameLength);
    report.notes = nameNotes(report.name, whole) + internalNotes(facts);
}

void checkWave(FileReport& report, FileView file, const WaveLayout& wave, const QString& path) {
    const WAVE_FORMAT& format = wave.fmt_block.format;
    std::array<std::uint32_t, kIRPointCount> points{};
    WaveFacts& facts = report.wave.emplace();
    const std::size_t frameSize = std::size_t{format.bitsPerSample} / 8 * format.channels;
    facts.format = format;
    facts.framesInFile = std::min<std::size_t>(wave.frames, wave.samplesSize / frameSize);
    facts.framesUsed =
        convertWave(file.part(wave.samplesOffset, kMostSampleBytes), format, wave.frames, points).value_or(0);
    setPoints(facts, points);
    setName(report, irName(path));
    report.notes += waveNotes(file, wave, facts);
}

void checkIR(FileReport& report, const QString& path) {
    DiskFile file(path);
    const IRVerdict verdict = judgeIR(file);
    if (verdict.isInternal) {
        checkInternal(report, file);
    } else if (verdict.isAccepted()) {
        checkWave(report, file, verdict.wave, path);
    } else if (file.size() > 0) {
        report.refusal = waveRefusal(file, verdict.wave);
        report.soxLine = soxLine(report.path, file, verdict.wave);
    } else {
        report.refusal = kEmpty;
    }
    if (file.failure()) {
        report = {.path = report.path, .refusal = unreadable(path, *file.failure())};
    }
}

/// The words of a good amp model; else the report says why it is refused.
std::optional<AmpLayout> readAmp(FileReport& report, const QString& path) {
    DiskFile file(path);
    const AmpVerdict verdict = judgeAmp(file);
    report.refusal = verdict.failure    ? unreadable(path, *verdict.failure)
                     : file.size() == 0 ? kEmpty
                                        : ampRefusal(file, verdict.amp);
    return verdict.isAccepted() ? std::optional(verdict.amp) : std::nullopt;
}

void checkAmp(FileReport& report, const QUrl& url) {
    const QString lookedFor = ampPath(url);
    const QString meant = irPath(url);
    report.amp = readAmp(report, lookedFor);
    // What is wrong with the file itself cannot be mended by another name.
    if (!report.amp && lookedFor != meant && readAmp(report, meant)) {
        report.refusal =
            QStringLiteral(
                "it is looked for as \"%1\", since the escapes that a URL has for spaces, umlauts and the like stay in "
                "an amp model's path; rename or move it")
                .arg(lookedFor);
    }
    if (report.amp) {
        setName(report, ampName(lookedFor));
        report.notes += ampNotes(*report.amp);
        if (lookedFor != meant) {
            report.notes += QStringLiteral("it is not this file that is read, but \"%1\"").arg(lookedFor);
        }
    }
}

}  // namespace

bool isForCabSlot(const QString& path) {
    return hasFileType(chosenUrl(path), kIRFileType);
}

QStringList withFilesOfFolders(const QStringList& arguments) {
    QStringList files;
    for (const QString& argument : arguments) {
        const QStringList patterns{QStringLiteral("*.") + kIRFileType, QStringLiteral("*.") + kAmpFileType};
        const QStringList names = QFileInfo(argument).isDir()
                                      ? QDir(argument).entryList(patterns, QDir::Files, QDir::Name | QDir::IgnoreCase)
                                      : QStringList();
        for (const QString& name : names) {
            files += QDir(argument).filePath(name);
        }
        if (names.isEmpty()) {
            files += argument;
        }
    }
    return files;
}

FileReport checkFile(const QString& path) {
    FileReport report{.path = path};
    const QUrl url = chosenUrl(path);
    if (hasFileType(url, kIRFileType)) {
        checkIR(report, irPath(url));
    } else if (hasFileType(url, kAmpFileType)) {
        checkAmp(report, url);
    } else {
        report.refusal =
            QStringLiteral("its name ends neither in \".%1\" nor in \".%2\"").arg(kIRFileType, kAmpFileType);
    }
    return report;
}

}  // namespace kelvo
