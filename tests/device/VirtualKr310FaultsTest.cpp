#include <gtest/gtest.h>

#include "DeviceTesting.h"
#include "VirtualKr310.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;

/// What a pedal with these faults answers to a whole CAB import.
std::string cabAnswers(const Faults& faults) {
    VirtualKr310 pedal;
    pedal.setFaults(faults);
    return answered(sendPhases(pedal, kCab, 3, {1, 2, 3, 4}));
}

TEST(VirtualKr310Faults, areToldAsTheyWereSet) {
    VirtualKr310 pedal;
    Faults faults;
    faults.refuseReport = 7;
    pedal.setFaults(faults);
    EXPECT_EQ(pedal.faults().refuseReport, 7U);
}

TEST(VirtualKr310Faults, canBeTakenBack) {
    VirtualKr310 pedal;
    Faults faults;
    faults.silentFromPhase = 0;
    pedal.setFaults(faults);
    EXPECT_EQ(answered(sendPhases(pedal, kCab, 3, {1})), "");
    pedal.setFaults({});
    EXPECT_EQ(answered(sendPhases(pedal, kCab, 3, {1})), "AA 55 02 00 E1 01 21 35");
}

TEST(VirtualKr310Faults, silenceBeginsAtItsPhase) {
    Faults faults;
    faults.silentFromPhase = 3;
    EXPECT_EQ(cabAnswers(faults), "AA 55 02 00 E1 01 21 35 AA 55 02 00 E1 02 11 56");
}

TEST(VirtualKr310Faults, silenceFromPhase0Or1IsTotalInAnImport) {
    for (const int phase : {0, 1}) {
        Faults faults;
        faults.silentFromPhase = static_cast<std::uint8_t>(phase);
        EXPECT_EQ(cabAnswers(faults), "") << phase;
    }
}

TEST(VirtualKr310Faults, aSilentPedalStillStoresWhatArrives) {
    VirtualKr310 pedal;
    Faults faults;
    faults.silentFromPhase = 0;
    pedal.setFaults(faults);
    EXPECT_EQ(sendPhases(pedal, kCab, 3, {1, 2, 3, 4}).changes.size(), 1U);
}

TEST(VirtualKr310Faults, duplicateAcknowledgementIsTwoFrames) {
    VirtualKr310 pedal;
    Faults faults;
    faults.duplicateAcknowledgement = true;
    pedal.setFaults(faults);
    const VirtualKr310::Reaction reaction = sendPhases(pedal, kCab, 3, {2});
    EXPECT_EQ(answered(reaction), "AA 55 02 00 E1 02 11 56 AA 55 02 00 E1 02 11 56");
    EXPECT_EQ(reaction.reports.size(), 2U);
}

TEST(VirtualKr310Faults, wrongAcknowledgementOfACabImportIsOneAhead) {
    Faults faults;
    faults.wrongAcknowledgement = true;
    EXPECT_EQ(cabAnswers(faults),
              "AA 55 02 00 E1 02 11 56 AA 55 02 00 E1 03 01 77 AA 55 02 00 E1 04 71 90 AA 55 02 00 E1 01 21 35");
}

TEST(VirtualKr310Faults, wrongAcknowledgementOfAnAmpImportIsOneAhead) {
    VirtualKr310 pedal;
    Faults faults;
    faults.wrongAcknowledgement = true;
    pedal.setFaults(faults);
    EXPECT_EQ(answered(sendPhases(pedal, kAmp, 2, {4, 5})), "AA 55 02 00 E2 05 34 E2 AA 55 02 00 E2 01 74 66");
}

TEST(VirtualKr310Faults, acknowledgementOutOfRangeCarriesThatPhase) {
    Faults faults;
    faults.acknowledgementOutOfRange = 255;
    VirtualKr310 pedal;
    pedal.setFaults(faults);
    EXPECT_EQ(answered(sendPhases(pedal, kCab, 3, {1})), "AA 55 02 00 E1 FF 2F E4");
    EXPECT_EQ(answered(sendPhases(pedal, kAmp, 2, {1})), "AA 55 02 00 E2 FF 7A B7");
}

TEST(VirtualKr310Faults, acknowledgementOutOfRangeMayBeZeroAndWinsOverAWrongOne) {
    Faults faults;
    faults.acknowledgementOutOfRange = 0;
    faults.wrongAcknowledgement = true;
    VirtualKr310 pedal;
    pedal.setFaults(faults);
    EXPECT_EQ(answered(sendPhases(pedal, kCab, 3, {1})), "AA 55 02 00 E1 00 31 14");
}

TEST(VirtualKr310Faults, theFramesThatAreSpoiltAreCountedOverAllAnswers) {
    Faults faults;
    faults.corruptCrcEvery = 3;
    EXPECT_EQ(cabAnswers(faults),
              "AA 55 02 00 E1 01 21 35 AA 55 02 00 E1 02 11 56 AA 55 02 00 E1 03 01 88 AA 55 02 00 E1 04 71 90");
}

TEST(VirtualKr310Faults, longFramesHaveOneDataByteMore) {
    Faults faults;
    faults.longFrames = true;
    EXPECT_EQ(cabAnswers(faults),
              "AA 55 03 00 E1 01 00 B5 1D AA 55 03 00 E1 02 00 E0 4E AA 55 03 00 E1 03 00 D3 7F AA 55 03 00 E1 04 00 "
              "4A E8");
}

TEST(VirtualKr310Faults, workTogether) {
    VirtualKr310 pedal;
    Faults faults;
    faults.duplicateAcknowledgement = true;
    faults.mergedReports = true;
    faults.garbageBefore = true;
    faults.garbageBetween = true;
    faults.reportsOf65 = true;
    faults.answerDelay = milliseconds(30);
    pedal.setFaults(faults);
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
    Faults faults;
    GetParam().set(faults, GetParam().usual);
    VirtualKr310 pedal;
    pedal.setFaults(faults);
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
