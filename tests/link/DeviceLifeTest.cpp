#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "RVHidClass.h"
#include "ScriptedLink.h"

namespace kelvo {
namespace {

using test::ScriptedDevice;
using test::ScriptedHidManager;
using test::ScriptedLink;

bool canWrite() {
    const std::uint8_t byte = 0;
    return HID_WreteData(&byte, 1);
}

TEST(OpenHidDevice, looksForTheVendorProductAndVersionOfTheKr310) {
    ScriptedLink link;
    ASSERT_TRUE(link.attach());
    const auto matching = link.manager.matching();
    ASSERT_TRUE(matching.has_value());
    EXPECT_EQ(matching->vendorId, 0x0483);
    EXPECT_EQ(matching->productId, 0x5703);
    EXPECT_EQ(matching->versionNumber, 0xC8);
    EXPECT_EQ(link.manager.calls(), (std::vector<std::string>{"open", "run"}));
}

TEST(OpenHidDevice, runsOnAfterAFailedOpen) {
    ScriptedHidManager manager;
    manager.failOpen();
    const auto device = std::make_shared<ScriptedDevice>();
    manager.attach(device);
    std::thread hidThread([&] { OpenHidDevice(manager, [] {}); });
    EXPECT_TRUE(manager.settle());
    EXPECT_TRUE(isOpenDevice);
    manager.stop();
    hidThread.join();
}

TEST(OpenHidDevice, hasNoDeviceUntilOneArrives) {
    ScriptedLink link;
    ASSERT_TRUE(link.manager.settle());
    EXPECT_FALSE(isOpenDevice);
    EXPECT_FALSE(canWrite());
    EXPECT_TRUE(link.attach());
    EXPECT_TRUE(canWrite());
}

TEST(OpenHidDevice, closesTheDeviceWhenSomebodyElseStopsTheManager) {
    ScriptedLink link;
    ASSERT_TRUE(link.attach());
    link.close();
    EXPECT_FALSE(isOpenDevice);
    EXPECT_FALSE(canWrite());
    EXPECT_EQ(link.device.use_count(), 1) << "the link must let go of the device";
    EXPECT_EQ(link.removals, 0);
}

TEST(OpenHidDevice, returnsWhenTheManagerWasStoppedBeforehand) {
    ScriptedHidManager manager;
    manager.stop();
    OpenHidDevice(manager, [] {});
    EXPECT_FALSE(isOpenDevice);
}

TEST(Removal, closesTheDeviceEndsTheThreadAndIsReportedOnce) {
    ScriptedLink link;
    ASSERT_TRUE(link.attach());
    EXPECT_EQ(link.removals, 0);
    EXPECT_TRUE(link.detach());
    EXPECT_EQ(link.removals, 1);
    EXPECT_FALSE(canWrite());
    EXPECT_EQ(link.device->attempts(), 0U);
    EXPECT_EQ(link.device.use_count(), 1) << "the link must let go of the device";
}

TEST(Removal, closesTheDevice_thenStopsTheManager_thenIsReportedOnTheHidThread) {
    struct AskingManager : ScriptedHidManager {
        void stop() override {
            wasOpen = isOpenDevice || canWrite();
            ScriptedHidManager::stop();
        }
        bool wasOpen = true;
    };
    AskingManager manager;
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
}

TEST(SecondDevice, isIgnoredWhileOneIsOpen) {
    ScriptedLink link;
    const auto second = std::make_shared<ScriptedDevice>();
    ASSERT_TRUE(link.attach());
    link.manager.attach(second);
    ASSERT_TRUE(link.manager.settle());
    EXPECT_TRUE(canWrite());
    EXPECT_EQ(link.device->attempts(), 1U);
    EXPECT_EQ(second->attempts(), 0U);
    link.manager.detach(second);
    ASSERT_TRUE(link.manager.settle());
    EXPECT_TRUE(isOpenDevice);
    EXPECT_TRUE(canWrite());
    EXPECT_EQ(link.removals, 0);
}

TEST(SecondDevice, isNotUsedWhenTheFirstIsRemoved) {
    ScriptedLink link;
    const auto second = std::make_shared<ScriptedDevice>();
    ASSERT_TRUE(link.attach());
    link.manager.attach(second);
    EXPECT_TRUE(link.detach());
    EXPECT_FALSE(canWrite());
    EXPECT_EQ(second->attempts(), 0U);
    EXPECT_EQ(link.removals, 1);
}

TEST(SecondDevice, isIgnoredWhenItIsRemovedAndNoneWasEverOpen) {
    ScriptedLink link;
    link.manager.detach(link.device);
    EXPECT_TRUE(link.attach());
    EXPECT_EQ(link.removals, 0);
}

}  // namespace
}  // namespace kelvo
