// The controller's imports: from a chosen file to the first packet and the new label.

#include "CRC.h"
#include "KelvoAppDelegate.h"
#include "SlotTableView.h"

namespace kelvo {

void KelvoAppDelegate::importIrButtonClick() {
    chooseFile(cab_);
}

void KelvoAppDelegate::importAMPButtonClick() {
    chooseFile(amp_);
}

void KelvoAppDelegate::chooseFile(SlotBank& bank) {
    const auto title = [&bank] {
        const int number = bank.table->selectedRow() + bank.kind.firstNumber;
        return QObject::tr("Choose a .%1 file for %2").arg(bank.kind.fileType, bank.kind.title.arg(number));
    };
    const OpenPanel panel{.fileType = bank.kind.fileType, .table = bank.table, .title = title};
    services_.beginOpenPanel(window(), panel, [this, &bank](int response, const QUrl& url) {
        if (response == kModalResponseOK) {
            queue_.importNow(bank, bank.table->selectedRow(), url);
        }
    });
}

bool KelvoAppDelegate::importFile(SlotBank& bank, int row, const QUrl& url) {
    {
        // Set before the file is read: even a refused file redirects a running transfer.
        const std::lock_guard lock(transferMutex_);
        selectRow_ = row;
    }
    const auto file = bank.kind.read(url);
    if (!file) {
        return false;
    }
    {
        const std::lock_guard lock(transferMutex_);
        queue_.willBegin(bank);
        bank.isInport = true;
        bank.transfer.begin(++transfers_, row, file->words, file->name);
        sendPacket(bank);
    }
    bank.labels.setName(row, QString::fromUtf8(file->name.data()));
    services_.sleep(0);
    bank.model->reloadData();
    queue_.hasBegun(bank);
    return true;
}

void KelvoAppDelegate::sendPacket(SlotBank& bank) {
    if (bank.transfer.layOutPacket(bank.bbb, selectRow_)) {
        SendUartCmd(bank.bbb.data());
    }
    bank.progress = bank.transfer.progress();
}

}  // namespace kelvo
