#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Kr310Memory.h"

namespace kelvo {
namespace {

TEST(Kr310Memory, leavesTheFactoryWithAClickInEachNamedCabAndSilenceElsewhere) {
    EXPECT_THAT(memoryLines(Kr310Memory::factory()),
                testing::ElementsAre("CAB 27 \"OPEN 1X12\" crc32 f1cf3378", "CAB 28 \"CLOSED2X12\" crc32 f1cf3378",
                                     "CAB 29 \"VINTAGE412\" crc32 f1cf3378", "CAB 30 \"MODERN 412\" crc32 f1cf3378",
                                     "CAB 31 \"TWEED 1X8\" crc32 f1cf3378", "CAB 32 \"\" crc32 6c1ce17e",
                                     "CAB 33 \"BASS 4X10\" crc32 f1cf3378", "CAB 34 \"\" crc32 6c1ce17e",
                                     "CAB 35 \"ACOUSTIC\" crc32 f1cf3378", "CAB 36 \"\" crc32 6c1ce17e",
                                     "AMP 56 \"CLEAN\" crc32 f1e8ba9e", "AMP 57 \"CRUNCH\" crc32 f1e8ba9e",
                                     "AMP 58 \"LEAD\" crc32 f1e8ba9e", "AMP 59 \"EDGE DRIVE\" crc32 f1e8ba9e",
                                     "AMP 60 \"HIGH GAIN\" crc32 f1e8ba9e", "AMP 61 \"\" crc32 f1e8ba9e",
                                     "AMP 62 \"JAZZ\" crc32 f1e8ba9e", "AMP 63 \"BASS\" crc32 f1e8ba9e",
                                     "AMP 64 \"\" crc32 f1e8ba9e", "AMP 65 \"\" crc32 f1e8ba9e"));
}

}  // namespace
}  // namespace kelvo
