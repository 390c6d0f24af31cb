// The controller's imports: from a chosen file to the first packet and the new label.

#include <algorithm>
#include <utility>

#include "AMPFile.h"
#include "CRC.h"
#include "ChosenFile.h"
#include "CloseActionWindow.h"
#include "KelvoAppDelegate.h"
#include "RVIRFile.h"
#include "SlotTableView.h"

namespace kelvo {
namespace {

/// What stands in `name` up to its NUL, at most all but its last byte, and zeros behind it.
NameBuffer terminatedName(const CharName& name) {
    NameBuffer result{};
    std::copy(name.begin(), std::find(name.begin(), name.end() - 1, '\0'), result.begin());
    return result;
}

QString importLabel(int number, const NameBuffer& name) {
    return (QStringLiteral("%1.").arg(number) + QString::fromUtf8(name.data())).toUpper();
}

}  // namespace

void KelvoAppDelegate::importIrButtonClick() {
    services_.beginOpenPanel(*window_, kIRFileType, [this](int response, const QUrl& url) {
        if (response == kModalResponseOK) {
            importIR(url);
        }
    });
}

void KelvoAppDelegate::importAMPButtonClick() {
    services_.beginOpenPanel(*window_, kAmpFileType, [this](int response, const QUrl& url) {
        if (response == kModalResponseOK) {
            importAMP(url);
        }
    });
}

void KelvoAppDelegate::importIR(const QUrl& url) {
    selectTransferRow(*ImportIRTableV_);
    RVIRFile file;
    if (!file.OpenFilePath(irPath(url))) {
        return;
    }
    const NameBuffer name = terminatedName(file.CharFileNane);
    {
        const std::lock_guard lock(transferMutex_);
        if (!file.GetIRDataBuffer(transfer_.irdatabuff)) {
            return;
        }
        transfer_.SendIRFileName = name;
        transfer_.isInportIR = true;
        transfer_.IRTick = 1;
        sendIRData();
    }
    const int row = ImportIRTableV_->selectedRow();
    storeLabel(IRNameArr_, row, importLabel(row + kFirstCabNumber, name));
    services_.sleep(0);
    cabModel_->reloadData();
}

void KelvoAppDelegate::importAMP(const QUrl& url) {
    selectTransferRow(*ImportCabTableV_);
    AMPFile file;
    std::unique_lock lock(transferMutex_, std::defer_lock);
    if (!file.OpenFile(ampPath(url), &lock)) {
        return;
    }
    const NameBuffer name = terminatedName(file.CharFileName);
    transfer_.SendAMPFileName = name;
    transfer_.isInportAMP = true;
    transfer_.AMPTick = 1;
    sendAMPData();
    lock.unlock();
    const int row = ImportCabTableV_->selectedRow();
    storeLabel(AMPNameArr_, row, importLabel(row + kFirstAmpNumber, name));
    services_.sleep(0);
    ampModel_->reloadData();
}

void KelvoAppDelegate::selectTransferRow(const SlotTableView& table) {
    const int row = table.selectedRow();
    const std::lock_guard lock(transferMutex_);
    transfer_.selectRow = row;
}

void KelvoAppDelegate::sendIRData() {
    static PacketBuffer bbb{};
    if (layOutPacket(bbb, kIRTransfer, transfer_.IRTick, transfer_.selectRow, transfer_.irdatabuff,
                     transfer_.SendIRFileName)) {
        SendUartCmd(bbb.data());
    }
}

void KelvoAppDelegate::sendAMPData() {
    static PacketBuffer bbb{};
    if (layOutPacket(bbb, kAMPTransfer, transfer_.AMPTick, transfer_.selectRow, AmpPiontBuff,
                     transfer_.SendAMPFileName)) {
        SendUartCmd(bbb.data());
    }
}

}  // namespace kelvo
