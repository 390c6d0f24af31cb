// Each note through the whole check of a file that has earned it, and no other.

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <bit>
#include <limits>

#include "CheckFile.h"
#include "Notes.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

/// Enough bytes for all 560 frames of 48000 Hz in 16 bits, and none of them zero.
FileBytes sound(std::size_t size = 1120) {
    return FileBytes(size, 0x11);
}

/// 512 singles of 0.186.
FileBytes floats() {
    return FileBytes(2048, 0x3E);
}

class CheckNotes : public testing::Test {
protected:
    QStringList all(const FileBytes& bytes, const QString& name) const {
        const FileReport report = checkFile(dir.write(name, bytes).toUtf8());
        EXPECT_EQ(report.refusal, "");
        return report.notes;
    }

    /// The notes but for those of the sound, which the data of most tests here earn.
    std::string of(const FileBytes& bytes, const QString& name = "cab.wav") const {
        const QRegularExpression ofSound("^(its response is |only .* of its energy |its sound begins )");
        QStringList notes = all(bytes, name);
        notes.removeIf([&](const QString& note) { return ofSound.match(note).hasMatch(); });
        return notes.join('\n').toStdString();
    }

    /// The notes of a 24-bit file with these samples.
    std::string ofSound(std::uint32_t rate, const std::vector<std::pair<std::size_t, std::uint32_t>>& samples) const {
        FileBytes data(3 * 2400);
        for (const auto& [frame, sample] : samples) {
            data[3 * frame + 2] = static_cast<std::uint8_t>(sample);
        }
        const WaveFile wave{.sampleRate = rate, .bitsPerSample = 24, .data = data};
        return all(wave.bytes(), "cab.wav").join('\n').toStdString();
    }

    const SampleDir dir;
};

TEST_F(CheckNotes, ofAResponseThatDiffers_sayWhereAndWhatHelps) {
    EXPECT_EQ(ofSound(44100, {{0, 0x40}}), "");
    EXPECT_EQ(ofSound(44100, {{0, 0x40}, {600, 0x04}}), "");  // 0.5 dB
    EXPECT_EQ(ofSound(44100, {{0, 0x40}, {600, 0x0C}}),
              "its response is 1.9 dB above the file's at 111 Hz; only a shorter response is sent whole");
    EXPECT_EQ(ofSound(88200, {{0, 0x40}, {5, 0x20}}),
              "its response is 8.5 dB above the file's at 8000 Hz; a copy by --prepare is closer");
}

TEST_F(CheckNotes, ofEnergyThatIsLost_sayHowMuch) {
    const std::string notes = ofSound(44100, {{0, 0x40}, {600, 0x0F}});
    EXPECT_EQ(notes.substr(notes.find('\n') + 1),
              "only 94.8 % of its energy lies within the 512 points; a shorter response, or one without silence before "
              "its sound, keeps more");
    EXPECT_EQ(
        ofSound(44100, {{600, 0x40}}),
        "all its points are zero\nonly 0.0 % of its energy lies within the 512 points; a shorter response, or one "
        "without silence before its sound, keeps more\nits sound begins after 13.6 ms, which the pedal plays as a "
        "delay; a copy by --prepare has none");
}

TEST_F(CheckNotes, ofALateSound_sayHowLate) {
    EXPECT_EQ(ofSound(44100, {{44, 0x40}}), "");
    EXPECT_EQ(ofSound(44100, {{45, 0x40}}),
              "its sound begins after 1.0 ms, which the pedal plays as a delay; a copy by --prepare has none");
}

TEST_F(CheckNotes, areNoneForSoundFiles) {
    EXPECT_EQ(of(WaveFile{.data = sound()}.bytes()), "");
    EXPECT_EQ(of(WaveFile{.sampleRate = 48000, .data = sound()}.bytes()), "");
    EXPECT_EQ(of(WaveFile{.bitsPerSample = 24, .channels = 2, .data = sound(3072)}.bytes()), "");
    EXPECT_EQ(of(WaveFile{.bitsPerSample = 32, .data = floats()}.bytes()), "");
    EXPECT_EQ(of(ampFile({}), "a.amp"), "");
}

TEST_F(CheckNotes, ofChannelsThatGiveSilence_saySoOnce) {
    EXPECT_EQ(of(WaveFile{.channels = 6, .data = sound(6144)}.bytes()),
              "its 6 channels give silence; only one channel, or the first of two, is used");
}

TEST_F(CheckNotes, ofADataChunkThatDeclaresMoreThanThereIs) {
    EXPECT_EQ(of(WaveFile{.data = sound(1024), .declaredDataSize = 2000}.bytes()),
              "its \"data\" chunk, at byte 36, declares 2000 bytes of samples, of which the file holds 1024");
    EXPECT_EQ(of(WaveFile{.data = sound(1024), .declaredDataSize = 1024}.bytes()), "");
}

TEST_F(CheckNotes, ofFramesThatAreMissing) {
    EXPECT_EQ(of(WaveFile{.data = sound(1022)}.bytes()),
              "1 of the 512 frames that are taken at 44100 Hz are missing and count as silence");
    EXPECT_EQ(of(WaveFile{.sampleRate = 96000, .data = sound(240)}.bytes()),
              "1000 of the 1120 frames that are taken at 96000 Hz are missing and count as silence");
}

TEST_F(CheckNotes, ofEightBitSamples) {
    EXPECT_EQ(of(WaveFile{.bitsPerSample = 8, .data = sound(512)}.bytes()),
              "its 8-bit samples are taken as they stand; their silence, 0x80, becomes negative full scale");
}

TEST_F(CheckNotes, ofFloatsThatWrap) {
    FileBytes data;
    append(data, std::bit_cast<std::uint32_t>(1.5F), 4);
    append(data, std::bit_cast<std::uint32_t>(-1.5F), 4);
    data.resize(2048);
    EXPECT_EQ(of(WaveFile{.bitsPerSample = 32, .data = data}.bytes()),
              "2 of the 512 frames used are not within -1.0 to 1.0 and wrap to other levels");
}

TEST_F(CheckNotes, ofFloatsThatWrap_countThoseOfTheFirstChannelAmongTheFramesUsed) {
    FileBytes data;
    for (const float left : {1.0F, -1.0F, 1.0000001F, -2.0F, std::numeric_limits<float>::quiet_NaN(),
                             std::numeric_limits<float>::infinity(), 0.5F}) {
        append(data, std::bit_cast<std::uint32_t>(left), 4);
        append(data, std::bit_cast<std::uint32_t>(9.0F), 4);
    }
    const std::string missing = " of the 512 frames that are taken at 44100 Hz are missing and count as silence\n";
    EXPECT_EQ(of(WaveFile{.bitsPerSample = 32, .channels = 2, .data = data}.bytes()),
              "505" + missing + "4 of the 7 frames used are not within -1.0 to 1.0 and wrap to other levels");
    EXPECT_EQ(of(WaveFile{.bitsPerSample = 32, .channels = 2, .data = data, .declaredDataSize = 24}.bytes()),
              "509" + missing + "1 of the 3 frames used are not within -1.0 to 1.0 and wrap to other levels");
    EXPECT_EQ(of(WaveFile{.bitsPerSample = 32, .channels = 4, .data = data}.bytes()),
              "its 4 channels give silence; only one channel, or the first of two, is used");
    EXPECT_EQ(of(WaveFile{.bitsPerSample = 24, .data = FileBytes(1536, 0x7F)}.bytes()), "");
}

TEST_F(CheckNotes, ofAFormatTag_takeThatOfTheSubFormatWhereThereIsOne) {
    FileBytes bytes = WaveFile{.data = sound()}.bytes();
    bytes[20] = 0xFE;
    bytes[21] = 0xFF;
    bytes[44] = 0x34;  // 24 bytes behind the chunk's header
    bytes[45] = 0x12;
    EXPECT_EQ(of(bytes), "its format tag is 4660, but 16-bit samples are always taken as integers (tag 1)");
    bytes[44] = 1;
    bytes[45] = 0;
    EXPECT_EQ(of(bytes), "");
}

TEST_F(CheckNotes, ofAFormatTagThatIsNotFollowed) {
    FileBytes bytes = WaveFile{.bitsPerSample = 32, .data = floats()}.bytes();
    bytes[20] = 1;
    EXPECT_EQ(of(bytes), "its format tag is 1, but 32-bit samples are always taken as floats (tag 3)");
    bytes = WaveFile{.data = sound()}.bytes();
    bytes[20] = 0x55;
    EXPECT_EQ(of(bytes), "its format tag is 85, but 16-bit samples are always taken as integers (tag 1)");
}

TEST_F(CheckNotes, ofChunksThatStandInsideAnother) {
    FileBytes bytes = WaveFile{.data = sound()}.bytes();
    FileBytes list;
    append(list, "LIST");
    append(list, 18, 4);
    append(list, "old data");
    append(list, 1024, 4);
    append(list, "123456");
    bytes.insert(bytes.begin() + 36, list.begin(), list.end());
    EXPECT_EQ(
        of(bytes),
        "its first \"data\", at byte 48, is used, though by the sizes of the chunks before it no chunk begins there");
    bytes = WaveFile{.data = sound()}.bytes();
    bytes.insert(bytes.begin() + 12, 'x');
    EXPECT_EQ(
        of(bytes),
        "its first \"fmt \", at byte 13, is used, though by the sizes of the chunks before it no chunk begins there\n"
        "its first \"data\", at byte 37, is used, though by the sizes of the chunks before it no chunk begins there");
}

TEST_F(CheckNotes, areNoneForChunksBehindOneOfOddLengthOrWithIdsInIt) {
    FileBytes list;
    append(list, "LIST");
    append(list, 7, 4);
    append(list, "some te");  // and a byte that makes the size even
    list.push_back(0);
    FileBytes bytes = WaveFile{.data = sound()}.bytes();
    bytes.insert(bytes.begin() + 12, list.begin(), list.end());
    EXPECT_EQ(of(bytes), "");
    bytes[16] = 9;  // as if LIST went on into the format
    EXPECT_EQ(
        of(bytes),
        "its first \"fmt \", at byte 28, is used, though by the sizes of the chunks before it no chunk begins there\n"
        "its first \"data\", at byte 52, is used, though by the sizes of the chunks before it no chunk begins there");
}

TEST_F(CheckNotes, ofNothingButZeros) {
    EXPECT_EQ(of(WaveFile{.data = FileBytes(1024)}.bytes()), "all its points are zero");
}

TEST_F(CheckNotes, ofThePedalsOwnFormat) {
    FileBytes bytes;
    append(bytes, "TavikIR");
    bytes.resize(2048, 0x11);
    EXPECT_EQ(of(bytes), "");
    bytes.resize(512 + 36);
    EXPECT_EQ(of(bytes), "500 of its 512 points are missing and count as silence");
    bytes.resize(7);
    EXPECT_EQ(of(bytes), "512 of its 512 points are missing and count as silence\nall its points are zero");
}

TEST_F(CheckNotes, ofAnAmpWithoutAChecksum) {
    EXPECT_EQ(of({0, 0, 0, 0, '2', '.', '0'}, "a.amp"),
              "it ends before its checksum and is accepted because its words add up to 0\n"
              "511 of the 512 words are missing and are sent as 0");
    FileBytes allWords(2048);
    append(allWords, "2.0");
    EXPECT_EQ(of(allWords, "a.amp"), "it ends before its checksum and is accepted because its words add up to 0");
}

TEST_F(CheckNotes, ofANameThatIsCut) {
    EXPECT_EQ(of(WaveFile{.data = sound()}.bytes(), "Vintage 4x12.wav"),
              "its name is cut; the whole one is \"VINTAGE 4X12\"");
    EXPECT_EQ(of(ampFile({}), "abcdefghijk.amp"), "its name is cut; the whole one is \"abcdefghijk\"");
    EXPECT_EQ(of(ampFile({}), "abcdefghij.amp"), "");
}

TEST(NameNotes, tellWhenTheCutIsInsideACharacter) {
    EXPECT_EQ(nameNotes("\xC3\x9C"
                        "B\xC3",
                        "\xC3\x9C"
                        "B\xC3\x9C"
                        "B"),
              (QStringList{QString::fromUtf8("its name is cut inside a character; the whole one is \"\xC3\x9C"
                                             "B\xC3\x9C"
                                             "B\""),
                           "its name is not all printable ASCII; the pedal gets the bytes c3 9c 42 c3"}));
}

TEST(NameNotes, showUnprintableNamesInBytes) {
    EXPECT_EQ(nameNotes("A\x1B\n", "A\x1B\n"),
              QStringList{"its name is not all printable ASCII; the pedal gets the bytes 41 1b 0a"});
    EXPECT_EQ(nameNotes("A\x1B", "A\x1B["),
              (QStringList{"its name is cut; the whole one is \"A\\x1b[\"",
                           "its name is not all printable ASCII; the pedal gets the bytes "
                           "41 1b"}));
    EXPECT_EQ(nameNotes("A\x7F", "A\x7F"),
              QStringList{"its name is not all printable ASCII; the pedal gets the bytes 41 7f"});
    EXPECT_EQ(nameNotes("", ""), QStringList());
    EXPECT_EQ(nameNotes(" ~", " ~"), QStringList());
}

}  // namespace
}  // namespace kelvo
