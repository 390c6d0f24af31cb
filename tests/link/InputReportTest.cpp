#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "Allocations.h"
#include "RVHidClass.h"
#include "Ring.h"
#include "ScriptedLink.h"

namespace kelvo {
namespace {

using test::takeRing;
using Bytes = std::vector<std::uint8_t>;

/// The bytes first, first + 1, ... ; `count` of them.
Bytes series(std::uint8_t first, std::size_t count) {
    Bytes bytes;
    for (std::size_t i = 0; i < count; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(first + i));
    }
    return bytes;
}

/// A report of `size` bytes: the count byte, then 0x01, 0x02, ...
Bytes reportOf(std::size_t size, std::uint8_t count) {
    Bytes report{count};
    const Bytes rest = series(1, size - 1);
    report.insert(report.end(), rest.begin(), rest.end());
    return report;
}

class InputReport : public testing::Test {
protected:
    void SetUp() override {
        ClearRx_buffer();
        ASSERT_TRUE(link.attach());
    }
    void deliver(const Bytes& report) {
        link.manager.deliver(link.device, report);
        ASSERT_TRUE(link.manager.settle());
    }

    test::ScriptedLink link;
};

TEST_F(InputReport, addsItsCountedBytesToTheRing_63AtMost) {
    for (const auto& [count, added] :
         {std::pair{0, 0U}, {8, 8U}, {63, 63U}, {64, 63U}, {65, 63U}, {128, 63U}, {255, 63U}}) {
        deliver(reportOf(64, static_cast<std::uint8_t>(count)));
        EXPECT_EQ(takeRing(), series(1, added)) << "count " << count;
    }
}

TEST_F(InputReport, ofAnyLengthBut64AddsNothing) {
    for (const std::size_t length : {1U, 2U, 9U, 63U, 65U, 128U}) {
        deliver(reportOf(length, 8));
        EXPECT_EQ(takeRing(), Bytes{}) << length << " bytes";
    }
    deliver({});
    EXPECT_EQ(takeRing(), Bytes{});
}

TEST_F(InputReport, afterAnotherContinuesTheStream) {
    deliver(reportOf(64, 3));
    deliver(reportOf(64, 2));
    EXPECT_EQ(takeRing(), (Bytes{1, 2, 3, 1, 2}));
}

TEST_F(InputReport, thatDoesNotFit_isDroppedCompletely) {
    const Bytes filler(10230, 0);
    ASSERT_TRUE(putRX_buffer(filler.data(), 10230));
    deliver(reportOf(64, 11));
    deliver(reportOf(64, 10));
    Bytes expected = filler;
    for (std::uint8_t byte = 1; byte <= 10; ++byte) {
        expected.push_back(byte);
    }
    EXPECT_EQ(takeRing(), expected);
}

TEST_F(InputReport, ofASecondDeviceAddsNothing) {
    const auto second = std::make_shared<test::ScriptedDevice>();
    link.manager.attach(second);
    link.manager.deliver(second, reportOf(64, 8));
    ASSERT_TRUE(link.manager.settle());
    EXPECT_EQ(takeRing(), Bytes{});
}

TEST(InputReportWithoutDevice, addsNothing) {
    ClearRx_buffer();
    test::ScriptedLink link;
    link.manager.deliver(link.device, reportOf(64, 8));
    ASSERT_TRUE(link.manager.settle());
    EXPECT_EQ(takeRing(), Bytes{});
}

TEST(InputReportAlone, allocatesNoMemory) {
    struct CountingManager : test::ScriptedHidManager {
        bool open(const HidMatching& matching, HidCallbacks callbacks) override {
            callbacks.inputReport = [this, link = callbacks.inputReport](const auto& device, auto report) {
                const std::size_t before = test::allocations();
                link(device, report);
                taken = test::allocations() - before;
            };
            return ScriptedHidManager::open(matching, std::move(callbacks));
        }
        std::size_t taken = 1;
    };
    ClearRx_buffer();
    CountingManager manager;
    const auto device = std::make_shared<test::ScriptedDevice>();
    manager.attach(device);
    manager.deliver(device, reportOf(64, 63));
    manager.detach(device);
    OpenHidDevice(manager, [] {});
    EXPECT_EQ(manager.taken, 0U);
    EXPECT_EQ(takeRing(), series(1, 63));
}

TEST_F(InputReport, isReadCompletelyOrNotAtAll) {
    deliver(reportOf(64, 3));
    Bytes out{9, 9, 9, 9};
    EXPECT_FALSE(HID_ReadData(4, out.data()));
    EXPECT_EQ(out, (Bytes{9, 9, 9, 9}));
    EXPECT_TRUE(HID_ReadData(3, out.data()));
    EXPECT_EQ(out, (Bytes{1, 2, 3, 9}));
    EXPECT_FALSE(HID_ReadData(1, out.data()));
    EXPECT_TRUE(HID_ReadData(0, out.data()));
}

}  // namespace
}  // namespace kelvo
