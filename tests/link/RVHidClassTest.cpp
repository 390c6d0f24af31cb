#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <future>
#include <memory>
#include <numeric>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "RVHidClass.h"
#include "Ring.h"
#include "ScriptedLink.h"

namespace kelvo {
namespace {

using test::Bytes;
using test::ScriptedDevice;
using test::ScriptedHidManager;
using test::takeRing;
using test::write;

/// The bytes first, first + 1 ...; `count` of them.
Bytes series(std::size_t count, std::uint8_t first = 1) {
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), first);
    return bytes;
}

class Link : public testing::Test {
protected:
    void SetUp() override {
        ClearRx_buffer();
        ASSERT_TRUE(link.attach());
    }
    void deliver(const std::shared_ptr<HidDevice>& device, Bytes report) {
        link.manager.deliver(device, std::move(report));
        ASSERT_TRUE(link.manager.settle());
    }

    test::ScriptedLink link;
};

TEST(OpenHidDevice, hasTheDeviceFromItsArrivalUntilAnotherThreadStopsTheManager) {
    test::ScriptedLink link;
    EXPECT_FALSE(isOpenDevice);
    EXPECT_FALSE(write({1}));
    EXPECT_FALSE(write({}));
    ASSERT_TRUE(link.attach());
    EXPECT_EQ(link.manager.matching(), (HidMatching{.vendorId = 0x0483, .productId = 0x5703, .versionNumber = 0xC8}));
    EXPECT_TRUE(write({1}));
    link.close();
    EXPECT_EQ(link.manager.calls(), (std::vector<std::string>{"open", "run", "stop"}));
    EXPECT_FALSE(isOpenDevice);
    EXPECT_FALSE(write({1}));
    EXPECT_EQ(link.device->attempts(), 1U);
    EXPECT_EQ(link.device.use_count(), 1) << "the link must release the device";
    EXPECT_EQ(link.removals, 0);
}

TEST(OpenHidDevice, runsAfterAFailedOpen_andStopsTheManagerBetweenClosingTheDeviceAndReportingItsRemoval) {
    struct AskingManager : ScriptedHidManager {
        void stop() override {
            wasOpen = isOpenDevice || write({1});
            ScriptedHidManager::stop();
        }
        bool wasOpen = true;
    };
    AskingManager manager;
    manager.failOpen();
    const auto device = std::make_shared<ScriptedDevice>();
    manager.attach(device);
    manager.detach(device);
    std::string lastCall;
    std::thread::id caller;
    OpenHidDevice(manager, [&] {
        lastCall = manager.calls().back();
        caller = std::this_thread::get_id();
    });
    EXPECT_FALSE(manager.wasOpen);
    EXPECT_EQ(lastCall, "stop");
    EXPECT_EQ(caller, std::this_thread::get_id());
    EXPECT_EQ(device.use_count(), 1) << "the link must release the device";
}

TEST_F(Link, ignoresASecondDevice) {
    const auto second = std::make_shared<ScriptedDevice>();
    link.manager.attach(second);
    deliver(second, Bytes(64, 8));
    EXPECT_EQ(takeRing(), Bytes{});
    EXPECT_TRUE(write({1}));
    link.manager.detach(second);
    ASSERT_TRUE(link.manager.settle());
    EXPECT_TRUE(isOpenDevice);
    EXPECT_EQ(link.removals, 0);
    link.manager.attach(second);
    EXPECT_TRUE(link.detach());
    EXPECT_EQ(link.removals, 1);
    EXPECT_FALSE(write({1}));
    EXPECT_EQ(link.device->attempts(), 1U);
    EXPECT_EQ(second->attempts(), 0U);
}

TEST(OpenHidDevice, ignoresReportsAndTheRemovalOfADeviceThatHasNotArrived) {
    ClearRx_buffer();
    test::ScriptedLink link;
    link.manager.deliver(link.device, Bytes(64, 8));
    link.manager.detach(link.device);
    EXPECT_TRUE(link.attach());
    EXPECT_EQ(takeRing(), Bytes{});
    EXPECT_EQ(link.removals, 0);
}

TEST_F(Link, remembersWhyADeviceCannotBeUsed) {
    link.manager.reportUnusable("no permission");
    ASSERT_TRUE(link.manager.settle());
    EXPECT_EQ(unusableDevice(), "no permission");
}

TEST_F(Link, inputReport_addsItsCountedBytesToTheRing) {
    struct Row {
        std::size_t length;
        std::uint8_t count;
        std::size_t added;
    };
    for (const auto& [length, count, added] :
         {Row{64, 0, 0}, Row{64, 8, 8}, Row{64, 63, 63}, Row{64, 64, 63}, Row{64, 128, 63}, Row{64, 255, 63},
          Row{1, 0, 0}, Row{9, 8, 0}, Row{63, 8, 0}, Row{65, 8, 0}, Row{128, 8, 0}}) {
        SCOPED_TRACE(testing::Message() << length << " bytes, count " << int{count});
        Bytes report = series(length, 0);
        report[0] = count;
        deliver(link.device, report);
        EXPECT_EQ(takeRing(), series(added));
    }
    deliver(link.device, {});
    EXPECT_EQ(takeRing(), Bytes{});
}

TEST_F(Link, inputReportThatDoesNotFit_isDroppedCompletely) {
    const Bytes filler(10230, 0);
    ASSERT_TRUE(putRX_buffer(filler.data(), 10230));
    deliver(link.device, Bytes(64, 11));
    deliver(link.device, Bytes(64, 10));
    Bytes all(10240, 10);
    EXPECT_FALSE(HID_ReadData(10241, all.data()));
    EXPECT_TRUE(HID_ReadData(10240, all.data()));
    Bytes expected = filler;
    expected.resize(10240, 10);
    EXPECT_EQ(all, expected);
}

TEST_F(Link, write_cutsTheFrameIntoPiecesOf63) {
    struct Row {
        std::size_t size;
        Bytes counts;
    };
    for (const auto& [size, counts] :
         {Row{0, {}}, Row{1, {1}}, Row{62, {62}}, Row{63, {63}}, Row{64, {63, 1}}, Row{126, {63, 63}},
          Row{127, {63, 63, 1}}, Row{521, {63, 63, 63, 63, 63, 63, 63, 63, 17}}}) {
        SCOPED_TRACE(size);
        link.device->forgetReports();
        EXPECT_TRUE(write(series(size)));
        EXPECT_EQ(link.device->sentBytes(), series(size));
        Bytes sent;
        for (const Report& report : link.device->reports()) {
            sent.push_back(report[0]);
        }
        EXPECT_EQ(sent, counts);
    }
}

/// The report that begins with these bytes; the others are 0x11.
Report reportOf(const Bytes& beginning) {
    Report report;
    report.fill(0x11);
    std::ranges::copy(beginning, report.begin());
    return report;
}

TEST_F(Link, write_leavesOldBytesAfterTheCountedOnes_thoseOfARefusedReportToo) {
    Bytes frame(63, 0x11);
    frame.push_back(0x22);
    ASSERT_TRUE(write(frame));
    EXPECT_EQ(link.device->reports()[1], reportOf({1, 0x22}));
    link.device->refuseReport(3);
    EXPECT_FALSE(write({0x31, 0x32, 0x33}));
    ASSERT_TRUE(write({0x41}));
    EXPECT_EQ(link.device->reports()[2], reportOf({1, 0x41, 0x32, 0x33}));
}

TEST_F(Link, write_stopsAtTheFirstRefusedReport) {
    for (std::size_t refused = 1; refused <= 9; ++refused) {
        const std::size_t before = link.device->attempts();
        link.device->forgetReports();
        link.device->refuseReport(before + refused);
        EXPECT_FALSE(write(Bytes(521))) << "report " << refused;
        EXPECT_EQ(link.device->attempts() - before, refused);
        EXPECT_EQ(link.device->reports().size(), refused - 1);
    }
}

/// Waits until the thread is asleep in the kernel, as one is that waits for a mutex.
void waitUntilAsleep(pid_t thread) {
    const std::string path = "/proc/self/task/" + std::to_string(thread) + "/stat";
    for (std::string stat; stat.find(") S ") == std::string::npos;) {
        std::this_thread::yield();
        std::getline(std::ifstream(path), stat);
    }
}

TEST(BlockedWrite, holdsUpNeitherTheRemovalNorTheNextWrite_andKeepsTheDevice) {
    auto link = std::make_unique<test::ScriptedLink>();
    ASSERT_TRUE(link->attach());
    link->device->holdReports();
    std::future<bool> blocked = std::async(std::launch::async, [] { return write(Bytes(521)); });
    ASSERT_TRUE(link->device->waitForAttempts(1));
    std::promise<pid_t> id;
    std::future<bool> waiting = std::async(std::launch::async, [&] {
        id.set_value(gettid());
        return write({1});
    });
    waitUntilAsleep(id.get_future().get());
    EXPECT_TRUE(link->detach());  // returns only after the HID thread's end
    EXPECT_EQ(link->removals, 1);
    EXPECT_FALSE(write({1}));

    const std::weak_ptr<ScriptedDevice> device = link->device;
    link.reset();
    const std::shared_ptr<ScriptedDevice> alive = device.lock();
    ASSERT_NE(alive, nullptr);
    alive->releaseReports();
    EXPECT_TRUE(blocked.get());
    EXPECT_FALSE(waiting.get());
    EXPECT_EQ(alive->attempts(), 9U);
}

TEST(WriteOnTwoThreads, neverMixesTheReportsOfTwoFrames_andEndsAtTheUnplug) {
    test::ScriptedLink link;
    ASSERT_TRUE(link.attach());
    const auto sendFrames = [](std::uint8_t fill) {
        while (write(Bytes(200, fill))) {
        }
    };
    std::thread first(sendFrames, std::uint8_t{0x11});
    std::thread second(sendFrames, std::uint8_t{0x22});
    EXPECT_TRUE(link.device->waitForReports(20000));
    EXPECT_TRUE(link.detach());
    first.join();
    second.join();
    const Bytes sent = link.device->sentBytes();
    ASSERT_EQ(sent.size() % 200, 0U);
    for (auto frame = sent.begin(); frame != sent.end(); frame += 200) {
        ASSERT_EQ(std::count(frame, frame + 200, *frame), 200) << "frame " << (frame - sent.begin()) / 200;
    }
}

}  // namespace
}  // namespace kelvo
