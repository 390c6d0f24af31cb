// What the controller does with frames from the device.

#include <cstddef>
#include <string>

#include "CommandCodes.h"
#include "KelvoAppDelegate.h"
#include "LoadDataWindowController.h"
#include "NSLog.h"
#include "Post.h"
#include "SBProgressBar.h"

namespace kelvo {
namespace {

/// The progress value when all data has been sent.
constexpr double kFullProgress = 199.0;

std::span<const std::uint8_t> nameField(FrameView frame, int slot) {
    return frame.subspan(kDataOffset + kNameLength * static_cast<std::size_t>(slot), kNameLength);
}

/// A character of an AMP name. The meaning of bytes beyond ASCII is unknown; they must not make a slot look empty.
QChar ampCharacter(std::uint8_t byte) {
    if (byte == 0) {
        return QLatin1Char(' ');
    }
    return byte < 0x80 ? QChar(byte) : QChar(0x00B7);
}

}  // namespace

void KelvoAppDelegate::CMD_CallBack(FrameView frame) {
    switch (frame[kCommandOffset]) {
        case CMD_CAB_NAMES:
            return receiveCabNames(frame);
        case CMD_AMP_NAMES:
            return receiveAmpNames(frame);
        case CMD_PRESET_PARA:
            return receivePresetPara(frame);
        case CMD_IR_DATA:
            return receiveAcknowledgement(cab_, frame[kDataOffset]);
        case CMD_AMP_DATA:
            return receiveAcknowledgement(amp_, frame[kDataOffset]);
        default:
            return;
    }
}

void KelvoAppDelegate::receiveCabNames(FrameView frame) {
    for (int slot = 0; slot < kTableRows; ++slot) {
        std::string name;
        for (const std::uint8_t byte : nameField(frame, slot)) {
            name += static_cast<char>(byte & 0x7F);
        }
        // The name ends at its first NUL.
        cab_.labels.setName(slot, QString::fromLatin1(name.c_str()));
    }
}

void KelvoAppDelegate::receiveAmpNames(FrameView frame) {
    for (int slot = 0; slot < kTableRows; ++slot) {
        QString name;
        for (const std::uint8_t byte : nameField(frame, slot)) {
            name += ampCharacter(byte);
            NSLog(name.toStdString());
        }
        amp_.labels.setName(slot, name);
    }
}

void KelvoAppDelegate::receivePresetPara(FrameView frame) {
    PRESET_PARAValue_ = frame[kDataOffset];
    const double progress = frame[kDataOffset] / kFullProgress;
    const std::lock_guard lock(loadWindowMutex_);
    if (SBProgressBar* const bar = loadWindow_->progressBar(); bar != nullptr) {
        try {
            bar->setFloatValue(progress);
        } catch (const InvalidValue&) {
            // A value beyond the end does not move the bar.
        }
    } else if (progress <= 1.0) {
        earlyProgress_ = progress;
    }
}

void KelvoAppDelegate::receiveAcknowledgement(SlotBank& bank, std::uint8_t phase) {
    bool isRelabelled = false;
    {
        const std::lock_guard lock(transferMutex_);
        if (bank.transfer.acknowledge(phase)) {
            sendPacket(bank);
            isRelabelled = relabel(bank);
        } else if (phase == bank.transfer.lastPhase()) {
            // The end of either kind resets the IR's phase; the AMP's stays at its last packet.
            cab_.transfer.setIdle();
        }
        bank.progress = bank.transfer.progress();
    }
    post(&window(), [this, &bank, isRelabelled] {
        if (isRelabelled) {
            bank.model->reloadData();
        }
        queue_.hasProgressed(bank);
    });
}

bool KelvoAppDelegate::relabel(SlotBank& bank) {
    const TransferProgress progress = bank.transfer.progress();
    return bank.transfer.tick() == bank.transfer.lastPhase() && !progress.isSpoiled &&
           bank.labels.setName(progress.row, QString::fromUtf8(bank.transfer.name().data()));
}

}  // namespace kelvo
