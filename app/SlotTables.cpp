// The controller as data source of the slot tables, the deletion of a CAB slot, and the clipboard.

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QStringList>

#include "CRC.h"
#include "CommandCodes.h"
#include "KelvoAppDelegate.h"
#include "NSLog.h"
#include "SlotTableView.h"

namespace kelvo {
namespace {

/// Tags of the tables in the interface file.
constexpr int kCabTag = 1;
constexpr int kAmpTag = 2;

}  // namespace

const SlotBank* KelvoAppDelegate::bankOf(int tag) const {
    return tag == kCabTag ? &cab_ : tag == kAmpTag ? &amp_ : nullptr;
}

QString KelvoAppDelegate::tableView_objectValueForTableColumn_row(int tag, int, int row) const {
    const SlotBank* const bank = bankOf(tag);
    return bank != nullptr ? bank->labels.all().value(row) : QString();
}

RowStatus KelvoAppDelegate::rowStatus(int tag, int row) const {
    const SlotBank* const bank = bankOf(tag);
    if (bank == nullptr) {
        return {};
    }
    const TransferProgress progress = bank->progress;
    const double share =
        progress.row == row ? static_cast<double>(progress.acknowledged) / bank->kind.transfer.namePhase : 0;
    return {bank->state(row), share, placeText(bank->slot(row).place)};
}

void KelvoAppDelegate::slotsChanged(SlotBank& bank) {
    bank.model->statusChanged();
    bank.steps->update();
}

void KelvoAppDelegate::transferFinished(SlotBank& bank, int row) {
    bank.table->showFinished(row);
}

void KelvoAppDelegate::copyFiles(const SlotBank& bank) const {
    QStringList lines;
    QList<QUrl> files;
    for (int row = 0; row < kTableRows; ++row) {
        const QUrl file = bank.slot(row).place.file;
        if (bank.slot(row).result == SlotState::Sent && !file.isEmpty()) {
            const QString label = splitLabel(bank.labels.all().at(row)).name;
            lines.append(QStringLiteral("%1\t%2\t%3")
                             .arg(row + bank.kind.firstNumber)
                             .arg(label, printable(file.toLocalFile())));
            files.append(file);
        }
    }
    if (!files.isEmpty()) {
        auto* const copy = new QMimeData;
        copy->setText(lines.join(QLatin1Char('\n')));
        copy->setUrls(files);
        QGuiApplication::clipboard()->setMimeData(copy);
    }
}

void KelvoAppDelegate::deleteCAB() {
    const Alert alert{.messageText = QStringLiteral("Do you confirm deletion?"),
                      .buttons = {QStringLiteral("delete"), QStringLiteral("cancel")},
                      .style = AlertStyle::Warning,
                      .informativeText = spokenLabel(IRNameArr().value(ImportIRTableV().selectedRow())),
                      .subject = &ImportIRTableV()};
    // No import may change the row while the question is open.
    queue_.hold(true);
    services_.beginSheetModal(window(), alert, [this](int response) {
        if (response == kAlertFirstButtonReturn) {
            sendDeletion();
        } else if (response == kAlertSecondButtonReturn) {
            NSLog("2");
        }
        queue_.hold(false);
    });
}

void KelvoAppDelegate::sendDeletion() {
    // Bytes after the slot are never written, so they stay zero.
    static PacketBuffer bbb{};
    const int row = ImportIRTableV().selectedRow();
    layOutHeader(bbb, CMD_DELETE_CAB);
    bbb[kDataOffset] = static_cast<std::uint8_t>(row & 0xFF);
    {
        const std::lock_guard lock(transferMutex_);
        SendUartCmd(bbb.data());
        cab_.labels.setEmpty(row);
        cab_.transfer.slotCleared(row);
        cab_.progress = cab_.transfer.progress();
    }
    queue_.slotCleared(cab_, row);
    cab_.model->reloadData();
}

}  // namespace kelvo
