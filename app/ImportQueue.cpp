#include "ImportQueue.h"

#include <numeric>

#include "MainQueue.h"

namespace kelvo {

void ImportQueue::importNow(Table& table, int row, const QList<QUrl>& files) {
    clear();
    set_ = {.table = &table, .rows = QList<int>(files.size()), .files = files};
    std::iota(set_.rows.begin(), set_.rows.end(), row);
    importNextOfSet();
}

bool ImportQueue::importInto(Table& table, int row, const QUrl& url) {
    if (!table.import(row, url)) {
        return false;
    }
    if (row >= 0) {
        table.places.at(row) = {.file = url};
        table.changed();
        const std::pair place(&table, row);
        std::erase(unplaced_, place);
        unplaced_.push_back(place);
        read();
    }
    return true;
}

void ImportQueue::step(Table& table, int row, int direction) {
    if (row < 0 || table.places.at(row).file.isEmpty()) {
        return;
    }
    if (!isWalkOf(table, row)) {
        clear();
        walk_ = {.table = &table, .row = row};
    }
    walk_->steps.push_back(direction);
    read();
}

void ImportQueue::clear() {
    if (reading_) {
        reading_->isForWalk = false;
    }
    if (const auto walk = std::exchange(walk_, std::nullopt)) {
        walk->table->changed();
    }
    set_.rows.clear();
    set_.files.clear();
    showSet();
}

void ImportQueue::takeOut(const Table& table, int row) {
    if (isWalkOf(table, row)) {
        clear();
    }
    if (const qsizetype place = set_.rows.indexOf(row); set_.table == &table && place >= 0) {
        set_.rows.removeAt(place);
        set_.files.removeAt(place);
        showSet();
    }
}

FolderPlace ImportQueue::where(const Table& table, int row) const {
    if (isWalkOf(table, row) && walk_->wanted) {
        return *walk_->wanted;
    }
    return row >= 0 ? table.places.at(row) : FolderPlace();
}

bool ImportQueue::isWalkOf(const Table& table, int row) const {
    return walk_ && walk_->table == &table && walk_->row == row;
}

void ImportQueue::hasEnded(std::uint64_t transfer) {
    if (running_ == transfer) {
        running_.reset();
        importWanted();
        importNextOfSet();
    }
}

void ImportQueue::read() {
    if (reading_) {
        return;
    }
    if (walk_ && !walk_->steps.empty()) {
        const QUrl start = where(*walk_->table, walk_->row).file;
        readFolder({walk_->table, walk_->row, true}, start, std::exchange(walk_->steps, {}));
    } else if (!unplaced_.empty()) {
        const auto [table, row] = unplaced_.back();
        unplaced_.pop_back();
        readFolder({table, row, false}, table->places.at(row).file, {});
    }
}

void ImportQueue::readFolder(const Reading& reading, const QUrl& start, std::vector<int> steps) {
    reading_ = reading;
    FolderWalk walk{start, reading.table->fileType, reading.table->isGood, std::move(steps)};
    // The thread before this one has told its result, which was the last that it did: nobody waits for it here.
    reader_ = std::jthread([self = std::weak_ptr(self_), walk = std::move(walk)](const std::stop_token& stop) {
        dispatchMain([self, place = goThroughFolder(walk, stop)] {
            if (const auto queue = self.lock()) {
                (*queue)->wasRead(place);
            }
        });
    });
}

void ImportQueue::wasRead(const FolderPlace& place) {
    const Reading reading = *std::exchange(reading_, std::nullopt);
    FolderPlace& known = reading.table->places.at(reading.row);
    const bool isThere = place.file == known.file;
    if (isThere) {
        known = place;
    }
    if (reading.isForWalk) {
        walk_->wanted = isThere ? std::nullopt : std::optional(place);
    }
    reading.table->changed();
    importWanted();
    read();
}

void ImportQueue::importWanted() {
    if (running_ || !walk_ || !walk_->wanted) {
        return;
    }
    const FolderPlace place = *std::exchange(walk_->wanted, std::nullopt);
    if (walk_->table->import(walk_->row, place.file)) {
        walk_->table->places.at(walk_->row) = place;
    }
    walk_->table->changed();
}

void ImportQueue::importNextOfSet() {
    bool isTaken = false;
    while (!isTaken && !set_.files.isEmpty()) {
        isTaken = importInto(*set_.table, set_.rows.first(), set_.files.takeFirst());
    }
    if (isTaken) {
        set_.rows.removeFirst();
    }
    // Where one was not taken, those behind it have moved up, and the last row is left over.
    set_.rows.resize(set_.files.size());
    showSet();
}

void ImportQueue::showSet() const {
    if (set_.table != nullptr) {
        set_.table->showWaiting(set_.rows);
    }
}

}  // namespace kelvo
