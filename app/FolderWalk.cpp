#include "FolderWalk.h"

#include <sys/stat.h>

#include <QCollator>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <algorithm>
#include <utility>

namespace kelvo {
namespace {

/// The same locale for every user, because the "C" collation does not support numbers.
QCollator naturalCollator() {
    QCollator collator(QLocale(QLocale::English, QLocale::UnitedStates));
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

/// The names of one type in a folder, and a position among them.
class FolderNames {
public:
    FolderNames(const FolderWalk& walk, VerdictCache& verdicts, const std::stop_token& stop)
        : walk_(walk), verdicts_(verdicts), stop_(stop), folder_(QFileInfo(walk.start.toLocalFile()).dir()) {
        const QString ending = QLatin1Char('.') + walk.fileType;
        QDirIterator files(folder_.path(), QDir::Files);
        while (!stop.stop_requested() && files.hasNext()) {
            files.next();
            if (files.fileName().endsWith(ending, Qt::CaseInsensitive)) {
                names_.append(files.fileName());
            }
        }
        count_ = names_.size();
        const QString name = walk.start.fileName();
        if (!names_.contains(name)) {
            names_.append(name);
        }
        sortNaturally(names_);
        start_ = position_ = names_.indexOf(name);
    }

    void step(int direction) {
        const qsizetype to =
            neighbour(direction, [this](const QUrl& file) { return verdicts_.isAccepted(file, stop_); });
        if (to >= 0) {
            position_ = to;
        }
    }
    [[nodiscard]] FolderPlace place() const {
        // A start file that was removed has no number and is not offered as a neighbour.
        const bool isStartGone = count_ < names_.size();
        const auto isPossible = [&](const QUrl& file) {
            return !(isStartGone && file == walk_.start) && !verdicts_.isKnownToBeRefused(file);
        };
        const bool isThere = !isStartGone || position_ != start_;
        const qsizetype before = isStartGone && start_ < position_ ? 1 : 0;
        return {.file = url(position_),
                .isRead = true,
                .isFolderGone = !folder_.exists(),
                .number = isThere ? position_ + 1 - before : 0,
                .count = count_,
                .previous = names_.value(neighbour(-1, isPossible)),
                .next = names_.value(neighbour(1, isPossible))};
    }

private:
    [[nodiscard]] QUrl url(qsizetype i) const {
        return i == start_ ? walk_.start : QUrl::fromLocalFile(folder_.filePath(names_[i]));
    }
    /// The index of the nearest file in that direction that passes; -1 for none.
    template <typename Test>
    [[nodiscard]] qsizetype neighbour(int direction, const Test& passes) const {
        for (qsizetype i = position_ + direction; i >= 0 && i < names_.size(); i += direction) {
            if (stop_.stop_requested()) {
                return -1;
            }
            if (passes(url(i))) {
                return i;
            }
        }
        return -1;
    }

    const FolderWalk& walk_;
    VerdictCache& verdicts_;
    const std::stop_token& stop_;
    QDir folder_;
    QStringList names_;  // with the start's, even if that file has been removed
    qsizetype count_ = 0;
    qsizetype start_ = 0;
    qsizetype position_ = 0;
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

VerdictCache::Stamp VerdictCache::stampOf(const QUrl& file) {
    struct stat status {};
    if (::stat(QFile::encodeName(file.toLocalFile()).constData(), &status) != 0) {
        return {};
    }
    return {status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

std::optional<bool> VerdictCache::remembered(const QUrl& file, const Stamp& now) const {
    const std::lock_guard lock(mutex_);
    const auto found = verdicts_.constFind(file);
    if (found == verdicts_.cend() || found->stamp != now) {
        return std::nullopt;
    }
    return found->isAccepted;
}

bool VerdictCache::isAccepted(const QUrl& file, const std::stop_token& stop) {
    const Stamp now = stampOf(file);
    if (const auto verdict = remembered(file, now)) {
        return *verdict;
    }
    const Verdict verdict{now, judge_(file, stop)};
    if (!stop.stop_requested()) {
        const std::lock_guard lock(mutex_);
        verdicts_.insert(file, verdict);
    }
    return verdict.isAccepted;
}

bool VerdictCache::isKnownToBeRefused(const QUrl& file) const {
    return remembered(file, stampOf(file)) == false;
}

FolderPlace walkFolder(const FolderWalk& walk, VerdictCache& verdicts, const std::stop_token& stop) {
    FolderNames names(walk, verdicts, stop);
    for (const int direction : walk.steps) {
        names.step(direction);
    }
    return names.place();
}

QString folderOf(const QUrl& file) {
    return QFileInfo(file.toLocalFile()).path();
}

QList<QUrl> acceptedFiles(const QList<QUrl>& files, qsizetype most, VerdictCache& verdicts,
                          const std::stop_token& stop) {
    QList<QUrl> accepted;
    QStringList tried;
    for (const QUrl& file : files) {
        if (accepted.size() == most || stop.stop_requested()) {
            break;
        }
        const QString path = QFileInfo(file.toLocalFile()).canonicalFilePath();
        if (!tried.contains(path) && verdicts.isAccepted(file, stop)) {
            accepted.append(file);
        }
        tried.append(path);
    }
    return accepted;
}

}  // namespace kelvo
