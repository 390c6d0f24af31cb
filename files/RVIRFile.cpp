#include "RVIRFile.h"

#include <algorithm>

#include "LittleEndian.h"
#include "PrintableText.h"

namespace kelvo {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::string_view kInternalMagic = "TavikIR";
constexpr std::size_t kInternalNameIndex = 7;
constexpr std::size_t kInternalNameLength = 15;
constexpr std::size_t kInternalSamples = 512;
constexpr std::size_t kInternalSampleSize = 3;

constexpr std::size_t kFormType = 8;
constexpr std::size_t kFirstChunk = 12;
constexpr std::size_t kChunkHeaderSize = 8;
constexpr std::size_t kChunkSize = 4;

constexpr std::size_t kFmtBlockSize = 24;
constexpr std::size_t kFmtFormatTag = 8;
constexpr std::size_t kFmtChannels = 10;
constexpr std::size_t kFmtSampleRate = 12;
constexpr std::size_t kFmtBitsPerSample = 22;
constexpr std::size_t kFmtSubFormatTag = 32;
constexpr std::uint32_t kHasSubFormat = 0xFFFE;

/// At most `length` bytes from `offset` on.
Bytes piece(Bytes file, std::size_t offset, std::size_t length) {
    const Bytes rest = file.subspan(std::min(offset, file.size()));
    return rest.first(std::min(length, rest.size()));
}

bool standsAt(Bytes file, std::size_t offset, std::string_view text) {
    return std::ranges::equal(piece(file, offset, text.size()), text);
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

/// The file from the first `id` on, empty when there is none.
Bytes findChunk(Bytes file, std::string_view id) {
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
            return rest.subspan(static_cast<std::size_t>(found - block.begin()));
        }
    }
    return {};
}

}  // namespace

std::array<std::string_view, 30> FileNameBuff{};

bool RVIRFile::OpenFilePath(const QString& path) {
    IsFileOpenSuccess = false;
    pIRData = 0;
    pFileBuff = readWholeFile(path, &refusal).value_or(FileContent{});
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
    wholeName = QString::fromUtf8(name.data(), std::ssize(name));
    return true;
}

bool RVIRFile::refuse(const QString& reason) {
    refusal = reason;
    return false;
}

/// What stands at `field` of the fmt chunk is not among what is allowed.
bool RVIRFile::refuseFormat(const char* what, std::size_t field, std::uint32_t found, const char* allowed) {
    return refuse(QStringLiteral("its %1, at byte %2, is %3; allowed are %4")
                      .arg(QLatin1StringView(what))
                      .arg(fmt_block.offset + field)
                      .arg(found)
                      .arg(QLatin1StringView(allowed)));
}

bool RVIRFile::refuseDepth() {
    return refuseFormat("number of bits per sample", kFmtBitsPerSample, fmt_block.bitsPerSample,
                        "8, 16 and 24 (integers) and 32 (floats)");
}

bool RVIRFile::requireText(std::size_t offset, std::string_view text) {
    const Bytes found = piece(pFileBuff, offset, text.size());
    return std::ranges::equal(found, text) ||
           refuse(QStringLiteral("it is no wave file: byte %1 says \"%2\" instead of \"%3\"")
                      .arg(offset)
                      .arg(printableText(found), QLatin1StringView(text.data(), std::ssize(text))));
}

/// The file from the first `id` on, when that is at least `size` bytes; else empty, with the refusal told.
Bytes RVIRFile::findWhole(std::string_view id, std::size_t size) {
    const Bytes chunk = findChunk(pFileBuff, id);
    if (chunk.size() >= size) {
        return chunk;
    }
    const QLatin1StringView name(id.data(), static_cast<qsizetype>(id.size()));
    refusal = chunk.empty()
                  ? QStringLiteral("it has no \"%1\" chunk").arg(name)
                  : QStringLiteral(
                        "its \"%1\" chunk, at byte %2, is cut off by the end of the file after %3 of the %4 bytes "
                        "that it needs at least")
                        .arg(name)
                        .arg(pFileBuff.size - chunk.size())
                        .arg(chunk.size())
                        .arg(size);
    return {};
}

bool RVIRFile::openWave(const QString& path) {
    if (!requireText(0, "RIFF") || !requireText(kFormType, "WAVE")) {
        return false;
    }
    const Bytes fmt = findWhole("fmt ", kFmtBlockSize);
    const Bytes data = fmt.empty() ? Bytes() : findWhole("data", kChunkHeaderSize);
    if (data.empty()) {
        return false;
    }
    const std::uint32_t tag = littleEndian(fmt, kFmtFormatTag, 2);
    fmt_block = {.offset = pFileBuff.size - fmt.size(),
                 .formatTag = tag == kHasSubFormat ? littleEndian(fmt, kFmtSubFormatTag, 2) : tag,
                 .channels = littleEndian(fmt, kFmtChannels, 2),
                 .sampleRate = littleEndian(fmt, kFmtSampleRate, 4),
                 .bitsPerSample = littleEndian(fmt, kFmtBitsPerSample, 2)};
    const std::uint32_t frameSize = (fmt_block.bitsPerSample >> 3) * fmt_block.channels;
    if (frameSize == 0) {
        return fmt_block.channels == 0 ? refuseFormat("number of channels", kFmtChannels, 0, "1 and 2") : refuseDepth();
    }
    data_block = {.offset = pFileBuff.size - data.size(),
                  .declaredSize = littleEndian(data, kChunkSize, 4),
                  .heldSize = data.size() - kChunkHeaderSize};
    data_block.heldFrames = std::min<std::size_t>(data_block.declaredSize, data_block.heldSize) / frameSize;
    pIRData = data_block.offset + kChunkHeaderSize;
    PointSize = data_block.declaredSize / frameSize;
    wholeName = displayName(path, QStringLiteral(".wav"), QStringLiteral(".wav")).toUpper();
    storeName(wholeName, CharFileNane);
    return true;
}

bool RVIRFile::chunkBeginsAt(std::size_t offset) const {
    std::uint64_t begin = kFirstChunk;
    while (begin < offset) {
        const std::uint32_t size = littleEndian(pFileBuff, static_cast<std::size_t>(begin) + kChunkSize, 4);
        begin += kChunkHeaderSize + std::uint64_t{size} + size % 2;
    }
    return begin == offset;
}

std::size_t RVIRFile::framesBeyondFullScale() const {
    return countBeyondFullScale(Bytes(pFileBuff).subspan(pIRData), fmt_block.channels, fmt_block.bitsPerSample,
                                framesUsed);
}

bool RVIRFile::GetIRDataBuffer(std::span<std::uint32_t, kIRPointCount> points) {
    if (!IsFileOpenSuccess) {
        return false;
    }
    refusal.clear();
    return isInteralIR ? unpackInternal(points) : convertWave(points);
}

bool RVIRFile::unpackInternal(std::span<std::uint32_t, kIRPointCount> points) {
    for (std::size_t k = 0; k < points.size(); ++k) {
        points[k] = littleEndian(pFileBuff, kInternalSamples + k * kInternalSampleSize, kInternalSampleSize);
    }
    const std::size_t sampleBytes = pFileBuff.size - std::min(kInternalSamples, pFileBuff.size);
    framesWanted = points.size();
    framesUsed = std::min(sampleBytes / kInternalSampleSize, framesWanted);
    return true;
}

bool RVIRFile::convertWave(std::span<std::uint32_t, kIRPointCount> points) {
    const IRRate* rate = findIRRate(fmt_block.sampleRate);
    if (rate == nullptr) {
        return refuseFormat("sample rate in Hz", kFmtSampleRate, fmt_block.sampleRate, "44100, 48000, 88200 and 96000");
    }
    IRPointBuffer decoded{};
    const auto frames =
        decodeFirstChannel(Bytes(pFileBuff).subspan(pIRData), fmt_block.channels, fmt_block.bitsPerSample,
                           std::min<std::size_t>(PointSize, rate->frameCap), decoded);
    if (!frames) {
        return refuseDepth();
    }
    framesUsed = *frames;
    framesWanted = rate->frameCap;
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
