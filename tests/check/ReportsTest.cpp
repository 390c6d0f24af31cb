// The reports of kelvo-check on files that are right, wrong or doubtful in one way each: one line of golden/reports.txt
// for each file. After a wanted change, review what the test prints and put it there.

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QJsonDocument>
#include <QJsonObject>
#include <bit>
#include <limits>
#include <string>

#include "CheckFile.h"
#include "ReportJson.h"
#include "ReportText.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

/// By default the 512 frames of 44100 Hz in 16 bits, none of them zero.
FileBytes sound(std::size_t size = 1024) {
    return FileBytes(size, 0x11);
}

FileBytes floats(std::initializer_list<float> values, std::size_t size) {
    FileBytes bytes;
    for (const float value : values) {
        append(bytes, std::bit_cast<std::uint32_t>(value), 4);
    }
    bytes.resize(size);
    return bytes;
}

/// Pairs of a level that wraps, or not, and one that does not count in the second channel.
FileBytes floatPairs() {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    return floats({1.0F, 9, -1.0F, 9, 1.0000001F, 9, -2.0F, 9, kNaN, 9, kInfinity, 9, 0.5F, 9}, 56);
}

/// 2400 frames of 24 bits with these high bytes of samples.
FileBytes pulses(std::uint32_t rate, const std::vector<std::pair<std::size_t, std::uint8_t>>& samples) {
    FileBytes data(3 * 2400);
    for (const auto& [frame, sample] : samples) {
        data[3 * frame + 2] = sample;
    }
    return WaveFile{.sampleRate = rate, .bitsPerSample = 24, .data = data}.bytes();
}

/// A good file with `chunk` inserted at `offset`.
FileBytes withChunkAt(std::ptrdiff_t offset, const FileBytes& chunk) {
    FileBytes bytes = WaveFile{.data = sound()}.bytes();
    bytes.insert(bytes.begin() + offset, chunk.begin(), chunk.end());
    return bytes;
}

FileBytes resized(FileBytes bytes, std::size_t size, std::uint8_t fill = 0) {
    bytes.resize(size, fill);
    return bytes;
}

/// A chunk with ids of others in it.
const FileBytes kList =
    textBytes(std::string_view("LIST\22\0\0\0old data\0\4\0\0"
                               "123456",
                               26));
/// Its size is odd and followed by a padding byte.
const FileBytes kOddList = textBytes(std::string_view("LIST\7\0\0\0some te\0", 16));
const FileBytes kFour = FileBytes(4);
const FileBytes kSmall = WaveFile{.data = kFour}.bytes();

struct Input {
    const char* name;
    FileBytes bytes;
};

const Input kInputs[] = {
    // Accepted without a note about the file.
    {"mono16.wav", WaveFile{.data = sound()}.bytes()},
    {"48000.wav", WaveFile{.sampleRate = 48000, .data = resized({0x00, 0x40}, 1120)}.bytes()},
    {"stereo24.wav", WaveFile{.bitsPerSample = 24, .channels = 2, .data = sound(3072)}.bytes()},
    {"floats.wav", WaveFile{.bitsPerSample = 32, .data = FileBytes(2048, 0x3E)}.bytes()},
    {"full24.wav", WaveFile{.bitsPerSample = 24, .data = FileBytes(1536, 0x7F)}.bytes()},
    {"exact.wav", WaveFile{.data = sound(), .declaredDataSize = 1024}.bytes()},
    {"oddlist.wav", withChunkAt(12, kOddList)},
    {"own.wav", resized(textBytes("TavikIR"), 2048, 0x11)},
    {"two.amp", ampFile(std::array<std::uint32_t, 2>{0x11111111, 2})},
    // The name.
    {"x.WAV", pulses(44100, {{0, 0x40}})},
    {"a.wAv", pulses(44100, {{0, 0x40}})},
    {".wav", pulses(44100, {{0, 0x40}})},
    {"\xC3\xBC"
     "ber.wav",
     pulses(44100, {{0, 0x40}})},
    {"Vintage 4x12.wav", pulses(44100, {{0, 0x40}})},
    {"a.AMP", ampFile({})},
    {"abcdefghij.amp", ampFile({})},
    {"abcdefghijk.amp", ampFile({})},
    // The sound.
    {"tail04.wav", pulses(44100, {{0, 0x40}, {600, 0x04}})},
    {"tail0C.wav", pulses(44100, {{0, 0x40}, {600, 0x0C}})},
    {"tail0F.wav", pulses(44100, {{0, 0x40}, {600, 0x0F}})},
    {"odd88200.wav", pulses(88200, {{0, 0x40}, {5, 0x20}})},
    {"late44.wav", pulses(44100, {{44, 0x40}})},
    {"late45.wav", pulses(44100, {{45, 0x40}})},
    {"late600.wav", pulses(44100, {{600, 0x40}})},
    // Frames, levels and formats.
    {"peakbelow.wav", WaveFile{.data = {0x00, 0x20, 0x00, 0x80}}.bytes()},
    {"peakabove.wav", WaveFile{.data = {0x00, 0x60, 0x00, 0xE0}}.bytes()},
    {"zeros.wav", WaveFile{.data = FileBytes(1024)}.bytes()},
    {"zeros96.wav",
     WaveFile{.sampleRate = 96000, .bitsPerSample = 24, .channels = 2, .data = FileBytes(12000)}.bytes()},
    {"short.wav", WaveFile{.data = sound(1022)}.bytes()},
    {"short96.wav", WaveFile{.sampleRate = 96000, .data = resized({0x00, 0x40}, 240)}.bytes()},
    {"cutoff.wav", resized(WaveFile{.sampleRate = 48000, .bitsPerSample = 24, .data = FileBytes(2100)}.bytes(), 346)},
    {"declares.wav", WaveFile{.data = sound(), .declaredDataSize = 2000}.bytes()},
    {"depth8.wav", WaveFile{.bitsPerSample = 8, .data = sound(512)}.bytes()},
    {"channels6.wav", WaveFile{.channels = 6, .data = sound(6144)}.bytes()},
    {"wrap2.wav", WaveFile{.bitsPerSample = 32, .data = floats({1.5F, -1.5F}, 2048)}.bytes()},
    {"wrap4of7.wav", WaveFile{.bitsPerSample = 32, .channels = 2, .data = floatPairs()}.bytes()},
    {"wrap1of3.wav",
     WaveFile{.bitsPerSample = 32, .channels = 2, .data = floatPairs(), .declaredDataSize = 24}.bytes()},
    {"wrap4ch.wav", WaveFile{.bitsPerSample = 32, .channels = 4, .data = floatPairs()}.bytes()},
    {"tag85.wav", withTextAt(20, "\x55", WaveFile{.data = sound()}.bytes())},
    {"tag1.wav", withTextAt(20, "\1", WaveFile{.bitsPerSample = 32, .data = FileBytes(2048, 0x3E)}.bytes())},
    {"subtag.wav", withTextAt(44, "\x34\x12", withTextAt(20, "\xFE\xFF", WaveFile{.data = sound()}.bytes()))},
    {"subtag1.wav",
     withTextAt(44, std::string_view("\1\0", 2), withTextAt(20, "\xFE\xFF", WaveFile{.data = sound()}.bytes()))},
    {"datainlist.wav", withChunkAt(36, kList)},
    {"oddplace.wav", withChunkAt(12, {'x'})},
    {"longlist.wav", withTextAt(16, "\x09", withChunkAt(12, kOddList))},
    {"own1.wav", joinedFiles({resized(textBytes("TavikIR"), 512), {0, 0, 0xC0}})},
    {"own12.wav", resized(textBytes("TavikIR"), 548, 0x11)},
    {"own0.wav", textBytes("TavikIR")},
    {"word.amp", textBytes(std::string_view("\0\0\0\0"
                                            "2.0",
                                            7))},
    {"words2.amp", textBytes(std::string_view("\0\0\0\0\0\0\0\0"
                                              "2.0",
                                              11))},
    {"words512.amp", joinedFiles({FileBytes(2048), textBytes("2.0")})},
    // Refused.
    {"empty.wav", {}},
    {"empty.amp", {}},
    {"rf64.wav", withTextAt(0, "RF64", kSmall)},
    {"notwave.wav", withTextAt(8, "A%2 ", kSmall)},
    {"id3.wav", {'I', 'D', '3', 3, 0}},
    {"r.wav", {'R'}},
    {"riff.wav", {'R', 'I', 'F', 'F'}},
    {"amp.wav", ampFile({})},
    {"nodata.wav", withTextAt(36, "D", kSmall)},
    {"nofmt.wav", withTextAt(12, "F", kSmall)},
    {"cutdata.wav", resized(kSmall, 41)},
    {"cutfmt.wav", resized(kSmall, 35)},
    {"channels0.wav", WaveFile{.channels = 0, .data = kFour}.bytes()},
    {"rate192000.wav", WaveFile{.sampleRate = 192000, .data = kFour}.bytes()},
    {"rate22050.wav", WaveFile{.sampleRate = 22050, .data = kFour}.bytes()},
    {"depth4.wav", WaveFile{.bitsPerSample = 4, .data = FileBytes(16)}.bytes()},
    {"depth12.wav", WaveFile{.bitsPerSample = 12, .data = FileBytes(16)}.bytes()},
    {"depth20.wav", WaveFile{.bitsPerSample = 20, .data = FileBytes(16)}.bytes()},
    {"depth64.wav", WaveFile{.bitsPerSample = 64, .data = FileBytes(16)}.bytes()},
    {"wave.amp", WaveFile{.data = kFour}.bytes()},
    {"nosum.amp", textBytes(std::string_view("\1\0\0\0"
                                             "2.0",
                                             7))},
    {"wrongsum.amp", withTextAt(2048, "\xFF", withTextAt(3, "\n", ampFile({})))},
    {"lineend.amp", joinedFiles({ampFile({}), {'\n'}})},
    {"onebyte.amp", {'0'}},
    {"a.mp3", kSmall},
};

/// Without the deviation, which is as good as 0 in most of these files; RecordingTest.cpp has it.
std::string lineFor(const FileReport& report) {
    QJsonObject object = QJsonDocument::fromJson(reportJson(report)).object();
    object.remove("deviation");
    return jsonLine(object).toStdString();
}

TEST(Reports, areThoseThatWereReviewed) {
    const SampleDir dir;
    const QString former = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(dir.path(".")));
    QFile golden(KELVO_GOLDEN "/reports.txt");
    EXPECT_TRUE(golden.open(QIODevice::ReadOnly));
    for (const auto& [name, bytes] : kInputs) {
        dir.write(QString::fromUtf8(name), bytes);
        EXPECT_EQ(lineFor(checkFile(name)), golden.readLine().toStdString());
    }
    EXPECT_TRUE(golden.atEnd());
    ASSERT_TRUE(QDir::setCurrent(former));
}

TEST(Reports, ofTheFuzzTargetsInputs_areEitherAcceptedOrRefusedInPrintableWords) {
    const SampleDir dir;
    int count = 0;
    for (QDirIterator inputs(KELVO_FUZZ, {}, QDir::Files, QDirIterator::Subdirectories); inputs.hasNext();) {
        const QString input = inputs.next();
        if (!input.contains("/seeds/") && !input.contains("/findings/")) {
            continue;
        }
        QFile file(input);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const FileBytes bytes = textBytes(file.readAll().toStdString());
        for (const char* const name : {"a.wav", "a.amp"}) {
            const FileReport report = checkFile(dir.write(name, bytes).toUtf8());
            EXPECT_NE(report.refusal.isEmpty(), !report.wave && !report.amp) << input.toStdString();
            const QString text = reportText(report).remove('\n');
            EXPECT_TRUE(std::all_of(text.begin(), text.end(), [](QChar letter) { return letter.isPrint(); }))
                << text.toStdString();
        }
        ++count;
    }
    EXPECT_GE(count, 41);
}

}  // namespace
}  // namespace kelvo
