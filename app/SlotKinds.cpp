#include "SlotKinds.h"

#include <algorithm>

#include "AMPFile.h"
#include "ChosenFile.h"
#include "Judge.h"
#include "RVIRFile.h"

namespace kelvo {
namespace {

/// `name` up to its NUL, at most all but its last byte, then zeros.
NameBuffer terminatedName(const NameBuffer& name) {
    NameBuffer result{};
    std::copy(name.begin(), std::find(name.begin(), name.end() - 1, '\0'), result.begin());
    return result;
}

std::optional<SlotFile> readIR(const QUrl& url) {
    RVIRFile file;
    SlotFile result;
    if (!file.OpenFilePath(irPath(url)) || !file.GetIRDataBuffer(result.words)) {
        return std::nullopt;
    }
    result.name = terminatedName(file.CharFileNane);
    return result;
}

std::optional<SlotFile> readAmp(const QUrl& url) {
    AMPFile file;
    if (!file.OpenFile(ampPath(url))) {
        return std::nullopt;
    }
    return SlotFile{AmpPiontBuff, terminatedName(file.CharFileName)};
}

}  // namespace

const SlotKind kCabSlots{
    .fileType = kIRFileType,
    .title = QStringLiteral("CAB %1"),
    .accepted = QStringLiteral("Wave files of 44.1, 48, 88.2 or 96 kHz with 8, 16, 24 or 32 bits"),
    .firstNumber = 27,
    .transfer = kIRTransfer,
    .read = readIR,
    .isAccepted = [](const QUrl& url,
                     const std::stop_token& stop) { return judgeIRFile(irPath(url), stop).isAccepted(); },
};

const SlotKind kAmpSlots{
    .fileType = kAmpFileType,
    .title = QStringLiteral("AMP %1"),
    .accepted = QStringLiteral("Amp models whose path has no space and no accented letter"),
    .firstNumber = 56,
    .transfer = kAMPTransfer,
    .read = readAmp,
    .isAccepted = [](const QUrl& url,
                     const std::stop_token& stop) { return judgeAmpFile(ampPath(url), stop).isAccepted(); },
};

}  // namespace kelvo
