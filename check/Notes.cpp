#include "Notes.h"

#include <QUtf8StringView>
#include <algorithm>
#include <initializer_list>

#include "PrintableText.h"

namespace kelvo {
namespace {

constexpr std::uint32_t kIntegerTag = 1;
constexpr std::uint32_t kFloatTag = 3;

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

QString strayChunk(const char* id, std::size_t offset) {
    return QStringLiteral(
               "its first \"%1\", at byte %2, is used, though by the sizes of the chunks before it no chunk begins "
               "there")
        .arg(QLatin1StringView(id))
        .arg(offset);
}

QString otherFormatTag(std::uint32_t tag, std::uint32_t bitsPerSample) {
    const bool isFloat = bitsPerSample == kFloatBits;
    return QStringLiteral("its format tag is %1, but %2-bit samples are always taken as %3 (tag %4)")
        .arg(tag)
        .arg(bitsPerSample)
        .arg(isFloat ? QStringLiteral("floats") : QStringLiteral("integers"))
        .arg(isFloat ? kFloatTag : kIntegerTag);
}

}  // namespace

QStringList nameNotes(QByteArrayView sent, const QString& whole) {
    const QByteArray wholeUtf8 = whole.toUtf8();
    const bool isBroken = !QUtf8StringView(sent).isValidUtf8();
    return thoseThatApply({
        {sent != wholeUtf8,
         QStringLiteral("its name is cut%1; the whole one is \"%2\"")
             .arg(isBroken ? QStringLiteral(" inside a character") : QString(), printableText(wholeUtf8))},
        {!std::ranges::all_of(sent, isPrintableAscii),
         QStringLiteral("its name is not all printable ASCII; the pedal gets the bytes %1")
             .arg(QLatin1StringView(sent.toByteArray().toHex(' ')))},
    });
}

QStringList waveNotes(const RVIRFile& file, bool isSilent) {
    const std::size_t missing = file.framesWanted - file.framesUsed;
    if (file.isInteralIR) {
        return thoseThatApply({
            {missing > 0, QStringLiteral("%1 of its %2 points are missing and count as silence")
                              .arg(missing)
                              .arg(file.framesWanted)},
            {isSilent, QStringLiteral("all its points are zero")},
        });
    }
    const auto& format = file.fmt_block;
    const auto& data = file.data_block;
    const bool isUsable = hasUsableChannel(format.channels);
    const std::size_t beyond = file.framesBeyondFullScale();
    return thoseThatApply({
        {!isUsable, QStringLiteral("its %1 channels give silence; only one channel, or the first of two, is used")
                        .arg(format.channels)},
        {data.declaredSize > data.heldSize,
         QStringLiteral("its \"data\" chunk, at byte %1, declares %2 bytes of samples, of which the file holds %3")
             .arg(data.offset)
             .arg(data.declaredSize)
             .arg(data.heldSize)},
        {isUsable && missing > 0,
         QStringLiteral("%1 of the %2 frames that are taken at %3 Hz are missing and count as silence")
             .arg(missing)
             .arg(file.framesWanted)
             .arg(format.sampleRate)},
        {format.bitsPerSample == 8,
         QStringLiteral("its 8-bit samples are taken as they stand; their silence, 0x80, becomes negative full scale")},
        {beyond > 0, QStringLiteral("%1 of the %2 frames used are not within -1.0 to 1.0 and wrap to other levels")
                         .arg(beyond)
                         .arg(file.framesUsed)},
        {format.formatTag != (format.bitsPerSample == kFloatBits ? kFloatTag : kIntegerTag),
         otherFormatTag(format.formatTag, format.bitsPerSample)},
        {!file.chunkBeginsAt(format.offset), strayChunk("fmt ", format.offset)},
        {!file.chunkBeginsAt(data.offset), strayChunk("data", data.offset)},
        {isUsable && isSilent, QStringLiteral("all its points are zero")},
    });
}

QStringList ampNotes(const AMPFile& file) {
    return thoseThatApply({
        {!file.hasChecksum,
         QStringLiteral("it ends before its checksum and is accepted because its words add up to 0")},
        {file.wordsRead < kAmpWordCount, QStringLiteral("%1 of the %2 words are missing and are sent as 0")
                                             .arg(kAmpWordCount - file.wordsRead)
                                             .arg(kAmpWordCount)},
    });
}

}  // namespace kelvo
