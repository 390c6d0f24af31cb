#include <gtest/gtest.h>

#include "DeviceTesting.h"
#include "Kr310Answer.h"

namespace kelvo {
namespace {

using Reports = std::vector<std::string>;

/// When a report is due, its size, and its bytes before the filling 0xAA at its end.
std::string described(const InputReport& report) {
    Bytes bytes = report.bytes;
    while (bytes.back() == 0xAA) {
        bytes.pop_back();
    }
    return std::to_string(report.due / std::chrono::milliseconds(1)) + " ms, " + std::to_string(report.bytes.size()) +
           " bytes: " + hex(bytes);
}

TEST(AnswerWriter, addsTheFaultsToTwoFramesASecondApart) {
    struct Row {
        const char* faults;
        Reports reports;
    };
    for (const auto& [faultTexts, reports] :
         {Row{"", {"0 ms, 64 bytes: 08 AA 55 02 00 A5 00 F0 1C", "1000 ms, 64 bytes: 08 AA 55 02 00 A5 C7 59 B7"}},
          {"delay=250",
           {"250 ms, 64 bytes: 08 AA 55 02 00 A5 00 F0 1C", "1250 ms, 64 bytes: 08 AA 55 02 00 A5 C7 59 B7"}},
          {"corrupt-crc",
           {"0 ms, 64 bytes: 08 AA 55 02 00 A5 00 F0 E3", "1000 ms, 64 bytes: 08 AA 55 02 00 A5 C7 59 48"}},
          {"corrupt-crc=2",
           {"0 ms, 64 bytes: 08 AA 55 02 00 A5 00 F0 1C", "1000 ms, 64 bytes: 08 AA 55 02 00 A5 C7 59 48"}},
          {"garbage-before",
           {"0 ms, 64 bytes: 0F 13 AA 00 AA 55 FF FF AA 55 02 00 A5 00 F0 1C",
            "1000 ms, 64 bytes: 08 AA 55 02 00 A5 C7 59 B7"}},
          {"garbage-between",
           {"0 ms, 64 bytes: 0F AA 55 02 00 A5 00 F0 1C 13 AA 00 AA 55 FF FF",
            "1000 ms, 64 bytes: 0F AA 55 02 00 A5 C7 59 B7 13 AA 00 AA 55 FF FF"}},
          {"garbage-inside=2",
           {"0 ms, 64 bytes: 08 AA 55 02 00 A5 00 F0 1C",
            "1000 ms, 64 bytes: 0F AA 55 02 00 13 AA 00 AA 55 FF FF A5 C7 59 B7"}},
          {"split=3",
           {"0 ms, 64 bytes: 03 AA 55 02", "0 ms, 64 bytes: 03 00 A5 00", "0 ms, 64 bytes: 02 F0 1C",
            "1000 ms, 64 bytes: 03 AA 55 02", "1000 ms, 64 bytes: 03 00 A5 C7", "1000 ms, 64 bytes: 02 59 B7"}},
          {"merge", {"1000 ms, 64 bytes: 10 AA 55 02 00 A5 00 F0 1C AA 55 02 00 A5 C7 59 B7"}},
          {"merge split=10",
           {"1000 ms, 64 bytes: 0A AA 55 02 00 A5 00 F0 1C AA 55", "1000 ms, 64 bytes: 06 02 00 A5 C7 59 B7"}},
          {"count-over-63",
           {"0 ms, 64 bytes: FF AA 55 02 00 A5 00 F0 1C", "1000 ms, 64 bytes: FF AA 55 02 00 A5 C7 59 B7"}},
          {"reports-of-63",
           {"0 ms, 63 bytes: 08 AA 55 02 00 A5 00 F0 1C", "1000 ms, 63 bytes: 08 AA 55 02 00 A5 C7 59 B7"}},
          {"reports-of-65",
           {"0 ms, 65 bytes: 08 AA 55 02 00 A5 00 F0 1C", "1000 ms, 65 bytes: 08 AA 55 02 00 A5 C7 59 B7"}}}) {
        const Faults faults = faultsOf(faultTexts);
        FrameCounter counter = 0;
        AnswerWriter writer(faults, counter);
        writer.add(std::chrono::seconds(0), {0xA5, {0}});
        writer.add(std::chrono::seconds(1), {0xA5, {199}});
        Reports written;
        for (const InputReport& report : writer.finish()) {
            written.push_back(described(report));
        }
        EXPECT_EQ(written, reports) << faultTexts;
    }
}

TEST(AnswerWriter, cutsALongFrameAfter63Bytes) {
    for (const auto& [faultTexts, firstSize, secondSize] :
         {std::tuple{"", 64U, 64U}, {"reports-of-63", 63U, 63U}, {"reports-of-63 reports-of-65", 63U, 65U}}) {
        const Faults faults = faultsOf(faultTexts);
        FrameCounter counter = 0;
        AnswerWriter writer(faults, counter);
        writer.add({}, {0x85, Bytes(100, 0x41)});
        const std::vector<InputReport> reports = writer.finish();
        ASSERT_EQ(reports.size(), 2U);
        EXPECT_EQ(reports[0].bytes.size(), firstSize);
        EXPECT_EQ(reports[0].bytes[0], 63);
        EXPECT_EQ(reports[0].bytes.back(), 0x41);
        EXPECT_EQ(reports[1].bytes.size(), secondSize);
        EXPECT_EQ(reports[1].bytes[0], 44);
    }
}

}  // namespace
}  // namespace kelvo
