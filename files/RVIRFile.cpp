#include "RVIRFile.h"

#include <algorithm>
#include <optional>

#include "LittleEndian.h"
#include "WholeFile.h"

namespace kelvo {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::string_view kInternalMagic = "TavikIR";
constexpr std::size_t kInternalNameIndex = 7;
constexpr std::size_t kInternalNameLength = 15;
constexpr std::size_t kInternalSamples = 512;
constexpr std::size_t kInternalSampleSize = 3;

constexpr std::size_t kFormType = 8;

constexpr std::size_t kFmtBlockSize = 24;
constexpr std::size_t kFmtChannels = 10;
constexpr std::size_t kFmtSampleRate = 12;
constexpr std::size_t kFmtBitsPerSample = 22;

constexpr std::size_t kDataHeaderSize = 8;
constexpr std::size_t kDataSize = 4;

bool standsAt(Bytes file, std::size_t offset, std::string_view text) {
    return file.size() >= offset && file.size() - offset >= text.size() &&
           std::ranges::equal(file.subspan(offset, text.size()), text);
}

/// The file from the first `id` on, when that is at least `size` bytes.
std::optional<Bytes> findChunk(Bytes file, std::string_view id, std::size_t size) {
    const auto found = std::search(file.begin(), file.end(), id.begin(), id.end());
    const Bytes chunk = file.subspan(static_cast<std::size_t>(found - file.begin()));
    return chunk.size() >= size ? std::optional(chunk) : std::nullopt;
}

}  // namespace

std::array<std::string_view, 30> FileNameBuff{};

bool RVIRFile::OpenFilePath(const QString& path) {
    IsFileOpenSuccess = false;
    pIRData = 0;
    pFileBuff = readWholeFile(path).value_or(std::vector<std::uint8_t>{});
    if (pFileBuff.empty()) {
        return false;
    }
    FileSize = static_cast<std::uint32_t>(pFileBuff.size());
    isInteralIR = standsAt(pFileBuff, 0, kInternalMagic);
    IsFileOpenSuccess = isInteralIR ? openInternal() : openWave(path);
    if (!IsFileOpenSuccess) {
        pFileBuff = {};
    }
    return IsFileOpenSuccess;
}

bool RVIRFile::openInternal() {
    const std::size_t index = littleEndian(pFileBuff, kInternalNameIndex, 1);
    const bool hasName = pFileBuff.size() > kInternalNameIndex && index < FileNameBuff.size();
    const std::string_view name = hasName ? FileNameBuff[index].substr(0, kInternalNameLength) : "";
    *std::ranges::copy(name, CharFileNane.begin()).out = '\0';
    return true;
}

bool RVIRFile::openWave(const QString& path) {
    if (!standsAt(pFileBuff, 0, "RIFF") || !standsAt(pFileBuff, kFormType, "WAVE")) {
        return false;
    }
    const auto fmt = findChunk(pFileBuff, "fmt ", kFmtBlockSize);
    const auto data = findChunk(pFileBuff, "data", kDataHeaderSize);
    if (!fmt || !data) {
        return false;
    }
    fmt_block = {.channels = littleEndian(*fmt, kFmtChannels, 2),
                 .sampleRate = littleEndian(*fmt, kFmtSampleRate, 4),
                 .bitsPerSample = littleEndian(*fmt, kFmtBitsPerSample, 2)};
    const std::uint32_t frameSize = (fmt_block.bitsPerSample >> 3) * fmt_block.channels;
    if (frameSize == 0) {
        return false;
    }
    pIRData = pFileBuff.size() - data->size() + kDataHeaderSize;
    PointSize = littleEndian(*data, kDataSize, 4) / frameSize;
    storeName(displayName(path, QStringLiteral(".wav"), QStringLiteral(".wav")).toUpper(), CharFileNane);
    return true;
}

bool RVIRFile::GetIRDataBuffer(std::span<std::uint32_t, kIRPointCount> points) const {
    if (!IsFileOpenSuccess) {
        return false;
    }
    return isInteralIR ? unpackInternal(points) : convertWave(points);
}

bool RVIRFile::unpackInternal(std::span<std::uint32_t, kIRPointCount> points) const {
    for (std::size_t k = 0; k < points.size(); ++k) {
        points[k] = littleEndian(pFileBuff, kInternalSamples + k * kInternalSampleSize, kInternalSampleSize);
    }
    return true;
}

bool RVIRFile::convertWave(std::span<std::uint32_t, kIRPointCount> points) const {
    const IRRate* rate = findIRRate(fmt_block.sampleRate);
    if (rate == nullptr) {
        return false;
    }
    IRPointBuffer decoded{};
    if (!decodeFirstChannel(Bytes(pFileBuff).subspan(pIRData), fmt_block.channels, fmt_block.bitsPerSample,
                            std::min<std::size_t>(PointSize, rate->frameCap), decoded)) {
        return false;
    }
    if (rate->ratio == 0.0F) {
        std::ranges::copy_n(decoded.begin(), kIRPointCount, points.begin());
        return true;
    }
    const auto sampleRate = static_cast<std::int32_t>(rate->sampleRate);
    std::array<float, kIRFrameCount> EnterBufferF{};
    std::array<float, kIRPointCount> ResampOut{};
    ICovertoF(decoded, sampleRate, EnterBufferF);
    Resample(EnterBufferF, sampleRate, ResampOut);
    FCovertoI(ResampOut, points);
    return true;
}

}  // namespace kelvo
