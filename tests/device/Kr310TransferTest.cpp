#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Kr310Transfer.h"

namespace kelvo {
namespace {

using Plane = std::vector<std::uint8_t>;

/// Gives a plane of one value; a plane never finishes a transfer.
void takePlane(Kr310Transfer& transfer, std::uint8_t slot, std::uint8_t phase, std::uint8_t value) {
    EXPECT_FALSE(transfer.take(slot, phase, Plane(512, value)));
}

std::optional<Kr310Slot> takeName(Kr310Transfer& transfer, std::uint8_t slot, std::string name = "A") {
    name.resize(10);
    return transfer.take(slot, transfer.lastPhase(), Plane(name.begin(), name.end()));
}

/// A CAB transfer to slot 0 that only lacks its name.
Kr310Transfer withPlanes() {
    Kr310Transfer cab(3);
    for (const std::uint8_t phase : {1, 2, 3}) {
        takePlane(cab, 0, phase, 0);
    }
    return cab;
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

TEST(Kr310Transfer, fillsAllThirtyTwoBitsFromFourPlanes) {
    Kr310Transfer amp(4);
    takePlane(amp, 9, 1, 0xFF);
    takePlane(amp, 9, 2, 0x02);
    takePlane(amp, 9, 3, 0x03);
    takePlane(amp, 9, 4, 0x04);
    const std::optional<Kr310Slot> content = takeName(amp, 9);
    ASSERT_TRUE(content);
    EXPECT_EQ(content->words[0], 0xFF020304U);
    EXPECT_EQ(content->words[511], 0xFF020304U);
}

TEST(Kr310Transfer, name_isTenBytesOrEndsAtItsFirstZero) {
    Kr310Transfer cab = withPlanes();
    EXPECT_EQ(takeName(cab, 0, "0123456789").value().name, "0123456789");
    cab = withPlanes();
    EXPECT_EQ(takeName(cab, 0, std::string("AB\0CD", 5)).value().name, "AB");
}

/// A plane for slot s in phase p has the value 16 * s + p.
struct Order {
    const char* name;
    std::vector<std::pair<int, int>> planes;  ///< slot and phase
    std::uint8_t nameSlot = 0;
    std::optional<std::uint32_t> word = {};  ///< what the name's packet stores; nothing for none
};

class Kr310TransferOrder : public testing::TestWithParam<Order> {};

TEST_P(Kr310TransferOrder, storesThisWordOrNothing) {
    Kr310Transfer cab(3);
    for (const auto& [slot, phase] : GetParam().planes) {
        takePlane(cab, static_cast<std::uint8_t>(slot), static_cast<std::uint8_t>(phase),
                  static_cast<std::uint8_t>(16 * slot + phase));
    }
    const auto content = takeName(cab, GetParam().nameSlot);
    EXPECT_EQ(content ? std::optional(content->words[0]) : std::nullopt, GetParam().word);
    EXPECT_FALSE(takeName(cab, 0)) << "a transfer ends once";
}

const Order kOrders[] = {
    {"inOrder", {{0, 1}, {0, 2}, {0, 3}}, 0, 0x010203},
    {"packetsRepeated", {{0, 1}, {0, 1}, {0, 2}, {0, 2}, {0, 3}, {0, 3}, {0, 3}}, 0, 0x010203},
    {"startedAfresh", {{0, 1}, {0, 2}, {7, 1}, {7, 2}, {7, 3}}, 7, 0x717273},
    {"theNameAlone", {}},
    {"onePlane", {{0, 1}}},
    {"twoPlanes", {{0, 1}, {0, 2}}},
    {"noFirstPlane", {{0, 2}, {0, 3}}},
    {"aGap", {{0, 1}, {0, 3}}},
    {"wrongOrder", {{0, 1}, {0, 3}, {0, 2}, {0, 3}}},
    {"backwardsByTwo", {{0, 1}, {0, 2}, {0, 3}, {0, 1}, {0, 3}}},
    {"strayPlaneAtTheEnd", {{0, 1}, {0, 2}, {0, 3}, {0, 2}}},
    {"planeForAnotherSlot", {{0, 1}, {1, 2}, {0, 2}, {0, 3}}},
    {"nameForAnotherSlot", {{0, 1}, {0, 2}, {0, 3}}, 1},
};

INSTANTIATE_TEST_SUITE_P(, Kr310TransferOrder, testing::ValuesIn(kOrders),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Kr310Transfer, forgetsEverythingOnReset) {
    Kr310Transfer cab = withPlanes();
    cab.reset();
    EXPECT_FALSE(takeName(cab, 0));
}

}  // namespace
}  // namespace kelvo
