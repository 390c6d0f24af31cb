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
using testing::HasSubstr;

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

TEST(UsbIpReader, whenReset_forgetsTheBeginningOfAMessage) {
    const Bytes message = unhex(kSubmitOut);
    UsbIpReader reader;
    EXPECT_TRUE(reader.take(std::span(message).first(50)).empty());
    reader.reset();
    EXPECT_EQ(reader.take(unhex(kUnlinkSeven)).size(), 1U);
}

struct HostileHeader {
    std::size_t offset;
    const char* word;
    const char* complaint;
};

class HostileUsbIp : public testing::TestWithParam<HostileHeader> {};

TEST_P(HostileUsbIp, isRefusedWithItsReason) {
    const auto [offset, word, complaint] = GetParam();
    Bytes bytes = unhex(kSubmitOut);
    std::ranges::copy(unhex(word), bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    try {
        UsbIpReader reader;
        static_cast<void>(reader.take(bytes));
        FAIL() << "taken";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), complaint);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Headers, HostileUsbIp,
    testing::Values(HostileHeader{0, "00 00 00 00", "the host sent a USB/IP header with command 0"},
                    HostileHeader{0, "00 00 00 03", "the host sent a USB/IP header with command 3"},
                    HostileHeader{0, "01 00 00 00", "the host sent a USB/IP header with command 16777216"},
                    HostileHeader{12, "00 00 00 02", "the host sent a USB/IP header with direction 2"},
                    HostileHeader{16, "00 00 00 10", "the host sent a USB/IP header with endpoint 16"},
                    HostileHeader{16, "00 00 01 01", "the host sent a USB/IP header with endpoint 257"},
                    HostileHeader{24, "00 01 00 00", "the host sent a USB/IP header with length 65536"},
                    HostileHeader{24, "FF FF FF FF", "the host sent a USB/IP header with length 4294967295"},
                    HostileHeader{32, "00 00 00 01", "the host sent a USB/IP header with packet count 1"}));

TEST(UsbIpReader, acceptsTheLongestTransferAndTheLastEndpoint) {
    const HostRequest longest{.endpoint = "00 00 00 0F", .length = "00 00 FF FF"};
    const auto messages = UsbIpReader().take(longest.bytes(Bytes(65535, 0x5A)));
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(std::get<UsbRequest>(messages[0]).endpoint, 15);
    EXPECT_EQ(std::get<UsbRequest>(messages[0]).data, Bytes(65535, 0x5A));
}

TEST(UsbIpAnswer, toARequestForDataCarriesTheData) {
    Bytes out;
    const UsbRequest request{.number = 0x01020304, .direction = UsbDirection::In, .length = 64};
    appendSubmitAnswer(out, request, 0, unhex("12 01"));
    EXPECT_EQ(hex(out),
              "00 00 00 03 01 02 03 04 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 02 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 12 01");
}

TEST(UsbIpAnswer, toARequestThatBroughtDataCountsThemAndReturnsNone) {
    Bytes out;
    appendSubmitAnswer(out, {.number = 5, .length = 3}, 0, unhex("AA BB CC"));
    EXPECT_EQ(hex(out),
              "00 00 00 03 00 00 00 05 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 03 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(UsbIpAnswer, ofAStallHasTheNegativeErrorNumber) {
    Bytes out;
    appendSubmitAnswer(out, {.number = 6}, kUsbStall, {});
    EXPECT_EQ(hex(out),
              "00 00 00 03 00 00 00 06 00 00 00 00 00 00 00 00 00 00 00 00 FF FF FF E0 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(UsbIpAnswer, toAnUnlinkIsAppendedToWhatIsThere) {
    Bytes out = {0x77};
    appendUnlinkAnswer(out, {.number = 9, .target = 7}, kUsbUnlinked);
    EXPECT_EQ(hex(out),
              "77 00 00 00 04 00 00 00 09 00 00 00 00 00 00 00 00 00 00 00 00 FF FF FF 98 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

}  // namespace
}  // namespace kelvo
