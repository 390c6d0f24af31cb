// The controller's answers to what the device says.

#include <cstddef>
#include <string>

#include "CommandCodes.h"
#include "KelvoAppDelegate.h"
#include "LoadDataWindowController.h"
#include "NSLog.h"
#include "SBProgressBar.h"

namespace kelvo {
namespace {

/// Bytes of one slot's name in a list from the device.
constexpr std::size_t kFieldSize = 10;
/// The progress that means: all data has been sent.
constexpr double kFullProgress = 199.0;

std::span<const std::uint8_t> nameField(FrameView frame, int slot) {
    return frame.subspan(kDataOffset + kFieldSize * static_cast<std::size_t>(slot), kFieldSize);
}

/// A character of an AMP name. What the device means by bytes beyond ASCII is not known; a name of them must not look
/// like an empty slot.
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
            return receiveIRAcknowledgement(frame);
        case CMD_AMP_DATA:
            return receiveAMPAcknowledgement(frame);
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
        cab_.names.setName(slot, QString::fromLatin1(name.c_str()));
    }
}

void KelvoAppDelegate::receiveAmpNames(FrameView frame) {
    for (int slot = 0; slot < kTableRows; ++slot) {
        QString name;
        for (const std::uint8_t byte : nameField(frame, slot)) {
            name += ampCharacter(byte);
            NSLog(name.toStdString());
        }
        amp_.names.setName(slot, name);
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
            // A device that counts too far leaves the bar where it was.
        }
    } else if (progress <= 1.0) {
        earlyProgress_ = progress;
    }
}

void KelvoAppDelegate::receiveIRAcknowledgement(FrameView frame) {
    const std::lock_guard lock(transferMutex_);
    if (goesOn(kIRTransfer, frame[kDataOffset], transfer_.IRTick, transfer_.IRProgress, cab_.model)) {
        sendIRData();
    }
}

void KelvoAppDelegate::receiveAMPAcknowledgement(FrameView frame) {
    const std::lock_guard lock(transferMutex_);
    if (goesOn(kAMPTransfer, frame[kDataOffset], transfer_.AMPTick, transfer_.AMPProgress, amp_.model)) {
        sendAMPData();
    }
}

bool KelvoAppDelegate::goesOn(const TransferKind& kind, std::uint8_t phase, std::uint8_t& tick,
                              TransferProgress& progress, const std::shared_ptr<SlotTableModel>& model) {
    if (phase < 1 || phase > kind.namePhase) {
        return false;
    }
    showTransfer(model, phase);
    if (phase == progress.acknowledged + 1) {
        progress.acknowledged = phase;
        if (phase == kind.namePhase) {
            tellEnd(progress.number, model);
        }
    }
    if (phase == kind.namePhase) {
        // Of either kind: it is the IR's phase that ends here, and the AMP's stays at its last packet.
        transfer_.IRTick = 0;
        return false;
    }
    tick = static_cast<std::uint8_t>(phase + 1);
    return true;
}

}  // namespace kelvo
