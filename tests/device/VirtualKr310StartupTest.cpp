#include <gtest/gtest.h>

#include "DeviceTesting.h"
#include "VirtualKr310.h"

namespace kelvo {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr const char* kCabNames =
    "AA 55 65 00 85 "
    "4F 50 45 4E 20 31 58 31 32 00 43 4C 4F 53 45 44 32 58 31 32 56 49 4E 54 41 47 45 34 31 32 "
    "4D 4F 44 45 52 4E 20 34 31 32 54 57 45 45 44 20 31 58 38 00 00 00 00 00 00 00 00 00 00 00 "
    "42 41 53 53 20 34 58 31 30 00 00 00 00 00 00 00 00 00 00 00 41 43 4F 55 53 54 49 43 00 00 "
    "00 00 00 00 00 00 00 00 00 00 1E 03";
constexpr const char* kAmpNames =
    "AA 55 65 00 E3 "
    "43 4C 45 41 4E 20 20 20 20 20 43 52 55 4E 43 48 20 20 20 20 4C 45 41 44 20 20 20 20 20 20 "
    "45 44 47 45 20 44 52 49 56 45 48 49 47 48 20 47 41 49 4E 20 20 20 20 20 20 20 20 20 20 20 "
    "4A 41 5A 5A 20 20 20 20 20 20 42 41 53 53 20 20 20 20 20 20 20 20 20 20 20 20 20 20 20 20 "
    "20 20 20 20 20 20 20 20 20 20 7A 44";
constexpr const char* kProgress0 = "AA 55 02 00 A5 00 F0 1C";
constexpr const char* kProgress100 = "AA 55 02 00 A5 64 DC 3E";
constexpr const char* kProgress199 = "AA 55 02 00 A5 C7 59 B7";

std::string joined(std::initializer_list<std::string> frames) {
    std::string text;
    for (const std::string& frame : frames) {
        text += (text.empty() ? "" : " ") + frame;
    }
    return text;
}

/// A pedal that shows 0, 100 and 199 only, a second apart.
struct QuickPedal : VirtualKr310 {
    QuickPedal() { setStartup({100, std::chrono::seconds(1)}); }
};

VirtualKr310::Reaction connect(VirtualKr310& pedal) {
    return send(pedal, {connectFrame()});
}

TEST(VirtualKr310Startup, showsProgressAndGivesBothNameListsBeforeTheLastValue) {
    QuickPedal pedal;
    const VirtualKr310::Reaction reaction = connect(pedal);
    EXPECT_EQ(answered(reaction), joined({kProgress0, kProgress100, kCabNames, kAmpNames, kProgress199}));
    ASSERT_EQ(reaction.reports.size(), 7U);
    EXPECT_EQ(reaction.reports[2].bytes[0], 63) << "each list comes in two reports";
    EXPECT_EQ(reaction.reports[3].bytes[0], 44);
}

TEST(VirtualKr310Startup, sendsTheAmpNamesFirstIfConfigured) {
    VirtualKr310 pedal;
    pedal.setStartup({199, microseconds(0)});
    pedal.setFaults({.ampNamesFirst = true});
    EXPECT_EQ(answered(connect(pedal)), joined({kProgress0, kAmpNames, kCabNames, kProgress199}));
}

TEST(VirtualKr310Startup, goesThroughAll200ValuesInTwoSeconds) {
    VirtualKr310 pedal;
    const VirtualKr310::Reaction reaction = connect(pedal);
    ASSERT_EQ(reaction.reports.size(), 204U);
    std::vector<int> values;
    for (const InputReport& report : reaction.reports) {
        ASSERT_EQ(report.bytes.size(), 64U);
        if (report.bytes[0] == 8 && report.bytes[5] == 0xA5) {
            EXPECT_EQ(report.due, milliseconds(10) * values.size());
            values.push_back(report.bytes[6]);
        }
    }
    ASSERT_EQ(values.size(), 200U);
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(values[static_cast<std::size_t>(i)], i);
    }
    EXPECT_EQ(reaction.reports.back().due, milliseconds(1990));
}

TEST(VirtualKr310Startup, endsWith199WhateverTheStep) {
    for (const std::uint32_t step : {2U, 7U, 198U, 199U, 200U, 4'000'000'000U}) {
        VirtualKr310 pedal;
        pedal.setStartup({step, microseconds(0)});
        const VirtualKr310::Reaction reaction = connect(pedal);
        EXPECT_EQ(hex(std::span(reaction.reports.back().bytes).subspan(1, 8)), kProgress199) << step;
        EXPECT_EQ(hex(std::span(reaction.reports.front().bytes).subspan(1, 8)), kProgress0) << step;
    }
}

TEST(VirtualKr310Startup, stepOfZero_countsAsOne) {
    VirtualKr310 pedal;
    pedal.setStartup({0, microseconds(0)});
    EXPECT_EQ(connect(pedal).reports.size(), 204U);
}

TEST(VirtualKr310Startup, givesTheNamesAsTheyAreNow) {
    VirtualKr310 pedal{Kr310Memory()};
    pedal.setStartup({199, microseconds(0)});
    sendPhases(pedal, 0xE1, 3, {1, 2, 3, 4}, 100);
    sendPhases(pedal, 0xE2, 2, {1, 2, 3, 4, 5});
    const std::string answer = answered(connect(pedal));
    const std::string tenZeros = "00 00 00 00 00 00 00 00 00 00 ";
    const std::string tenSpaces = "20 20 20 20 20 20 20 20 20 20 ";
    EXPECT_NE(answer.find("85 " + tenZeros + tenZeros + tenZeros + "4F 54 48 45 52 4E 41 4D 45 21 " + tenZeros),
              std::string::npos);
    EXPECT_NE(answer.find("E3 " + tenSpaces + tenSpaces + "43 4C 45 41 4E 20 20 20 20 20 " + tenSpaces),
              std::string::npos);
}

TEST(VirtualKr310Startup, answersTwoRequestsInOneReportInOrder) {
    VirtualKr310 pedal{Kr310Memory()};
    pedal.setStartup({199, microseconds(0)});
    const std::string one = answered(connect(pedal));
    EXPECT_EQ(answered(send(pedal, {unhex("AA 55 02 00 E0 00 02 25 AA 55 02 00 E0 00 02 25")})), one + ' ' + one);
}

TEST(VirtualKr310StartupFaults, namesAfterDoneComeSoMuchLaterThan199) {
    QuickPedal pedal;
    pedal.setFaults({.namesAfterDone = milliseconds(1500)});
    const VirtualKr310::Reaction reaction = connect(pedal);
    EXPECT_EQ(answered(reaction), joined({kProgress0, kProgress100, kProgress199, kCabNames, kAmpNames}));
    EXPECT_EQ(reaction.reports.at(2).due, milliseconds(2000));
    EXPECT_EQ(reaction.reports.at(3).due, milliseconds(3500));
    EXPECT_EQ(reaction.reports.at(6).due, milliseconds(3500));
}

TEST(VirtualKr310StartupFaults, progressOver199ComesBeforeTheEnd) {
    QuickPedal pedal;
    pedal.setFaults({.progressOver199 = true});
    const VirtualKr310::Reaction reaction = connect(pedal);
    EXPECT_EQ(answered(reaction), joined({kProgress0, kProgress100, "AA 55 02 00 A5 C8 A8 58",
                                          "AA 55 02 00 A5 FF EE EC", kCabNames, kAmpNames, kProgress199}));
    EXPECT_EQ(reaction.reports.at(2).due, milliseconds(2000));
    EXPECT_EQ(reaction.reports.at(3).due, milliseconds(3000));
    EXPECT_EQ(reaction.reports.back().due, milliseconds(4000));
}

TEST(VirtualKr310StartupFaults, silenceFromPhase0_isTheOnlyOneThatLeavesTheRequestUnanswered) {
    QuickPedal pedal;
    pedal.setFaults({.silentFromPhase = std::uint8_t{0}});
    EXPECT_EQ(answered(connect(pedal)), "");
    pedal.setFaults({.silentFromPhase = std::uint8_t{1}});
    EXPECT_EQ(connect(pedal).reports.size(), 7U);
}

}  // namespace
}  // namespace kelvo
