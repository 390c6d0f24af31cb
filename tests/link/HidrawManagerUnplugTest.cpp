#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "BlockedWrite.h"
#include "Descriptors.h"
#include "FakeBus.h"
#include "RunningManager.h"

namespace kelvo {
namespace {

using Events = std::vector<std::string>;
using Bytes = std::vector<std::uint8_t>;

const Events kArrivedAndRemoved{"arrived", "removed"};

TEST(HidrawManagerUnplug, whileIdle_isReportedWithTheUdevEvent) {
    FoundPedal pedal;
    pedal.bus.unplug(0);
    EXPECT_EQ(pedal.link.waitFor(2), kArrivedAndRemoved);
}

TEST(HidrawManagerUnplug, whileIdle_isReportedWithTheEndOfTheNode) {
    FoundPedal pedal;
    pedal.bus.cut(0);
    EXPECT_EQ(pedal.link.waitFor(2), kArrivedAndRemoved);
    EXPECT_FALSE(pedal.link.device()->setReport(Report{}));
}

TEST(HidrawManagerUnplug, isReportedOnce_whetherUdevOrTheNodeIsFirst) {
    for (const bool isUdevFirst : {true, false}) {
        FoundPedal pedal;
        isUdevFirst ? pedal.bus.unplug(0) : pedal.bus.cut(0);
        pedal.link.waitFor(2);
        isUdevFirst ? pedal.bus.cut(0) : pedal.bus.unplug(0);
        pedal.bus.plug(1);
        EXPECT_EQ(pedal.link.waitFor(3), (Events{"arrived", "removed", "arrived"})) << isUdevFirst;
    }
}

class HidrawManagerEnd : public testing::TestWithParam<int> {};

TEST_P(HidrawManagerEnd, whileReading_isReportedOnceAfterTheQueuedReports) {
    NodeScript script({}, {{.bytes = Bytes(64, 1)}, {.bytes = Bytes(64, 2)}, {.error = GetParam()}});
    FoundPedal pedal(&script);
    pedal.bus.send(0, {0});
    pedal.link.waitFor(4);
    pedal.bus.unplug(0);
    pedal.bus.plug(1);
    EXPECT_EQ(pedal.link.waitFor(5), (Events{"arrived", "report of 64 bytes beginning with 1",
                                             "report of 64 bytes beginning with 2", "removed", "arrived"}));
}

INSTANTIATE_TEST_SUITE_P(, HidrawManagerEnd, testing::Values(EIO, ENODEV, EPROTO, ESHUTDOWN),
                         [](const auto& error) { return std::string(strerrorname_np(error.param)); });

TEST(HidrawManagerUnplug, reportedByUdev_waitsForTheQueuedReports) {
    NodeScript script({}, {{.bytes = Bytes(64, 1)}, {.bytes = Bytes(64, 2)}, {.error = EIO}});
    FakeBus bus;
    bus.setScript(0, script);
    bus.plug(0);
    RunningManager link(bus);
    link.onEvent = [&](const std::string& event) {
        if (event == "report of 64 bytes beginning with 1") {
            bus.sendEvent(0, "remove");
        }
    };
    link.start();
    link.waitFor(1);
    bus.send(0, {0});
    EXPECT_EQ(link.waitFor(4), (Events{"arrived", "report of 64 bytes beginning with 1",
                                       "report of 64 bytes beginning with 2", "removed"}));
}

TEST(HidrawManagerUnplug, inTheMiddleOfABlockedWrite_isReportedWhileTheWriteIsStillBlocked) {
    FoundPedal pedal;
    BlockedWrite write(pedal.link.device());
    pedal.bus.send(0, Bytes(64, 4));
    EXPECT_EQ(pedal.link.waitFor(2), (Events{"arrived", "report of 64 bytes beginning with 4"}));
    pedal.bus.unplug(0);
    EXPECT_EQ(pedal.link.waitFor(3), (Events{"arrived", "report of 64 bytes beginning with 4", "removed"}));
    pedal.bus.cut(0);
    write.waitForRefusal();
}

TEST(HidrawManagerUnplug, inTheMiddleOfABlockedWrite_isNoticedByTheEndOfTheNode) {
    FoundPedal pedal;
    BlockedWrite write(pedal.link.device());
    pedal.bus.cut(0);
    EXPECT_EQ(pedal.link.waitFor(2), kArrivedAndRemoved);
    write.waitForRefusal();
}

TEST(HidrawManagerUnplug, keepsTheDescriptorOpenDuringABlockedWrite) {
    FakeBus bus;
    bus.plug(0);
    auto link = std::make_unique<RunningManager>(bus);
    link->start();
    link->waitFor(1);
    BlockedWrite write(link->device());
    bus.sendEvent(0, "remove");
    link->waitFor(2);
    link.reset();
    EXPECT_EQ(openNodes(), 1);
    bus.cut(0);
    write.waitForRefusal();
    EXPECT_EQ(openNodes(), 0);
}

}  // namespace
}  // namespace kelvo
