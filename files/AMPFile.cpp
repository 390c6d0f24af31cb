#include "AMPFile.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <utility>

namespace kelvo {
namespace {

constexpr std::size_t kWordSize = 4;
constexpr std::string_view kTrailer = "2.0";

}  // namespace

PointBuffer AmpPiontBuff{};

AmpLayout scanAmp(FileView file, std::span<std::uint32_t, kPointCount> words) {
    const ByteView bytes = file.part(0, kAmpChecksumOffset + kWordSize);
    const std::size_t complete = bytes.size() / kWordSize;
    const auto held = words.first(std::min(complete, words.size()));
    for (std::size_t i = 0; i < held.size(); ++i) {
        held[i] = littleEndian(bytes.subspan(i * kWordSize).first<kWordSize>());
    }
    AmpLayout amp{.words = held.size(), .sum = std::accumulate(held.begin(), held.end(), std::uint32_t{0})};
    if (complete > words.size()) {
        amp.checksum = littleEndian(bytes.last<kWordSize>());
    }
    const std::size_t end = file.size() - std::min(kTrailer.size(), file.size());
    amp.hasTrailer = std::ranges::equal(file.part(end, kTrailer.size()), kTrailer);
    return amp;
}

bool AMPFile::OpenFile(const QString& path) {
    IsFileOpenSuccess = false;
    pFileBuff = {};
    auto file = readWholeFile(path);
    if (!file) {
        return false;
    }
    FileSize = static_cast<std::uint32_t>(file->size);
    const AmpLayout amp = scanAmp(*file, ampSwBuffer.AmpIntBuffer);
    if (!amp.isSound()) {
        return false;
    }
    storeName(ampName(path), CharFileName);
    pFileBuff = std::move(*file);
    IsFileOpenSuccess = true;
    GetBuffer(AmpPiontBuff);
    return true;
}

void AMPFile::GetBuffer(std::span<std::uint32_t, kPointCount> words) const {
    std::ranges::copy(ampSwBuffer.AmpIntBuffer, words.begin());
}

}  // namespace kelvo
