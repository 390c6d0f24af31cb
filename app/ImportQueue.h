#pragma once

#include <QList>
#include <QUrl>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "FolderWalk.h"
#include "SlotBank.h"

namespace kelvo {

/// The file of each row with its neighbours in their folder, and what waits to be imported until the running transfer
/// has ended: a neighbour, or the rest of a set of files. An import that the user asks for himself, be it of a set,
/// begins at once, whatever is running, and clears what waits.
///
/// The running transfer is the one that began last. A pedal that never acknowledges the end of it lets all that waits
/// wait, until an import by the user begins another.
///
/// Main thread. Folders are read on a thread of its own, one at a time.
class ImportQueue {
public:
    /// One table: how a file gets into a row of it, and which file did so last.
    struct Table {
        QString fileType;
        bool (*isGood)(const QUrl& url);                       ///< whether an import would take it; any thread
        std::function<bool(int row, const QUrl& url)> import;  ///< at once; whether it took the file
        std::function<void()> changed = {};                    ///< where() says something else now
        /// The rows that wait for a file of a set now, none of them at last.
        std::function<void(const QList<int>& rows)> showWaiting = [](const QList<int>&) {};
        /// What was imported into each row. No file where nothing was imported; no neighbours where they are not known
        /// yet.
        std::array<FolderPlace, kTableRows> places = {};
    };

    ImportQueue() = default;
    ImportQueue(const ImportQueue&) = delete;
    ImportQueue& operator=(const ImportQueue&) = delete;
    ~ImportQueue() = default;

    /// The user's import of files that were chosen or dropped, in their order, into this row and those below it, which
    /// must be there. The second file begins when the transfer of the first has ended, and so on. A file that is not
    /// taken leaves its row to the next one.
    void importNow(Table& table, int row, const QList<QUrl>& files);

    /// The user wants the next (1) or the previous (-1) good file of its folder in the row; nothing without a file in
    /// it. Of several wishes during a transfer only the file where they lead is imported.
    void step(Table& table, int row, int direction);

    /// The user has asked for something else: nothing waits any more.
    void clear();

    /// Nothing waits for this row any more; what waits for others goes on.
    void takeOut(const Table& table, int row);

    /// From where the next step() for the row goes: the file that waits for it, or else the one that was imported.
    [[nodiscard]] FolderPlace where(const Table& table, int row) const;

    /// The transfer of that number has begun, or ended.
    void hasBegun(std::uint64_t transfer) { running_ = transfer; }
    void hasEnded(std::uint64_t transfer);

private:
    /// The user's wishes for one row that no import has met yet.
    struct Walk {
        Table* table;
        int row;
        std::vector<int> steps = {};             ///< that have not been looked up
        std::optional<FolderPlace> wanted = {};  ///< where those before them lead
    };
    /// The files that wait, one for each of these rows.
    struct Set {
        Table* table = nullptr;
        QList<int> rows = {};
        QList<QUrl> files = {};
    };
    /// The folder that is being read now, for the walk or just to know the neighbours.
    struct Reading {
        Table* table;
        int row;
        bool isForWalk;
    };

    [[nodiscard]] bool isWalkOf(const Table& table, int row) const;
    void read();
    void readFolder(const Reading& reading, const QUrl& start, std::vector<int> steps);
    void wasRead(const FolderPlace& place);
    bool importInto(Table& table, int row, const QUrl& url);
    void importWanted();
    void importNextOfSet();
    void showSet() const;

    std::optional<std::uint64_t> running_;
    // Of these two one waits at most.
    std::optional<Walk> walk_;
    Set set_;
    std::vector<std::pair<Table*, int>> unplaced_;  // rows whose neighbours are to be looked up
    std::optional<Reading> reading_;
    // For news on its way to the main thread, which must not outlive this object.
    std::shared_ptr<ImportQueue*> self_ = std::make_shared<ImportQueue*>(this);
    std::jthread reader_;
};

}  // namespace kelvo
