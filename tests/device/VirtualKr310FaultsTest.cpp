#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "DeviceTesting.h"
#include "VirtualKr310.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;

/// A pedal with these faults, named as "silent=3 merge".
struct FaultyPedal : VirtualKr310 {
    explicit FaultyPedal(const char* texts) {
        Faults faults;
        std::istringstream names(texts);
        for (std::string name; names >> name;) {
            EXPECT_EQ(switchOn(name, faults), std::nullopt);
        }
        setFaults(faults);
    }
};

TEST(VirtualKr310Faults, canBeSwitchedOff) {
    FaultyPedal pedal("silent refuse=7");
    EXPECT_EQ(pedal.faults().refuseReport, 7U);
    EXPECT_EQ(sendPhases(pedal, kCab, 3, {1, 2, 3, 4}).changes.size(), 1U) << "a silent pedal still stores";
    pedal.setFaults({});
    EXPECT_EQ(answered(sendPhases(pedal, kCab, 3, {1})), "AA 55 02 00 E1 01 21 35");
}

struct FaultCase {
    const char* faults;
    std::uint8_t command;
    Bytes phases;
    const char* answers;
};

TEST(VirtualKr310Faults, changeTheAnswersToAnImport) {
    for (const auto& [faults, command, phases, answers] :
         {FaultCase{"silent", kCab, {1, 2, 3, 4}, ""}, FaultCase{"silent=1", kCab, {1, 2, 3, 4}, ""},
          FaultCase{"silent=3", kCab, {1, 2, 3, 4}, "AA 55 02 00 E1 01 21 35 AA 55 02 00 E1 02 11 56"},
          FaultCase{"duplicate-ack", kCab, {2}, "AA 55 02 00 E1 02 11 56 AA 55 02 00 E1 02 11 56"},
          FaultCase{"wrong-ack",
                    kCab,
                    {1, 2, 3, 4},
                    "AA 55 02 00 E1 02 11 56 AA 55 02 00 E1 03 01 77 AA 55 02 00 E1 04 71 90 AA 55 02 00 E1 01 21 35"},
          FaultCase{"wrong-ack", kAmp, {4, 5}, "AA 55 02 00 E2 05 34 E2 AA 55 02 00 E2 01 74 66"},
          FaultCase{"ack-out-of-range", kCab, {1}, "AA 55 02 00 E1 FF 2F E4"},
          FaultCase{"ack-out-of-range", kAmp, {1}, "AA 55 02 00 E2 FF 7A B7"},
          FaultCase{"ack-out-of-range=0 wrong-ack", kCab, {1}, "AA 55 02 00 E1 00 31 14"},
          // Counted over all answers.
          FaultCase{"corrupt-crc=3",
                    kCab,
                    {1, 2, 3, 4},
                    "AA 55 02 00 E1 01 21 35 AA 55 02 00 E1 02 11 56 AA 55 02 00 E1 03 01 88 AA 55 02 00 E1 04 71 90"},
          FaultCase{"long-frames",
                    kCab,
                    {1, 2, 3, 4},
                    "AA 55 03 00 E1 01 00 B5 1D AA 55 03 00 E1 02 00 E0 4E AA 55 03 00 E1 03 00 D3 7F "
                    "AA 55 03 00 E1 04 00 4A E8"}}) {
        FaultyPedal pedal(faults);
        EXPECT_EQ(answered(sendPhases(pedal, command, command == kCab ? 3 : 2, phases)), answers) << faults;
    }
}

TEST(VirtualKr310Faults, duplicateAcknowledgement_isTwoReports) {
    FaultyPedal pedal("duplicate-ack");
    EXPECT_EQ(sendPhases(pedal, kCab, 3, {2}).reports.size(), 2U);
}

TEST(VirtualKr310Faults, workTogether) {
    FaultyPedal pedal("duplicate-ack merge garbage-before garbage-between reports-of-65 delay=30");
    const VirtualKr310::Reaction reaction = sendPhases(pedal, kCab, 3, {1});
    ASSERT_EQ(reaction.reports.size(), 1U);
    EXPECT_EQ(answered(reaction),
              "13 AA 00 AA 55 FF FF AA 55 02 00 E1 01 21 35 13 AA 00 AA 55 FF FF "
              "AA 55 02 00 E1 01 21 35 13 AA 00 AA 55 FF FF");
    EXPECT_EQ(reaction.reports[0].bytes.size(), 65U);
    EXPECT_EQ(reaction.reports[0].due, milliseconds(30));
}

class VirtualKr310EachFault : public testing::TestWithParam<FaultEntry> {};

TEST_P(VirtualKr310EachFault, leavesWhatIsStoredAlone) {
    FaultyPedal pedal(std::string(GetParam().name).c_str());
    EXPECT_EQ(sendPhases(pedal, kAmp, 2, {1, 2, 3, 4, 5}).changes,
              std::vector<std::string>{"AMP 58 <- \"CLEAN\" 512 words, crc32 f0dde17b"});
}

INSTANTIATE_TEST_SUITE_P(Table, VirtualKr310EachFault, testing::ValuesIn(faultTable().begin(), faultTable().end()),
                         [](const testing::TestParamInfo<FaultEntry>& parameter) {
                             std::string name(parameter.param.name);
                             std::erase(name, '-');
                             return name;
                         });

}  // namespace
}  // namespace kelvo
