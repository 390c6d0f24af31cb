// Values that no file of ReportsTest.cpp has.

#include <gtest/gtest.h>

#include "ReportJson.h"

namespace kelvo {
namespace {

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
