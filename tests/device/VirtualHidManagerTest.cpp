#include <gtest/gtest.h>

#include "ManagerTesting.h"
#include "VirtualHidManager.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using Activity = VirtualHidManager::Activity;
using Log = std::vector<std::string>;

TEST(VirtualHidManager, announcesAPedalThatIsPluggedInLater) {
    Bench bench;
    bench.start();
    EXPECT_EQ(bench.log(), Log{});
    bench.manager.plug();
    bench.awaitArrivals(1);
    EXPECT_EQ(bench.log(), Log{"arrival 1"});
}

TEST(VirtualHidManager, announcesEachPlugAndUnplugOnce) {
    Bench bench;
    bench.manager.plug();
    bench.manager.plug();
    bench.start();
    bench.awaitArrivals(1);
    bench.manager.plug();
    bench.manager.unplug();
    bench.manager.unplug();
    bench.awaitRemovals(1);
    EXPECT_EQ(bench.log(), (Log{"arrival 1", "removal 1"}));
    bench.manager.plug();
    bench.awaitArrivals(2);
    EXPECT_EQ(bench.log(), (Log{"arrival 1", "removal 1", "arrival 2"}));
}

struct OtherIdentity {
    const char* what;
    HidMatching wanted;
};

class VirtualHidManagerMatching : public testing::TestWithParam<OtherIdentity> {};

TEST_P(VirtualHidManagerMatching, announcesNothingToAHostThatLooksForAnotherDevice) {
    Bench bench;
    bench.manager.plug();
    bench.start(GetParam().wanted);
    EXPECT_FALSE(bench.manager.waitFor([](const Activity& seen) { return seen.arrivals > 0; }, milliseconds(50)));
    EXPECT_EQ(bench.log(), Log{}) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(Numbers, VirtualHidManagerMatching,
                         testing::Values(OtherIdentity{"vendor", {0x0484, 0x5703, 200}},
                                         OtherIdentity{"product", {0x0483, 0x5704, 200}},
                                         OtherIdentity{"release", {0x0483, 0x5703, 201}},
                                         OtherIdentity{"nothing set", {}}));

TEST(VirtualHidManager, canPassForAnotherDevice) {
    Bench bench({.identity = {0x1209, 0x0001, 1}});
    bench.manager.plug();
    bench.start({0x1209, 0x0001, 1});
    bench.awaitArrivals(1);
}

TEST(VirtualHidManager, findsNoDeviceWithoutOpenButStillWaitsForStop) {
    VirtualKr310 pedal;
    VirtualHidManager manager(pedal);
    manager.plug();
    std::jthread loop([&] { manager.run(); });
    EXPECT_FALSE(manager.waitFor([](const Activity& seen) { return seen.arrivals > 0; }, milliseconds(20)));
    manager.stop();
}

TEST(VirtualHidManager, needsNoCallbacks) {
    VirtualKr310 pedal;
    VirtualHidManager manager(pedal);
    EXPECT_TRUE(manager.open(kKr310Identity, {}));
    manager.plug();
    std::jthread loop([&] { manager.run(); });
    EXPECT_TRUE(manager.waitFor([](const Activity& seen) { return seen.arrivals == 1; }));
    manager.unplug();
    EXPECT_TRUE(manager.waitFor([](const Activity& seen) { return seen.removals == 1; }));
    manager.stop();
}

TEST(VirtualHidManagerStop, endsTheNextRunWhenNoneIsRunning) {
    Bench bench;
    bench.manager.stop();
    bench.start();
    bench.finish();
    EXPECT_EQ(bench.log(), Log{});
}

TEST(VirtualHidManagerStop, worksFromWithinEveryCallback) {
    for (const std::string where : {"arrival 1", "report", "removal 1"}) {
        Bench bench;
        bench.onEvent = [&](const std::string& event) {
            if (event.starts_with(where)) {
                bench.manager.stop();
            }
        };
        bench.manager.plug();
        bench.start();
        bench.awaitArrivals(1);
        if (where == "report") {
            EXPECT_TRUE(bench.sendFrame(packet(0xE1, 3, 1)));
        } else {
            bench.manager.unplug();
        }
        bench.waitUntilRunReturns();
        EXPECT_TRUE(bench.log().back().starts_with(where));
    }
}

TEST(VirtualHidManagerStop, letsALaterRunAnnounceThePedalAnew) {
    ConnectedBench bench;
    bench.finish();
    bench.start();
    bench.awaitArrivals(2);
    EXPECT_EQ(bench.log(), (Log{"arrival 1", "arrival 1"}));
}

TEST(VirtualHidManager, letsCallbacksUseTheManagerAndTheDevice) {
    Bench bench;
    bench.onEvent = [&](const std::string& event) {
        EXPECT_TRUE(bench.manager.activity().removals == 0);
        if (event == "arrival 1") {
            EXPECT_TRUE(bench.sendFrame(packet(0xE1, 3, 1)));
        } else if (event.starts_with("report")) {
            bench.manager.unplug();
        }
    };
    bench.manager.plug();
    bench.start();
    bench.awaitRemovals(1);
    EXPECT_EQ(bench.log(), (Log{"arrival 1", "report AA 55 02 00 E1 01 21 35", "removal 1"}));
}

TEST(VirtualHidManager, letsTheLineSinkUseTheManager) {
    VirtualHidManager* seen = nullptr;
    std::size_t taken = 0;
    VirtualKr310 pedal({}, [&](std::string_view) { taken = seen->activity().outputReports.size(); });
    VirtualHidManager manager(pedal, {.record = true});
    seen = &manager;
    std::shared_ptr<HidDevice> device;
    EXPECT_TRUE(manager.open(kKr310Identity, {.deviceMatching = [&](const auto& arrived) {
                                 device = arrived;
                                 manager.stop();
                             }}));
    manager.plug();
    manager.run();
    for (const Bytes& report : makeReports(deletePacket(3))) {
        EXPECT_TRUE(device->setReport(std::span(report).first<64>()));
    }
    EXPECT_EQ(taken, 8U);
    EXPECT_EQ(manager.activity().changes, Log{"CAB 30 cleared"});
}

TEST(VirtualHidManager, letsPlugAndUnplugComeFromManyThreadsAtOnce) {
    Bench bench;
    bench.start();
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&] {
                for (int turn = 0; turn < 50; ++turn) {
                    bench.manager.plug();
                    static_cast<void>(bench.sendFrame(packet(0xE1, 3, 1)));
                    bench.manager.unplug();
                }
            });
        }
    }
    bench.manager.plug();
    ASSERT_TRUE(bench.manager.waitFor([](const Activity& seen) { return seen.arrivals == seen.removals + 1; }));
    bench.manager.unplug();
    ASSERT_TRUE(bench.manager.waitFor([](const Activity& seen) { return seen.arrivals == seen.removals; }));
}

}  // namespace
}  // namespace kelvo
