#include "CheckFile.h"

#include <QDir>
#include <QUrl>
#include <algorithm>
#include <cmath>

#include "ChosenFile.h"
#include "Notes.h"
#include "PrintableText.h"

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

QByteArray sentName(const CharName& name) {
    return {name.data(), std::find(name.begin(), name.begin() + kNameLength, '\0') - name.begin()};
}

void checkWave(FileReport& report, const QUrl& url) {
    RVIRFile file;
    std::array<std::uint32_t, kIRPointCount> points{};
    if (!file.OpenFilePath(irPath(url)) || !file.GetIRDataBuffer(points)) {
        report.refusal = file.refusal;
        return;
    }
    WaveFacts& facts = report.wave.emplace();
    if (!file.isInteralIR) {
        facts.format = {file.fmt_block.sampleRate, file.fmt_block.bitsPerSample, file.fmt_block.channels};
    }
    facts.framesInFile = file.isInteralIR ? file.framesUsed : file.data_block.heldFrames;
    facts.framesUsed = file.framesUsed;
    std::ranges::transform(points, facts.levels.begin(), levelOf);
    for (const float level : facts.levels) {
        facts.peak = std::max(facts.peak, std::abs(level));
    }
    report.name = sentName(file.CharFileNane);
    report.notes = nameNotes(report.name, file.wholeName) + waveNotes(file, facts.peak == 0.0F);
}

/// Why the amp model at `meant`, which the utility looks for as `lookedFor`, is refused.
QString refusalBehind(const QString& meant, const QString& lookedFor) {
    AMPFile file;
    // What is wrong with the file itself cannot be mended by another name.
    if (!file.readModel(meant)) {
        return file.refusal;
    }
    return QStringLiteral(
               "it is looked for as \"%1\", since the escapes that a URL has for spaces, umlauts and the like stay in "
               "an "
               "amp model's path; rename or move it")
        .arg(lookedFor);
}

void checkAmp(FileReport& report, const QUrl& url) {
    const QString lookedFor = ampPath(url);
    const QString meant = irPath(url);
    AMPFile file;
    if (!file.readModel(lookedFor)) {
        report.refusal = lookedFor == meant ? file.refusal : refusalBehind(meant, lookedFor);
        return;
    }
    report.amp = {.words = file.wordsRead, .checksum = file.hasChecksum ? std::optional(file.checksum) : std::nullopt};
    report.name = sentName(file.CharFileName);
    report.notes = nameNotes(report.name, file.wholeName) + ampNotes(file);
    if (lookedFor != meant) {
        report.notes += QStringLiteral("it is not this file that is read, but \"%1\"").arg(lookedFor);
    }
}

}  // namespace

bool isForCabSlot(const QString& path) {
    return hasFileType(chosenUrl(path), kIRFileType);
}

FileReport checkFile(const QString& path) {
    FileReport report{.path = path};
    const QUrl url = chosenUrl(path);
    if (hasFileType(url, kIRFileType)) {
        checkWave(report, url);
    } else if (hasFileType(url, kAmpFileType)) {
        checkAmp(report, url);
    } else {
        report.refusal =
            QStringLiteral("its name ends neither in \".%1\" nor in \".%2\"").arg(kIRFileType, kAmpFileType);
    }
    return report;
}

}  // namespace kelvo
