#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "DeviceTesting.h"
#include "Kr310Answer.h"

namespace kelvo {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using Reports = std::vector<std::string>;

/// The reports of one answer whose frames are due a second apart.
std::vector<InputReport> write(const Faults& faults, const std::vector<Frame>& frames) {
    FrameCounter counter = 0;
    AnswerWriter writer(faults, counter);
    microseconds due{0};
    for (const Frame& frame : frames) {
        writer.add(due, frame);
        due += microseconds(1'000'000);
    }
    return writer.finish();
}

/// When a report is due, its size, and its count byte with the first 19 of the counted bytes.
std::string described(const InputReport& report) {
    const std::size_t shown = std::min<std::size_t>(report.bytes.at(0) + 1U, 20);
    return std::to_string(report.due / milliseconds(1)) + " ms, " + std::to_string(report.bytes.size()) +
           " bytes: " + hex(std::span(report.bytes).first(shown));
}

struct AnswerCase {
    const char* faults;
    Reports reports;
};

class AnswerWithFaults : public testing::TestWithParam<AnswerCase> {};

TEST_P(AnswerWithFaults, hasTheseReports) {
    Faults faults;
    std::istringstream names(GetParam().faults);
    for (std::string name; names >> name;) {
        EXPECT_EQ(switchOn(name, faults), std::nullopt);
    }
    Reports reports;
    std::ranges::transform(write(faults, {{0xA5, {0}}, {0xA5, {199}}}), std::back_inserter(reports), described);
    EXPECT_EQ(reports, GetParam().reports);
}

INSTANTIATE_TEST_SUITE_P(
    TwoFrames, AnswerWithFaults,
    testing::Values(
        AnswerCase{"", {"0 ms, 64 bytes: 08 AA 55 02 00 A5 00 F0 1C", "1000 ms, 64 bytes: 08 AA 55 02 00 A5 C7 59 B7"}},
        AnswerCase{"delay=250",
                   {"250 ms, 64 bytes: 08 AA 55 02 00 A5 00 F0 1C", "1250 ms, 64 bytes: 08 AA 55 02 00 A5 C7 59 B7"}},
        AnswerCase{"corrupt-crc",
                   {"0 ms, 64 bytes: 08 AA 55 02 00 A5 00 F0 E3", "1000 ms, 64 bytes: 08 AA 55 02 00 A5 C7 59 48"}},
        AnswerCase{"corrupt-crc=2",
                   {"0 ms, 64 bytes: 08 AA 55 02 00 A5 00 F0 1C", "1000 ms, 64 bytes: 08 AA 55 02 00 A5 C7 59 48"}},
        AnswerCase{"garbage-before",
                   {"0 ms, 64 bytes: 0F 13 AA 00 AA 55 FF FF AA 55 02 00 A5 00 F0 1C",
                    "1000 ms, 64 bytes: 08 AA 55 02 00 A5 C7 59 B7"}},
        AnswerCase{"garbage-between",
                   {"0 ms, 64 bytes: 0F AA 55 02 00 A5 00 F0 1C 13 AA 00 AA 55 FF FF",
                    "1000 ms, 64 bytes: 0F AA 55 02 00 A5 C7 59 B7 13 AA 00 AA 55 FF FF"}},
        AnswerCase{"garbage-inside=2",
                   {"0 ms, 64 bytes: 08 AA 55 02 00 A5 00 F0 1C",
                    "1000 ms, 64 bytes: 0F AA 55 02 00 13 AA 00 AA 55 FF FF A5 C7 59 B7"}},
        AnswerCase{"split=3",
                   {"0 ms, 64 bytes: 03 AA 55 02", "0 ms, 64 bytes: 03 00 A5 00", "0 ms, 64 bytes: 02 F0 1C",
                    "1000 ms, 64 bytes: 03 AA 55 02", "1000 ms, 64 bytes: 03 00 A5 C7", "1000 ms, 64 bytes: 02 59 B7"}},
        AnswerCase{"merge", {"1000 ms, 64 bytes: 10 AA 55 02 00 A5 00 F0 1C AA 55 02 00 A5 C7 59 B7"}},
        AnswerCase{"merge split=10",
                   {"1000 ms, 64 bytes: 0A AA 55 02 00 A5 00 F0 1C AA 55", "1000 ms, 64 bytes: 06 02 00 A5 C7 59 B7"}},
        AnswerCase{"count-over-63",
                   {"0 ms, 64 bytes: FF AA 55 02 00 A5 00 F0 1C AA AA AA AA AA AA AA AA AA AA AA",
                    "1000 ms, 64 bytes: FF AA 55 02 00 A5 C7 59 B7 AA AA AA AA AA AA AA AA AA AA AA"}},
        AnswerCase{"reports-of-63",
                   {"0 ms, 63 bytes: 08 AA 55 02 00 A5 00 F0 1C", "1000 ms, 63 bytes: 08 AA 55 02 00 A5 C7 59 B7"}},
        AnswerCase{"reports-of-65",
                   {"0 ms, 65 bytes: 08 AA 55 02 00 A5 00 F0 1C", "1000 ms, 65 bytes: 08 AA 55 02 00 A5 C7 59 B7"}}));

TEST(AnswerWriter, fillsReportsWithFalseHeaders) {
    Bytes expected = unhex("08 AA 55 02 00 A5 C7 59 B7");
    expected.resize(64, 0xAA);
    EXPECT_EQ(hex(write({}, {{0xA5, {199}}}).at(0).bytes), hex(expected));
    expected.push_back(0xAA);
    EXPECT_EQ(hex(write({.reportsOf65 = true}, {{0xA5, {199}}}).at(0).bytes), hex(expected));
}

TEST(AnswerWriter, givesNoReportWithoutFrames) {
    EXPECT_TRUE(write({}, {}).empty());
}

TEST(AnswerWriter, cutsALongFrameAfter63Bytes) {
    const std::vector<InputReport> reports = write({}, {{0x85, Bytes(100)}});
    ASSERT_EQ(reports.size(), 2U);
    EXPECT_EQ(reports[0].bytes[0], 63);
    EXPECT_EQ(reports[1].bytes[0], 44);
}

TEST(AnswerWriter, countsFramesAcrossAnswers) {
    const Faults faults{.corruptCrcEvery = 2};
    FrameCounter counter = 1;
    AnswerWriter writer(faults, counter);
    writer.add(microseconds(0), {0xA5, {199}});
    EXPECT_EQ(answered({writer.finish(), {}}), "AA 55 02 00 A5 C7 59 48");
    EXPECT_EQ(counter, 2U);
}

TEST(AnswerWriter, splitsIntoNoMoreThanAReportHolds) {
    const std::vector<InputReport> reports = write({.splitReports = 64}, {{0x85, Bytes(100)}});
    EXPECT_EQ(reports.at(0).bytes.size(), 64U);
    EXPECT_EQ(reports.at(0).bytes[0], 63);
}

TEST(AnswerWriter, losesTheLastByteOfAFullReportOf63Bytes) {
    const std::vector<InputReport> reports = write({.reportsOf63 = true}, {{0x85, Bytes(100, 0x41)}});
    ASSERT_EQ(reports.at(0).bytes.size(), 63U);
    EXPECT_EQ(reports[0].bytes[0], 63);
    EXPECT_EQ(reports[0].bytes[62], 0x41);
}

TEST(AnswerWriter, alternatesReportsThatAreTooShortAndTooLong) {
    const auto reports = write({.reportsOf63 = true, .reportsOf65 = true}, {{0xA5, Bytes(1000)}});
    ASSERT_GT(reports.size(), 10U);
    for (std::size_t i = 0; i < reports.size(); ++i) {
        EXPECT_EQ(reports[i].bytes.size(), i % 2 == 0 ? 63U : 65U) << i;
    }
}

}  // namespace
}  // namespace kelvo
