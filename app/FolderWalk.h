#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <mutex>
#include <optional>
#include <stop_token>
#include <vector>

namespace kelvo {

/// Sorts file names as file managers do: digits by the number that they form, letters without case, equal names by
/// their character codes. The same in every locale. Any thread.
void sortNaturally(QStringList& names);

/// Whether an import would accept files, remembered until they change in size or time. Any thread.
class VerdictCache {
public:
    /// May block as long as the disk does. If `stop` is requested, the result is undefined.
    using Judge = bool (*)(const QUrl& file, const std::stop_token& stop);

    explicit VerdictCache(Judge judge) : judge_(judge) {}

    [[nodiscard]] bool isAccepted(const QUrl& file, const std::stop_token& stop);
    /// Does not read the file.
    [[nodiscard]] bool isKnownToBeRefused(const QUrl& file) const;

private:
    /// A file with the same stamp has the same content.
    struct Stamp {
        qint64 size = -1;
        qint64 seconds = 0;
        qint64 nanoseconds = 0;
        bool operator==(const Stamp&) const = default;
    };
    struct Verdict {
        Stamp stamp;
        bool isAccepted;
    };
    [[nodiscard]] static Stamp stampOf(const QUrl& file);
    [[nodiscard]] std::optional<bool> remembered(const QUrl& file, const Stamp& now) const;

    Judge judge_;
    mutable std::mutex mutex_;
    QHash<QUrl, Verdict> verdicts_;
};

/// A file and its place among the files of its type in its folder.
struct FolderPlace {
    QUrl file;
    bool isRead = false;        ///< the folder has been read, and the following members are valid
    bool isFolderGone = false;  ///< the folder could not be opened
    qsizetype number = 0;       ///< from 1 to `count`; 0 where the file is no longer there
    qsizetype count = 0;
    QString previous;  ///< names of the neighbours that are not known to be refused; empty where there is none
    QString next;
};

/// Steps from file to file through one folder.
struct FolderWalk {
    QUrl start;              ///< a local file, which may have been removed
    QString fileType;        ///< the extension of the files that count, in any case
    std::vector<int> steps;  ///< each 1 for the next file or -1 for the previous one, in this order
};

/// Reads the folder's names as they are now, hidden files left out, and takes the steps. Only files that the steps
/// pass or lead to are judged, and refused ones are passed. A step beyond the first or the last file stays there.
/// Blocks as long as the disk does. If `stop` is requested, the result is undefined. Any thread.
[[nodiscard]] FolderPlace walkFolder(const FolderWalk& walk, VerdictCache& verdicts, const std::stop_token& stop = {});

/// The folder of a local file.
[[nodiscard]] QString folderOf(const QUrl& file);

/// The first of these files that an import would accept, at most `most`; a file that is named twice counts once. Blocks
/// as long as the disk does. Any thread.
[[nodiscard]] QList<QUrl> acceptedFiles(const QList<QUrl>& files, qsizetype most, VerdictCache& verdicts,
                                        const std::stop_token& stop = {});

}  // namespace kelvo
