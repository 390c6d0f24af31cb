// Lines that the reviewed report of the samples (golden/samples.txt) does not have.

#include <gtest/gtest.h>

#include "ReportText.h"

namespace kelvo {
namespace {

FileReport wave(const WAVE_FORMAT& format, double peak) {
    FileReport report{.path = "a.wav", .name = "CAB"};
    report.wave = {.format = format, .framesInFile = 700, .framesUsed = 560, .peak = peak};
    return report;
}

/// The one line of the text that begins with `label`.
std::string line(const FileReport& report, const QString& label) {
    const QStringList lines = reportText(report).split('\n').filter("  " + label);
    EXPECT_EQ(lines.size(), 1) << label.toStdString();
    return lines.value(0).toStdString();
}

TEST(ReportText, ofARefusalIsOneLine) {
    EXPECT_EQ(reportText({.path = "dir/a.wav", .refusal = "it is empty"}), "dir/a.wav: refused: it is empty\n");
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

TEST(ReportText, saysWhatIsMissingOrNotUsed) {
    FileReport report{.path = "a.amp", .name = "L"};
    report.amp = {.words = 1};
    EXPECT_EQ(line(report, "words:"), "  words:    1 of 512");
    EXPECT_EQ(line(report, "checksum:"), "  checksum: none");
    EXPECT_EQ(line(wave({.channels = 6, .sampleRate = 44100, .bitsPerSample = 24}, 0.0), "channels:"),
              "  channels: 6, none of which is used");
    EXPECT_EQ(line(wave({.channels = 6, .sampleRate = 44100, .bitsPerSample = 24}, 0.0), "peak:"), "  peak:     none");
}

TEST(ReportText, hasNoMinusBeforeZero) {
    EXPECT_EQ(line(wave({.channels = 1, .sampleRate = 44100, .bitsPerSample = 24}, 0.99999988), "peak:"),
              "  peak:     0.00 dBFS (1.000000 of full scale)");
    EXPECT_EQ(line(wave({.channels = 1, .sampleRate = 44100, .bitsPerSample = 24}, 0.00000011920929), "peak:"),
              "  peak:     -138.47 dBFS (0.000000 of full scale)");
}

TEST(ReportText, letsNoControlOfAFilesNameThrough) {
    EXPECT_EQ(reportText({.path = "\x1B]0;x\a\n%1.wav", .refusal = "it is empty"}).toStdString(),
              "\\x1b]0;x\\x07\\x0a%1.wav: refused: it is empty\n");
    FileReport report{.path = "a.amp", .name = "\x1B[2J%1\xFF"};
    report.amp = {.words = 512, .checksum = 0};
    EXPECT_EQ(line(report, "name:"), "  name:     \"\\x1b[2J%1\\xff\"");
}

TEST(ReportText, givesTheFiguresOfTheSound) {
    FileReport report = wave({.channels = 1, .sampleRate = 48000, .bitsPerSample = 24}, 0.5);
    report.wave->level = -0.001;
    report.wave->whole = RecordingFacts{.onset = 0.126, .energy = 0.98765};
    report.wave->deviation = Deviation{-1.256, 6642};
    EXPECT_TRUE(
        reportText(report).endsWith("  peak:     -6.02 dBFS (0.500000 of full scale)\n"
                                    "  level:    0.00 dB of a unit pulse\n"
                                    "  onset:    0.13 ms\n"
                                    "  energy:   98.8 % kept\n"
                                    "  response: up to 1.26 dB off the file's, at 6642 Hz\n"))
        << reportText(report).toStdString();
}

}  // namespace
}  // namespace kelvo
