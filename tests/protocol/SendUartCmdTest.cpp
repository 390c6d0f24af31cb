#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "CRC.h"
#include "ScriptedLink.h"

namespace kelvo {
namespace {

using Bytes = std::vector<std::uint8_t>;

class SendUartCmdTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(link.attach()); }

    test::ScriptedLink link;
};

/// A frame buffer of LENGTH + 6 bytes with its header written and each data byte, the command included, at `fill`.
Bytes frameWith(std::size_t length, std::uint8_t fill) {
    Bytes frame{0xAA, 0x55, static_cast<std::uint8_t>(length & 0xFF), static_cast<std::uint8_t>(length >> 8)};
    frame.resize(length + 4, fill);
    frame.resize(length + 6, 0);
    return frame;
}

TEST_F(SendUartCmdTest, sendsAShortFrameWithItsCrcInOneReport) {
    const std::pair<Bytes, Bytes> rows[] = {
        {{0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00}, {0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25}},
        {{0xAA, 0x55, 0x0D, 0x00, 0xE1, 0x09, 0x04, 'G', 'R', 'E', 'E', 'N', 'B', 'A', 'C', 'K', 0},
         {0xAA, 0x55, 0x0D, 0x00, 0xE1, 0x09, 0x04, 'G', 'R', 'E', 'E', 'N', 'B', 'A', 'C', 'K', 0, 0xAF, 0x2B}},
        {{0xAA, 0x55, 0x00, 0x00}, {0xAA, 0x55, 0x00, 0x00, 0xFF, 0xFF}},
        // The CRC does not cover the header.
        {{0x00, 0x00, 0x02, 0x00, 0xE0, 0x00}, {0x00, 0x00, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25}},
    };
    for (const auto& [frame, sent] : rows) {
        link.device->forgetReports();
        Bytes buffer = frame;
        buffer.resize(frame.size() + 3, 0x77);
        SendUartCmd(buffer.data());
        EXPECT_EQ(link.device->sentBytes(), sent);
        EXPECT_EQ(link.device->reports().size(), 1U);
        Bytes expected = sent;
        expected.push_back(0x77);
        EXPECT_EQ(buffer, expected) << "the CRC is written into the caller's buffer, and nothing after it";
    }
}

TEST_F(SendUartCmdTest, sendsLength515As521BytesWithItsCrcAt519And520) {
    Bytes frame = frameWith(515, 0);
    frame[4] = 0xE1;
    frame[5] = 3;
    frame[6] = 1;
    for (std::size_t i = 0; i < 512; ++i) {
        frame[7 + i] = static_cast<std::uint8_t>(i);
    }
    SendUartCmd(frame.data());
    const Bytes sent = link.device->sentBytes();
    ASSERT_EQ(sent.size(), 521U);
    EXPECT_EQ(sent[519], 0x33);
    EXPECT_EQ(sent[520], 0xFF);
    EXPECT_EQ(Bytes(sent.begin(), sent.begin() + 8), (Bytes{0xAA, 0x55, 0x03, 0x02, 0xE1, 0x03, 0x01, 0x00}));
    EXPECT_EQ(link.device->reports().size(), 9U);
}

TEST_F(SendUartCmdTest, sendsTheZerosAfterADeletedRow) {
    Bytes frame = frameWith(515, 0);
    frame[4] = 0xE4;
    frame[5] = 7;
    SendUartCmd(frame.data());
    Bytes expected{0xAA, 0x55, 0x03, 0x02, 0xE4, 0x07};
    expected.resize(519, 0x00);
    expected.push_back(0xA3);
    expected.push_back(0x30);
    EXPECT_EQ(link.device->sentBytes(), expected);
}

TEST_F(SendUartCmdTest, sendsLengthsThatNoReceiverAccepts) {
    Bytes frame = frameWith(1280, 0x42);
    SendUartCmd(frame.data());
    EXPECT_EQ(link.device->sentBytes().size(), 1286U);
    EXPECT_EQ(frame[1284], 0x56);
    EXPECT_EQ(frame[1285], 0x1D);

    link.device->forgetReports();
    frame = frameWith(65535, 0x42);
    SendUartCmd(frame.data());
    EXPECT_EQ(link.device->sentBytes().size(), 65541U);
    EXPECT_EQ(frame[65539], 0x5B);
    EXPECT_EQ(frame[65540], 0xE5);
}

TEST_F(SendUartCmdTest, losesARefusedFrameSilently) {
    Bytes frame = frameWith(515, 0);
    link.device->refuseReport(3);
    SendUartCmd(frame.data());
    EXPECT_EQ(link.device->reports().size(), 2U);
}

TEST(SendUartCmdWithoutDevice, writesTheCrcAndSendsNothing) {
    test::ScriptedLink link;
    ASSERT_TRUE(link.manager.settle());
    std::array<std::uint8_t, 8> frame{0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00};
    SendUartCmd(frame.data());
    EXPECT_EQ(frame, (std::array<std::uint8_t, 8>{0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25}));
    EXPECT_EQ(link.device->attempts(), 0U);
}

}  // namespace
}  // namespace kelvo
