// The controller as data source of the slot tables, and the deletion of a CAB slot.

#include "CRC.h"
#include "CommandCodes.h"
#include "KelvoAppDelegate.h"
#include "NSLog.h"
#include "SlotLabel.h"
#include "SlotTableView.h"

namespace kelvo {
namespace {

/// Tags of the tables in the interface file.
constexpr int kCabTag = 1;
constexpr int kAmpTag = 2;

}  // namespace

QString KelvoAppDelegate::tableView_objectValueForTableColumn_row(int tag, int, int row) const {
    switch (tag) {
        case kCabTag:
            return IRNameArr().value(row);
        case kAmpTag:
            return AMPNameArr().value(row);
        default:
            return {};
    }
}

void KelvoAppDelegate::deleteCAB() {
    const Alert alert{.messageText = QStringLiteral("Do you confirm deletion?"),
                      .buttons = {QStringLiteral("delete"), QStringLiteral("cancel")},
                      .style = AlertStyle::Warning,
                      .informativeText = spokenLabel(IRNameArr().value(ImportIRTableV().selectedRow())),
                      .subject = &ImportIRTableV()};
    services_.beginSheetModal(window(), alert, [this](int response) {
        if (response == kAlertFirstButtonReturn) {
            sendDeletion();
        } else if (response == kAlertSecondButtonReturn) {
            NSLog("2");
        }
    });
}

void KelvoAppDelegate::sendDeletion() {
    // Bytes behind the slot are never written, so they stay zero.
    static PacketBuffer bbb{};
    const int row = ImportIRTableV().selectedRow();
    layOutHeader(bbb, CMD_DELETE_CAB);
    bbb[kDataOffset] = static_cast<std::uint8_t>(row & 0xFF);
    SendUartCmd(bbb.data());
    queue_.takeOut(cab_.imports, row);
    cab_.names.setEmpty(row);
    cab_.model->reloadData();
}

}  // namespace kelvo
