#include "Notes.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <initializer_list>

#include "PrintableText.h"

namespace kelvo {
namespace {

constexpr std::uint32_t kHasSubFormat = 0xFFFE;
constexpr double kHeardDeviation = 1.0;  // dB
constexpr double kEnoughEnergy = 0.95;
constexpr double kHeardOnset = 1.0;        // ms
constexpr std::size_t kSubFormatTag = 32;  // from the fmt chunk's id on

struct Note {
    bool applies;
    QString text;
};

QStringList thoseThatApply(std::initializer_list<Note> notes) {
    QStringList texts;
    for (const Note& note : notes) {
        if (note.applies) {
            texts += note.text;
        }
    }
    return texts;
}

bool isPrintableAscii(char byte) {
    return byte >= ' ' && byte <= '~';
}

Note strayChunk(FileView file, const char* id, std::size_t offset) {
    return {!isChunk(file, offset),
            QStringLiteral(
                "its first \"%1\", at byte %2, is used, though by the sizes of the chunks before it no chunk begins "
                "there")
                .arg(QLatin1StringView(id))
                .arg(offset)};
}

/// How many of the first `frames` frames have a first sample that is NaN or beyond -1.0 to 1.0. Such samples wrap when
/// they are decoded.
std::size_t countBeyondFullScale(FileView samples, std::size_t stride, std::size_t frames) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < frames; ++i) {
        // NaN fails this comparison, so it is counted.
        count += std::abs(std::bit_cast<float>(samples.number(i * stride, 4))) <= 1.0F ? 0U : 1U;
    }
    return count;
}

QString otherFormatTag(std::uint32_t tag, std::uint32_t bitsPerSample) {
    const bool isFloat = bitsPerSample == kFloatBits;
    return QStringLiteral("its format tag is %1, but %2-bit samples are always read as %3 (tag %4)")
        .arg(tag)
        .arg(bitsPerSample)
        .arg(isFloat ? QStringLiteral("floats") : QStringLiteral("integers"))
        .arg(isFloat ? kFloatTag : kIntegerTag);
}

/// Losses between the file and the pedal that a guitarist may hear.
QStringList soundNotes(const WaveFacts& facts) {
    if (!facts.whole) {
        return {};
    }
    const Deviation deviation = facts.deviation.value_or(Deviation{});
    return thoseThatApply({
        {std::abs(deviation.decibels) > kHeardDeviation,
         QStringLiteral("its response is %1 dB %2 the file's at %3 Hz; %4")
             .arg(std::abs(deviation.decibels), 0, 'f', 1)
             .arg(deviation.decibels < 0.0 ? QStringLiteral("below") : QStringLiteral("above"))
             .arg(deviation.frequency)
             .arg(facts.format->sampleRate != kIRPointRate || facts.format->bitsPerSample == 8
                      ? QStringLiteral("a copy by --prepare is closer")
                      : QStringLiteral("only a shorter response is sent whole"))},
        {facts.whole->energy < kEnoughEnergy,
         QStringLiteral("only %1 % of its energy lies within the %2 points; a shorter response, or one without silence "
                        "before its sound, keeps more")
             .arg(100.0 * facts.whole->energy, 0, 'f', 1)
             .arg(kPointCount)},
        {facts.whole->onset > kHeardOnset,
         QStringLiteral("its sound begins after %1 ms, which the pedal plays as a delay; a copy by --prepare has none")
             .arg(facts.whole->onset, 0, 'f', 1)},
    });
}

}  // namespace

QStringList nameNotes(QByteArrayView sent, const QByteArray& whole) {
    const bool isBroken = !sent.isValidUtf8();
    return thoseThatApply({
        {sent != whole, QStringLiteral("its name is cut%1; the whole one is \"%2\"")
                            .arg(isBroken ? QStringLiteral(" inside a character") : QString(), printableText(whole))},
        {!std::ranges::all_of(sent, isPrintableAscii),
         QStringLiteral("its name is not all printable ASCII; the pedal gets the bytes %1")
             .arg(QLatin1StringView(sent.toByteArray().toHex(' ')))},
    });
}

std::uint32_t formatTag(FileView file, const WaveLayout& wave) {
    const std::uint32_t tag = wave.fmt_block.format.formatTag;
    return tag == kHasSubFormat ? file.number(wave.fmtOffset + kSubFormatTag, 2) : tag;
}

bool isChunk(FileView file, std::size_t offset) {
    std::uint64_t begin = sizeof(RIFF_HEADER);
    while (begin < offset) {
        const std::uint32_t size = file.number(static_cast<std::size_t>(begin) + sizeof(FourChars), 4);
        begin += sizeof(DATA_BLOCK) + std::uint64_t{size} + size % 2;
    }
    return begin == offset;
}

QStringList waveNotes(FileView file, const WaveLayout& wave, const WaveFacts& facts) {
    const WAVE_FORMAT& format = wave.fmt_block.format;
    const std::size_t held = wave.samplesSize;
    const bool isUsable = hasUsableChannel(format.channels);
    const bool isFloat = format.bitsPerSample == kFloatBits;
    const std::size_t wanted = findIRRate(format.sampleRate)->frameCap;
    const ByteView samples = file.part(wave.samplesOffset, kMostSampleBytes);
    const std::size_t beyond =
        isFloat ? countBeyondFullScale(samples, std::size_t{4} * format.channels, facts.framesUsed) : 0;
    const std::uint32_t tag = formatTag(file, wave);
    return thoseThatApply({
               {!isUsable,
                QStringLiteral("its %1 channels give silence; only one channel, or the first of two, is used")
                    .arg(format.channels)},
               {wave.data_block.size > held,
                QStringLiteral(
                    "its \"data\" chunk, at byte %1, declares %2 bytes of samples, of which the file contains %3")
                    .arg(wave.dataOffset)
                    .arg(wave.data_block.size)
                    .arg(held)},
               {isUsable && facts.framesUsed < wanted,
                QStringLiteral("%1 of the %2 frames that are used at %3 Hz are missing and count as silence")
                    .arg(wanted - facts.framesUsed)
                    .arg(wanted)
                    .arg(format.sampleRate)},
               {format.bitsPerSample == 8,
                QStringLiteral(
                    "its 8-bit samples are read as signed numbers; their silence, 0x80, becomes negative full scale")},
               {beyond > 0,
                QStringLiteral("%1 of the %2 frames used are not within -1.0 to 1.0 and wrap to other levels")
                    .arg(beyond)
                    .arg(facts.framesUsed)},
               {tag != (isFloat ? kFloatTag : kIntegerTag), otherFormatTag(tag, format.bitsPerSample)},
               strayChunk(file, "fmt ", wave.fmtOffset),
               strayChunk(file, "data", wave.dataOffset),
               {isUsable && facts.peak == 0.0, QStringLiteral("all its points are zero")},
           }) +
           soundNotes(facts);
}

QStringList internalNotes(const WaveFacts& facts) {
    return thoseThatApply({
        {facts.framesUsed < kPointCount, QStringLiteral("%1 of its %2 points are missing and count as silence")
                                             .arg(kPointCount - facts.framesUsed)
                                             .arg(kPointCount)},
        {facts.peak == 0.0, QStringLiteral("all its points are zero")},
    });
}

QStringList ampNotes(const AmpLayout& amp) {
    return thoseThatApply({
        {!amp.checksum, QStringLiteral("it ends before its checksum and is accepted because its words add up to 0")},
        {amp.words < kPointCount, QStringLiteral("%1 of the %2 words are missing and are sent as 0")
                                      .arg(kPointCount - amp.words)
                                      .arg(kPointCount)},
    });
}

}  // namespace kelvo
