#include "AMPFile.h"

#include <algorithm>
#include <numeric>
#include <string_view>

#include "LittleEndian.h"
#include "PrintableText.h"
#include "WholeFile.h"

namespace kelvo {
namespace {

constexpr std::size_t kWordSize = 4;
constexpr std::size_t kChecksumOffset = kAmpWordCount * kWordSize;
constexpr std::string_view kTrailer = "2.0";

QString hex(std::uint32_t word) {
    return QStringLiteral("0x%1").arg(word, 8, 16, QLatin1Char('0'));
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
    scanWords(*file);
    refusal = verdict(*file);
    if (!refusal.isEmpty()) {
        return false;
    }
    // ".apm", not ".amp": names with several extensions are known to users in this form.
    wholeName = displayName(path, QStringLiteral(".amp"), QStringLiteral(".apm"));
    storeName(wholeName, CharFileName);
    IsFileOpenSuccess = true;
    return true;
}

void AMPFile::scanWords(std::span<const std::uint8_t> file) {
    const std::size_t complete = file.size() / kWordSize;
    wordsRead = std::min(complete, ampSwBuffer.size());
    for (std::size_t i = 0; i < wordsRead; ++i) {
        ampSwBuffer[i] = littleEndian(file, i * kWordSize, kWordSize);
    }
    hasChecksum = complete > ampSwBuffer.size();
    checksum = hasChecksum ? littleEndian(file, kChecksumOffset, kWordSize) : 0;
}

/// Empty for a good file, else what is wrong with it.
QString AMPFile::verdict(std::span<const std::uint8_t> file) const {
    const auto words = std::span(ampSwBuffer).first(wordsRead);
    const std::uint32_t sum = std::accumulate(words.begin(), words.end(), std::uint32_t{0});
    if (sum != checksum && !hasChecksum) {
        return QStringLiteral("it is %1 bytes long and ends before its checksum, which takes the bytes %2 to %3")
            .arg(file.size())
            .arg(kChecksumOffset)
            .arg(kChecksumOffset + kWordSize - 1);
    }
    if (sum != checksum) {
        return QStringLiteral("its words add up to %1, but its checksum, at byte %2, is %3")
            .arg(hex(sum))
            .arg(kChecksumOffset)
            .arg(hex(checksum));
    }
    const auto end = file.last(std::min(kTrailer.size(), file.size()));
    if (!std::ranges::equal(end, kTrailer)) {
        return QStringLiteral("its last three bytes are \"%1\" instead of \"2.0\"").arg(printableText(end));
    }
    return {};
}

void AMPFile::GetBuffer(std::span<std::uint32_t, kAmpWordCount> words) const {
    std::ranges::copy(ampSwBuffer, words.begin());
}

}  // namespace kelvo
