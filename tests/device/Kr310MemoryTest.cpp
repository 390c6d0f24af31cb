#include <gtest/gtest.h>

#include <vector>

#include "Kr310Memory.h"

namespace kelvo {
namespace {

std::vector<std::string> names(const std::array<Kr310Slot, kSlotCount>& slots) {
    std::vector<std::string> result;
    for (const Kr310Slot& slot : slots) {
        result.push_back(slot.name);
    }
    return result;
}

TEST(Kr310Memory, leavesTheFactoryWithSomeSlotsFilledAndSomeEmpty) {
    const Kr310Memory memory = Kr310Memory::factory();
    EXPECT_EQ(names(memory.cab), (std::vector<std::string>{"OPEN 1X12", "CLOSED2X12", "VINTAGE412", "MODERN 412",
                                                           "TWEED 1X8", "", "BASS 4X10", "", "ACOUSTIC", ""}));
    EXPECT_EQ(names(memory.amp), (std::vector<std::string>{"CLEAN", "CRUNCH", "LEAD", "EDGE DRIVE", "HIGH GAIN", "",
                                                           "JAZZ", "BASS", "", ""}));
}

TEST(Kr310Memory, holdsAClickInTheFactoryCabinetsAndSilenceInEmptySlots) {
    const Kr310Memory memory = Kr310Memory::factory();
    EXPECT_EQ(memory.cab[0].words[0], 0x7FFFFFU);
    EXPECT_EQ(memory.cab[0].words[1], 0U);
    EXPECT_EQ(kCabBank.crc32(memory.cab[0]), 0xF1CF3378U);
    EXPECT_EQ(memory.cab[5].words[0], 0U);
}

TEST(Crc32, ofACabRunsOverTheLowThreeBytesOfEachPoint) {
    Kr310Slot slot;
    EXPECT_EQ(kCabBank.crc32(slot), 0x6C1CE17EU);
    slot.words[511] = 0x800001;
    EXPECT_EQ(kCabBank.crc32(slot), 0x80660869U);
    slot.words[511] = 0xFF800001;
    EXPECT_EQ(kCabBank.crc32(slot), 0x80660869U);
}

TEST(Crc32, ofAnAmpRunsOverAllFourBytesOfEachWord) {
    Kr310Slot slot;
    EXPECT_EQ(kAmpBank.crc32(slot), 0xF1E8BA9EU);
    slot.words[0] = 0x01020304;
    EXPECT_EQ(kAmpBank.crc32(slot), 0x31550A98U);
}

}  // namespace
}  // namespace kelvo
