#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>
#include <array>
#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "FolderReaders.h"
#include "SlotBank.h"

namespace kelvo {

/// What the queue requests from the controller. Main thread.
class ImportTarget {
public:
    virtual ~ImportTarget() = default;

    /// Imports the file now, whatever is running. Returns whether it was accepted.
    virtual bool importFile(SlotBank& bank, int row, const QUrl& file) = 0;
    /// States or files of the bank's slots have changed.
    virtual void slotsChanged(SlotBank& bank) = 0;
    /// The last packet for the row has been acknowledged, and the slot holds the file.
    virtual void transferFinished(SlotBank& bank, int row) = 0;
};

/// The pending imports, which wait until no transfer is running: sets of files and steps to neighbours, in the order of
/// the user's requests. The queue also keeps the state of each slot.
///
/// After kPatience without an acknowledgement, pending imports stay pending. An import that the user requests after
/// that starts at once and discards them.
///
/// Main thread. Folders are read on other threads.
class ImportQueue {
public:
    /// How long the device may take for an acknowledgement.
    static constexpr std::chrono::milliseconds kPatience{3000};

    ImportQueue(ImportTarget& target, FolderReaders& readers, std::array<SlotBank*, 2> banks);
    ImportQueue(const ImportQueue&) = delete;
    ImportQueue& operator=(const ImportQueue&) = delete;

    /// Imports a chosen file at once, even during a transfer, and discards all pending imports.
    void importNow(SlotBank& bank, int row, const QUrl& file);

    /// One file for each row from this one down, in their order; files that do not fit are ignored. A file that is
    /// refused, or that is the same as an earlier one, leaves its row to the next one.
    void importSet(SlotBank& bank, int row, const QList<QUrl>& files);

    /// Imports the next (1) or the previous (-1) accepted file of its folder, for a row that has a file. Of several
    /// pending steps, only the file where they end is imported.
    void step(SlotBank& bank, int row, int direction);

    /// The row's slot has been cleared: forgets its file and discards its pending import. A running transfer that has
    /// not sent its last packet still fills the slot.
    void slotCleared(SlotBank& bank, int row);

    /// While held, no pending import begins.
    void hold(bool isHeld);

    /// A transfer of the bank is about to replace the one before. Does not call the target.
    void willBegin(SlotBank& bank);
    /// The bank's transfer has sent its first packet.
    void hasBegun(SlotBank& bank);
    /// The bank's transfer has received an acknowledgement.
    void hasProgressed(SlotBank& bank);

private:
    /// Files for one row each, or the steps in one row.
    struct Job {
        std::uint64_t number;
        SlotBank* bank;
        QList<int> rows;
        QList<QUrl> files = {};
        QStringList tried = {};       ///< canonical paths of the files before these
        std::vector<int> steps = {};  ///< that have not been resolved
        bool isLookingUp = false;
        std::optional<FolderPlace> wanted = {};  ///< where the resolved steps end

        [[nodiscard]] bool isStep() const { return files.isEmpty(); }
        [[nodiscard]] bool isReady() const { return !isStep() || (wanted && steps.empty() && !isLookingUp); }
        [[nodiscard]] bool isFor(const SlotBank& other, int row) const { return bank == &other && rows.contains(row); }
    };
    using Jobs = std::deque<Job>;

    [[nodiscard]] bool isAnyAnswering() const;
    [[nodiscard]] bool isAnyStalled() const;
    void replaceStalledTransfer();
    void takeOut(SlotBank& bank, int row);
    void startNext();
    void startStep(const Jobs::iterator& job);
    void startFromSet(const Jobs::iterator& job);
    void readPlace(SlotBank& bank, int row);
    void lookUpSteps();
    void lookUp(Job& job);
    void foundStep(std::uint64_t number, const FolderPlace& place);
    void showWaiting();

    ImportTarget& target_;
    FolderReaders& readers_;
    std::array<SlotBank*, 2> banks_;
    Jobs jobs_;
    std::uint64_t jobNumber_ = 0;
    bool isHeld_ = false;
    /// The pending imports were requested while a transfer had no answer. They do not wait for that transfer.
    bool overtakes_ = false;
};

}  // namespace kelvo
