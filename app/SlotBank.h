#pragma once

#include <QString>
#include <QTimer>
#include <QUrl>
#include <array>
#include <atomic>
#include <memory>
#include <optional>

#include "FolderWalk.h"
#include "SlotLabels.h"
#include "SlotTableModel.h"
#include "StepButtons.h"
#include "Transfer.h"

namespace kelvo {

class SlotTableView;

/// What an import gets from a file.
struct SlotFile {
    PointBuffer words{};
    NameBuffer name{};  ///< NUL-terminated
};

/// The differences between CAB slots and AMP slots.
struct SlotKind {
    QString fileType;  ///< the extension of its files
    QString title;     ///< of a slot, with %1 for its number
    QString accepted;  ///< what a file must be, in words
    int firstNumber;   ///< of row 0 in the labels
    const TransferKind& transfer;
    std::optional<SlotFile> (*read)(const QUrl& file);  ///< empty for a file that is refused
    VerdictCache::Judge isAccepted;                     ///< whether `read` would succeed
};

/// The state of a slot in this run. Main thread.
struct Slot {
    /// The file that was imported last, in its folder; no file at first and after a deletion.
    FolderPlace place;
    /// The result of the last transfer that has ended.
    SlotState result = SlotState::Idle;
    /// A pending import is for this slot.
    bool isWaiting = false;
};

/// The file's name and its place in its folder, as "V30.wav, 9 of 16"; empty without a file.
[[nodiscard]] QString placeText(const FolderPlace& place);

/// The ten slots of one kind: their labels, their state and their transfer.
struct SlotBank {
    explicit SlotBank(const SlotKind& bankKind) : kind(bankKind) {}

    /// Whether a transfer has begun and not ended.
    [[nodiscard]] bool isRunning() const;
    /// What a transfer leaves in its slot; one that has not ended is cut off.
    [[nodiscard]] SlotState result(const TransferProgress& over) const;
    /// Keeps, once for each transfer, its result for its slot. Returns the row; -1 where there is nothing to keep.
    int keepResult();
    /// What the window shows for a row.
    [[nodiscard]] SlotState state(int row) const;
    [[nodiscard]] Slot& slot(int row) { return rows.at(static_cast<std::size_t>(row)); }
    [[nodiscard]] const Slot& slot(int row) const { return rows.at(static_cast<std::size_t>(row)); }

    const SlotKind& kind;
    SlotLabels labels{kind.firstNumber};

    // Under the controller's lock, except `progress`, which is a copy for readers without the lock.
    Transfer transfer{kind.transfer};
    PacketBuffer bbb{};
    bool isInport = false;  ///< set by the first import, never cleared
    std::atomic<TransferProgress> progress = TransferProgress();

    // Main thread.
    std::array<Slot, kTableRows> rows{};
    std::uint32_t keptTransfer = 0;  ///< the transfer whose result has been kept
    /// Runs while an acknowledgement is expected.
    QTimer patience;
    /// The running transfer had no answer, and another one has begun.
    bool isGivenUp = false;
    std::shared_ptr<VerdictCache> verdicts = std::make_shared<VerdictCache>(kind.isAccepted);
    SlotTableView* table = nullptr;
    std::unique_ptr<SlotTableModel> model = {};
    std::optional<StepButtons> steps = {};
};

}  // namespace kelvo
