#include <gtest/gtest.h>

#include "ManagerTesting.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using Activity = VirtualHidManager::Activity;
using Log = std::vector<std::string>;

TEST(VirtualHidManagerReports, carryACompleteImport) {
    ConnectedBench bench;
    for (const std::uint8_t phase : {1, 2, 3, 4}) {
        EXPECT_TRUE(bench.sendFrame(packet(0xE1, 3, phase)));
        bench.awaitInputReports(phase);
    }
    EXPECT_EQ(bench.answers(), (Log{"report AA 55 02 00 E1 01 21 35", "report AA 55 02 00 E1 02 11 56",
                                    "report AA 55 02 00 E1 03 01 77", "report AA 55 02 00 E1 04 71 90"}));
    EXPECT_EQ(bench.manager.activity().changes,
              std::vector<std::string>{"CAB 30 <- \"MYCAB\" 512 points, crc32 844cf1f6"});
    EXPECT_EQ(bench.pedal.memory().cab[3].name, "MYCAB");
}

TEST(VirtualHidManagerReports, arePendingUntilTheHostHasReadThem) {
    Bench bench;
    std::size_t pending = 0;
    bench.onEvent = [&](const std::string& event) {
        if (event.starts_with("report") && pending == 0) {
            // Its answer is the second.
            EXPECT_TRUE(bench.sendFrame(packet(0xE1, 3, 2)));
            pending = bench.manager.activity().pendingReports;
        }
    };
    bench.manager.plug();
    bench.start();
    bench.awaitArrivals(1);
    EXPECT_TRUE(bench.sendFrame(packet(0xE1, 3, 1)));
    bench.awaitInputReports(2);
    bench.finish();
    EXPECT_EQ(pending, 2U);
}

TEST(VirtualHidManagerReports, areNotKeptUnlessARecordIsWanted) {
    ConnectedBench bench({.record = false});
    EXPECT_TRUE(bench.sendFrame(deletePacket(3)));
    EXPECT_EQ(bench.manager.activity().outputReports, std::vector<Report>{});
    EXPECT_EQ(bench.manager.activity().changes, std::vector<std::string>{});
    EXPECT_EQ(bench.pedal.memory().cab[3].name, "");
}

TEST(VirtualHidManagerReports, areRecordedCompletelyAndInOrder) {
    ConnectedBench bench;
    EXPECT_TRUE(bench.sendFrame(packet(0xE1, 3, 1)));
    EXPECT_TRUE(bench.sendConnect());
    const std::vector<Report> record = bench.manager.activity().outputReports;
    ASSERT_EQ(record.size(), 10U);
    EXPECT_EQ(hex(std::span(record[0]).first(12)), "3F AA 55 03 02 E1 03 01 10 11 12 13");
    EXPECT_EQ(record[8][0], 17);
    EXPECT_EQ(hex(std::span(record[8]).subspan(16, 4)), "C4 BA 5C 5C");
    EXPECT_EQ(hex(std::span(record[9]).first(10)), "08 AA 55 02 00 E0 00 02 25 5C");
    EXPECT_EQ(record[9][63], 0x5C);
}

TEST(VirtualHidManagerReports, canBeWaitedForByTheChangeTheyMake) {
    ConnectedBench bench;
    const auto hasChanged = [&](const Activity& seen) {
        return !seen.changes.empty() && bench.pedal.memory().cab[3].name.empty();
    };
    EXPECT_FALSE(bench.manager.waitFor(hasChanged, milliseconds(1)));
    std::jthread host([&] { EXPECT_TRUE(bench.sendFrame(deletePacket(3))); });
    EXPECT_TRUE(bench.manager.waitFor(hasChanged));
}

TEST(VirtualHidManagerReports, comeInTheOrderOfTheStartup) {
    ConnectedBench bench;
    bench.pedal.setStartup({100, milliseconds(5)});
    const steady_clock::time_point begin = steady_clock::now();
    EXPECT_TRUE(bench.sendConnect());
    bench.awaitInputReports(7);
    EXPECT_GE(steady_clock::now() - begin, milliseconds(10));
    const Log answers = bench.answers();
    ASSERT_EQ(answers.size(), 7U);
    EXPECT_EQ(answers[0], "report AA 55 02 00 A5 00 F0 1C");
    EXPECT_EQ(answers[1], "report AA 55 02 00 A5 64 DC 3E");
    EXPECT_TRUE(answers[2].starts_with("report AA 55 65 00 85 4F 50 45 4E"));
    EXPECT_TRUE(answers[4].starts_with("report AA 55 65 00 E3 43 4C 45 41 4E"));
    EXPECT_EQ(answers[6], "report AA 55 02 00 A5 C7 59 B7");
}

TEST(VirtualHidManagerReports, ofAnAnswerThatIsDueSoonerOvertakeThoseOfASlowOne) {
    ConnectedBench bench;
    bench.pedal.setStartup({199, seconds(3600)});
    EXPECT_TRUE(bench.sendConnect());
    EXPECT_TRUE(bench.sendFrame(packet(0xE1, 3, 1)));
    bench.awaitInputReports(2);
    EXPECT_EQ(bench.answers(), (Log{"report AA 55 02 00 A5 00 F0 1C", "report AA 55 02 00 E1 01 21 35"}));
    EXPECT_EQ(bench.manager.activity().pendingReports, 5U);
}

TEST(VirtualHidManagerReports, areHeldBackByTheDelay) {
    ConnectedBench bench;
    bench.fault({"delay=30"});
    const steady_clock::time_point begin = steady_clock::now();
    EXPECT_TRUE(bench.sendFrame(packet(0xE1, 3, 1)));
    bench.awaitInputReports(1);
    EXPECT_GE(steady_clock::now() - begin, milliseconds(30));
}

TEST(VirtualHidManagerReports, pendingReports_areLostByAnUnplug) {
    ConnectedBench bench;
    bench.pedal.setStartup({199, seconds(3600)});
    EXPECT_TRUE(bench.sendConnect());
    bench.awaitInputReports(1);
    bench.manager.unplug();
    bench.awaitRemovals(1);
    EXPECT_EQ(bench.manager.activity().pendingReports, 0U);
    EXPECT_EQ(bench.answers(), (Log{"report AA 55 02 00 A5 00 F0 1C", "removal 1"}));
}

TEST(VirtualHidManagerReports, areRefusedOnceThePedalIsUnplugged) {
    ConnectedBench bench;
    bench.manager.unplug();
    EXPECT_FALSE(bench.sendConnect());
    EXPECT_EQ(bench.manager.activity().refusedReports, 1U);
    EXPECT_TRUE(bench.manager.activity().outputReports.empty());
}

TEST(VirtualHidManagerReports, areRefusedByADeviceThatWasReplacedByANewOne) {
    ConnectedBench bench;
    const std::shared_ptr<HidDevice> first = bench.device();
    bench.manager.unplug();
    bench.manager.plug();
    bench.awaitArrivals(2);
    const Bytes report = makeReport(connectFrame());
    EXPECT_FALSE(first->setReport(std::span(report).first<64>()));
    EXPECT_TRUE(bench.device()->setReport(std::span(report).first<64>()));
}

TEST(VirtualHidManagerReports, areRefusedByADeviceThatOutlivesItsManager) {
    std::shared_ptr<HidDevice> device;
    {
        ConnectedBench bench;
        device = bench.device();
    }
    const Bytes report = makeReport(connectFrame());
    EXPECT_FALSE(device->setReport(std::span(report).first<64>()));
}

TEST(VirtualHidManagerReports, ofAHalfSentFrameAreForgottenAtTheNextPlug) {
    ConnectedBench bench;
    const Bytes half = makeReports(packet(0xE1, 3, 1)).front();
    EXPECT_TRUE(bench.device()->setReport(std::span(half).first<64>()));
    bench.manager.unplug();
    bench.manager.plug();
    bench.awaitArrivals(2);
    EXPECT_TRUE(bench.sendConnect());
    bench.awaitInputReports(1);
    EXPECT_EQ(bench.log().at(3), "report AA 55 02 00 A5 00 F0 1C");
}

TEST(VirtualHidManagerReports, canBeRefusedOneByOne) {
    for (std::uint32_t k = 1; k <= 9; ++k) {
        for (const Faults& faults :
             {Faults{.refuseReport = k}, Faults{.protocolErrorAtReport = k}, Faults{.noAnswerAtReport = k}}) {
            ConnectedBench bench;
            bench.pedal.setFaults(faults);
            EXPECT_FALSE(bench.sendFrame(packet(0xE1, 3, 1))) << k;
            EXPECT_EQ(bench.manager.activity().outputReports.size(), k - 1);
            EXPECT_EQ(bench.manager.activity().refusedReports, 1U);
            EXPECT_EQ(bench.manager.activity().removals, 0U);
            EXPECT_TRUE(bench.sendConnect()) << k;
        }
    }
}

TEST(VirtualHidManagerReports, canUnplugThePedalOneByOne) {
    for (std::uint32_t k = 1; k <= 9; ++k) {
        ConnectedBench bench;
        bench.pedal.setFaults({.unplugAtReport = k});
        EXPECT_FALSE(bench.sendFrame(packet(0xE1, 3, 1))) << k;
        bench.awaitRemovals(1);
        EXPECT_EQ(bench.manager.activity().outputReports.size(), k - 1);
        EXPECT_EQ(bench.answers(), Log{"removal 1"});
    }
}

TEST(VirtualHidManagerReports, areCountedAfreshForTheFaultsAtEachPlug) {
    ConnectedBench bench;
    bench.fault({"unplug=2"});
    EXPECT_TRUE(bench.sendConnect());
    EXPECT_FALSE(bench.sendConnect());
    bench.manager.plug();
    bench.awaitArrivals(2);
    EXPECT_TRUE(bench.sendConnect());
    EXPECT_FALSE(bench.sendConnect());
}

TEST(VirtualHidManagerReports, ofOtherSizesReachTheHostAsTheyAre) {
    ConnectedBench bench;
    bench.fault({"reports-of-63", "reports-of-65", "split=7"});
    EXPECT_TRUE(bench.sendFrame(packet(0xE1, 3, 1)));
    bench.awaitInputReports(2);
    EXPECT_EQ(bench.answers(), (Log{"report AA 55 02 00 E1 01 21", "report 35"}));
}

TEST(VirtualHidManagerReports, keepTheWirePaceInBothDirections) {
    ConnectedBench bench({.wirePace = milliseconds(3)});
    bench.fault({"split=1"});
    const steady_clock::time_point begin = steady_clock::now();
    EXPECT_TRUE(bench.sendFrame(packet(0xE1, 3, 1)));
    const steady_clock::time_point sent = steady_clock::now();
    EXPECT_GE(sent - begin, 8 * milliseconds(3));
    bench.awaitInputReports(8);
    EXPECT_GE(steady_clock::now() - begin, (8 + 7) * milliseconds(3));
}

TEST(VirtualHidManagerReports, waitingForTheWire_areRefusedByAnUnplug) {
    ConnectedBench bench({.wirePace = seconds(3600), .record = true});
    std::jthread host([&] { EXPECT_FALSE(bench.sendFrame(deletePacket(3))); });
    EXPECT_TRUE(bench.manager.waitFor([](const Activity& seen) { return seen.outputReports.size() == 1; }));
    bench.manager.unplug();
    EXPECT_TRUE(bench.manager.waitFor([](const Activity& seen) { return seen.refusedReports == 1; }));
}

}  // namespace
}  // namespace kelvo
