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

std::array<std::uint32_t, kAmpWordCount> AmpPiontBuff{};

AmpLayout scanAmp(ByteView file, std::span<std::uint32_t, kAmpWordCount> words) {
    const std::size_t complete = file.size() / kWordSize;
    const auto held = words.first(std::min(complete, words.size()));
    for (std::size_t i = 0; i < held.size(); ++i) {
        held[i] = littleEndian(file.subspan(i * kWordSize).first<kWordSize>());
    }
    const auto end = file.last(std::min(kTrailer.size(), file.size()));
    AmpLayout amp{.words = held.size(),
                  .sum = std::accumulate(held.begin(), held.end(), std::uint32_t{0}),
                  .hasTrailer = std::ranges::equal(end, kTrailer)};
    if (complete > words.size()) {
        amp.checksum = littleEndian(file, kAmpChecksumOffset, kWordSize);
    }
    return amp;
}

bool AMPFile::OpenFile(const QString& path, std::unique_lock<std::mutex>* guard) {
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
    if (guard != nullptr) {
        guard->lock();
    }
    GetBuffer(AmpPiontBuff);
    return true;
}

void AMPFile::GetBuffer(std::span<std::uint32_t, kAmpWordCount> words) const {
    std::ranges::copy(ampSwBuffer.AmpIntBuffer, words.begin());
}

}  // namespace kelvo
