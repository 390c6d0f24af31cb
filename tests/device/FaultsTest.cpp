#include <gtest/gtest.h>

#include <set>
#include <string>

#include "Faults.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;

Faults parsed(std::string_view text) {
    Faults faults;
    EXPECT_TRUE(parseFault(text, faults)) << text;
    return faults;
}

TEST(Faults, areAllOffAtFirst) {
    const Faults faults;
    EXPECT_FALSE(faults.silentFromPhase || faults.acknowledgementOutOfRange || faults.namesAfterDone);
    EXPECT_EQ(faults.answerDelay, milliseconds(0));
    EXPECT_FALSE(faults.duplicateAcknowledgement || faults.wrongAcknowledgement || faults.garbageBefore ||
                 faults.garbageBetween || faults.mergedReports || faults.countOver63 || faults.reportsOf63 ||
                 faults.reportsOf65 || faults.progressOver199);
    EXPECT_EQ(faults.corruptCrcEvery + faults.garbageInsideEvery + faults.splitReports + faults.refuseReport +
                  faults.protocolErrorAtReport + faults.noAnswerAtReport + faults.unplugAtReport,
              0U);
}

TEST(ParseFault, switchesOnWhatIsNamedWithTheNumberThatIsUsual) {
    EXPECT_EQ(parsed("silent").silentFromPhase, 0);
    EXPECT_EQ(parsed("delay").answerDelay, milliseconds(500));
    EXPECT_TRUE(parsed("duplicate-ack").duplicateAcknowledgement);
    EXPECT_TRUE(parsed("wrong-ack").wrongAcknowledgement);
    EXPECT_EQ(parsed("ack-out-of-range").acknowledgementOutOfRange, 255);
    EXPECT_EQ(parsed("corrupt-crc").corruptCrcEvery, 1U);
    EXPECT_TRUE(parsed("garbage-before").garbageBefore);
    EXPECT_TRUE(parsed("garbage-between").garbageBetween);
    EXPECT_EQ(parsed("garbage-inside").garbageInsideEvery, 1U);
    EXPECT_EQ(parsed("split").splitReports, 1U);
    EXPECT_TRUE(parsed("merge").mergedReports);
    EXPECT_TRUE(parsed("count-over-63").countOver63);
    EXPECT_TRUE(parsed("reports-of-63").reportsOf63);
    EXPECT_TRUE(parsed("reports-of-65").reportsOf65);
    EXPECT_TRUE(parsed("progress-over-199").progressOver199);
    EXPECT_EQ(parsed("names-after-done").namesAfterDone, milliseconds(0));
    EXPECT_EQ(parsed("refuse").refuseReport, 1U);
    EXPECT_EQ(parsed("protocol-error").protocolErrorAtReport, 1U);
    EXPECT_EQ(parsed("no-answer").noAnswerAtReport, 1U);
    EXPECT_EQ(parsed("unplug").unplugAtReport, 1U);
}

TEST(ParseFault, takesTheNumberBehindTheEqualsSign) {
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
}

TEST(ParseFault, addsToTheFaultsThatAreOnAlready) {
    Faults faults = parsed("merge");
    EXPECT_TRUE(parseFault("split=5", faults));
    EXPECT_TRUE(faults.mergedReports);
    EXPECT_EQ(faults.splitReports, 5U);
}

class ParseFaultRefuses : public testing::TestWithParam<const char*> {};

TEST_P(ParseFaultRefuses, whatItDoesNotUnderstandAndChangesNothing) {
    Faults faults;
    faults.splitReports = 7;
    EXPECT_FALSE(parseFault(GetParam(), faults));
    EXPECT_EQ(faults.splitReports, 7U);
    EXPECT_FALSE(faults.silentFromPhase);
    EXPECT_FALSE(faults.mergedReports);
}

INSTANTIATE_TEST_SUITE_P(Texts, ParseFaultRefuses,
                         testing::Values("", "=", "nothing", "SPLIT", "split=", "split=64", "split=-1", "split=+1",
                                         "split=1x", "split= 1", "split=4294967296", "silent=256", "merge=1",
                                         "merge="));

TEST(FaultTable, namesEveryFaultOnceAndEveryNameCanBeParsed) {
    std::set<std::string_view> names;
    for (const FaultEntry& entry : faultTable()) {
        EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
        Faults faults;
        EXPECT_TRUE(parseFault(entry.name, faults)) << entry.name;
        EXPECT_LE(entry.usual, entry.greatest) << entry.name;
    }
    EXPECT_EQ(names.size(), 20U);
}

}  // namespace
}  // namespace kelvo
