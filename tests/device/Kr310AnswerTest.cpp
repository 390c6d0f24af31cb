#include <gtest/gtest.h>

#include "DeviceTesting.h"
#include "Kr310Answer.h"

namespace kelvo {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr const char* kDone = "AA 55 02 00 A5 C7 59 B7";
constexpr const char* kStart = "AA 55 02 00 A5 00 F0 1C";

/// Reports of an answer that holds progress 0, due at once, and progress 199, due after one second.
std::vector<InputReport> twoFrames(const Faults& faults) {
    FrameCounter counter = 0;
    AnswerWriter writer(faults, counter);
    writer.add(microseconds(0), {0xA5, {0}});
    writer.add(microseconds(1'000'000), {0xA5, {199}});
    return writer.finish();
}

std::string counted(const std::vector<InputReport>& reports) {
    return answered({reports, {}});
}

TEST(AnswerWriter, begins64ByteReportsWithACountAndFillsThemWithFalseHeaders) {
    const std::vector<InputReport> reports = twoFrames({});
    ASSERT_EQ(reports.size(), 2U);
    Bytes expected = unhex("08 AA 55 02 00 A5 C7 59 B7");
    expected.resize(64, 0xAA);
    EXPECT_EQ(hex(reports[1].bytes), hex(expected));
}

TEST(AnswerWriter, keepsTheTimeOfEveryFrame) {
    const std::vector<InputReport> reports = twoFrames({});
    EXPECT_EQ(reports.at(0).due, microseconds(0));
    EXPECT_EQ(reports.at(1).due, microseconds(1'000'000));
}

TEST(AnswerWriter, givesNoReportWithoutFrames) {
    FrameCounter counter = 0;
    const Faults faults;
    EXPECT_TRUE(AnswerWriter(faults, counter).finish().empty());
}

TEST(AnswerWriter, cutsALongFrameAfter63Bytes) {
    FrameCounter counter = 0;
    const Faults faults;
    AnswerWriter writer(faults, counter);
    writer.add(microseconds(0), {0x85, Bytes(100)});
    const std::vector<InputReport> reports = writer.finish();
    ASSERT_EQ(reports.size(), 2U);
    EXPECT_EQ(reports[0].bytes[0], 63);
    EXPECT_EQ(reports[1].bytes[0], 44);
}

TEST(AnswerWriter, addsTheDelayToEveryReport) {
    Faults faults;
    faults.answerDelay = milliseconds(250);
    const std::vector<InputReport> reports = twoFrames(faults);
    EXPECT_EQ(reports.at(0).due, microseconds(250'000));
    EXPECT_EQ(reports.at(1).due, microseconds(1'250'000));
}

TEST(AnswerWriter, spoilsTheCrcOfEveryFrame) {
    Faults faults;
    faults.corruptCrcEvery = 1;
    EXPECT_EQ(counted(twoFrames(faults)), "AA 55 02 00 A5 00 F0 E3 AA 55 02 00 A5 C7 59 48");
}

TEST(AnswerWriter, spoilsTheCrcOfEverySecondFrameOnly) {
    Faults faults;
    faults.corruptCrcEvery = 2;
    EXPECT_EQ(counted(twoFrames(faults)), std::string(kStart) + " AA 55 02 00 A5 C7 59 48");
}

TEST(AnswerWriter, countsFramesAcrossAnswers) {
    Faults faults;
    faults.corruptCrcEvery = 2;
    FrameCounter counter = 1;
    AnswerWriter writer(faults, counter);
    writer.add(microseconds(0), {0xA5, {199}});
    EXPECT_EQ(counted(writer.finish()), "AA 55 02 00 A5 C7 59 48");
    EXPECT_EQ(counter, 2U);
}

TEST(AnswerWriter, putsGarbageInFrontOfAnAnswer) {
    Faults faults;
    faults.garbageBefore = true;
    EXPECT_EQ(counted(twoFrames(faults)), std::string("13 AA 00 AA 55 FF FF ") + kStart + ' ' + kDone);
}

TEST(AnswerWriter, putsGarbageBehindEveryFrame) {
    Faults faults;
    faults.garbageBetween = true;
    EXPECT_EQ(counted(twoFrames(faults)),
              std::string(kStart) + " 13 AA 00 AA 55 FF FF " + kDone + " 13 AA 00 AA 55 FF FF");
}

TEST(AnswerWriter, putsGarbageIntoTheMiddleOfFrames) {
    Faults faults;
    faults.garbageInsideEvery = 2;
    EXPECT_EQ(counted(twoFrames(faults)), std::string(kStart) + " AA 55 02 00 13 AA 00 AA 55 FF FF A5 C7 59 B7");
}

TEST(AnswerWriter, splitsFramesIntoTinyReports) {
    Faults faults;
    faults.splitReports = 3;
    const std::vector<InputReport> reports = twoFrames(faults);
    ASSERT_EQ(reports.size(), 6U);
    EXPECT_EQ(hex(std::span(reports[0].bytes).first(5)), "03 AA 55 02 AA");
    EXPECT_EQ(hex(std::span(reports[2].bytes).first(4)), "02 F0 1C AA");
    EXPECT_EQ(counted(reports), std::string(kStart) + ' ' + kDone);
    EXPECT_EQ(reports[2].due, microseconds(0));
    EXPECT_EQ(reports[3].due, microseconds(1'000'000));
}

TEST(AnswerWriter, splitsIntoNoMoreThanAReportHolds) {
    Faults faults;
    faults.splitReports = 64;
    EXPECT_EQ(twoFrames(faults).at(0).bytes.size(), 64U);
    EXPECT_EQ(counted(twoFrames(faults)), std::string(kStart) + ' ' + kDone);
}

TEST(AnswerWriter, mergesFramesIntoOneReportThatWaitsForTheLast) {
    Faults faults;
    faults.mergedReports = true;
    const std::vector<InputReport> reports = twoFrames(faults);
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_EQ(reports[0].bytes[0], 16);
    EXPECT_EQ(counted(reports), std::string(kStart) + ' ' + kDone);
    EXPECT_EQ(reports[0].due, microseconds(1'000'000));
}

TEST(AnswerWriter, mergesAndSplitsTogether) {
    Faults faults;
    faults.mergedReports = true;
    faults.splitReports = 10;
    const std::vector<InputReport> reports = twoFrames(faults);
    ASSERT_EQ(reports.size(), 2U);
    EXPECT_EQ(hex(std::span(reports[0].bytes).first(11)), "0A AA 55 02 00 A5 00 F0 1C AA 55");
    EXPECT_EQ(reports[0].due, microseconds(1'000'000));
}

TEST(AnswerWriter, letsTheCountByteLie) {
    Faults faults;
    faults.countOver63 = true;
    const std::vector<InputReport> reports = twoFrames(faults);
    ASSERT_EQ(reports.at(1).bytes.size(), 64U);
    EXPECT_EQ(hex(std::span(reports[1].bytes).first(10)), "FF AA 55 02 00 A5 C7 59 B7 AA");
}

TEST(AnswerWriter, makesReportsOf63Bytes) {
    Faults faults;
    faults.reportsOf63 = true;
    const std::vector<InputReport> reports = twoFrames(faults);
    EXPECT_EQ(reports.at(0).bytes.size(), 63U);
    EXPECT_EQ(reports.at(1).bytes.size(), 63U);
    EXPECT_EQ(counted(reports), std::string(kStart) + ' ' + kDone);
}

TEST(AnswerWriter, losesTheLastByteOfAFullReportOf63Bytes) {
    Faults faults;
    faults.reportsOf63 = true;
    FrameCounter counter = 0;
    AnswerWriter writer(faults, counter);
    writer.add(microseconds(0), {0x85, Bytes(100, 0x41)});
    const std::vector<InputReport> reports = writer.finish();
    ASSERT_EQ(reports.at(0).bytes.size(), 63U);
    EXPECT_EQ(reports[0].bytes[0], 63);
    EXPECT_EQ(reports[0].bytes[62], 0x41);
}

TEST(AnswerWriter, makesReportsOf65Bytes) {
    Faults faults;
    faults.reportsOf65 = true;
    const std::vector<InputReport> reports = twoFrames(faults);
    EXPECT_EQ(reports.at(0).bytes.size(), 65U);
    EXPECT_EQ(reports.at(1).bytes.size(), 65U);
    EXPECT_EQ(reports.at(1).bytes[64], 0xAA);
}

TEST(AnswerWriter, takesTurnsWhenReportsAreBothTooShortAndTooLong) {
    Faults faults;
    faults.reportsOf63 = true;
    faults.reportsOf65 = true;
    FrameCounter counter = 0;
    AnswerWriter writer(faults, counter);
    writer.add(microseconds(0), {0xA5, Bytes(1000)});
    const std::vector<InputReport> reports = writer.finish();
    ASSERT_GT(reports.size(), 10U);
    for (std::size_t i = 0; i < reports.size(); ++i) {
        EXPECT_EQ(reports[i].bytes.size(), i % 2 == 0 ? 63U : 65U) << i;
    }
}

}  // namespace
}  // namespace kelvo
