#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <optional>
#include <vector>

#include "CheckFile.h"

namespace kelvo {

/// What the files of a set have to do with each other.
class SetReport {
public:
    void add(const FileReport& report);

    /// What stands under the reports of several files: how many of them are accepted, which of these get the same name
    /// in the same kind of slot, which are much louder or quieter than the others, and the lines for sox. Printable
    /// beside its line ends.
    [[nodiscard]] QString text() const;

    /// The same, without the lines for sox, as one JSON object on one line.
    [[nodiscard]] QByteArray json() const;

private:
    struct SameName {
        QByteArray name;
        QByteArrayList files;
    };
    struct OtherLevel {
        QByteArray file;
        double aboveMedian = 0.0;  ///< dB
    };

    [[nodiscard]] std::vector<SameName> sameNames() const;
    [[nodiscard]] std::vector<OtherLevel> otherLevels() const;
    [[nodiscard]] std::optional<double> median() const;

    struct Entry {
        QByteArray file;
        QByteArray name;
        bool isWave = false;
        std::optional<double> level;
    };
    qsizetype files_ = 0;
    std::vector<Entry> accepted_;
    QStringList soxLines_;
};

/// The median of some numbers; of an even count, the mean of the two in the middle.
[[nodiscard]] std::optional<double> medianOf(std::vector<double> numbers);

}  // namespace kelvo
