#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "Faults.h"

namespace kelvo {
namespace {

/// The number of a fault, -1 while it is off.
template <auto member>
std::int64_t numberIn(const Faults& faults) {
    const auto count = [](auto value) -> std::int64_t {
        if constexpr (requires { value.count(); }) {
            return value.count();
        } else {
            return value;
        }
    };
    if constexpr (requires { (faults.*member).has_value(); }) {
        return faults.*member ? count(*(faults.*member)) : -1;
    } else {
        return count(faults.*member) == 0 ? -1 : count(faults.*member);
    }
}

struct KnownFault {
    std::string_view name;
    std::string_view numbers;  ///< empty if the fault has none
    std::int64_t usual;
    std::uint32_t greatest;
    std::int64_t (*numberIn)(const Faults& faults);
};

const KnownFault kKnown[] = {
    {"silent", "0 to 5", 0, 5, numberIn<&Faults::silentFromPhase>},
    {"delay", "1 to 3600000", 500, 3600000, numberIn<&Faults::answerDelay>},
    {"duplicate-ack", "", 1, 0, numberIn<&Faults::duplicateAcknowledgement>},
    {"wrong-ack", "", 1, 0, numberIn<&Faults::wrongAcknowledgement>},
    {"ack-out-of-range", "0 to 255", 255, 255, numberIn<&Faults::acknowledgementOutOfRange>},
    {"corrupt-crc", "1 or more", 1, 4294967295, numberIn<&Faults::corruptCrcEvery>},
    {"long-frames", "", 1, 0, numberIn<&Faults::longFrames>},
    {"garbage-before", "", 1, 0, numberIn<&Faults::garbageBefore>},
    {"garbage-between", "", 1, 0, numberIn<&Faults::garbageBetween>},
    {"garbage-inside", "1 or more", 1, 4294967295, numberIn<&Faults::garbageInsideEvery>},
    {"split", "1 to 63", 1, 63, numberIn<&Faults::splitReports>},
    {"merge", "", 1, 0, numberIn<&Faults::mergedReports>},
    {"count-over-63", "", 1, 0, numberIn<&Faults::countOver63>},
    {"reports-of-63", "", 1, 0, numberIn<&Faults::reportsOf63>},
    {"reports-of-65", "", 1, 0, numberIn<&Faults::reportsOf65>},
    {"progress-over-199", "", 1, 0, numberIn<&Faults::progressOver199>},
    {"amp-names-first", "", 1, 0, numberIn<&Faults::ampNamesFirst>},
    {"names-after-done", "0 to 3600000", 0, 3600000, numberIn<&Faults::namesAfterDone>},
    {"refuse", "1 or more", 1, 4294967295, numberIn<&Faults::refuseReport>},
    {"protocol-error", "1 or more", 1, 4294967295, numberIn<&Faults::protocolErrorAtReport>},
    {"no-answer", "1 or more", 1, 4294967295, numberIn<&Faults::noAnswerAtReport>},
    {"unplug", "1 or more", 1, 4294967295, numberIn<&Faults::unplugAtReport>},
};

TEST(Faults, eachIsSwitchedOnByItsName_withTheUsualNumberOrTheGreatest) {
    ASSERT_EQ(faultTable().size(), std::size(kKnown));
    Faults all;
    for (std::size_t i = 0; i < std::size(kKnown); ++i) {
        const auto& [name, numbers, usual, greatest, numberIn] = kKnown[i];
        SCOPED_TRACE(name);
        EXPECT_EQ(faultTable()[i].name, name);
        EXPECT_EQ(faultTable()[i].argument.empty(), numbers.empty());
        EXPECT_EQ(numberIn(all), -1);
        EXPECT_EQ(switchOn(name, all), std::nullopt);
        EXPECT_EQ(numberIn(all), usual);
        if (numbers.empty()) {
            EXPECT_EQ(faultTable()[i].usual, 0U);
            EXPECT_EQ(numbersOf(faultTable()[i]), "0 to 0");
        } else {
            EXPECT_EQ(numbersOf(faultTable()[i]), numbers);
            EXPECT_EQ(switchOn(std::string(name) + '=' + std::to_string(greatest), all), std::nullopt);
            EXPECT_EQ(numberIn(all), greatest);
        }
    }
    EXPECT_TRUE(all.mergedReports) << "a fault leaves the others";
    EXPECT_EQ(switchOn("unplug=1", all), std::nullopt);
    EXPECT_EQ(all.unplugAtReport, 1U);
    EXPECT_EQ(switchOn("unplug=99999999999", all), std::nullopt);
    EXPECT_EQ(all.unplugAtReport, 4294967295U);
}

TEST(Faults, refusedText_isExplainedAndChangesNothing) {
    Faults faults{.splitReports = 7};
    for (const auto& [text, answer] : {std::pair{"", "there is no fault ''"},
                                       {"=", "there is no fault ''"},
                                       {"SPLIT=3", "there is no fault 'SPLIT'"},
                                       {"split=", "split wants 1 to 63, got ''"},
                                       {"split=0", "split wants 1 to 63, got '0'"},
                                       {"split=64", "split wants 1 to 63, got '64'"},
                                       {"split=+1", "split wants 1 to 63, got '+1'"},
                                       {"split=1x", "split wants 1 to 63, got '1x'"},
                                       {"split= 1", "split wants 1 to 63, got ' 1'"},
                                       {"split=4294967296", "split wants 1 to 63, got '4294967296'"},
                                       {"silent=6", "silent wants 0 to 5, got '6'"},
                                       {"corrupt-crc=abc", "corrupt-crc wants 1 or more, got 'abc'"},
                                       {"merge=", "merge takes no number, got ''"}}) {
        EXPECT_EQ(switchOn(text, faults), answer);
        EXPECT_EQ(faults.splitReports, 7U);
        EXPECT_FALSE(faults.mergedReports || faults.silentFromPhase || faults.corruptCrcEvery != 0);
    }
}

}  // namespace
}  // namespace kelvo
