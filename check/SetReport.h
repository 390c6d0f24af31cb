#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <optional>
#include <vector>

#include "CheckFile.h"

namespace kelvo {

/// Compares the files of a set.
class SetReport {
public:
    void add(const FileReport& report);

    /// The summary after the reports on several files: how many are accepted, which of these get the same name in the
    /// same kind of slot, which are much louder or quieter than the others, and the lines for sox. Printable except for
    /// its line ends.
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

/// The median; for an even count, the mean of the two middle numbers. Nothing for no numbers.
[[nodiscard]] std::optional<double> medianOf(std::vector<double> numbers);

}  // namespace kelvo
