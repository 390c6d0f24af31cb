#include <gtest/gtest.h>

#include "DeviceTesting.h"
#include "VirtualKr310.h"

namespace kelvo {
namespace {

using std::chrono::microseconds;
using Lines = std::vector<std::string>;

TEST(VirtualKr310, acknowledgesEveryPhaseOfAnImport) {
    VirtualKr310 pedal;
    EXPECT_EQ(answered(sendPhases(pedal, kCab, 3, {1, 2, 3, 4})),
              "AA 55 02 00 E1 01 21 35 AA 55 02 00 E1 02 11 56 AA 55 02 00 E1 03 01 77 AA 55 02 00 E1 04 71 90");
    EXPECT_EQ(answered(sendPhases(pedal, kAmp, 2, {1, 2, 3, 4, 5})),
              "AA 55 02 00 E2 01 74 66 AA 55 02 00 E2 02 44 05 AA 55 02 00 E2 03 54 24 AA 55 02 00 E2 04 24 C3 "
              "AA 55 02 00 E2 05 34 E2");
}

TEST(VirtualKr310, acknowledgesOnlyWhenTheLastReportOfAPacketIsThere) {
    VirtualKr310 pedal;
    const std::vector<Bytes> reports = makeReports(packet(kCab, 3, 1));
    ASSERT_EQ(reports.size(), 9U);
    for (std::size_t i = 0; i < 8; ++i) {
        EXPECT_TRUE(pedal.receive(reports[i]).reports.empty()) << i;
    }
    const VirtualKr310::Reaction last = pedal.receive(reports[8]);
    ASSERT_EQ(last.reports.size(), 1U);
    EXPECT_EQ(last.reports[0].due, microseconds(0));
}

TEST(VirtualKr310Cab, storesPointsAndNameAndSaysSo) {
    Lines printed;
    VirtualKr310 pedal(Kr310Memory::factory(), [&](std::string_view line) { printed.emplace_back(line); });
    EXPECT_EQ(sendPhases(pedal, kCab, 0, {1, 2, 3}).changes, Lines{});
    EXPECT_EQ(pedal.memory().cab[0].name, "OPEN 1X12");
    const Lines expected = {"CAB 27 <- \"MYCAB\" 512 points, crc32 844cf1f6"};
    EXPECT_EQ(sendPhases(pedal, kCab, 0, {4}).changes, expected);
    EXPECT_EQ(printed, expected);
    const Kr310Memory memory = pedal.memory();
    EXPECT_EQ(memory.cab[0].name, "MYCAB");
    EXPECT_EQ(memory.cab[0].words[0], 0x102030U);
    EXPECT_EQ(memory.cab[0].words[1], 0x112131U);
    EXPECT_EQ(memory.cab[0].words[511], 0x0F1F2FU);
    EXPECT_EQ(memory.cab[1].name, "CLOSED2X12");
}

TEST(VirtualKr310Amp, storesWordsAndNameAndSaysSo) {
    VirtualKr310 pedal;
    EXPECT_EQ(sendPhases(pedal, kAmp, 2, {1, 2, 3, 4, 5}).changes,
              Lines{"AMP 58 <- \"CLEAN\" 512 words, crc32 f0dde17b"});
    const Kr310Memory memory = pedal.memory();
    EXPECT_EQ(memory.amp[2].name, "CLEAN");
    EXPECT_EQ(memory.amp[2].words[0], 0x10203040U);
    EXPECT_EQ(memory.amp[2].words[511], 0x0F1F2F3FU);
    EXPECT_EQ(memory.cab[2].name, "VINTAGE412");
}

TEST(VirtualKr310, storesALaterImportOverAnEarlierOne) {
    VirtualKr310 pedal;
    sendPhases(pedal, kCab, 3, {1, 2, 3, 4});
    EXPECT_EQ(sendPhases(pedal, kCab, 3, {1, 2, 3, 4}, 100).changes,
              Lines{"CAB 30 <- \"OTHERNAME!\" 512 points, crc32 e7d742b7"});
    EXPECT_EQ(pedal.memory().cab[3].words[0], 0x748494U);
    EXPECT_EQ(sendPhases(pedal, kCab, 9, {1, 2, 3, 4}).changes,
              Lines{"CAB 36 <- \"MYCAB\" 512 points, crc32 844cf1f6"});
}

TEST(VirtualKr310, keepsACabAndAnAmpTransferApart) {
    VirtualKr310 pedal;
    sendPhases(pedal, kCab, 3, {1, 2});
    sendPhases(pedal, kAmp, 2, {1, 2, 3, 4});
    EXPECT_EQ(sendPhases(pedal, kCab, 3, {3, 4}).changes, Lines{"CAB 30 <- \"MYCAB\" 512 points, crc32 844cf1f6"});
    EXPECT_EQ(sendPhases(pedal, kAmp, 2, {5}).changes, Lines{"AMP 58 <- \"CLEAN\" 512 words, crc32 f0dde17b"});
}

TEST(VirtualKr310, acknowledgesPacketsOutOfOrderButStoresNothing) {
    VirtualKr310 pedal;
    const VirtualKr310::Reaction reaction = sendPhases(pedal, kCab, 3, {1, 3, 4});
    EXPECT_EQ(answered(reaction), "AA 55 02 00 E1 01 21 35 AA 55 02 00 E1 03 01 77 AA 55 02 00 E1 04 71 90");
    EXPECT_EQ(reaction.changes, Lines{});
    EXPECT_EQ(pedal.memory().cab[3].name, "MODERN 412");
}

TEST(VirtualKr310, completesATransferForASlotItDoesNotHaveAndStoresNothing) {
    for (const int slot : {10, 255}) {
        VirtualKr310 pedal;
        const VirtualKr310::Reaction reaction = sendPhases(pedal, kCab, static_cast<std::uint8_t>(slot), {1, 2, 3, 4});
        EXPECT_EQ(reaction.reports.size(), 4U);
        EXPECT_EQ(reaction.changes, Lines{}) << slot;
    }
    VirtualKr310 pedal;
    const VirtualKr310::Reaction reaction = sendPhases(pedal, kAmp, 255, {1, 2, 3, 4, 5});
    EXPECT_EQ(reaction.reports.size(), 5U);
    EXPECT_EQ(reaction.changes, Lines{});
    EXPECT_EQ(pedal.memory().amp[9].name, "");
}

TEST(VirtualKr310, forgetsAnUnfinishedTransferWhenItIsPoweredUpButKeepsItsSlots) {
    VirtualKr310 pedal;
    sendPhases(pedal, kCab, 0, {1, 2, 3, 4});
    sendPhases(pedal, kCab, 3, {1, 2, 3});
    pedal.powerUp();
    EXPECT_EQ(sendPhases(pedal, kCab, 3, {4}).changes, Lines{});
    EXPECT_EQ(pedal.memory().cab[0].name, "MYCAB");
}

TEST(VirtualKr310, forgetsHalfAFrameWhenItIsPoweredUp) {
    VirtualKr310 pedal;
    EXPECT_TRUE(pedal.receive(makeReport(unhex("AA 55 03 02 E1"))).reports.empty());
    EXPECT_TRUE(send(pedal, {connectFrame()}).reports.empty());
    pedal.powerUp();
    EXPECT_EQ(send(pedal, {connectFrame()}).reports.size(), 204U);
}

TEST(VirtualKr310, printsUnprintableNameBytesAsQuestionMarks) {
    VirtualKr310 pedal;
    sendPhases(pedal, kCab, 3, {1, 2, 3});
    EXPECT_EQ(send(pedal, {unhex("AA 55 0D 00 E1 03 04 41 22 C3 A9 01 00 42 43 44 00 2C D5")}).changes,
              Lines{"CAB 30 <- \"A\"???\" 512 points, crc32 844cf1f6"});
    EXPECT_EQ(pedal.memory().cab[3].name, "A\"\xC3\xA9\x01");
    sendPhases(pedal, kCab, 3, {1, 2, 3});
    EXPECT_EQ(send(pedal, {unhex("AA 55 0D 00 E1 03 04 20 7E 1F 7F 00 00 00 00 00 00 35 08")}).changes,
              Lines{"CAB 30 <- \" ~??\" 512 points, crc32 844cf1f6"});
}

TEST(VirtualKr310Delete, clearsTheSlotWithoutAnAnswer) {
    VirtualKr310 pedal;
    const VirtualKr310::Reaction reaction = send(pedal, {deletePacket(3)});
    EXPECT_TRUE(reaction.reports.empty());
    EXPECT_EQ(reaction.changes, Lines{"CAB 30 cleared"});
    const Kr310Memory memory = pedal.memory();
    EXPECT_EQ(memory.cab[3].name, "");
    EXPECT_EQ(memory.cab[3].words[0], 0U);
    EXPECT_EQ(memory.cab[2].name, "VINTAGE412");
    EXPECT_EQ(memory.amp[3].name, "EDGE DRIVE");
}

TEST(VirtualKr310Delete, knowsTheFirstAndTheLastSlotOnly) {
    VirtualKr310 pedal;
    const VirtualKr310::Reaction reaction =
        send(pedal, {deletePacket(0), deletePacket(9), deletePacket(10), deletePacket(255)});
    EXPECT_TRUE(reaction.reports.empty());
    EXPECT_EQ(reaction.changes, (Lines{"CAB 27 cleared", "CAB 36 cleared"}));
}

struct Misfit {
    const char* what;
    Bytes frame;
};

Bytes planeFrame(std::uint8_t phase, std::size_t size, std::uint8_t crcHigh, std::uint8_t crcLow) {
    const std::size_t length = size + 3;
    Bytes frame = {0xAA, 0x55, static_cast<std::uint8_t>(length & 0xFF), static_cast<std::uint8_t>(length >> 8), kCab,
                   3,    phase};
    for (std::size_t i = 0; i < size; ++i) {
        frame.push_back(static_cast<std::uint8_t>(16U * phase + i));
    }
    frame.insert(frame.end(), {crcHigh, crcLow});
    return frame;
}

/// A deletion of slot 3 with a 1 among the bytes that are 0.
Bytes deletionWithAOne(std::size_t offset, std::uint8_t crcHigh, std::uint8_t crcLow) {
    Bytes frame = {0xAA, 0x55, 0x03, 0x02, 0xE4, 3};
    frame.resize(519);
    frame[offset] = 1;
    frame.insert(frame.end(), {crcHigh, crcLow});
    return frame;
}

class VirtualKr310Misfit : public testing::TestWithParam<Misfit> {};

TEST_P(VirtualKr310Misfit, isIgnoredThoughItsCrcIsGood) {
    VirtualKr310 pedal;
    FrameReader reader;
    std::size_t frames = 0;
    for (const Bytes& report : makeReports(GetParam().frame)) {
        frames += reader.takeReport(report).size();
    }
    EXPECT_EQ(frames, 1U) << GetParam().what;
    const VirtualKr310::Reaction reaction = send(pedal, {GetParam().frame});
    EXPECT_TRUE(reaction.reports.empty()) << GetParam().what;
    EXPECT_EQ(reaction.changes, Lines{}) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(Frames, VirtualKr310Misfit,
                         testing::Values(Misfit{"an unknown command", unhex("AA 55 02 00 77 01 93 78")},
                                         Misfit{"connect without its data byte", unhex("AA 55 01 00 E0 35 E1")},
                                         Misfit{"connect with two data bytes", unhex("AA 55 03 00 E0 00 00 B1 1C")},
                                         Misfit{"import with a slot alone", unhex("AA 55 02 00 E1 03 01 77")},
                                         Misfit{"a short delete", unhex("AA 55 02 00 E4 03 FE 82")},
                                         Misfit{"a delete with byte 6", deletionWithAOne(6, 0x25, 0x37)},
                                         Misfit{"a delete with byte 300", deletionWithAOne(300, 0x48, 0x22)},
                                         Misfit{"a delete with byte 518", deletionWithAOne(518, 0xA5, 0xD4)},
                                         Misfit{"phase 0", planeFrame(0, 512, 0xA3, 0x3D)},
                                         Misfit{"phase 5", planeFrame(5, 512, 0xCA, 0x0D)},
                                         Misfit{"a short plane", planeFrame(1, 511, 0x13, 0x87)}));

}  // namespace
}  // namespace kelvo
