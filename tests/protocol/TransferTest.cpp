#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "Transfer.h"

namespace kelvo::test {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr NameBuffer kName{'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H', 'I', 'J', 'K'};

/// A transfer into row 3 whose first and last words have four different bytes.
Transfer begun(const TransferKind& kind, const NameBuffer& name = kName) {
    PointBuffer words{};
    words[0] = 0x12345678;
    words[511] = 0x9ABCDEF0;
    Transfer transfer(kind);
    transfer.begin(1, 3, words, name);
    return transfer;
}

/// The packet that follows the acknowledgement of the phases before it.
PacketBuffer packetOf(Transfer transfer, std::uint8_t phase, std::int64_t slot = 3) {
    for (std::uint8_t before = 1; before < phase; ++before) {
        EXPECT_TRUE(transfer.acknowledge(before));
    }
    PacketBuffer packet;
    packet.fill(0xEE);
    EXPECT_TRUE(transfer.layOutPacket(packet, slot));
    return packet;
}

std::vector<int> bytes(const PacketBuffer& packet, std::size_t from, std::size_t count) {
    const auto first = packet.begin() + static_cast<std::ptrdiff_t>(from);
    return {first, first + static_cast<std::ptrdiff_t>(count)};
}

TEST(DataPacket, carriesOneByteOfEveryWord) {
    struct Row {
        const TransferKind& kind;
        std::uint8_t phase;
        int command;
        int first;
        int last;
    };
    for (const auto& [kind, phase, command, first, last] :
         {Row{kIRTransfer, 1, 0xE1, 0x34, 0xBC}, Row{kIRTransfer, 2, 0xE1, 0x56, 0xDE},
          Row{kIRTransfer, 3, 0xE1, 0x78, 0xF0}, Row{kAMPTransfer, 1, 0xE2, 0x12, 0x9A},
          Row{kAMPTransfer, 2, 0xE2, 0x34, 0xBC}, Row{kAMPTransfer, 3, 0xE2, 0x56, 0xDE},
          Row{kAMPTransfer, 4, 0xE2, 0x78, 0xF0}}) {
        const PacketBuffer packet = packetOf(begun(kind), phase);
        EXPECT_THAT(bytes(packet, 0, 8), ElementsAre(0xAA, 0x55, 0x03, 0x02, command, 3, phase, first));
        EXPECT_THAT(bytes(packet, 8, 510), Each(0));
        EXPECT_THAT(bytes(packet, 518, 2), ElementsAre(last, 0xEE));
    }
}

TEST(NamePacket, carriesTenBytesWithoutATerminator) {
    EXPECT_THAT(
        bytes(packetOf(begun(kIRTransfer), 4, 9), 0, 18),
        ElementsAre(0xAA, 0x55, 0x0D, 0x00, 0xE1, 9, 4, 'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H', 'I', 'J', 0xEE));
    EXPECT_THAT(bytes(packetOf(begun(kAMPTransfer), 5, 9), 0, 7), ElementsAre(0xAA, 0x55, 0x0D, 0x00, 0xE2, 9, 5));
}

TEST(NamePacket, isFilledWithZerosAfterAShortName) {
    EXPECT_THAT(bytes(packetOf(begun(kIRTransfer, NameBuffer{'X'}), 4), 7, 11),
                ElementsAre('X', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xEE));
}

TEST(Packet, leavesItsLengthToNoLaterPacket) {
    PacketBuffer packet = packetOf(begun(kIRTransfer), 4);
    ASSERT_TRUE(begun(kIRTransfer).layOutPacket(packet, 0));
    EXPECT_THAT(bytes(packet, 2, 2), ElementsAre(0x03, 0x02));
}

TEST(Packet, sendsTheLowByteOfTheSlot) {
    EXPECT_EQ(packetOf(begun(kIRTransfer), 1, -1)[5], 0xFF);
    EXPECT_EQ(packetOf(begun(kIRTransfer), 1, 0x1234)[5], 0x34);
}

TEST(Packet, ofAnIdleTransferIsOnlyAHeader) {
    Transfer idle(kIRTransfer);
    PacketBuffer packet;
    packet.fill(0xEE);
    EXPECT_FALSE(idle.layOutPacket(packet, 0));
    EXPECT_THAT(bytes(packet, 0, 6), ElementsAre(0xAA, 0x55, 0x03, 0x02, 0xE1, 0xEE));
}

/// A transfer into row 3 that sends each packet to that row's slot.
class Acknowledgements : public testing::Test {
protected:
    Acknowledgements() { send(); }
    void send(std::int64_t slot = 3) { static_cast<void>(transfer_.layOutPacket(packet_, slot)); }
    void acknowledge(const std::vector<std::uint8_t>& phases) {
        for (const std::uint8_t phase : phases) {
            if (transfer_.acknowledge(phase)) {
                send();
            }
        }
    }
    const TransferProgress& progress() const { return transfer_.progress(); }

    Transfer transfer_ = begun(kIRTransfer);
    PacketBuffer packet_{};
};

TEST_F(Acknowledgements, inOrderMoveTheTransferToItsEnd) {
    for (const std::uint8_t phase : {1, 2, 3}) {
        EXPECT_TRUE(transfer_.acknowledge(phase));
        EXPECT_EQ(transfer_.tick(), phase + 1);
        EXPECT_EQ(progress().acknowledged, phase);
        send();
    }
    EXPECT_FALSE(transfer_.acknowledge(4));
    EXPECT_EQ(progress(), (TransferProgress{.number = 1, .row = 3, .acknowledged = 4, .isSpoiled = false}));
}

TEST_F(Acknowledgements, outOfOrder_spoilTheTransferUnlessTheyRepeatTheLast) {
    struct Row {
        std::vector<std::uint8_t> phases;
        std::uint8_t acknowledged;
        bool isSpoiled;
        int sentPhase;  ///< of the last packet
    };
    for (const auto& [phases, acknowledged, isSpoiled, sentPhase] :
         {Row{{3}, 0, true, 4}, Row{{1, 2, 1}, 2, true, 2}, Row{{1, 1, 2, 2, 3, 3, 4}, 4, false, 4},
          Row{{1, 2, 3, 4, 2}, 4, false, 3}, Row{{0, 5, 6, 255}, 0, false, 1}}) {
        SCOPED_TRACE(testing::PrintToString(phases));
        transfer_.begin(1, 3, {}, {});
        send();
        acknowledge(phases);
        EXPECT_EQ(progress(),
                  (TransferProgress{.number = 1, .row = 3, .acknowledged = acknowledged, .isSpoiled = isSpoiled}));
        EXPECT_EQ(packet_[6], sentPhase);
    }
}

TEST_F(Acknowledgements, ofPhasesThatDoNotExistAreIgnored) {
    for (const std::uint8_t phase : {0, 5, 6, 255}) {
        EXPECT_FALSE(transfer_.acknowledge(phase));
    }
    EXPECT_EQ(transfer_.tick(), 1);
}

TEST_F(Acknowledgements, whosePacketGoesToAnotherSlotSpoilTheTransfer) {
    ASSERT_TRUE(transfer_.acknowledge(1));
    send(8);
    EXPECT_TRUE(progress().isSpoiled);
}

TEST_F(Acknowledgements, belongToTheTransferThatBeganLast) {
    acknowledge({1, 2, 1});
    transfer_.begin(2, 5, {}, {});
    EXPECT_EQ(progress(), (TransferProgress{.number = 2, .row = 5, .acknowledged = 0, .isSpoiled = false}));
    EXPECT_EQ(transfer_.tick(), 1);
}

TEST_F(Acknowledgements, ofTheNameOnly_noLongerCountForARowThatWasCleared) {
    acknowledge({1, 2});
    transfer_.slotCleared(3);
    EXPECT_EQ(progress().row, 3);
    acknowledge({3});
    transfer_.slotCleared(4);
    EXPECT_EQ(progress().row, 3);
    transfer_.slotCleared(3);
    EXPECT_EQ(progress().row, -1);
    transfer_.begin(2, 3, {}, {});
    acknowledge({1, 2, 3, 4, 2});  // the last packet was not the name
    transfer_.slotCleared(3);
    EXPECT_EQ(progress().row, -1);
}

}  // namespace
}  // namespace kelvo::test
