#include "FolderWalk.h"

#include <QCollator>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QLocale>
#include <algorithm>
#include <utility>

namespace kelvo {
namespace {

/// Of one language whatever the user's: the collation of "C" knows no numbers.
QCollator naturalCollator() {
    QCollator collator(QLocale(QLocale::English, QLocale::UnitedStates));
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

/// The names in a folder on both sides of one that may be among them or not.
class Neighbours {
public:
    Neighbours(const FolderWalk& walk, const std::stop_token& stop)
        : walk_(walk), stop_(stop), folder_(QFileInfo(walk.start.toLocalFile()).dir()) {
        const QString ending = QLatin1Char('.') + walk.fileType;
        QDirIterator files(folder_.path(), QDir::Files);
        while (!stop.stop_requested() && files.hasNext()) {
            files.next();
            if (files.fileName().endsWith(ending, Qt::CaseInsensitive)) {
                names_.append(files.fileName());
            }
        }
        const QString name = walk.start.fileName();
        if (!names_.contains(name)) {
            names_.append(name);
        }
        sortNaturally(names_);
        start_ = place_ = names_.indexOf(name);
    }

    /// The place of the nearest good file in that direction; -1 for none.
    [[nodiscard]] qsizetype neighbour(int direction) const {
        for (qsizetype i = place_ + direction; i >= 0 && i < names_.size() && !stop_.stop_requested(); i += direction) {
            if (walk_.isGood(url(i))) {
                return i;
            }
        }
        return -1;
    }
    void step(int direction) {
        if (const qsizetype to = neighbour(direction); to >= 0) {
            place_ = to;
        }
    }
    [[nodiscard]] FolderPlace place() const {
        return {.file = url(place_),
                .previous = names_.value(neighbour(-1)),
                .next = names_.value(neighbour(1)),
                .isRead = true};
    }

private:
    [[nodiscard]] QUrl url(qsizetype i) const {
        return i == start_ ? walk_.start : QUrl::fromLocalFile(folder_.filePath(names_[i]));
    }

    const FolderWalk& walk_;
    const std::stop_token& stop_;
    QDir folder_;
    QStringList names_;
    qsizetype start_ = 0;
    qsizetype place_ = 0;
};

}  // namespace

void sortNaturally(QStringList& names) {
    const QCollator collator = naturalCollator();
    std::vector<std::pair<QCollatorSortKey, QString>> keyed;
    keyed.reserve(static_cast<std::size_t>(names.size()));
    for (QString& name : names) {
        keyed.emplace_back(collator.sortKey(name), std::move(name));
    }
    std::ranges::sort(keyed, [](const auto& a, const auto& b) {
        const int order = a.first.compare(b.first);
        return order < 0 || (order == 0 && a.second < b.second);
    });
    std::ranges::transform(keyed, names.begin(), [](auto& entry) { return std::move(entry.second); });
}

FolderPlace goThroughFolder(const FolderWalk& walk, const std::stop_token& stop) {
    Neighbours neighbours(walk, stop);
    for (const int direction : walk.steps) {
        neighbours.step(direction);
    }
    return neighbours.place();
}

}  // namespace kelvo
