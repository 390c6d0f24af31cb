#include "SetReport.h"

#include <QJsonArray>
#include <QJsonObject>
#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "PrintableText.h"
#include "ReportJson.h"

namespace kelvo {
namespace {

constexpr double kHeardLevel = 1.5;  // dB

QString printableList(const QByteArrayList& files) {
    QStringList texts;
    for (const QByteArray& file : files) {
        texts += printableText(file);
    }
    return texts.join(QStringLiteral(", "));
}

}  // namespace

std::optional<double> medianOf(std::vector<double> numbers) {
    if (numbers.empty()) {
        return std::nullopt;
    }
    std::ranges::sort(numbers);
    return (numbers[(numbers.size() - 1) / 2] + numbers[numbers.size() / 2]) / 2.0;
}

void SetReport::add(const FileReport& report) {
    ++files_;
    if (report.refusal.isEmpty()) {
        accepted_.push_back({report.path, report.name, report.wave.has_value(),
                             report.wave ? report.wave->level : std::optional<double>()});
    } else if (!report.soxLine.isEmpty()) {
        soxLines_ += report.soxLine;
    }
}

std::vector<SetReport::SameName> SetReport::sameNames() const {
    std::map<std::pair<bool, QByteArray>, QByteArrayList> filesOfName;
    for (const Entry& entry : accepted_) {
        filesOfName[{entry.isWave, entry.name}] += entry.file;
    }
    std::vector<SameName> found;
    for (const auto& [key, files] : filesOfName) {
        if (files.size() > 1) {
            found.push_back({key.second, files});
        }
    }
    return found;
}

std::optional<double> SetReport::median() const {
    std::vector<double> levels;
    for (const Entry& entry : accepted_) {
        if (entry.level) {
            levels.push_back(*entry.level);
        }
    }
    return medianOf(levels);
}

std::vector<SetReport::OtherLevel> SetReport::otherLevels() const {
    const double middle = median().value_or(0.0);
    std::vector<OtherLevel> found;
    for (const Entry& entry : accepted_) {
        if (entry.level && std::abs(*entry.level - middle) > kHeardLevel) {
            found.push_back({entry.file, *entry.level - middle});
        }
    }
    return found;
}

QString SetReport::text() const {
    QString text = QStringLiteral("\n%1 of %2 are accepted\n").arg(accepted_.size()).arg(files_);
    for (const SameName& same : sameNames()) {
        text +=
            QStringLiteral("the name \"%1\" is that of %2\n").arg(printableText(same.name), printableList(same.files));
    }
    for (const OtherLevel& other : otherLevels()) {
        text += QStringLiteral("%1 is %2 dB %3 than the set\n")
                    .arg(printableText(other.file), QString::number(std::abs(other.aboveMedian), 'f', 1),
                         other.aboveMedian > 0.0 ? QStringLiteral("louder") : QStringLiteral("quieter"));
    }
    for (const QString& line : soxLines_) {
        text += line + QLatin1Char('\n');
    }
    return text;
}

QByteArray SetReport::json() const {
    QJsonArray names;
    for (const SameName& same : sameNames()) {
        QJsonArray files;
        for (const QByteArray& file : same.files) {
            files += QString::fromUtf8(file);
        }
        names += QJsonObject{{QStringLiteral("sentName"), printableText(same.name)}, {QStringLiteral("files"), files}};
    }
    QJsonArray levels;
    for (const OtherLevel& other : otherLevels()) {
        levels += QJsonObject{{QStringLiteral("file"), QString::fromUtf8(other.file)},
                              {QStringLiteral("aboveMedian"), hundredths(other.aboveMedian)}};
    }
    QJsonObject set{{QStringLiteral("files"), files_},
                    {QStringLiteral("accepted"), static_cast<qint64>(accepted_.size())},
                    {QStringLiteral("sameNames"), names},
                    {QStringLiteral("otherLevels"), levels}};
    if (const auto level = median()) {
        set[QStringLiteral("medianLevel")] = hundredths(*level);
    }
    return jsonLine({{QStringLiteral("set"), set}});
}

}  // namespace kelvo
