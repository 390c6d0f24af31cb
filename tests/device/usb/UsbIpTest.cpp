#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <stdexcept>

#include "UsbIp.h"
#include "UsbTesting.h"

namespace kelvo {
namespace {

using testing::ElementsAre;

/// GET_DESCRIPTOR of the device, as a kernel sends it.
constexpr auto kSubmitIn =
    "00 00 00 01 00 00 00 07 00 01 00 02 00 00 00 01 00 00 00 00 00 00 02 00 00 00 00 40 00 00 00 00 "
    "00 00 00 00 00 00 00 00 80 06 00 01 00 00 40 00";
constexpr auto kSubmitOut =
    "00 00 00 01 00 00 00 08 00 01 00 02 00 00 00 00 00 00 00 01 00 00 00 00 00 00 00 03 00 00 00 00 "
    "FF FF FF FF 00 00 00 01 00 00 00 00 00 00 00 00 AA BB CC";
constexpr auto kUnlinkSeven =
    "00 00 00 02 00 00 00 09 00 01 00 02 00 00 00 00 00 00 00 00 00 00 00 07 00 00 00 00 00 00 00 00 "
    "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00";

TEST(UsbIpReader, readsMessagesThatComeTogether) {
    const auto messages = UsbIpReader().take(join({unhex(kSubmitIn), unhex(kSubmitOut), unhex(kUnlinkSeven)}));
    ASSERT_EQ(messages.size(), 3U);
    const auto& in = std::get<UsbRequest>(messages[0]);
    EXPECT_EQ(in.number, 7U);
    EXPECT_EQ(in.direction, UsbDirection::In);
    EXPECT_EQ(in.endpoint, 0);
    EXPECT_EQ(in.length, 64U);
    EXPECT_THAT(in.setup, ElementsAre(0x80, 0x06, 0x00, 0x01, 0x00, 0x00, 0x40, 0x00));
    EXPECT_TRUE(in.data.empty());
    const auto& out = std::get<UsbRequest>(messages[1]);
    EXPECT_EQ(out.number, 8U);
    EXPECT_EQ(out.direction, UsbDirection::Out);
    EXPECT_EQ(out.endpoint, 1);
    EXPECT_THAT(out.data, ElementsAre(0xAA, 0xBB, 0xCC));
    EXPECT_EQ(std::get<UsbUnlink>(messages[2]).number, 9U);
    EXPECT_EQ(std::get<UsbUnlink>(messages[2]).target, 7U);
}

TEST(UsbIpReader, cutMessage_waitsForItsRest) {
    const Bytes both = join({unhex(kSubmitOut), unhex(kUnlinkSeven)});
    for (std::size_t cut = 0; cut <= both.size(); ++cut) {
        UsbIpReader reader;
        const auto first = reader.take(std::span(both).first(cut));
        const auto second = reader.take(std::span(both).subspan(cut));
        EXPECT_EQ(first.size(), cut < 51 ? 0U : cut < 99 ? 1U : 2U) << cut;
        ASSERT_EQ(first.size() + second.size(), 2U) << cut;
        const auto& request = std::get<UsbRequest>(first.empty() ? second[0] : first[0]);
        EXPECT_THAT(request.data, ElementsAre(0xAA, 0xBB, 0xCC)) << cut;
    }
}

TEST(UsbIpReader, acceptsTheLongestTransferAndTheLastEndpoint) {
    const Bytes data(65535, 0x5A);
    const auto messages = UsbIpReader().take(usbIp({1, 1, 0x10002, 0, 15, 0x200, 65535}, data));
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(std::get<UsbRequest>(messages[0]).endpoint, 15);
    EXPECT_EQ(std::get<UsbRequest>(messages[0]).data, data);
}

TEST(UsbIpReader, hostileHeader_isRefusedWithItsReason) {
    for (const auto& [header, field] : {std::pair{usbIp({0}), "command 0"},
                                        {usbIp({3}), "command 3"},
                                        {usbIp({0x01000000}), "command 16777216"},
                                        {usbIp({1, 1, 0x10002, 2}), "direction 2"},
                                        {usbIp({1, 1, 0x10002, 0, 16}), "endpoint 16"},
                                        {usbIp({1, 1, 0x10002, 0, 257}), "endpoint 257"},
                                        {usbIp({1, 1, 0x10002, 0, 1, 0, 65536}), "length 65536"},
                                        {usbIp({1, 1, 0x10002, 0, 1, 0, 0xFFFFFFFF}), "length 4294967295"},
                                        {usbIp({1, 1, 0x10002, 0, 1, 0, 64, 0, 1}), "packet count 1"}}) {
        try {
            static_cast<void>(UsbIpReader().take(header));
            FAIL() << field;
        } catch (const std::runtime_error& error) {
            EXPECT_EQ(error.what(), std::string("the host sent a USB/IP header with ") + field);
        }
    }
}

TEST(UsbIpAnswer, followsWhatIsThere) {
    Bytes out = {0x77};
    appendSubmitAnswer(out, {.number = 0x01020304, .direction = UsbDirection::In, .length = 64}, 0, unhex("12 01"));
    appendSubmitAnswer(out, {.number = 5, .length = 3}, 0, unhex("AA BB CC"));
    appendSubmitAnswer(out, {.number = 6}, kUsbStall, {});
    appendUnlinkAnswer(out, {.number = 9, .target = 7}, kUsbUnlinked);
    EXPECT_EQ(hex(out),
              "77 "
              "00 00 00 03 01 02 03 04 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 02 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 12 01 "
              // The bytes of an OUT transfer are counted and not returned.
              "00 00 00 03 00 00 00 05 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 03 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 03 00 00 00 06 00 00 00 00 00 00 00 00 00 00 00 00 FF FF FF E0 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 04 00 00 00 09 00 00 00 00 00 00 00 00 00 00 00 00 FF FF FF 98 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

}  // namespace
}  // namespace kelvo
