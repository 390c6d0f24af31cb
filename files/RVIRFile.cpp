#include "RVIRFile.h"

#include <algorithm>
#include <optional>

#include "LittleEndian.h"

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

/// Whether the first and the last byte of `id` stand anywhere in `block` at their distance. Without a way out of the
/// loop the compiler makes vector code of it, which is several times as fast as std::search, above all in a file full
/// of 'f'.
bool mayHold(Bytes block, std::string_view id) {
    const auto first = static_cast<std::uint8_t>(id.front());
    const auto last = static_cast<std::uint8_t>(id.back());
    const std::size_t distance = id.size() - 1;
    const std::size_t starts = block.size() - std::min(distance, block.size());
    const std::uint8_t* const begin = block.data();
    const std::uint8_t* const end = begin + block.size() - starts;
    std::uint8_t found = 0;
    for (std::size_t i = 0; i < starts; ++i) {
        found |= static_cast<std::uint8_t>((begin[i] == first) & (end[i] == last));
    }
    return found != 0;
}

/// The file from the first `id` on, when that is at least `size` bytes.
std::optional<Bytes> findChunk(Bytes file, std::string_view id, std::size_t size) {
    constexpr std::size_t kBlockSize = 1024;
    for (std::size_t begin = 0; begin < file.size(); begin += kBlockSize) {
        const Bytes rest = file.subspan(begin);
        // An id that begins in this block may end in the next.
        const Bytes block = rest.first(std::min(kBlockSize + id.size() - 1, rest.size()));
        if (!mayHold(block, id)) {
            continue;
        }
        const auto found = std::search(block.begin(), block.end(), id.begin(), id.end());
        if (found != block.end()) {
            const Bytes chunk = rest.subspan(static_cast<std::size_t>(found - block.begin()));
            return chunk.size() >= size ? std::optional(chunk) : std::nullopt;
        }
    }
    return std::nullopt;
}

}  // namespace

std::array<std::string_view, 30> FileNameBuff{};

bool RVIRFile::OpenFilePath(const QString& path) {
    IsFileOpenSuccess = false;
    pIRData = 0;
    pFileBuff = readWholeFile(path).value_or(FileContent{});
    if (pFileBuff.size == 0) {
        return false;
    }
    FileSize = static_cast<std::uint32_t>(pFileBuff.size);
    isInteralIR = standsAt(pFileBuff, 0, kInternalMagic);
    IsFileOpenSuccess = isInteralIR ? openInternal() : openWave(path);
    if (!IsFileOpenSuccess) {
        pFileBuff = {};
    }
    return IsFileOpenSuccess;
}

bool RVIRFile::openInternal() {
    const std::size_t index = littleEndian(pFileBuff, kInternalNameIndex, 1);
    const bool hasName = pFileBuff.size > kInternalNameIndex && index < FileNameBuff.size();
    const std::string_view name = hasName ? FileNameBuff[index].substr(0, kInternalNameLength) : "";
    *std::ranges::copy(name, CharFileNane.begin()).out = '\0';
    return true;
}

bool RVIRFile::openWave(const QString& path) {
    if (!standsAt(pFileBuff, 0, "RIFF") || !standsAt(pFileBuff, kFormType, "WAVE")) {
        return false;
    }
    const auto fmt = findChunk(pFileBuff, "fmt ", kFmtBlockSize);
    const auto data = fmt ? findChunk(pFileBuff, "data", kDataHeaderSize) : std::nullopt;
    if (!data) {
        return false;
    }
    fmt_block = {.channels = littleEndian(*fmt, kFmtChannels, 2),
                 .sampleRate = littleEndian(*fmt, kFmtSampleRate, 4),
                 .bitsPerSample = littleEndian(*fmt, kFmtBitsPerSample, 2)};
    const std::uint32_t frameSize = (fmt_block.bitsPerSample >> 3) * fmt_block.channels;
    if (frameSize == 0) {
        return false;
    }
    pIRData = pFileBuff.size - data->size() + kDataHeaderSize;
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
