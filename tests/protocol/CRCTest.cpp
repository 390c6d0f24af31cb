#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <vector>

#include "CRC.h"

namespace kelvo {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::uint16_t crcOf(const Bytes& bytes) {
    return crc16_Count(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

TEST(Crc16, ofKnownBytes) {
    EXPECT_EQ(crc16_Count(nullptr, 0), 0xFFFF);
    EXPECT_EQ(crcOf({'1', '2', '3', '4', '5', '6', '7', '8', '9'}), 0xCE3C);  // the catalogue's check value
    EXPECT_EQ(crcOf({0x02, 0x00, 0xE0, 0x00}), 0x0225);                       // the start-up frame
    EXPECT_EQ(crcOf({0x00}), 0xFFFF);
    EXPECT_EQ(crcOf({0x01}), 0xEFDE);
    EXPECT_EQ(crcOf({0x02}), 0xDFBD);
    EXPECT_EQ(crcOf({0x03}), 0xCF9C);
    EXPECT_EQ(crcOf({0x80}), 0x6E77);
    EXPECT_EQ(crcOf({0xFF}), 0xE10F);
    EXPECT_EQ(crcOf(Bytes(1020, 0x55)), 0x57EA);   // as many as the longest frame has
    EXPECT_EQ(crcOf(Bytes(65537, 0x00)), 0xFFFF);  // a count beyond 16 bits
}

TEST(Crc16, usesTheWholeTable) {
    Bytes bytes(256);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    EXPECT_EQ(crcOf(bytes), 0x81AA);
    EXPECT_EQ(crcOf({bytes.rbegin(), bytes.rend()}), 0x9B6D);
}

}  // namespace
}  // namespace kelvo
