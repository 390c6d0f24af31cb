#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <string_view>

#include "Faults.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;

Faults parsed(std::string_view text) {
    Faults faults;
    EXPECT_EQ(switchOn(text, faults), std::nullopt);
    return faults;
}

TEST(FaultTable, onlyFaultsWithANumber_haveARange) {
    for (const FaultEntry& fault : faultTable()) {
        if (fault.argument.empty()) {
            EXPECT_EQ(fault.usual, 0U) << fault.name;
            EXPECT_EQ(numbersOf(fault), "0 to 0") << fault.name;
        }
    }
}

TEST(FaultTable, describesAcceptedNumbers) {
    std::map<std::string_view, std::string> numbers;
    for (const FaultEntry& fault : faultTable()) {
        if (!fault.argument.empty()) {
            numbers[fault.name] = numbersOf(fault);
        }
    }
    EXPECT_EQ(numbers, (std::map<std::string_view, std::string>{{"silent", "0 to 5"},
                                                                {"delay", "1 to 3600000"},
                                                                {"ack-out-of-range", "0 to 255"},
                                                                {"corrupt-crc", "1 or more"},
                                                                {"garbage-inside", "1 or more"},
                                                                {"split", "1 to 63"},
                                                                {"names-after-done", "0 to 3600000"},
                                                                {"refuse", "1 or more"},
                                                                {"protocol-error", "1 or more"},
                                                                {"no-answer", "1 or more"},
                                                                {"unplug", "1 or more"}}));
}

TEST(SwitchOn, switchesOnWhatIsNamedWithTheNumberThatIsUsual) {
    EXPECT_EQ(parsed("silent").silentFromPhase, 0);
    EXPECT_EQ(parsed("delay").answerDelay, milliseconds(500));
    EXPECT_TRUE(parsed("duplicate-ack").duplicateAcknowledgement);
    EXPECT_TRUE(parsed("wrong-ack").wrongAcknowledgement);
    EXPECT_EQ(parsed("ack-out-of-range").acknowledgementOutOfRange, 255);
    EXPECT_EQ(parsed("corrupt-crc").corruptCrcEvery, 1U);
    EXPECT_TRUE(parsed("long-frames").longFrames);
    EXPECT_TRUE(parsed("garbage-before").garbageBefore);
    EXPECT_TRUE(parsed("garbage-between").garbageBetween);
    EXPECT_EQ(parsed("garbage-inside").garbageInsideEvery, 1U);
    EXPECT_EQ(parsed("split").splitReports, 1U);
    EXPECT_TRUE(parsed("merge").mergedReports);
    EXPECT_TRUE(parsed("count-over-63").countOver63);
    EXPECT_TRUE(parsed("reports-of-63").reportsOf63);
    EXPECT_TRUE(parsed("reports-of-65").reportsOf65);
    EXPECT_TRUE(parsed("progress-over-199").progressOver199);
    EXPECT_TRUE(parsed("amp-names-first").ampNamesFirst);
    EXPECT_EQ(parsed("names-after-done").namesAfterDone, milliseconds(0));
    EXPECT_EQ(parsed("refuse").refuseReport, 1U);
    EXPECT_EQ(parsed("protocol-error").protocolErrorAtReport, 1U);
    EXPECT_EQ(parsed("no-answer").noAnswerAtReport, 1U);
    EXPECT_EQ(parsed("unplug").unplugAtReport, 1U);
}

TEST(SwitchOn, readsTheNumberAfterTheEqualsSign) {
    EXPECT_EQ(parsed("silent=3").silentFromPhase, 3);
    EXPECT_EQ(parsed("delay=20").answerDelay, milliseconds(20));
    EXPECT_EQ(parsed("ack-out-of-range=0").acknowledgementOutOfRange, 0);
    EXPECT_EQ(parsed("corrupt-crc=2").corruptCrcEvery, 2U);
    EXPECT_EQ(parsed("garbage-inside=3").garbageInsideEvery, 3U);
    EXPECT_EQ(parsed("split=63").splitReports, 63U);
    EXPECT_EQ(parsed("names-after-done=1500").namesAfterDone, milliseconds(1500));
    EXPECT_EQ(parsed("refuse=4294967295").refuseReport, 4294967295U);
    EXPECT_EQ(parsed("protocol-error=7").protocolErrorAtReport, 7U);
    EXPECT_EQ(parsed("no-answer=8").noAnswerAtReport, 8U);
    EXPECT_EQ(parsed("unplug=9").unplugAtReport, 9U);
    EXPECT_EQ(parsed("unplug=99999999999").unplugAtReport, 4294967295U);
}

TEST(SwitchOn, addsToTheFaultsThatAreOnAlready) {
    Faults faults = parsed("merge");
    EXPECT_EQ(switchOn("split=5", faults), std::nullopt);
    EXPECT_TRUE(faults.mergedReports);
    EXPECT_EQ(faults.splitReports, 5U);
}

struct Refused {
    const char* text;
    const char* answer;
};

class SwitchOnRefuses : public testing::TestWithParam<Refused> {};

TEST_P(SwitchOnRefuses, whatItDoesNotUnderstandAndSaysWhyAndChangesNothing) {
    Faults faults;
    faults.splitReports = 7;
    EXPECT_EQ(switchOn(GetParam().text, faults), GetParam().answer);
    EXPECT_EQ(faults.splitReports, 7U);
    EXPECT_FALSE(faults.silentFromPhase || faults.acknowledgementOutOfRange || faults.namesAfterDone);
    EXPECT_FALSE(faults.mergedReports);
    EXPECT_EQ(faults.answerDelay, milliseconds(0));
    EXPECT_EQ(faults.corruptCrcEvery + faults.garbageInsideEvery + faults.refuseReport + faults.unplugAtReport, 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, SwitchOnRefuses,
    testing::Values(
        Refused{"", "there is no fault ''"}, Refused{"=", "there is no fault ''"},
        Refused{"nothing", "there is no fault 'nothing'"}, Refused{"SPLIT=3", "there is no fault 'SPLIT'"},
        Refused{"split=", "split wants 1 to 63, got ''"}, Refused{"split=0", "split wants 1 to 63, got '0'"},
        Refused{"split=64", "split wants 1 to 63, got '64'"}, Refused{"split=-1", "split wants 1 to 63, got '-1'"},
        Refused{"split=+1", "split wants 1 to 63, got '+1'"}, Refused{"split=1x", "split wants 1 to 63, got '1x'"},
        Refused{"split= 1", "split wants 1 to 63, got ' 1'"},
        Refused{"split=4294967296", "split wants 1 to 63, got '4294967296'"},
        Refused{"silent=6", "silent wants 0 to 5, got '6'"}, Refused{"delay=0", "delay wants 1 to 3600000, got '0'"},
        Refused{"delay=3600001", "delay wants 1 to 3600000, got '3600001'"},
        Refused{"ack-out-of-range=256", "ack-out-of-range wants 0 to 255, got '256'"},
        Refused{"corrupt-crc=0", "corrupt-crc wants 1 or more, got '0'"},
        Refused{"corrupt-crc=abc", "corrupt-crc wants 1 or more, got 'abc'"},
        Refused{"garbage-inside=0", "garbage-inside wants 1 or more, got '0'"},
        Refused{"names-after-done=3600001", "names-after-done wants 0 to 3600000, got '3600001'"},
        Refused{"refuse=0", "refuse wants 1 or more, got '0'"}, Refused{"unplug=0", "unplug wants 1 or more, got '0'"},
        Refused{"merge=1", "merge takes no number, got '1'"}, Refused{"merge=", "merge takes no number, got ''"}));

TEST(FaultTable, namesEveryFaultOnceAndEveryNameCanBeParsed) {
    std::set<std::string_view> names;
    for (const FaultEntry& entry : faultTable()) {
        EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
        Faults faults;
        EXPECT_EQ(switchOn(entry.name, faults), std::nullopt);
        EXPECT_LE(entry.least, entry.usual) << entry.name;
        EXPECT_LE(entry.usual, entry.greatest) << entry.name;
    }
    EXPECT_EQ(names.size(), 22U);
}

}  // namespace
}  // namespace kelvo
