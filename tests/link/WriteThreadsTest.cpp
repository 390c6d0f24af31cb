#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <fstream>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "RVHidClass.h"
#include "ScriptedLink.h"

namespace kelvo {
namespace {

using test::Bytes;
using test::write;

/// Waits until the thread is asleep in the kernel, as one is that waits for a mutex.
void waitUntilAsleep(pid_t thread) {
    const std::string path = "/proc/self/task/" + std::to_string(thread) + "/stat";
    for (std::string stat; stat.find(") S ") == std::string::npos;) {
        std::this_thread::yield();
        std::getline(std::ifstream(path), stat);
    }
}

std::future<bool> writeOnAnotherThread(Bytes bytes) {
    return std::async(std::launch::async, [bytes = std::move(bytes)] { return write(bytes); });
}

TEST(WriteUnderUnplug, doesNotHoldUpTheRemoval) {
    test::ScriptedLink link;
    ASSERT_TRUE(link.attach());
    link.device->holdReports();
    std::future<bool> blocked = writeOnAnotherThread(Bytes(521, 0x11));
    ASSERT_TRUE(link.device->waitForAttempts(1));

    EXPECT_TRUE(link.detach());  // returns only after the HID thread's end
    EXPECT_EQ(link.removals, 1);

    link.device->refuseAllReports();
    link.device->releaseReports();
    EXPECT_FALSE(blocked.get());
    EXPECT_EQ(link.device->attempts(), 1U);
}

TEST(WriteUnderUnplug, doesNotHoldUpTheNextWriteEither) {
    test::ScriptedLink link;
    ASSERT_TRUE(link.attach());
    link.device->holdReports();
    std::future<bool> blocked = writeOnAnotherThread(Bytes(8, 0x11));
    ASSERT_TRUE(link.device->waitForAttempts(1));
    EXPECT_TRUE(link.detach());

    EXPECT_FALSE(write({1, 2, 3}));

    link.device->releaseReports();
    EXPECT_TRUE(blocked.get());  // the device took it after all
}

TEST(WriteUnderUnplug, thatWaitedForABlockedWriteFails) {
    test::ScriptedLink link;
    ASSERT_TRUE(link.attach());
    link.device->holdReports();
    std::future<bool> blocked = writeOnAnotherThread(Bytes(8, 0x11));
    ASSERT_TRUE(link.device->waitForAttempts(1));
    std::promise<pid_t> waitingThread;
    std::future<bool> waiting = std::async(std::launch::async, [&] {
        waitingThread.set_value(gettid());
        return write(Bytes(8, 0x22));
    });
    waitUntilAsleep(waitingThread.get_future().get());
    EXPECT_TRUE(link.detach());
    link.device->refuseAllReports();
    link.device->releaseReports();
    EXPECT_FALSE(blocked.get());
    EXPECT_FALSE(waiting.get());
    EXPECT_EQ(link.device->attempts(), 1U);
}

TEST(WriteUnderUnplug, keepsTheDeviceAliveUntilItHasReturned) {
    auto link = std::make_unique<test::ScriptedLink>();
    ASSERT_TRUE(link->attach());
    const std::weak_ptr<test::ScriptedDevice> device = link->device;
    link->device->holdReports();
    std::future<bool> blocked = writeOnAnotherThread(Bytes(8, 0x11));
    ASSERT_TRUE(link->device->waitForAttempts(1));
    EXPECT_TRUE(link->detach());
    link.reset();

    const std::shared_ptr<test::ScriptedDevice> alive = device.lock();
    ASSERT_NE(alive, nullptr);
    alive->releaseReports();
    EXPECT_TRUE(blocked.get());
}

TEST(WriteUnderUnplug, atAnyMomentNeitherCrashesNorHangs) {
    for (int round = 0; round < 50; ++round) {
        test::ScriptedLink link;
        ASSERT_TRUE(link.attach());
        std::thread writer([] {
            while (write(Bytes(127, 0x33))) {
            }
        });
        ASSERT_TRUE(link.device->waitForReports(static_cast<std::size_t>(1 + round % 7)));
        EXPECT_TRUE(link.detach());
        writer.join();
        EXPECT_FALSE(isOpenDevice);
    }
}

TEST(WriteOnTwoThreads, neverMixesTheReportsOfTwoFrames) {
    test::ScriptedLink link;
    ASSERT_TRUE(link.attach());
    constexpr std::size_t kFrames = 200;
    const auto sendFrames = [](std::uint8_t fill) {
        for (std::size_t i = 0; i < kFrames; ++i) {
            EXPECT_TRUE(write(Bytes(200, fill)));
        }
    };
    std::thread other([&] { sendFrames(0x22); });
    sendFrames(0x11);
    other.join();

    const std::vector<Report> reports = link.device->reports();
    ASSERT_EQ(reports.size(), 2 * kFrames * 4);
    for (std::size_t frame = 0; frame < reports.size(); frame += 4) {
        const std::uint8_t fill = reports[frame][1];
        const Bytes counts{reports[frame][0], reports[frame + 1][0], reports[frame + 2][0], reports[frame + 3][0]};
        ASSERT_EQ(counts, (Bytes{63, 63, 63, 11})) << "frame " << frame / 4;
        for (std::size_t i = 1; i < 4; ++i) {
            ASSERT_EQ(reports[frame + i][1], fill) << "frame " << frame / 4;
            ASSERT_EQ(reports[frame + i][11], fill) << "frame " << frame / 4;
        }
    }
}

}  // namespace
}  // namespace kelvo
