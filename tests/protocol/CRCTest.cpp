#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

#include "CRC.h"
#include "ScriptedLink.h"

namespace kelvo {
namespace {

using test::Bytes;

std::uint16_t crcOf(const Bytes& bytes) {
    return crc16_Count(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

TEST(Crc16, ofKnownBytes) {
    EXPECT_EQ(crc16_Count(nullptr, 0), 0xFFFF);
    EXPECT_EQ(crcOf({'1', '2', '3', '4', '5', '6', '7', '8', '9'}), 0xCE3C);  // the catalogue's check value
    EXPECT_EQ(crcOf({0x00}), 0xFFFF);
    EXPECT_EQ(crcOf({0x01}), 0xEFDE);
    EXPECT_EQ(crcOf({0x80}), 0x6E77);
    EXPECT_EQ(crcOf(Bytes(65537, 0x00)), 0xFFFF);  // a count beyond 16 bits
    Bytes everyValue(256);
    std::iota(everyValue.begin(), everyValue.end(), std::uint8_t{0});
    EXPECT_EQ(crcOf(everyValue), 0x81AA);
}

/// A frame of LENGTH + 6 bytes without its CRC: these bytes, then zeros.
Bytes frameOf(const Bytes& beginning, std::size_t size, std::uint8_t fill = 0) {
    Bytes frame = beginning;
    frame.resize(size - 2, fill);
    frame.resize(size, 0);
    return frame;
}

TEST(SendUartCmd, sendsAFrameWithItsCrcHighByteFirst) {
    struct Row {
        Bytes frame;
        std::uint8_t crcHigh;
        std::uint8_t crcLow;
    };
    test::ScriptedLink link;
    ASSERT_TRUE(link.attach());
    for (const auto& [frame, crcHigh, crcLow] :
         {Row{frameOf({0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00}, 8), 0x02, 0x25}, Row{frameOf({0xAA, 0x55}, 6), 0xFF, 0xFF},
          Row{frameOf({0xAA, 0x55, 0x0D, 0x00, 0xE1, 9, 4, 'G', 'R', 'E', 'E', 'N', 'B', 'A', 'C', 'K'}, 19), 0xAF,
              0x2B},
          // The CRC does not cover the header.
          Row{frameOf({0x00, 0x00, 0x02, 0x00, 0xE0}, 8), 0x02, 0x25},
          Row{frameOf({0xAA, 0x55, 0x03, 0x02, 0xE4, 0x07}, 521), 0xA3, 0x30},
          // No receiver accepts this LENGTH.
          Row{frameOf({0xAA, 0x55, 0xFF, 0xFF}, 65541, 0x42), 0x5B, 0xE5}}) {
        SCOPED_TRACE(frame.size());
        link.device->forgetReports();
        Bytes expected = frame;
        expected[frame.size() - 2] = crcHigh;
        expected[frame.size() - 1] = crcLow;
        Bytes buffer = frame;
        buffer.push_back(0x77);
        SendUartCmd(buffer.data());
        EXPECT_EQ(link.device->sentBytes(), expected);
        expected.push_back(0x77);
        EXPECT_EQ(buffer, expected) << "the CRC is written into the caller's buffer, and nothing after it";
    }
}

TEST(SendUartCmd, withoutADevice_losesTheFrame) {
    test::ScriptedLink link;
    Bytes frame{0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0, 0};
    SendUartCmd(frame.data());
    EXPECT_EQ(frame, (Bytes{0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25}));
    EXPECT_EQ(link.device->attempts(), 0U);
}

}  // namespace
}  // namespace kelvo
