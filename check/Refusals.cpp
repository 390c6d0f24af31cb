#include "Refusals.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

#include "IRConversion.h"
#include "PrintableText.h"

namespace kelvo {
namespace {

QString wrongMark(FileView file, std::size_t offset, const char* mark) {
    return QStringLiteral("it is no wave file: byte %1 says \"%2\" instead of \"%3\"")
        .arg(offset)
        .arg(printableText(file.part(offset, sizeof(FourChars))), QLatin1StringView(mark));
}

/// `held` is the number of bytes from the chunk's id to the end of the file.
QString missingChunk(const char* id, std::size_t offset, std::size_t held, std::size_t needed) {
    return held == 0 ? QStringLiteral("it has no \"%1\" chunk").arg(QLatin1StringView(id))
                     : QStringLiteral(
                           "its \"%1\" chunk, at byte %2, is cut off by the end of the file after %3 of the %4 bytes "
                           "that it needs at least")
                           .arg(QLatin1StringView(id))
                           .arg(offset)
                           .arg(held)
                           .arg(needed);
}

QString hex(std::uint32_t word) {
    return QStringLiteral("0x%1").arg(word, 8, 16, QLatin1Char('0'));
}

}  // namespace

QString unreadable(const ReadFailure& failure) {
    switch (failure.step) {
        case ReadFailure::Step::Open:
            return failure.error == 0 ? QStringLiteral("its name contains a NUL")
                                      : QStringLiteral("it cannot be opened: %1").arg(qt_error_string(failure.error));
        case ReadFailure::Step::Type:
            return QStringLiteral("it is a %1, not a regular file")
                .arg(S_ISDIR(failure.mode)    ? QStringLiteral("folder")
                     : S_ISFIFO(failure.mode) ? QStringLiteral("pipe")
                                              : QStringLiteral("device"));
        case ReadFailure::Step::Length:
            return QStringLiteral("it is %1 bytes long; at most %2 are allowed").arg(failure.size).arg(kLargestFile);
        case ReadFailure::Step::Read:
            break;
    }
    return failure.error == 0
               ? QStringLiteral("it ended at byte %1 of %2 while it was read").arg(failure.held).arg(failure.size)
               : QStringLiteral("it cannot be read: %1").arg(qt_error_string(failure.error));
}

QString waveRefusal(FileView file, const WaveLayout& wave) {
    const WAVE_FORMAT& format = wave.fmt_block.format;
    const auto wrongField = [&wave](const char* what, std::size_t offset, std::uint32_t found, const char* allowed) {
        return QStringLiteral("its %1, at byte %2, is %3; allowed are %4")
            .arg(QLatin1StringView(what))
            .arg(wave.fmtOffset + offsetof(FMT_BLOCK, format) + offset)
            .arg(found)
            .arg(QLatin1StringView(allowed));
    };
    switch (wave.broken) {
        case WaveRule::RiffMark:
            return wrongMark(file, offsetof(RIFF_HEADER, id), "RIFF");
        case WaveRule::WaveMark:
            return wrongMark(file, offsetof(RIFF_HEADER, formType), "WAVE");
        case WaveRule::FmtChunk:
            return missingChunk("fmt ", wave.fmtOffset, file.size() - wave.fmtOffset, sizeof(FMT_BLOCK));
        case WaveRule::DataChunk:
            return missingChunk("data", wave.dataOffset, file.size() - wave.dataOffset, sizeof(DATA_BLOCK));
        case WaveRule::Channels:
            return wrongField("number of channels", offsetof(WAVE_FORMAT, channels), format.channels, "1 and 2");
        case WaveRule::Depth:
        case WaveRule::None:
            break;
    }
    if (wave.broken == WaveRule::None && findIRRate(format.sampleRate) == nullptr) {
        return wrongField("sample rate in Hz", offsetof(WAVE_FORMAT, sampleRate), format.sampleRate,
                          "44100, 48000, 88200 and 96000");
    }
    return wrongField("number of bits per sample", offsetof(WAVE_FORMAT, bitsPerSample), format.bitsPerSample,
                      "8, 16 and 24 (integers) and 32 (floats)");
}

QString ampRefusal(FileView file, const AmpLayout& amp) {
    if (!amp.addsUp() && !amp.checksum) {
        return QStringLiteral("it is %1 bytes long and ends before its checksum, which takes the bytes %2 to %3")
            .arg(file.size())
            .arg(kAmpChecksumOffset)
            .arg(kAmpChecksumOffset + 3);
    }
    if (!amp.addsUp()) {
        return QStringLiteral("its words add up to %1, but its checksum, at byte %2, is %3")
            .arg(hex(amp.sum))
            .arg(kAmpChecksumOffset)
            .arg(hex(*amp.checksum));
    }
    const ByteView end = file.part(file.size() - std::min<std::size_t>(3, file.size()), 3);
    return amp.hasTrailer
               ? QString()
               : QStringLiteral("its last three bytes are \"%1\" instead of \"2.0\"").arg(printableText(end));
}

}  // namespace kelvo
