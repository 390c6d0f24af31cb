#include "SlotBank.h"

#include <utility>

namespace kelvo {

QString placeText(const FolderPlace& place) {
    const QString name = printable(place.file.fileName());
    return place.number > 0 ? QObject::tr("%1, %2 of %3").arg(name).arg(place.number).arg(place.count) : name;
}

bool SlotBank::isRunning() const {
    const TransferProgress now = progress;
    return now.number != 0 && now.acknowledged < kind.transfer.namePhase;
}

int SlotBank::keepResult() {
    const TransferProgress now = progress;
    if (now.row < 0 || std::exchange(keptTransfer, now.number) == now.number) {
        return -1;
    }
    const bool isWhole = !isRunning() && !now.isSpoiled;
    slot(now.row).result = isWhole ? SlotState::Sent : SlotState::CutOff;
    return now.row;
}

SlotState SlotBank::state(int row) const {
    const TransferProgress now = progress;
    if (isRunning() && now.row == row) {
        return now.isSpoiled || isGivenUp ? SlotState::CutOff
               : patience.isActive()      ? SlotState::Running
                                          : SlotState::NotAnswering;
    }
    return slot(row).isWaiting ? SlotState::Waiting : slot(row).result;
}

}  // namespace kelvo
