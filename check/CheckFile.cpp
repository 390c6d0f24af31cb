#include "CheckFile.h"

#include <QDir>
#include <QFile>
#include <QUrl>
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <system_error>

#include "ChosenFile.h"
#include "DiskFile.h"
#include "Judge.h"
#include "Notes.h"
#include "Refusals.h"
#include "SoxLine.h"

namespace kelvo {
namespace {

const QString kEmpty = QStringLiteral("it is empty");
const QString kNotUtf8 = QStringLiteral("its name is not valid UTF-8, so it cannot be chosen; rename it");

/// The URL that a file chooser returns for the file.
QUrl chosenUrl(const QByteArray& path) {
    const QString decoded = QFile::decodeName(path);
    QString absolute = path.startsWith('/') ? decoded : QDir::currentPath() + QLatin1Char('/') + decoded;
    // Two leading slashes would become a URL with a host.
    while (absolute.startsWith(QLatin1String("//"))) {
        absolute.remove(0, 1);
    }
    return QUrl::fromLocalFile(absolute);
}

bool isOfferedForASlot(const QUrl& url) {
    return hasFileType(url, kIRFileType) || hasFileType(url, kAmpFileType);
}

void setName(FileReport& report, const QString& whole) {
    NameBuffer name;
    storeName(whole, name);
    report.name = name.data();
    report.notes = nameNotes(report.name, whole.toUtf8());
}

void setPoints(WaveFacts& facts, IRPoints points) {
    std::ranges::transform(points, facts.levels.begin(), levelOf);
    for (const double level : facts.levels) {
        facts.peak = std::max(facts.peak, std::abs(level));
    }
    if (facts.peak > 0.0) {
        facts.level = meanLevel(gainsAt(facts.levels, kIRPointRate, comparedFrequencies()));
    }
}

/// Measures how much the points differ from the complete file.
void compareWithWhole(WaveFacts& facts, FileView file, const WaveLayout& wave) {
    const auto recording = Recording::of(file, wave);
    facts.whole = recording && hasUsableChannel(facts.format->channels) ? factsOf(*recording) : std::nullopt;
    if (facts.whole) {
        facts.deviation = largestDeviation(gainsAt(facts.levels, kIRPointRate, comparedFrequencies()),
                                           gainsAt(facts.whole->second, facts.whole->rate, comparedFrequencies()));
    }
}

void checkInternal(FileReport& report, FileView file) {
    std::array<std::uint32_t, kPointCount> points{};
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
    std::array<std::uint32_t, kPointCount> points{};
    WaveFacts& facts = report.wave.emplace();
    const std::size_t frameSize = std::size_t{format.bitsPerSample} / 8 * format.channels;
    facts.format = format;
    facts.framesInFile = std::min<std::size_t>(wave.frames, wave.samplesSize / frameSize);
    facts.framesUsed =
        convertWave(file.part(wave.samplesOffset, kMostSampleBytes), format, wave.frames, points).value_or(0);
    setPoints(facts, points);
    compareWithWhole(facts, file, wave);
    setName(report, irName(path));
    report.notes += waveNotes(file, wave, facts);
}

/// `url` is the chooser's URL, which cannot represent a name that is not valid UTF-8.
void checkIR(FileReport& report, const QUrl& url) {
    const bool canBeChosen = report.path.isValidUtf8();
    const QString chosen = irPath(url);
    DiskFile file(canBeChosen ? QFile::encodeName(chosen) : report.path);
    const IRVerdict verdict = judgeIR(file);
    if (file.size() == 0) {
        report.refusal = kEmpty;
    } else if (!verdict.isAccepted()) {
        report.refusal = waveRefusal(file, verdict.wave);
    } else if (!canBeChosen) {
        report.refusal = kNotUtf8;
    } else if (verdict.isInternal) {
        checkInternal(report, file);
    } else {
        checkWave(report, file, verdict.wave, chosen);
    }
    if (!report.refusal.isEmpty() && !verdict.isInternal) {
        report.soxLine = soxLine(report.path, file, verdict.wave);
    }
    if (file.failure()) {
        report = {.path = report.path, .refusal = unreadable(*file.failure())};
    }
}

/// Returns the layout of an accepted amp model, or nothing after setting the refusal.
std::optional<AmpLayout> readAmp(FileReport& report, const QString& path) {
    DiskFile file(QFile::encodeName(path));
    const AmpVerdict verdict = judgeAmp(file);
    report.refusal = verdict.failure    ? unreadable(*verdict.failure)
                     : file.size() == 0 ? kEmpty
                                        : ampRefusal(file, verdict.amp);
    return verdict.isAccepted() ? std::optional(verdict.amp) : std::nullopt;
}

void checkAmp(FileReport& report, const QUrl& url) {
    const QString lookedFor = ampPath(url);
    const QString meant = irPath(url);
    if (!report.path.isValidUtf8()) {
        report.refusal = kNotUtf8;
        return;
    }
    report.amp = readAmp(report, lookedFor);
    // Only if the file itself is good, another name helps.
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

/// The names of the .wav and .amp files in a folder; `error` says why it could not be read.
QByteArrayList filesOfFolder(const QByteArray& folder, std::error_code& error) {
    QByteArrayList names;
    std::filesystem::directory_iterator entry(folder.toStdString(), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const QByteArray name = QByteArray::fromStdString(entry->path().filename().native());
        std::error_code unknown;
        if (!name.startsWith('.') && isOfferedForASlot(chosenUrl(name)) && entry->is_regular_file(unknown)) {
            names += name;
        }
    }
    std::ranges::sort(names, [](const QByteArray& a, const QByteArray& b) {
        const int order = QString::fromUtf8(a).compare(QString::fromUtf8(b), Qt::CaseInsensitive);
        return order < 0 || (order == 0 && a < b);
    });
    return names;
}

/// Why no file of a folder is imported.
QString folderRefusal(const QByteArray& folder) {
    std::error_code error;
    filesOfFolder(folder, error);
    return error ? QStringLiteral("it is a folder that cannot be read: %1").arg(qt_error_string(error.value()))
                 : QStringLiteral("it is a folder without .%1 and .%2 files").arg(kIRFileType, kAmpFileType);
}

}  // namespace

bool isForCabSlot(const QByteArray& path) {
    return hasFileType(chosenUrl(path), kIRFileType);
}

QByteArrayList withFilesOfFolders(const QByteArrayList& arguments) {
    QByteArrayList files;
    for (const QByteArray& argument : arguments) {
        std::error_code error;
        const QByteArrayList names = filesOfFolder(argument, error);
        for (const QByteArray& name : names) {
            files += argument + (argument.endsWith('/') ? QByteArray() : QByteArray("/")) + name;
        }
        if (names.isEmpty()) {
            files += argument;
        }
    }
    return files;
}

FileReport checkFile(const QByteArray& path) {
    FileReport report{.path = path};
    const QUrl url = chosenUrl(path);
    std::error_code error;
    if (std::filesystem::is_directory(path.toStdString(), error)) {
        report.refusal = folderRefusal(path);
    } else if (hasFileType(url, kIRFileType)) {
        checkIR(report, url);
    } else if (hasFileType(url, kAmpFileType)) {
        checkAmp(report, url);
    } else {
        report.refusal =
            QStringLiteral("its name ends neither in \".%1\" nor in \".%2\"").arg(kIRFileType, kAmpFileType);
    }
    return report;
}

}  // namespace kelvo
