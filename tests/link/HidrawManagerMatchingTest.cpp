#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "FakeBus.h"
#include "HidManager.h"
#include "RunningManager.h"

namespace kelvo {
namespace {

using Events = std::vector<std::string>;

/// Whether the device that arrived is this one: what is written to it comes out of this cable.
bool deviceIs(FakeBus& bus, int number, RunningManager& link) {
    return link.device()->setReport(Report{7, 8, 9}) && bus.receive(number, 65)[1] == 7;
}

TEST(HidrawManagerMatching, findsADeviceThatIsPresentAtTheStart) {
    FakeBus bus;
    bus.plug(0);
    RunningManager link(bus);
    EXPECT_TRUE(link.isOpen);
    link.start();
    EXPECT_EQ(link.waitFor(1), Events{"arrived"});
}

TEST(HidrawManagerMatching, logsWhichOfTwoPedalsItOpened) {
    FakeBus bus;
    bus.plug(7);
    RunningManager link(bus);
    link.start();
    link.waitFor(1);
    bus.plug(8);
    link.waitUntilIdle();
    EXPECT_EQ(link.opened(), Events{"/dev/hidraw7 is open: USB device 1-8, release 00c8"});
}

TEST(HidrawManagerMatching, passesOverAnotherNodeOfThePedal) {
    FakeBus bus;
    bus.plugWithHiddev(0);
    bus.plug(1);
    RunningManager link(bus);
    link.start();
    link.waitFor(1);
    bus.unplug(1);
    EXPECT_EQ(link.waitFor(2), (Events{"arrived", "removed"}));
}

TEST(HidrawManagerMatching, findsADeviceThatArrivesLater) {
    FakeBus bus;
    RunningManager link(bus);
    link.start();
    bus.plug(0);
    EXPECT_EQ(link.waitFor(1), Events{"arrived"});
}

TEST(HidrawManagerMatching, announcesADeviceOnceThoughItIsBothListedAndReported) {
    FakeBus bus;
    RunningManager link(bus);
    bus.plug(0);
    link.start();
    link.waitFor(1);
    bus.sendEvent(0, "add");
    bus.sendEvent(0, "change");
    bus.unplug(0);
    EXPECT_EQ(link.waitFor(2), (Events{"arrived", "removed"}));
}

struct WrongIds {
    std::string name;
    UsbIds ids;
    /// What the log says of such a device.
    Events log = {};
};

/// The line about a device whose vendor and product are right.
Events releaseLine(const std::string& release) {
    return {"log: /dev/hidraw0 has the vendor and product of the pedal, but release " + release + " instead of 00c8"};
}

void PrintTo(const WrongIds& wrong, std::ostream* out) {
    *out << wrong.name;
}

class HidrawManagerWrongIds : public testing::TestWithParam<WrongIds> {
protected:
    /// The log's lines, then the arrival of the right device.
    static Events expected() {
        Events events = GetParam().log;
        events.emplace_back("arrived");
        return events;
    }
};

TEST_P(HidrawManagerWrongIds, arePassedOverAtTheStart) {
    FakeBus bus;
    bus.plug(0, GetParam().ids);
    bus.plug(1);
    RunningManager link(bus);
    link.start();
    EXPECT_EQ(link.waitFor(expected().size()), expected());
    EXPECT_TRUE(deviceIs(bus, 1, link));
}

TEST_P(HidrawManagerWrongIds, arePassedOverLater) {
    FakeBus bus;
    RunningManager link(bus);
    link.start();
    bus.plug(0, GetParam().ids);
    bus.plug(1);
    EXPECT_EQ(link.waitFor(expected().size()), expected());
    EXPECT_TRUE(deviceIs(bus, 1, link));
}

INSTANTIATE_TEST_SUITE_P(, HidrawManagerWrongIds,
                         testing::Values(WrongIds{"vendor", {.vendor = "0484"}}, WrongIds{"noVendor", {.vendor = ""}},
                                         WrongIds{"product", {.product = "5704"}},
                                         WrongIds{"release", {.release = "00c7"}, releaseLine("00c7")},
                                         WrongIds{"releaseReadAsDecimal", {.release = "0200"}, releaseLine("0200")},
                                         WrongIds{
                                             "releaseWithMoreBehindIt", {.release = "00c8x"}, releaseLine("00c8x")},
                                         WrongIds{"vendorAndRelease", {.vendor = "0484", .release = "00c7"}},
                                         WrongIds{"productAndRelease", {.product = "5704", .release = "00c7"}}),
                         [](const auto& test) { return test.param.name; });

TEST(HidrawManagerMatching, passesOverANodeThatBelongsToNoUsbDevice) {
    FakeBus bus;
    RunningManager link(bus);
    link.start();
    bus.plugWithoutUsbDevice(0);
    bus.plug(1);
    EXPECT_EQ(link.waitFor(1), Events{"arrived"});
    EXPECT_TRUE(deviceIs(bus, 1, link));
}

TEST(HidrawManagerMatching, usesTheFirstOfTwoDevicesPresentAtTheStart) {
    FakeBus bus;
    bus.plug(0);
    bus.plug(1);
    RunningManager link(bus);
    link.start();
    link.waitFor(1);
    EXPECT_TRUE(deviceIs(bus, 0, link));
    bus.unplug(0);
    EXPECT_EQ(link.waitFor(2), (Events{"arrived", "removed"}));
}

TEST(HidrawManagerMatching, ignoresArrivalAndRemovalOfASecondDevice) {
    FakeBus bus;
    RunningManager link(bus);
    link.start();
    bus.plug(0);
    bus.plug(1);
    bus.unplug(1);
    link.waitUntilIdle();
    EXPECT_EQ(link.events(), Events{"arrived"});
    EXPECT_TRUE(deviceIs(bus, 0, link));
    bus.unplug(0);
    EXPECT_EQ(link.waitFor(2), (Events{"arrived", "removed"}));
}

TEST(HidrawManagerMatching, announcesADeviceThatArrivesAfterTheRemovalOfTheFirst) {
    FakeBus bus;
    RunningManager link(bus);
    link.start();
    bus.plug(0);
    bus.unplug(0);
    bus.plug(1);
    EXPECT_EQ(link.waitFor(3), (Events{"arrived", "removed", "arrived"}));
    EXPECT_TRUE(deviceIs(bus, 1, link));
}

// udev may be so late that the node of the reported device belongs to the next one already.
TEST(HidrawManagerMatching, ignoresADeviceThatIsGoneBeforeUdevReportsIt) {
    FakeBus bus;
    RunningManager link(bus);
    link.onEvent = [&](const std::string& event) {
        if (event == "removed") {
            bus.plug(1);
            bus.loseFromSysfs(1);
        }
    };
    link.start();
    bus.plug(0);
    bus.unplug(0);
    link.waitFor(2);
    link.waitUntilIdle();
    EXPECT_EQ(link.events(), (Events{"arrived", "removed"}));
    bus.plug(2);
    EXPECT_EQ(link.waitFor(3), (Events{"arrived", "removed", "arrived"}));
    EXPECT_TRUE(deviceIs(bus, 2, link));
}

}  // namespace
}  // namespace kelvo
