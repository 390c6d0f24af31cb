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

SlotState SlotBank::result(const TransferProgress& over) const {
    return over.acknowledged == kind.transfer.namePhase && !over.isSpoiled ? SlotState::Sent : SlotState::CutOff;
}

int SlotBank::keepResult() {
    const TransferProgress now = progress;
    if (now.row < 0 || std::exchange(keptTransfer, now.number) == now.number) {
        return -1;
    }
    slot(now.row).result = result(now);
    return now.row;
}

SlotState SlotBank::state(int row) const {
    const TransferProgress now = progress;
    if (now.row != row || now.number == keptTransfer) {
        return slot(row).isWaiting ? SlotState::Waiting : slot(row).result;
    }
    if (now.acknowledged == kind.transfer.namePhase || now.isSpoiled || isGivenUp) {
        return result(now);
    }
    return patience.isActive() ? SlotState::Running : SlotState::NotAnswering;
}

}  // namespace kelvo
