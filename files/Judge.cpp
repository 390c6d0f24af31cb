#include "Judge.h"

#include <QFile>
#include <array>

#include "IRConversion.h"

namespace kelvo {

bool IRVerdict::isAccepted() const {
    return !failure && (isInternal || (wave.broken == WaveRule::None && isConvertible(wave.fmt_block.format)));
}

IRVerdict judgeIR(DiskFile& file) {
    IRVerdict verdict{.isInternal = isInternalIR(file)};
    if (!verdict.isInternal) {
        verdict.wave = findWave(file);
    }
    verdict.failure = file.failure();
    return verdict;
}

AmpVerdict judgeAmp(DiskFile& file) {
    std::array<std::uint32_t, kPointCount> words{};
    AmpVerdict verdict{.amp = scanAmp(file, words)};
    verdict.failure = file.failure();
    return verdict;
}

IRVerdict judgeIRFile(const QString& path, const std::stop_token& stop) {
    DiskFile file(QFile::encodeName(path), stop);
    return judgeIR(file);
}

AmpVerdict judgeAmpFile(const QString& path, const std::stop_token& stop) {
    DiskFile file(QFile::encodeName(path), stop);
    return judgeAmp(file);
}

}  // namespace kelvo
