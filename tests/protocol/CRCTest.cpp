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

TEST(Crc16, ofTheNineDigitsIsTheCatalogueCheckValue) {
    EXPECT_EQ(crcOf({'1', '2', '3', '4', '5', '6', '7', '8', '9'}), 0xCE3C);
}

TEST(Crc16, ofNoBytesIsFFFF) {
    EXPECT_EQ(crc16_Count(nullptr, 0), 0xFFFF);
    EXPECT_EQ(crcOf({}), 0xFFFF);
}

TEST(Crc16, ofTheStartUpFrameIs0225) {
    EXPECT_EQ(crcOf({0x02, 0x00, 0xE0, 0x00}), 0x0225);
}

// A single byte gives one table entry, inverted: 0x0000, 0x1021, 0x2042 and 0x3063 are entries 0 to 3.
TEST(Crc16, ofOneByteIsTheInvertedTableEntry) {
    EXPECT_EQ(crcOf({0x00}), 0xFFFF - 0x0000);
    EXPECT_EQ(crcOf({0x01}), 0xFFFF - 0x1021);
    EXPECT_EQ(crcOf({0x02}), 0xFFFF - 0x2042);
    EXPECT_EQ(crcOf({0x03}), 0xFFFF - 0x3063);
    EXPECT_EQ(crcOf({0x80}), 0x6E77);
    EXPECT_EQ(crcOf({0xFF}), 0xE10F);
}

TEST(Crc16, goesThroughTheWholeTable) {
    Bytes bytes(256);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    EXPECT_EQ(crcOf(bytes), 0x81AA);
    EXPECT_EQ(crcOf({bytes.rbegin(), bytes.rend()}), 0x9B6D);
}

TEST(Crc16, coversTheLongestFrame) {
    EXPECT_EQ(crcOf(Bytes(1020, 0x55)), 0x57EA);
}

TEST(Crc16, countsBeyond16Bits) {
    EXPECT_EQ(crcOf(Bytes(65537, 0x00)), 0xFFFF);
}

TEST(Crc16, readsExactlyTheCountedBytes) {
    const Bytes bytes{0x02, 0x00, 0xE0, 0x00, 0x77};
    EXPECT_EQ(crc16_Count(bytes.data(), 4), 0x0225);
}

TEST(Crc16, dependsOnTheOrderOfTheBytes) {
    EXPECT_NE(crcOf({0x01, 0x02}), crcOf({0x02, 0x01}));
}

}  // namespace
}  // namespace kelvo
