#include "AMPFile.h"

#include <algorithm>
#include <string_view>

#include "LittleEndian.h"
#include "WholeFile.h"

namespace kelvo {
namespace {

constexpr std::size_t kWordSize = 4;
constexpr std::string_view kTrailer = "2.0";

QString hex(std::uint32_t word) {
    return QStringLiteral("0x%1").arg(word, 8, 16, QLatin1Char('0'));
}

/// Fills `words` from the complete words of `file`. Returns nothing when their sum is the checksum behind them, else
/// what is wrong; the checksum of a file that ends before it counts as 0.
QString scanWords(std::span<const std::uint8_t> file, std::span<std::uint32_t, kAmpWordCount> words) {
    const std::size_t complete = file.size() / kWordSize;
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < std::min(complete, words.size()); ++i) {
        words[i] = littleEndian(file, i * kWordSize, kWordSize);
        sum += words[i];
    }
    const std::size_t checksumOffset = words.size() * kWordSize;
    const bool hasChecksum = complete > words.size();
    const std::uint32_t checksum = hasChecksum ? littleEndian(file, checksumOffset, kWordSize) : 0;
    if (sum == checksum) {
        return {};
    }
    if (!hasChecksum) {
        return QStringLiteral("it is %1 bytes long and ends before the checksum at byte %2")
            .arg(file.size())
            .arg(checksumOffset);
    }
    return QStringLiteral("its words add up to %1, but the checksum at byte %2 is %3")
        .arg(hex(sum))
        .arg(checksumOffset)
        .arg(hex(checksum));
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
    const auto file = readWholeFile(path, &refusal);
    if (!file) {
        return false;
    }
    FileSize = static_cast<std::uint32_t>(file->size);
    refusal = scanWords(*file, ampSwBuffer);
    if (refusal.isEmpty() && !hasTrailer(*file)) {
        refusal = QStringLiteral("its last three bytes are not \"2.0\"");
    }
    if (!refusal.isEmpty()) {
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
