#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>
#include <stop_token>
#include <vector>

namespace kelvo {

/// Sorts file names as file managers do: a run of digits counts as its number, letters without their case; only names
/// that are the same so far by the codes of their characters. The same in every language. Any thread.
void sortNaturally(QStringList& names);

/// From file to file through one folder.
struct FolderWalk {
    QUrl start;                        ///< a local file; it need not be there any more
    QString fileType;                  ///< the extension of those that count, in either case of letters
    bool (*isGood)(const QUrl& file);  ///< those that it refuses do not count; called on the thread of the walk
    std::vector<int> steps;            ///< each 1 for the next file or -1 for the previous one, in this order
};

/// Where a walk has ended.
struct FolderPlace {
    QUrl file;         ///< where it began, if there was nothing to go to
    QString previous;  ///< the names of the neighbours; null where there is none
    QString next;
    bool isRead = false;  ///< the folder has been read: the neighbours are known
};

/// Reads the folder as it is now, hidden files left out, and goes the steps; one that would lead beyond the first or
/// the last file stays there. Blocks as long as the disk does. Where `stop` is requested the answer means nothing.
/// Any thread.
[[nodiscard]] FolderPlace goThroughFolder(const FolderWalk& walk, const std::stop_token& stop = {});

}  // namespace kelvo
