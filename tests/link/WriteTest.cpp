#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "RVHidClass.h"
#include "ScriptedLink.h"

namespace kelvo {
namespace {

using test::Bytes;
using test::write;

/// Frame bytes whose every position can be told: position modulo 251.
Bytes frameOf(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<std::uint8_t>(i % 251);
    }
    return bytes;
}

class Write : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(link.attach()); }
    [[nodiscard]] Bytes counts() const {
        Bytes counts;
        for (const Report& report : link.device->reports()) {
            counts.push_back(report[0]);
        }
        return counts;
    }

    test::ScriptedLink link;
};

TEST_F(Write, ofZeroBytesSendsNothingAndSucceeds) {
    EXPECT_TRUE(write({}));
    EXPECT_TRUE(HID_WreteData(nullptr, 0));
    EXPECT_EQ(link.device->attempts(), 0U);
}

TEST_F(Write, cutsTheFrameIntoPiecesOf63) {
    struct Case {
        std::size_t size;
        Bytes counts;
    };
    for (const Case& c :
         {Case{1, {1}}, Case{8, {8}}, Case{19, {19}}, Case{62, {62}}, Case{63, {63}}, Case{64, {63, 1}},
          Case{126, {63, 63}}, Case{127, {63, 63, 1}}, Case{521, {63, 63, 63, 63, 63, 63, 63, 63, 17}}}) {
        link.device->forgetReports();
        EXPECT_TRUE(write(frameOf(c.size)));
        EXPECT_EQ(counts(), c.counts) << c.size << " bytes";
        EXPECT_EQ(link.device->sentBytes(), frameOf(c.size)) << c.size << " bytes";
    }
}

TEST_F(Write, ofTheStartUpFrameIsOneReport) {
    EXPECT_TRUE(write({0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25}));
    ASSERT_EQ(link.device->reports().size(), 1U);
    const Report report = link.device->reports()[0];
    EXPECT_EQ(Bytes(report.begin(), report.begin() + 9), (Bytes{8, 0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25}));
}

TEST_F(Write, shortFrame_isFollowedByOldBytesOfALongOne) {
    ASSERT_TRUE(write(Bytes(63, 0x11)));
    ASSERT_TRUE(write({0xA1, 0xA2, 0xA3}));
    Report expected;
    expected.fill(0x11);
    expected[0] = 3;
    expected[1] = 0xA1;
    expected[2] = 0xA2;
    expected[3] = 0xA3;
    EXPECT_EQ(link.device->reports()[1], expected);
}

TEST_F(Write, lastReport_endsWithOldBytesOfItsFrame) {
    Bytes frame(63, 0x11);
    frame.push_back(0x22);
    ASSERT_TRUE(write(frame));
    Report expected;
    expected.fill(0x11);
    expected[0] = 1;
    expected[1] = 0x22;
    EXPECT_EQ(link.device->reports()[1], expected);
}

TEST_F(Write, stopsAtTheFirstRefusedReport) {
    for (std::size_t refused = 1; refused <= 9; ++refused) {
        const std::size_t before = link.device->attempts();
        link.device->forgetReports();
        link.device->refuseReport(before + refused);
        EXPECT_FALSE(write(frameOf(521))) << "report " << refused;
        EXPECT_EQ(link.device->attempts() - before, refused);
        EXPECT_EQ(link.device->reports().size(), refused - 1);
    }
}

TEST_F(Write, succeedsAgainAfterARefusal) {
    link.device->refuseReport(1);
    EXPECT_FALSE(write({1, 2, 3}));
    EXPECT_TRUE(write({4, 5, 6}));
    EXPECT_EQ(link.device->sentBytes(), (Bytes{4, 5, 6}));
}

TEST_F(Write, leavesTheRefusedBytesInTheReportBuffer) {
    ASSERT_TRUE(write(Bytes(63, 0x11)));
    link.device->refuseReport(2);
    EXPECT_FALSE(write({0x21, 0x22, 0x23}));
    EXPECT_TRUE(write({0x31}));
    const Report report = link.device->reports()[1];
    EXPECT_EQ(Bytes(report.begin(), report.begin() + 5), (Bytes{1, 0x31, 0x22, 0x23, 0x11}));
}

TEST(WriteWithoutDevice, sendsNothingAndFails) {
    test::ScriptedLink link;
    ASSERT_TRUE(link.manager.settle());
    EXPECT_FALSE(write({1, 2, 3}));
    EXPECT_FALSE(write({}));
    EXPECT_EQ(link.device->attempts(), 0U);
}

}  // namespace
}  // namespace kelvo
