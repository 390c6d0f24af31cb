#include "IRLayout.h"

#include <algorithm>
#include <type_traits>

namespace kelvo {
namespace {

constexpr std::string_view kInternalMagic = "TavikIR";
constexpr std::size_t kInternalNameIndex = 7;

constexpr std::size_t kFormType = 8;

static_assert(sizeof(RIFF_HEADER) == 12 && sizeof(FMT_BLOCK) == 24 && sizeof(DATA_BLOCK) == 8);

bool isAt(FileView file, std::size_t offset, std::string_view text) {
    return std::ranges::equal(file.part(offset, text.size()), text);
}

/// Whether the first and the last byte of `id` occur anywhere in `block` at the right distance. Without an early exit
/// the compiler vectorises the loop, which makes it several times as fast as std::search, above all in a file full of
/// 'f'.
bool mayContain(ByteView block, std::string_view id) {
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

/// Offset of the first `id`, or the file's size if there is none.
std::size_t findChunk(FileView file, std::string_view id) {
    constexpr std::size_t kBlockSize = 4096;
    std::size_t begin = 0;
    while (begin < file.size()) {
        // An id that begins in this block may end in the next.
        const ByteView block = file.part(begin, kBlockSize + id.size() - 1);
        const auto found =
            mayContain(block, id) ? std::search(block.begin(), block.end(), id.begin(), id.end()) : block.end();
        if (found != block.end()) {
            return begin + static_cast<std::size_t>(found - block.begin());
        }
        begin += std::min(kBlockSize, file.size() - begin);
    }
    return file.size();
}

/// Removes the next field from the front of `bytes`, which contains it completely.
template <typename Field>
Field take(ByteView& bytes) {
    Field field;
    if constexpr (std::is_integral_v<Field>) {
        field = static_cast<Field>(littleEndian(bytes.first<sizeof(Field)>()));
    } else {
        std::copy_n(bytes.begin(), field.size(), field.begin());
    }
    bytes = bytes.subspan(sizeof(Field));
    return field;
}

WAVE_FORMAT takeFormat(ByteView& bytes) {
    return {take<std::uint16_t>(bytes), take<std::uint16_t>(bytes), take<std::uint32_t>(bytes),
            take<std::uint32_t>(bytes), take<std::uint16_t>(bytes), take<std::uint16_t>(bytes)};
}

/// Fills `wave` up to the first broken rule and returns that.
WaveRule firstBroken(FileView file, WaveLayout& wave) {
    ByteView rest = file.part(0, sizeof(RIFF_HEADER));
    if (!isAt(rest, 0, "RIFF")) {
        return WaveRule::RiffMark;
    }
    if (!isAt(rest, kFormType, "WAVE")) {
        return WaveRule::WaveMark;
    }
    wave.riffheader = {take<FourChars>(rest), take<std::uint32_t>(rest), take<FourChars>(rest)};
    wave.fmtOffset = findChunk(file, "fmt ");
    rest = file.part(wave.fmtOffset, sizeof(FMT_BLOCK));
    if (rest.size() < sizeof(FMT_BLOCK)) {
        return WaveRule::FmtChunk;
    }
    wave.fmt_block = {take<FourChars>(rest), take<std::uint32_t>(rest), takeFormat(rest)};
    wave.dataOffset = findChunk(file, "data");
    rest = file.part(wave.dataOffset, sizeof(DATA_BLOCK));
    if (rest.size() < sizeof(DATA_BLOCK)) {
        return WaveRule::DataChunk;
    }
    wave.data_block = {take<FourChars>(rest), take<std::uint32_t>(rest)};
    wave.samplesOffset = wave.dataOffset + sizeof(DATA_BLOCK);
    wave.samplesSize = file.size() - wave.samplesOffset;
    const std::uint32_t channels = wave.fmt_block.format.channels;
    const std::uint32_t frameSize = (std::uint32_t{wave.fmt_block.format.bitsPerSample} >> 3) * channels;
    if (frameSize == 0) {
        return channels == 0 ? WaveRule::Channels : WaveRule::Depth;
    }
    wave.frames = wave.data_block.size / frameSize;
    return WaveRule::None;
}

}  // namespace

std::array<std::string_view, 30> FileNameBuff{};

WaveLayout findWave(FileView file) {
    WaveLayout wave;
    wave.broken = firstBroken(file, wave);
    return wave;
}

bool isInternalIR(FileView file) {
    return isAt(file, 0, kInternalMagic);
}

std::string_view internalName(FileView file) {
    const std::size_t index = file.number(kInternalNameIndex, 1);
    const bool hasName = file.size() > kInternalNameIndex && index < FileNameBuff.size();
    return hasName ? FileNameBuff[index].substr(0, kInternalNameLength) : std::string_view();
}

}  // namespace kelvo
