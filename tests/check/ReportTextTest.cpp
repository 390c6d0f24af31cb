// Clauses, lines and values that the reviewed reports in golden/ do not have.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>

#include "Notes.h"
#include "Refusals.h"
#include "ReportJson.h"
#include "ReportText.h"

namespace kelvo {
namespace {

TEST(UnreadableFile, isExplainedByTheStepThatFailed) {
    using enum ReadFailure::Step;
    const std::pair<ReadFailure, const char*> rows[] = {
        {{.step = Open, .error = ENOENT}, "it cannot be opened: No such file or directory"},
        {{.step = Open, .error = ENOTDIR}, "it cannot be opened: Not a directory"},
        {{.step = Open, .error = EACCES}, "it cannot be opened: Permission denied"},
        {{.step = Open}, "its name contains a NUL"},
        {{.step = Type, .mode = S_IFDIR | 0755}, "it is a folder, not a regular file"},
        {{.step = Type, .mode = S_IFIFO | 0600}, "it is a pipe, not a regular file"},
        {{.step = Type, .mode = S_IFCHR | 0666}, "it is a device, not a regular file"},
        {{.step = Length, .size = 0x100000000}, "it is 4294967296 bytes long; at most 4294967295 are allowed"},
        {{.step = Read, .size = 8, .held = 5}, "it ended at byte 5 of 8 while it was read"},
        {{.step = Read, .error = EIO, .size = 8, .held = 5}, "it cannot be read: Input/output error"},
    };
    for (const auto& [failure, reason] : rows) {
        EXPECT_EQ(unreadable(failure).toStdString(), reason);
    }
}

TEST(NameNotes, sayWhenTheCutIsInsideACharacter) {
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

FileReport waveReport(const WaveFacts& facts) {
    FileReport report{.path = "a.wav", .name = "CAB"};
    report.wave = facts;
    return report;
}

FileReport ampReport(const QByteArray& name, const AmpLayout& layout) {
    FileReport report{.path = "a.amp", .name = name};
    report.amp = layout;
    return report;
}

TEST(ReportText, hasTheseLines) {
    const WAVE_FORMAT surround{.channels = 6, .sampleRate = 44100, .bitsPerSample = 24};
    const WaveFacts sound{.peak = 0.5,
                          .level = -0.001,
                          .whole = RecordingFacts{.onset = 0.126, .energy = 0.98765},
                          .deviation = Deviation{-1.256, 6642}};
    const std::pair<FileReport, const char*> rows[] = {
        {{.path = "\x1B]0;x\a\n%1.wav", .refusal = "it is empty"}, "\\x1b]0;x\\x07\\x0a%1.wav: refused: it is empty\n"},
        {ampReport("\x1B[2J%1\xFF", {.words = 512, .checksum = 0}), "\n  name:     \"\\x1b[2J%1\\xff\"\n"},
        {ampReport("L", {.words = 1}), "\n  words:    1 of 512\n  checksum: none\n"},
        {waveReport({.format = surround}), "\n  channels: 6, none of which is used\n"},
        {waveReport({}), "\n  peak:     none\n"},
        {waveReport({.peak = 0.99999988}), "\n  peak:     0.00 dBFS (1.000000 of full scale)\n"},
        {waveReport({.peak = 0.00000011920929}), "\n  peak:     -138.47 dBFS (0.000000 of full scale)\n"},
        {waveReport(sound),
         "\n  peak:     -6.02 dBFS (0.500000 of full scale)\n"
         "  level:    0.00 dB of a unit pulse\n"
         "  onset:    0.13 ms\n"
         "  energy:   98.8 % kept\n"
         "  response: up to 1.26 dB off the file's, at 6642 Hz\n"},
    };
    for (const auto& [report, lines] : rows) {
        const std::string text = reportText(report).toStdString();
        EXPECT_NE(text.find(lines), std::string::npos) << lines << " in " << text;
    }
}

TEST(ReportText, ofThePedalsOwnFormatHasNoLinesForAHeader) {
    FileReport report{.path = "a.wav"};
    report.wave = {.framesInFile = 512, .framesUsed = 512, .peak = 1.0};
    EXPECT_EQ(reportText(report).toStdString(),
              "a.wav: accepted\n"
              "  kind:     impulse response in the pedal's own format, for a CAB slot\n"
              "  name:     none; the slot shows its number only\n"
              "  frames:   512 in the file, 512 used\n"
              "  peak:     0.00 dBFS (1.000000 of full scale)\n");
}

TEST(ReportJson, givesTheFiguresOfTheSoundInHundredths) {
    FileReport report{.path = "a.wav", .name = "\xFF"};
    report.wave = {.level = -3.14159, .whole = RecordingFacts{.onset = 0.126, .energy = 0.98765}};
    report.wave->deviation = Deviation{-1.256, 6642};
    EXPECT_EQ(reportJson(report).toStdString(),
              "{\"accepted\":true,\"deviation\":{\"db\":-1.26,\"hz\":6642},\"energy\":98.77,\"file\":\"a.wav\","
              "\"framesInFile\":0,\"framesUsed\":0,\"kind\":\"impulse response\",\"level\":-3.14,"
              "\"name\":\"\\ufffd\",\"nameBytes\":\"ff\",\"notes\":[],\"onset\":0.13,\"peak\":0,"
              "\"sentName\":\"\\\\xff\"}\n");
}

TEST(ReportJson, isAsciiOnOneLineWhateverTheNameIs) {
    EXPECT_EQ(
        reportJson({.path = "\xC3\xBC\xF0\x9F\x8E\xB8\x1B\x7F\n\"\\.wav", .refusal = "x"}).toStdString(),
        "{\"accepted\":false,\"file\":\"\\u00fc\\ud83c\\udfb8\\u001b\\u007f\\n\\\"\\\\.wav\",\"refusal\":\"x\"}\n");
}

}  // namespace
}  // namespace kelvo
