#include "AMPFile.h"

#include <algorithm>
#include <string_view>

#include "LittleEndian.h"
#include "WholeFile.h"

namespace kelvo {
namespace {

constexpr std::size_t kWordSize = 4;
constexpr std::string_view kTrailer = "2.0";

/// Fills `words` from the complete words of `file` and says whether their sum is the checksum behind them; the checksum
/// of a file that ends before it counts as 0.
bool scanWords(std::span<const std::uint8_t> file, std::span<std::uint32_t, kAmpWordCount> words) {
    const std::size_t complete = file.size() / kWordSize;
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < std::min(complete, words.size()); ++i) {
        words[i] = littleEndian(file, i * kWordSize, kWordSize);
        sum += words[i];
    }
    return sum == (complete > words.size() ? littleEndian(file, words.size() * kWordSize, kWordSize) : 0);
}

bool hasTrailer(std::span<const std::uint8_t> file) {
    return file.size() >= kTrailer.size() && std::ranges::equal(file.last(kTrailer.size()), kTrailer);
}

}  // namespace

std::array<std::uint32_t, kAmpWordCount> AmpPiontBuff{};

bool AMPFile::OpenFile(const QString& path) {
    if (!readModel(path)) {
        return false;
    }
    GetBuffer(AmpPiontBuff);
    return true;
}

bool AMPFile::readModel(const QString& path) {
    IsFileOpenSuccess = false;
    const auto file = readWholeFile(path);
    if (!file) {
        return false;
    }
    FileSize = static_cast<std::uint32_t>(file->size);
    const bool sumIsRight = scanWords(*file, ampSwBuffer);
    if (!sumIsRight || !hasTrailer(*file)) {
        return false;
    }
    // ".apm", not ".amp": names with several extensions are known to users in this form.
    storeName(displayName(path, QStringLiteral(".amp"), QStringLiteral(".apm")), CharFileName);
    IsFileOpenSuccess = true;
    return true;
}

void AMPFile::GetBuffer(std::span<std::uint32_t, kAmpWordCount> words) const {
    std::ranges::copy(ampSwBuffer, words.begin());
}

}  // namespace kelvo
