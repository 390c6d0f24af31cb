// The controller's imports: from a chosen file to the first packet and the new label.

#include <algorithm>
#include <utility>

#include "AMPFile.h"
#include "CRC.h"
#include "ChosenFile.h"
#include "KelvoAppDelegate.h"
#include "MainQueue.h"
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

}  // namespace

void KelvoAppDelegate::importIrButtonClick() {
    chooseFile(*ImportIRTableV_, kIRFileType, QStringLiteral("CAB %1"), kFirstCabNumber, &KelvoAppDelegate::importIR);
}

void KelvoAppDelegate::importAMPButtonClick() {
    chooseFile(*ImportCabTableV_, kAmpFileType, QStringLiteral("AMP %1"), kFirstAmpNumber,
               &KelvoAppDelegate::importAMP);
}

void KelvoAppDelegate::chooseFile(const SlotTableView& table, const QString& fileType, const QString& slot,
                                  int firstNumber, void (KelvoAppDelegate::*import)(const QUrl& url)) {
    const auto title = [&table, fileType, slot, firstNumber] {
        return QObject::tr("Choose a .%1 file for %2").arg(fileType, slot.arg(table.selectedRow() + firstNumber));
    };
    const OpenPanel panel{.fileType = fileType, .table = &table, .title = title};
    services_.beginOpenPanel(*window_, panel, [this, import](int response, const QUrl& url) {
        if (response == kModalResponseOK) {
            (this->*import)(url);
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
        showTransfer(cabModel_, 0);
        sendIRData();
    }
    IRNameArr_.setName(ImportIRTableV_->selectedRow(), QString::fromUtf8(name.data()));
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
    showTransfer(ampModel_, 0);
    sendAMPData();
    lock.unlock();
    AMPNameArr_.setName(ImportCabTableV_->selectedRow(), QString::fromUtf8(name.data()));
    services_.sleep(0);
    ampModel_->reloadData();
}

void KelvoAppDelegate::selectTransferRow(const SlotTableView& table) {
    const int row = table.selectedRow();
    const std::lock_guard lock(transferMutex_);
    transfer_.selectRow = row;
}

void KelvoAppDelegate::showTransfer(const std::shared_ptr<SlotTableModel>& model, int acknowledged) const {
    dispatchMain([table = std::weak_ptr(model), row = static_cast<int>(transfer_.selectRow), acknowledged] {
        if (const auto shown = table.lock()) {
            shown->showTransfer(row, acknowledged);
        }
    });
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
