#include <gtest/gtest.h>

#include "ReportJson.h"

namespace kelvo {
namespace {

TEST(ReportJson, ofARefusalGivesItsReasonAndTheLineForSox) {
    EXPECT_EQ(reportJson({.path = "a.wav", .refusal = "it is empty"}).toStdString(),
              "{\"accepted\":false,\"file\":\"a.wav\",\"refusal\":\"it is empty\"}\n");
    EXPECT_EQ(reportJson({.path = "a.wav", .refusal = "it is bad", .soxLine = "sox 'a.wav'"}).toStdString(),
              "{\"accepted\":false,\"file\":\"a.wav\",\"refusal\":\"it is bad\",\"sox\":\"sox 'a.wav'\"}\n");
}

TEST(ReportJson, ofAWaveGivesItsFacts) {
    FileReport report{.path = "a.wav", .name = "CAB", .notes = {"one thing", "another"}};
    report.wave = {.format = WAVE_FORMAT{.channels = 2, .sampleRate = 48000, .bitsPerSample = 24},
                   .framesInFile = 700,
                   .framesUsed = 560,
                   .peak = 0.5};
    EXPECT_EQ(reportJson(report).toStdString(),
              "{\"accepted\":true,\"bits\":24,\"channels\":2,\"file\":\"a.wav\",\"framesInFile\":700,"
              "\"framesUsed\":560,\"kind\":\"impulse response\",\"name\":\"CAB\",\"nameBytes\":\"434142\","
              "\"notes\":[\"one thing\",\"another\"],\"peak\":0.5,\"rate\":48000,\"sentName\":\"CAB\"}\n");
    report.wave->format.reset();
    report.notes.clear();
    EXPECT_EQ(reportJson(report).toStdString(),
              "{\"accepted\":true,\"file\":\"a.wav\",\"framesInFile\":700,\"framesUsed\":560,"
              "\"kind\":\"impulse "
              "response\",\"name\":\"CAB\",\"nameBytes\":\"434142\",\"notes\":[],\"peak\":0.5,\"sentName\":\"CAB\"}\n");
}

TEST(ReportJson, ofAnAmpGivesItsWordsAndItsChecksum) {
    FileReport report{.path = "a.amp", .name = "Lead"};
    report.amp = {.words = 512, .checksum = 0xFFFFFFFF};
    EXPECT_EQ(reportJson(report).toStdString(),
              "{\"accepted\":true,\"checksum\":4294967295,\"file\":\"a.amp\",\"kind\":\"amp model\",\"name\":\"Lead\","
              "\"nameBytes\":\"4c656164\",\"notes\":[],\"sentName\":\"Lead\",\"words\":512}\n");
    report.amp->checksum.reset();
    EXPECT_EQ(reportJson(report).indexOf("checksum"), -1);
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
