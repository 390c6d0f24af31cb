#include "CheckFile.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>
#include <algorithm>
#include <cmath>

#include "ChosenFile.h"
#include "Notes.h"
#include "Refusals.h"
#include "SoxLine.h"

namespace kelvo {
namespace {

/// What a file chooser gives for the file.
QUrl chosenUrl(const QString& path) {
    QString absolute = path.startsWith(QLatin1Char('/')) ? path : QDir::currentPath() + QLatin1Char('/') + path;
    // Two slashes at the front would make a URL with a host.
    while (absolute.startsWith(QLatin1String("//"))) {
        absolute.remove(0, 1);
    }
    return QUrl::fromLocalFile(absolute);
}

/// The bytes of a file that is there and not empty; else the report says why not.
std::optional<FileContent> read(FileReport& report, const QString& path) {
    ReadFailure failure;
    auto file = readWholeFile(path, &failure);
    if (!file) {
        report.refusal = unreadable(path, failure);
    } else if (file->size == 0) {
        report.refusal = QStringLiteral("it is empty");
        file.reset();
    }
    return file;
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

void checkInternal(FileReport& report, ByteView file) {
    std::array<std::uint32_t, kIRPointCount> points{};
    WaveFacts& facts = report.wave.emplace();
    facts.framesUsed = facts.framesInFile = unpackInternal(internalSamples(file), points);
    setPoints(facts, points);
    const std::string_view table = internalName(file);
    const QByteArray whole(table.data(), std::ssize(table));
    report.name = whole.left(kNameLength);
    report.notes = nameNotes(report.name, whole) + internalNotes(facts);
}

void checkWave(FileReport& report, ByteView file, const QString& path) {
    const WaveLayout wave = findWave(file);
    const WAVE_FORMAT& format = wave.fmt_block.format;
    std::array<std::uint32_t, kIRPointCount> points{};
    const auto used =
        wave.broken == WaveRule::None ? convertWave(wave.samples, format, wave.frames, points) : std::nullopt;
    if (!used) {
        report.refusal = waveRefusal(file, wave);
        report.soxLine = soxLine(report.path, file, wave);
        return;
    }
    WaveFacts& facts = report.wave.emplace();
    const std::size_t frameSize = std::size_t{format.bitsPerSample} / 8 * format.channels;
    facts.format = format;
    facts.framesInFile = std::min<std::size_t>(wave.frames, wave.samples.size() / frameSize);
    facts.framesUsed = *used;
    setPoints(facts, points);
    setName(report, irName(path));
    report.notes += waveNotes(file, wave, facts);
}

void checkIR(FileReport& report, const QString& path) {
    const auto file = read(report, path);
    if (file && isInternalIR(*file)) {
        checkInternal(report, *file);
    } else if (file) {
        checkWave(report, *file, path);
    }
}

/// The words of a good amp model; else the report says why it is refused.
std::optional<AmpLayout> readAmp(FileReport& report, const QString& path) {
    const auto file = read(report, path);
    if (!file) {
        return std::nullopt;
    }
    std::array<std::uint32_t, kAmpWordCount> words{};
    const AmpLayout amp = scanAmp(*file, words);
    report.refusal = ampRefusal(*file, amp);
    return report.refusal.isEmpty() ? std::optional(amp) : std::nullopt;
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
