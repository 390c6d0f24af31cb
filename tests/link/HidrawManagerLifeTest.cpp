#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <future>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "Descriptors.h"
#include "FakeBus.h"
#include "LogListener.h"
#include "RunningManager.h"
#include "SleepingThread.h"

namespace kelvo {
namespace {

using testing::Contains;
using testing::Pair;
using testing::UnorderedElementsAre;

using Events = std::vector<std::string>;

const std::string kCannotWatch = "devices cannot be watched: udev does not answer, or no descriptor is left";

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

/// Of the descriptors that were not there before: what they are open on and whether exec closes them.
std::vector<std::pair<std::string, bool>> openedSince(const std::map<int, std::string>& before) {
    std::vector<std::pair<std::string, bool>> opened;
    for (const auto& [fd, target] : openDescriptors()) {
        if (!before.contains(fd)) {
            opened.emplace_back(target.substr(0, target.find_first_of("0123456789")), fcntl(fd, F_GETFD) == FD_CLOEXEC);
        }
    }
    return opened;
}

/// Waits until fewer than `count` descriptors are open. The fake bus has some as well, and opens and closes them on
/// its own thread.
bool descriptorsFallBelow(std::size_t count) {
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (openDescriptors().size() >= count && std::chrono::steady_clock::now() < giveUp) {
        std::this_thread::yield();
    }
    return openDescriptors().size() < count;
}

TEST(HidrawManagerLife, stopBeforeRun_endsOneRunWithoutADevice) {
    FakeBus bus;
    bus.plug(0);
    RunningManager link(bus);
    link.manager.stop();
    link.start();
    link.join();
    EXPECT_EQ(link.events(), Events{});
    link.start();
    EXPECT_EQ(link.waitFor(1), Events{"arrived"});
}

TEST(HidrawManagerLife, stopFromAnotherThread_endsTheWaitWithoutARemoval) {
    FakeBus bus;
    bus.plug(0);
    RunningManager link(bus);
    link.start();
    link.waitUntilIdle();
    link.manager.stop();
    link.join();
    EXPECT_EQ(link.events(), Events{"arrived"});
}

TEST(HidrawManagerLife, stopFromTheRemovalCallback_endsTheRun) {
    FakeBus bus;
    bus.plug(0);
    RunningManager link(bus);
    link.onEvent = [&](const std::string& event) {
        if (event == "removed") {
            link.manager.stop();
        }
    };
    link.start();
    link.waitFor(1);
    bus.unplug(0);
    link.join();
    EXPECT_EQ(link.events(), (Events{"arrived", "removed"}));
}

TEST(HidrawManagerLife, aSecondRun_findsTheSameDeviceAnew) {
    FoundPedal pedal;
    pedal.link.manager.stop();
    pedal.link.join();
    pedal.link.forgetDevice();
    pedal.link.start();
    EXPECT_EQ(pedal.link.waitFor(2), (Events{"arrived", "arrived"}));
    pedal.link.waitUntilIdle();
}

TEST(HidrawManagerLife, openThatFails_findsNothingUntilItIsOpenedAgain) {
    FakeBus bus;
    bus.plug(0);
    RunningManager link(bus);
    {
        const NoDescriptors none;
        EXPECT_FALSE(link.open());
    }
    link.start();
    link.waitUntilIdle(SYS_futex);
    link.manager.stop();
    link.join();
    EXPECT_EQ(link.events(), Events{"log: " + kCannotWatch});
    EXPECT_TRUE(link.open());
    link.start();
    EXPECT_EQ(link.waitFor(2), (Events{"log: " + kCannotWatch, "arrived"}));
}

TEST(HidrawManagerLife, madeWithoutADescriptor_findsNothingAndWaitsForStop) {
    FakeBus bus;
    bus.plug(0);
    auto none = std::make_optional<NoDescriptors>();
    HidrawManager manager;
    none.reset();
    std::vector<std::string> lines;
    const test::LogListener listener([&](std::string_view line) { lines.emplace_back(line); });
    EXPECT_FALSE(manager.open({.vendorId = 0x0483, .productId = 0x5703, .versionNumber = 200},
                              {.deviceMatching = [](const auto&) { ADD_FAILURE() << "a device was found"; }}));
    EXPECT_EQ(lines, std::vector<std::string>{kCannotWatch});
    std::promise<pid_t> id;
    std::thread thread([&] {
        id.set_value(gettid());
        manager.run();
    });
    waitUntilThreadIsIn(SYS_futex, id.get_future().get());
    manager.stop();
    thread.join();
}

TEST(HidrawManagerLife, aSignal_endsNothing) {
    FakeBus bus;
    RunningManager link(bus);
    link.start();
    link.waitUntilIdle();
    link.interrupt();
    bus.plug(0);
    EXPECT_EQ(link.waitFor(1), Events{"arrived"});
    link.waitUntilIdle();
    link.interrupt();
    bus.unplug(0);
    EXPECT_EQ(link.waitFor(2), (Events{"arrived", "removed"}));
}

// A poll(2) over more descriptors than the process may have fails, each time.
TEST(HidrawManagerLife, failingWait_endsTheDeviceAndTheRunWithOneLogLine) {
    FakeBus bus;
    bus.plug(0);
    RunningManager link(bus);
    // UndefinedBehaviorSanitizer learns what the object is that knows the words with descriptors, which are gone then.
    static_cast<void>(std::generic_category().message(0));
    std::optional<NoDescriptors> none;
    link.onEvent = [&](const std::string& event) {
        if (event.starts_with("report")) {
            none.emplace();
        } else if (event.starts_with("log")) {
            none.reset();
        }
    };
    link.start();
    link.waitFor(1);
    bus.send(0, std::vector<std::uint8_t>(64, 1));
    link.join();
    EXPECT_EQ(link.events(), (Events{"arrived", "report of 64 bytes beginning with 1",
                                     "log: devices cannot be waited for: Invalid argument", "removed"}));
}

TEST(HidrawManagerLife, allItsDescriptorsAreCloseOnExec) {
    FakeBus bus;
    bus.plug(0);
    const auto before = openDescriptors();
    RunningManager link(bus);
    EXPECT_THAT(openedSince(before), UnorderedElementsAre(Pair("anon_inode:[eventfd]", true), Pair("socket:[", true)));
    link.start();
    link.waitFor(1);
    EXPECT_THAT(openedSince(before), Contains(Pair("/dev/pts/", true)));
}

TEST(HidrawManagerLife, leaksNoDescriptorOverTwentyLives_withADeviceAndWithANodeThatCannotBeOpened) {
    for (const bool isDevice : {true, false}) {
        FakeBus bus;
        isDevice ? bus.plug(0) : bus.plugPlainFile(0);
        const auto before = openDescriptors().size();
        for (int life = 0; life < 20; ++life) {
            RunningManager link(bus);
            link.start();
            EXPECT_EQ(link.waitFor(1).size(), 1U);
            EXPECT_EQ(openNodes(), isDevice ? 1 : 0);
        }
        EXPECT_EQ(openNodes(), 0);
        EXPECT_TRUE(descriptorsFallBelow(before + 20));
    }
}

TEST(HidrawManagerLife, leaksNoDescriptorOverTwentyReplugs) {
    FakeBus bus;
    RunningManager link(bus);
    link.start();
    link.waitUntilIdle();
    for (int number = 0; number < 20; ++number) {
        bus.plug(number);
        link.waitFor(static_cast<std::size_t>(number) * 2 + 1);
        EXPECT_EQ(openNodes(), 1);
        number % 2 == 0 ? bus.unplug(number) : bus.cut(number);
        link.waitFor(static_cast<std::size_t>(number) * 2 + 2);
        link.forgetDevice();
        link.waitUntilIdle();
        EXPECT_EQ(openNodes(), 0);
    }
    EXPECT_EQ(link.events().size(), 40U);
}

}  // namespace
}  // namespace kelvo
