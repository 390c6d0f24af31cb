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
    chooseFile(ImportIRTableV(), kIRFileType, QStringLiteral("CAB %1"), kFirstCabNumber, cab_.imports);
}

void KelvoAppDelegate::importAMPButtonClick() {
    chooseFile(ImportCabTableV(), kAmpFileType, QStringLiteral("AMP %1"), kFirstAmpNumber, amp_.imports);
}

void KelvoAppDelegate::chooseFile(const SlotTableView& table, const QString& fileType, const QString& slot,
                                  int firstNumber, ImportQueue::Table& imports) {
    queue_.clear();
    const auto title = [&table, fileType, slot, firstNumber] {
        return QObject::tr("Choose a .%1 file for %2").arg(fileType, slot.arg(table.selectedRow() + firstNumber));
    };
    const OpenPanel panel{.fileType = fileType, .table = &table, .title = title};
    services_.beginOpenPanel(window(), panel, [this, &table, &imports](int response, const QUrl& url) {
        if (response == kModalResponseOK) {
            queue_.importNow(imports, table.selectedRow(), {url});
        }
    });
}

bool KelvoAppDelegate::importIR(int row, const QUrl& url) {
    selectTransferRow(row);
    RVIRFile file;
    if (!file.OpenFilePath(irPath(url))) {
        return false;
    }
    const NameBuffer name = terminatedName(file.CharFileNane);
    {
        const std::lock_guard lock(transferMutex_);
        if (!file.GetIRDataBuffer(transfer_.irdatabuff)) {
            return false;
        }
        transfer_.SendIRFileName = name;
        transfer_.isInportIR = true;
        transfer_.IRTick = 1;
        begin(transfer_.IRProgress, cab_.model);
        sendIRData();
    }
    cab_.names.setName(row, QString::fromUtf8(name.data()));
    services_.sleep(0);
    cab_.model->reloadData();
    return true;
}

bool KelvoAppDelegate::importAMP(int row, const QUrl& url) {
    selectTransferRow(row);
    AMPFile file;
    if (!file.load(ampPath(url))) {
        return false;
    }
    const NameBuffer name = terminatedName(file.CharFileName);
    {
        const std::lock_guard lock(transferMutex_);
        file.publish();
        transfer_.SendAMPFileName = name;
        transfer_.isInportAMP = true;
        transfer_.AMPTick = 1;
        begin(transfer_.AMPProgress, amp_.model);
        sendAMPData();
    }
    amp_.names.setName(row, QString::fromUtf8(name.data()));
    services_.sleep(0);
    amp_.model->reloadData();
    return true;
}

void KelvoAppDelegate::selectTransferRow(int row) {
    const std::lock_guard lock(transferMutex_);
    transfer_.selectRow = row;
}

void KelvoAppDelegate::begin(TransferProgress& progress, const std::shared_ptr<SlotTableModel>& model) {
    progress = {.number = ++transfers_};
    queue_.hasBegun(progress.number);
    showTransfer(model, 0);
}

void KelvoAppDelegate::tellEnd(std::uint64_t transfer, const std::shared_ptr<SlotTableModel>& model) {
    // Where the model is still there, so is this.
    dispatchMain([this, table = std::weak_ptr(model), transfer] {
        if (!table.expired()) {
            queue_.hasEnded(transfer);
        }
    });
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
