#include "Prepare.h"

#include <QSet>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "CheckFile.h"
#include "DiskFile.h"
#include "IRConversion.h"
#include "Judge.h"
#include "Notes.h"
#include "PrintableText.h"
#include "Recording.h"
#include "Response.h"
#include "SetReport.h"
#include "SoxLine.h"

namespace kelvo {
namespace {

constexpr double kLead = 0.0002;           // s kept before the onset
constexpr std::size_t kFade = 32;          // points
constexpr double kHighestPeak = 0.95;      // sox's filter may overshoot a little more than ours
constexpr double kHighestRate = 768000.0;  // Hz

/// The value of a windowed-sinc low-pass, `distance` samples from its centre. `width` is its cutoff as a fraction of
/// half the sample rate.
double lowPass(double distance, double width) {
    constexpr double kHalfLength = 32.0;  // zero crossings
    const double x = distance * width;
    if (std::abs(x) >= kHalfLength) {
        return 0.0;
    }
    const double sinc = x == 0.0 ? 1.0 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x);
    return width * sinc * (0.5 + 0.5 * std::cos(std::numbers::pi * x / kHalfLength));
}

/// An estimate of the points that sox's rate and fade produce.
std::vector<double> resampledAndFaded(std::span<const double> samples, double rate) {
    const double step = rate / kIRPointRate;
    const double width = std::min(1.0, 1.0 / step);
    const double reach = 32.0 / width;
    std::vector<double> points;
    for (std::size_t j = 0; j < kPointCount; ++j) {
        const double middle = static_cast<double>(j) * step;
        const auto begin = static_cast<std::size_t>(std::max(std::ceil(middle - reach), 0.0));
        const auto end = std::min(static_cast<std::size_t>(middle + reach) + 1, samples.size());
        double point = 0.0;
        for (std::size_t i = begin; i < end; ++i) {
            point += samples[i] * lowPass(static_cast<double>(i) - middle, width);
        }
        points.push_back(point * std::min(1.0, static_cast<double>(kPointCount - j) / kFade));
    }
    return points;
}

std::vector<double> samplesFrom(const Recording& recording, std::size_t begin) {
    const auto count = static_cast<std::size_t>(recording.rate() * (kPointCount + 64) / kIRPointRate) + 64;
    std::vector<double> all;
    recording.read(begin, begin + count, [&all](std::span<const double> samples) {
        // sox clips floats beyond full scale.
        std::ranges::transform(samples, std::back_inserter(all), [](double x) { return std::clamp(x, -1.0, 1.0); });
        return true;
    });
    return all;
}

/// Why sox would not produce the planned copy; empty if it would.
QString whyNot(FileView file, const IRVerdict& verdict) {
    const WaveRule broken = verdict.wave.broken;
    if (verdict.isInternal || (broken != WaveRule::None && broken != WaveRule::Depth)) {
        return QStringLiteral("it is no wave file");
    }
    if (!isChunk(file, verdict.wave.fmtOffset) || !isChunk(file, verdict.wave.dataOffset)) {
        return QStringLiteral("its chunks do not stand where their sizes say");
    }
    return verdict.wave.fmt_block.format.sampleRate > kHighestRate ? QStringLiteral("its sample rate is too high")
                                                                   : QString();
}

/// The file's name without extension, reduced to capital letters, digits and harmless signs.
QString plainName(const QByteArray& path) {
    const QString name = QString::fromUtf8(path.sliced(path.lastIndexOf('/') + 1).chopped(4));
    QString plain;
    for (const QChar letter : name.normalized(QString::NormalizationForm_KD).toUpper()) {
        const bool isPlain =
            letter.unicode() < 0x80 && (letter.isLetterOrNumber() || QStringLiteral(" +-_.#&()").contains(letter));
        if (!letter.isMark()) {
            plain += isPlain ? letter : QLatin1Char('_');
        }
    }
    plain = plain.simplified();
    const auto begin = std::ranges::find_if(
        plain, [](QChar letter) { return letter.isLetterOrNumber() || letter == QLatin1Char('_'); });
    plain.remove(0, begin - plain.begin());
    return plain.isEmpty() ? QStringLiteral("_") : plain;
}

constexpr qsizetype kLength = kNameLength;

/// At most ten characters. Removes separators between words first, then the middle.
QString shortened(QString name) {
    if (name.size() > kLength) {
        name.removeIf([](QChar letter) { return QStringLiteral(" -_.").contains(letter); });
    }
    return name.size() > kLength ? name.first(kLength / 2) + name.last(kLength / 2) : name;
}

QString lineFor(const Prepared& file, const QByteArray& output, double gain) {
    const QString gainEffect = QStringLiteral(" gain %1").arg(gain, 0, 'f', 3);
    // A positive gain comes after the resampling, so that nothing clips before.
    const QString effects = QStringLiteral("remix 1 trim %1s").arg(file.begin) + (gain < 0.0 ? gainEffect : QString()) +
                            (file.rate == kIRPointRate ? QString() : QStringLiteral(" rate -v %1").arg(kIRPointRate)) +
                            (gain < 0.0 ? QString() : gainEffect) +
                            (file.padding == 0 ? QString() : QStringLiteral(" pad 0 %1s").arg(file.padding)) +
                            QStringLiteral(" trim 0 %1s fade t 0 %1s %2s").arg(kPointCount).arg(kFade);
    return QStringLiteral("test -e %1 || test -L %1 || sox -D --no-clobber %2 -b 24 -e signed-integer %3 %4\n")
        .arg(shellWord(output), soxFile(file.path), soxFile(output), effects);
}

}  // namespace

Prepared prepare(const QByteArray& path) {
    Prepared result{.path = path};
    if (!isForCabSlot(path)) {
        result.leftOut = QStringLiteral("it is no wave file");
        return result;
    }
    DiskFile file(path);
    const IRVerdict verdict = judgeIR(file);
    result.leftOut = whyNot(file, verdict);
    const auto recording = result.leftOut.isEmpty() ? Recording::of(file, verdict.wave) : std::nullopt;
    const auto facts = recording ? factsOf(*recording) : std::nullopt;
    if (facts) {
        result.rate = facts->rate;
        result.begin = static_cast<std::size_t>(std::max(facts->onset / 1000.0 - kLead, 0.0) * facts->rate);
        const auto held = static_cast<std::size_t>(static_cast<double>(recording->frames() - result.begin) *
                                                   kIRPointRate / result.rate);
        result.padding = kPointCount - std::min(held, kPointCount);
        const std::vector<double> points = resampledAndFaded(samplesFrom(*recording, result.begin), result.rate);
        result.level = meanLevel(gainsAt(points, kIRPointRate, comparedFrequencies()));
        result.peak = std::max(std::ranges::max(points), -std::ranges::min(points));
    }
    if (result.leftOut.isEmpty() && result.level <= kNoGain) {
        result.leftOut = recording ? QStringLiteral("it is silent") : QStringLiteral("its encoding is not known");
    }
    if (file.failure()) {
        result.leftOut = QStringLiteral("it cannot be read");
    }
    return result;
}

QStringList preparedNames(const std::vector<Prepared>& set) {
    QSet<QString> used;
    QStringList names;
    for (const Prepared& file : set) {
        const QString wanted = shortened(plainName(file.path));
        QString name = wanted;
        for (int number = 2; used.contains(name); ++number) {
            const QString end = QString::number(number);
            name = wanted.first(std::min(wanted.size(), kLength - end.size())) + end;
        }
        used += name;
        names += name;
    }
    return names;
}

QString prepareScript(const QByteArray& folder, const std::vector<Prepared>& set) {
    std::vector<Prepared> kept;
    QString script;
    for (const Prepared& file : set) {
        if (file.leftOut.isEmpty()) {
            kept.push_back(file);
        } else {
            script += QStringLiteral("# left out: %1: %2\n").arg(printableText(file.path), file.leftOut);
        }
    }
    std::vector<double> levels;
    std::ranges::transform(kept, std::back_inserter(levels), &Prepared::level);
    double target = medianOf(levels).value_or(0.0);
    for (const Prepared& file : kept) {
        target = std::min(target, file.level + 20.0 * std::log10(kHighestPeak / file.peak));
    }
    const QByteArray begin = (folder.startsWith('/') ? folder : "./" + folder) + '/';
    script += QStringLiteral("mkdir -p %1\n").arg(shellWord(begin));
    const QStringList names = preparedNames(kept);
    for (std::size_t i = 0; i < kept.size(); ++i) {
        const QByteArray output = begin + names[static_cast<qsizetype>(i)].toLatin1() + ".wav";
        script += lineFor(kept[i], output, target - kept[i].level);
    }
    return script;
}

}  // namespace kelvo
