#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Kr310Transfer.h"

namespace kelvo {
namespace {

using Plane = std::vector<std::uint8_t>;

/// Takes a plane of one value; a plane never finishes a transfer.
void takePlane(Kr310Transfer& transfer, std::uint8_t slot, std::uint8_t phase, std::uint8_t value) {
    EXPECT_FALSE(transfer.take(slot, phase, Plane(512, value)));
}

std::optional<Kr310Slot> takeName(Kr310Transfer& transfer, std::uint8_t slot, std::string name = "A") {
    name.resize(10);
    return transfer.take(slot, transfer.lastPhase(), Plane(name.begin(), name.end()));
}

TEST(Kr310Transfer, fitsPlanesOf512BytesAndANameOfTen) {
    const Kr310Transfer cab(3);
    EXPECT_EQ(cab.lastPhase(), 4);
    EXPECT_FALSE(cab.fits(0, 512));
    EXPECT_TRUE(cab.fits(1, 512));
    EXPECT_TRUE(cab.fits(3, 512));
    EXPECT_FALSE(cab.fits(3, 10));
    EXPECT_FALSE(cab.fits(1, 511));
    EXPECT_FALSE(cab.fits(1, 513));
    EXPECT_TRUE(cab.fits(4, 10));
    EXPECT_FALSE(cab.fits(4, 512));
    EXPECT_FALSE(cab.fits(4, 9));
    EXPECT_FALSE(cab.fits(5, 10));
    EXPECT_FALSE(cab.fits(255, 512));
    const Kr310Transfer amp(4);
    EXPECT_EQ(amp.lastPhase(), 5);
    EXPECT_TRUE(amp.fits(4, 512));
    EXPECT_TRUE(amp.fits(5, 10));
}

TEST(Kr310Transfer, putsTheFirstPlaneHighest) {
    Kr310Transfer cab(3);
    takePlane(cab, 0, 1, 0x80);
    takePlane(cab, 0, 2, 0x02);
    takePlane(cab, 0, 3, 0x03);
    const std::optional<Kr310Slot> content = takeName(cab, 0, "MYCAB");
    ASSERT_TRUE(content);
    EXPECT_EQ(content->name, "MYCAB");
    EXPECT_EQ(content->words[0], 0x800203U);
    EXPECT_EQ(content->words[511], 0x800203U);
}

TEST(Kr310Transfer, fillsAllThirtyTwoBitsFromFourPlanes) {
    Kr310Transfer amp(4);
    takePlane(amp, 9, 1, 0xFF);
    takePlane(amp, 9, 2, 0x02);
    takePlane(amp, 9, 3, 0x03);
    takePlane(amp, 9, 4, 0x04);
    EXPECT_EQ(takeName(amp, 9).value().words[7], 0xFF020304U);
}

TEST(Kr310Transfer, takesAllTenBytesOfALongName) {
    Kr310Transfer cab(3);
    for (const std::uint8_t phase : {1, 2, 3}) {
        takePlane(cab, 0, phase, 0);
    }
    EXPECT_EQ(takeName(cab, 0, "0123456789").value().name, "0123456789");
}

TEST(Kr310Transfer, endsTheNameAtItsFirstZeroByte) {
    Kr310Transfer cab(3);
    for (const std::uint8_t phase : {1, 2, 3}) {
        takePlane(cab, 0, phase, 0);
    }
    EXPECT_EQ(takeName(cab, 0, std::string("AB\0CD", 5)).value().name, "AB");
}

TEST(Kr310Transfer, toleratesTheLastPacketAgain) {
    Kr310Transfer cab(3);
    for (const std::uint8_t phase : {1, 1, 2, 2, 3, 3, 3}) {
        takePlane(cab, 0, phase, phase);
    }
    EXPECT_EQ(takeName(cab, 0).value().words[0], 0x010203U);
}

TEST(Kr310Transfer, finishesOnlyOnceThoughTheNameIsRepeated) {
    Kr310Transfer cab(3);
    for (const std::uint8_t phase : {1, 2, 3}) {
        takePlane(cab, 0, phase, 0);
    }
    EXPECT_TRUE(takeName(cab, 0));
    EXPECT_FALSE(takeName(cab, 0));
}

struct Broken {
    const char* what;
    std::vector<std::uint8_t> phases;
};

class Kr310TransferBroken : public testing::TestWithParam<Broken> {};

TEST_P(Kr310TransferBroken, givesNoContent) {
    Kr310Transfer cab(3);
    for (const std::uint8_t phase : GetParam().phases) {
        takePlane(cab, 0, phase, 0);
    }
    EXPECT_FALSE(takeName(cab, 0)) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(Orders, Kr310TransferBroken,
                         testing::Values(Broken{"the name alone", {}}, Broken{"one plane", {1}},
                                         Broken{"two planes", {1, 2}}, Broken{"no first plane", {2, 3}},
                                         Broken{"a gap", {1, 3}}, Broken{"wrong order", {1, 3, 2, 3}},
                                         Broken{"backwards by two", {1, 2, 3, 1, 3}},
                                         Broken{"a stray plane at the end", {1, 2, 3, 2}}));

TEST(Kr310Transfer, endsWhenAPlaneNamesAnotherSlot) {
    Kr310Transfer cab(3);
    takePlane(cab, 0, 1, 0);
    takePlane(cab, 1, 2, 0);
    takePlane(cab, 0, 2, 0);
    takePlane(cab, 0, 3, 0);
    EXPECT_FALSE(takeName(cab, 0));
}

TEST(Kr310Transfer, endsWhenTheNameNamesAnotherSlot) {
    Kr310Transfer cab(3);
    for (const std::uint8_t phase : {1, 2, 3}) {
        takePlane(cab, 0, phase, 0);
    }
    EXPECT_FALSE(takeName(cab, 1));
    EXPECT_FALSE(takeName(cab, 0));
}

TEST(Kr310Transfer, startsAfreshWithPhaseOneEvenForAnotherSlot) {
    Kr310Transfer cab(3);
    takePlane(cab, 0, 1, 0x11);
    takePlane(cab, 0, 2, 0x22);
    takePlane(cab, 7, 1, 0x44);
    takePlane(cab, 7, 2, 0x55);
    takePlane(cab, 7, 3, 0x66);
    EXPECT_EQ(takeName(cab, 7).value().words[0], 0x445566U);
}

TEST(Kr310Transfer, forgetsEverythingOnReset) {
    Kr310Transfer cab(3);
    for (const std::uint8_t phase : {1, 2, 3}) {
        takePlane(cab, 0, phase, 0);
    }
    cab.reset();
    EXPECT_FALSE(takeName(cab, 0));
}

}  // namespace
}  // namespace kelvo
