// The controller's answers to what the device says.

#include <algorithm>
#include <array>
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

/// A character of an AMP name. The device pads names with bytes of its own choice: whatever is not printable ASCII is
/// shown as a space.
char ampCharacter(std::uint8_t byte) {
    return byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : ' ';
}

QString numbered(int number, const std::string& name) {
    return QStringLiteral("%1.").arg(number) + QString::fromLatin1(name).toUpper();
}

}  // namespace

void KelvoAppDelegate::CMD_CallBack(FrameView frame) {
    struct Handler {
        std::uint8_t command;
        void (KelvoAppDelegate::*handle)(FrameView frame);
    };
    static constexpr std::array<Handler, 5> kHandlers{{
        {CMD_CAB_NAMES, &KelvoAppDelegate::receiveCabNames},
        {CMD_AMP_NAMES, &KelvoAppDelegate::receiveAmpNames},
        {CMD_PRESET_PARA, &KelvoAppDelegate::receivePresetPara},
        {CMD_IR_DATA, &KelvoAppDelegate::receiveIRAcknowledgement},
        {CMD_AMP_DATA, &KelvoAppDelegate::receiveAMPAcknowledgement},
    }};
    for (const Handler& handler : kHandlers) {
        if (handler.command == frame[kCommandOffset]) {
            (this->*handler.handle)(frame);
        }
    }
}

void KelvoAppDelegate::receiveCabNames(FrameView frame) {
    for (int slot = 0; slot < kTableRows; ++slot) {
        std::string name;
        for (const std::uint8_t byte : nameField(frame, slot)) {
            name += static_cast<char>(byte & 0x7F);
        }
        // The name ends at its first NUL.
        storeLabel(IRNameArr_, slot, numbered(slot + kFirstCabNumber, name.c_str()));
    }
}

void KelvoAppDelegate::receiveAmpNames(FrameView frame) {
    for (int slot = 0; slot < kTableRows; ++slot) {
        std::string name;
        for (const std::uint8_t byte : nameField(frame, slot)) {
            name += ampCharacter(byte);
            NSLog(name);
        }
        storeLabel(AMPNameArr_, slot, numbered(slot + kFirstAmpNumber, name));
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
    const std::uint8_t phase = frame[kDataOffset];
    const std::lock_guard lock(transferMutex_);
    if (phase >= 1 && phase < kIRTransfer.namePhase) {
        transfer_.IRTick = static_cast<std::uint8_t>(phase + 1);
        sendIRData();
    } else if (phase == kIRTransfer.namePhase) {
        transfer_.IRTick = 0;
    }
}

void KelvoAppDelegate::receiveAMPAcknowledgement(FrameView frame) {
    const std::uint8_t phase = frame[kDataOffset];
    const std::lock_guard lock(transferMutex_);
    if (phase >= 1 && phase < kAMPTransfer.namePhase) {
        transfer_.AMPTick = static_cast<std::uint8_t>(phase + 1);
        sendAMPData();
    } else if (phase == kAMPTransfer.namePhase) {
        // It is the IR's phase that ends here; the AMP's stays at its last packet.
        transfer_.IRTick = 0;
    }
}

}  // namespace kelvo
