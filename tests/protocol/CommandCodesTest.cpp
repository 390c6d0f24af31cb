#include <gtest/gtest.h>

#include <array>

#include "CommandCodes.h"

namespace kelvo {
namespace {

TEST(CommandCodes, areThoseOfTheDevice) {
    EXPECT_EQ(CMD_CONNECT, 224);
    EXPECT_EQ(CMD_IR_DATA, 225);
    EXPECT_EQ(CMD_AMP_DATA, 226);
    EXPECT_EQ(CMD_AMP_NAMES, 227);
    EXPECT_EQ(CMD_DELETE_CAB, 228);
    EXPECT_EQ(CMD_CAB_NAMES, 133);
    EXPECT_EQ(CMD_PRESET_PARA, 165);
}

TEST(FrameLength, isReadLowByteFirst) {
    constexpr std::array<std::uint8_t, 4> frame{0xAA, 0x55, 0x03, 0x02};
    EXPECT_EQ(frameLength(frame.data()), 515);
    constexpr std::array<std::uint8_t, 4> longest{0xAA, 0x55, 0xFF, 0xFF};
    EXPECT_EQ(frameLength(longest.data()), 65535);
}

}  // namespace
}  // namespace kelvo
