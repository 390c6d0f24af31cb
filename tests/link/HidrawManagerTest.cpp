#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "Descriptors.h"
#include "FakeBus.h"
#include "RunningManager.h"
#include "SleepingThread.h"
#include "UniqueFd.h"

namespace kelvo {
namespace {

using testing::IsSupersetOf;
using testing::Pair;

using HidrawManagerTest = HidrawTest;

TEST_F(HidrawManagerTest, usesOneDeviceAtATime) {
    bus.plug(7);
    bus.plug(8);
    link.start();
    EXPECT_EQ(link.waitFor(1), Events{arrived(7)});
    bus.sendEvent(7, "add");
    bus.sendEvent(7, "change");
    bus.unplug(8);
    bus.plug(9);
    bus.unplug(7);
    bus.plug(10);
    EXPECT_EQ(link.waitFor(3), (Events{arrived(7), "removed", arrived(10)}));
}

struct OtherDevice {
    std::string name;
    UsbDevice device;
    Events events = {};
};

class HidrawManagerOtherDevice : public testing::TestWithParam<OtherDevice> {};

TEST_P(HidrawManagerOtherDevice, isPassedOver) {
    Events expected = GetParam().events;
    expected.push_back(arrived(1));
    for (const bool isPresentAtTheStart : {true, false}) {
        FakeBus bus;
        RunningManager link(bus);
        if (!isPresentAtTheStart) {
            link.start();
        }
        bus.plug(0, GetParam().device);
        bus.plug(1);
        if (isPresentAtTheStart) {
            link.start();
        }
        EXPECT_EQ(link.waitFor(expected.size()), expected) << "present at the start: " << isPresentAtTheStart;
    }
}

/// The event of a device whose vendor and product are those of the pedal.
std::string otherRelease(const std::string& release) {
    return "unusable: /dev/hidraw0 has the vendor and product of the pedal, but release " + release +
           " instead of 00c8";
}

std::string cannotOpen(const std::string& reason) {
    return "unusable: /dev/hidraw0 cannot be opened: " + reason + " (access is given by 70-kelvo.rules)";
}

INSTANTIATE_TEST_SUITE_P(
    , HidrawManagerOtherDevice,
    testing::Values(OtherDevice{"vendor", {.vendor = "0484"}}, OtherDevice{"noVendor", {.vendor = ""}},
                    OtherDevice{"product", {.product = "5704"}},
                    OtherDevice{"release", {.release = "00c7"}, {otherRelease("00c7")}},
                    OtherDevice{"releaseReadAsDecimal", {.release = "0200"}, {otherRelease("0200")}},
                    OtherDevice{"releaseWithMoreAfterIt", {.release = "00c8x"}, {otherRelease("00c8x")}},
                    OtherDevice{"vendorAndRelease", {.vendor = "0484", .release = "00c7"}},
                    OtherDevice{"productAndRelease", {.product = "5704", .release = "00c7"}},
                    OtherDevice{"otherNodeOfThePedal", {.subsystem = "usbmisc"}},
                    OtherDevice{"notOnUsb", {.isOnUsb = false}},
                    OtherDevice{"plainFile", {.isNodePlainFile = true}, {cannotOpen("not a character device")}}),
    [](const auto& test) { return test.param.name; });

// udev may be so late that the node of the reported device belongs to the next one already.
TEST_F(HidrawManagerTest, ignoresADeviceThatIsGoneBeforeUdevReportsIt) {
    link.onEvent = [&](const std::string& event) {
        if (event == "removed") {
            bus.plug(1);
            bus.loseFromSysfs(1);
        }
    };
    findPedal();
    bus.unplug(0);
    link.waitFor(2);
    bus.plug(2);
    EXPECT_EQ(link.waitFor(3), (Events{arrived(0), "removed", arrived(2)}));
}

TEST_F(HidrawManagerTest, nodeThatIsGoneAlready_isUnusable) {
    bus.plug(0);
    ASSERT_TRUE(std::filesystem::remove(bus.realNode(0)));
    link.start();
    EXPECT_EQ(link.waitFor(1), Events{cannotOpen("No such file or directory")});
}

TEST_F(HidrawManagerTest, nodeInUse_isTriedAgainAtItsNextEvent_andThenLockedUntilTheUnplug) {
    bus.plug(0);
    const auto openNode = [&] { return ::open(bus.realNode(0).c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC); };
    UniqueFd other(openNode());
    ASSERT_EQ(flock(other.get(), LOCK_EX | LOCK_NB), 0);
    link.start();
    link.waitFor(1);
    EXPECT_EQ(openNodes(), 1);
    other.reset();
    bus.sendEvent(0, "change");
    EXPECT_EQ(link.waitFor(2), (Events{cannotOpen("in use by another program"), arrived(0)}));
    other.reset(openNode());
    EXPECT_EQ(flock(other.get(), LOCK_EX | LOCK_NB), -1);
    bus.unplug(0);
    link.waitFor(3);
    link.forgetDevice();
    EXPECT_EQ(flock(other.get(), LOCK_EX), 0);
}

TEST_F(HidrawManagerTest, stop_endsTheRunOrTheNextOne_withoutARemoval) {
    bus.plug(0);
    link.manager.stop();
    link.start();
    link.join();
    EXPECT_EQ(link.events(), Events{});
    link.start();
    link.waitFor(1);
    link.waitUntilIdle();
    link.manager.stop();
    link.join();
    link.forgetDevice();
    EXPECT_EQ(openNodes(), 0);
    link.onEvent = [&](const std::string& event) {
        if (event == "removed") {
            link.manager.stop();
        }
    };
    link.start();
    link.waitFor(2);
    bus.unplug(0);
    link.join();
    EXPECT_EQ(link.events(), (Events{arrived(0), arrived(0), "removed"}));
}

/// While it lives, the process gets no new descriptor.
class NoDescriptors {
public:
    NoDescriptors() {
        getrlimit(RLIMIT_NOFILE, &old_);
        const rlimit none{.rlim_cur = 0, .rlim_max = old_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &old_); }

private:
    rlimit old_{};
};

const Events kNotOpen{"devices cannot be watched: udev does not answer, or no descriptor is left", "not open"};

TEST_F(HidrawManagerTest, openedAgainWithoutADescriptor_findsNothingUntilTheNextOpen) {
    link.start();
    link.waitUntilIdle();
    link.manager.stop();
    link.join();
    bus.plug(0);
    {
        const NoDescriptors none;
        link.start();
        EXPECT_EQ(link.waitFor(2), kNotOpen);
    }
    link.waitUntilIdle(SYS_futex);
    link.manager.stop();
    link.join();
    link.start();
    EXPECT_EQ(link.waitFor(3).back(), arrived(0));
}

TEST(HidrawManagerStart, withoutADescriptorForTheWakeUp_findsNothingAndWaitsForStop) {
    FakeBus bus;
    bus.plug(0);
    auto none = std::make_optional<NoDescriptors>();
    RunningManager link(bus);
    none.reset();
    link.start();
    link.waitUntilIdle(SYS_futex);
    link.manager.stop();
    link.join();
    EXPECT_EQ(link.events(), kNotOpen);
}

TEST_F(HidrawManagerTest, aSignal_endsNothing) {
    link.start();
    link.waitUntilIdle();
    link.interrupt();
    bus.plug(0);
    EXPECT_EQ(link.waitFor(1), Events{arrived(0)});
    link.waitUntilIdle();
    link.interrupt();
    bus.unplug(0);
    EXPECT_EQ(link.waitFor(2), (Events{arrived(0), "removed"}));
}

// A poll(2) over more descriptors than the process may have fails, each time.
TEST_F(HidrawManagerTest, failingWait_endsTheDeviceAndTheRunWithOneLogLine) {
    // UndefinedBehaviorSanitizer looks up the type of the error category, which needs a descriptor the first time.
    static_cast<void>(std::generic_category().message(0));
    std::optional<NoDescriptors> none;
    link.onEvent = [&](const std::string& event) {
        if (event.starts_with("report")) {
            none.emplace();
        } else {
            none.reset();
        }
    };
    findPedal();
    bus.send(0, std::vector<std::uint8_t>(64, 1));
    link.join();
    EXPECT_EQ(link.events(), (Events{arrived(0), "report of 64 bytes beginning with 1",
                                     "devices cannot be waited for: Invalid argument", "removed"}));
}

TEST(HidrawManagerDescriptors, areClosedOnExec) {
    FakeBus bus;
    bus.plug(0);
    const auto before = openDescriptors();
    RunningManager link(bus);
    link.start();
    link.waitFor(1);
    std::vector<std::pair<std::string, int>> opened;
    for (const auto& [fd, target] : openDescriptors()) {
        if (!before.contains(fd)) {
            opened.emplace_back(target.substr(0, target.find_first_of("0123456789")), fcntl(fd, F_GETFD));
        }
    }
    EXPECT_THAT(opened, IsSupersetOf({Pair("anon_inode:[eventfd]", FD_CLOEXEC), Pair("socket:[", FD_CLOEXEC),
                                      Pair("/dev/pts/", FD_CLOEXEC)}));
}

TEST(HidrawManagerDescriptors, areNotLeaked) {
    FakeBus bus;
    bus.plug(0);
    const auto before = openDescriptors().size();
    for (int life = 0; life < 20; ++life) {
        RunningManager link(bus);
        link.start();
        EXPECT_EQ(link.waitFor(1).size(), 1U);
        EXPECT_EQ(openNodes(), 1);
    }
    EXPECT_EQ(openNodes(), 0);
    // The fake bus opens and closes descriptors on its thread.
    waitUntil([&] { return openDescriptors().size() < before + 20; }, "descriptors to be closed");
}

TEST(RuleFile, givesTheSeatsUserAccessByAllThreeIdsInLowerCase) {
    const std::filesystem::path path = KELVO_RULES;
    EXPECT_EQ(path.filename(), "70-kelvo.rules") << "the log names it, and it must come before 73-seat-late.rules";
    std::ifstream file(path);
    std::string rules;
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with('#')) {
            rules += line + '\n';
        }
    }
    EXPECT_EQ(rules,
              "SUBSYSTEM==\"hidraw\", KERNEL==\"hidraw*\", ATTRS{idVendor}==\"0483\", ATTRS{idProduct}==\"5703\", "
              "ATTRS{bcdDevice}==\"00c8\", TAG+=\"uaccess\"\n");
}

}  // namespace
}  // namespace kelvo
