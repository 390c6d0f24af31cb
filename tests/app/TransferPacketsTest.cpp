#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "TransferPackets.h"

namespace kelvo::test {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr NameBuffer kName{'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H', 'I', 'J', 'K'};

PointBuffer someWords() {
    PointBuffer words{};
    words[0] = 0x12345678;
    words[511] = 0x9ABCDEF0;
    return words;
}

std::vector<int> bytes(const PacketBuffer& packet, std::size_t from, std::size_t count) {
    const auto first = packet.begin() + static_cast<std::ptrdiff_t>(from);
    return {first, first + static_cast<std::ptrdiff_t>(count)};
}

struct Plane {
    const TransferKind& kind;
    std::uint8_t phase;
    int command;
    int first;
    int last;
};

class DataPacket : public testing::TestWithParam<Plane> {};

TEST_P(DataPacket, carriesOneByteOfEveryWord) {
    PacketBuffer packet{};
    ASSERT_TRUE(layOutPacket(packet, GetParam().kind, GetParam().phase, 3, someWords(), kName));
    EXPECT_THAT(bytes(packet, 0, 7), ElementsAre(0xAA, 0x55, 0x03, 0x02, GetParam().command, 3, GetParam().phase));
    EXPECT_EQ(packet[7], GetParam().first);
    EXPECT_THAT(bytes(packet, 8, 510), Each(0));
    EXPECT_EQ(packet[518], GetParam().last);
}

INSTANTIATE_TEST_SUITE_P(
    Planes, DataPacket,
    testing::Values(Plane{kIRTransfer, 1, 0xE1, 0x34, 0xBC}, Plane{kIRTransfer, 2, 0xE1, 0x56, 0xDE},
                    Plane{kIRTransfer, 3, 0xE1, 0x78, 0xF0}, Plane{kAMPTransfer, 1, 0xE2, 0x12, 0x9A},
                    Plane{kAMPTransfer, 2, 0xE2, 0x34, 0xBC}, Plane{kAMPTransfer, 3, 0xE2, 0x56, 0xDE},
                    Plane{kAMPTransfer, 4, 0xE2, 0x78, 0xF0}));

TEST(NamePacket, carriesTenBytesWithoutATerminator) {
    PacketBuffer packet{};
    ASSERT_TRUE(layOutPacket(packet, kIRTransfer, 4, 9, someWords(), kName));
    EXPECT_THAT(bytes(packet, 0, 18),
                ElementsAre(0xAA, 0x55, 0x0D, 0x00, 0xE1, 9, 4, 'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H', 'I', 'J', 0));
    ASSERT_TRUE(layOutPacket(packet, kAMPTransfer, 5, 9, someWords(), kName));
    EXPECT_THAT(bytes(packet, 0, 7), ElementsAre(0xAA, 0x55, 0x0D, 0x00, 0xE2, 9, 5));
}

TEST(NamePacket, isFilledWithZerosBehindAShortName) {
    PacketBuffer packet{};
    packet.fill(0xEE);
    ASSERT_TRUE(layOutPacket(packet, kIRTransfer, 4, 0, someWords(), NameBuffer{'X'}));
    EXPECT_THAT(bytes(packet, 7, 11), ElementsAre('X', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xEE));
}

TEST(Packet, leavesItsLengthToNoLaterPacket) {
    PacketBuffer packet{};
    ASSERT_TRUE(layOutPacket(packet, kIRTransfer, 4, 0, someWords(), kName));
    ASSERT_TRUE(layOutPacket(packet, kIRTransfer, 1, 0, someWords(), kName));
    EXPECT_THAT(bytes(packet, 2, 2), ElementsAre(0x03, 0x02));
}

TEST(Packet, sendsTheLowByteOfTheRow) {
    PacketBuffer packet{};
    ASSERT_TRUE(layOutPacket(packet, kIRTransfer, 1, -1, someWords(), kName));
    EXPECT_EQ(packet[5], 0xFF);
    ASSERT_TRUE(layOutPacket(packet, kIRTransfer, 1, 0x1234, someWords(), kName));
    EXPECT_EQ(packet[5], 0x34);
}

TEST(Packet, ofAPhaseThatDoesNotExistOnlyRewritesTheHeader) {
    for (const int phase : {0, 5, 6, 255}) {
        PacketBuffer packet{};
        packet.fill(0xEE);
        EXPECT_FALSE(layOutPacket(packet, kIRTransfer, static_cast<std::uint8_t>(phase), 0, someWords(), kName));
        EXPECT_THAT(bytes(packet, 0, 6), ElementsAre(0xAA, 0x55, 0x03, 0x02, 0xE1, 0xEE));
    }
    PacketBuffer packet{};
    EXPECT_FALSE(layOutPacket(packet, kAMPTransfer, 0, 0, someWords(), kName));
    EXPECT_FALSE(layOutPacket(packet, kAMPTransfer, 6, 0, someWords(), kName));
}

}  // namespace
}  // namespace kelvo::test
