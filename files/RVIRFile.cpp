#include "RVIRFile.h"

#include <algorithm>
#include <utility>

namespace kelvo {

bool RVIRFile::OpenFilePath(const QString& path) {
    IsFileOpenSuccess = false;
    pIRData = {};
    pFileBuff = {};
    if (auto file = readWholeFile(path)) {
        FileSize = static_cast<std::uint32_t>(file->size);
        isInteralIR = isInternalIR(*file);
        IsFileOpenSuccess = isInteralIR ? openInternal(*file) : openWave(*file, path);
        if (IsFileOpenSuccess) {
            pFileBuff = std::move(*file);
        }
    }
    return IsFileOpenSuccess;
}

bool RVIRFile::openInternal(ByteView file) {
    const std::string_view name = internalName(file);
    const auto end = std::ranges::copy(name, CharFileNane.begin()).out;
    if (name.size() < kInternalNameLength) {
        *end = '\0';
    }
    pIRData = file.subspan(std::min(kInternalSamples, file.size()));
    return true;
}

bool RVIRFile::openWave(ByteView file, const QString& path) {
    const WaveLayout wave = findWave(file);
    if (wave.broken != WaveRule::None) {
        return false;
    }
    riffheader = wave.riffheader;
    fmt_block = wave.fmt_block;
    data_block = wave.data_block;
    pIRData = file.subspan(wave.samplesOffset);
    PointSize = wave.frames;
    storeName(irName(path), CharFileNane);
    return true;
}

bool RVIRFile::GetIRDataBuffer(IRPoints points) const {
    if (!IsFileOpenSuccess) {
        return false;
    }
    if (isInteralIR) {
        unpackInternal(pIRData, points);
        return true;
    }
    return convertWave(pIRData, fmt_block.format, PointSize, points).has_value();
}

}  // namespace kelvo
