#include <gtest/gtest.h>

#include <algorithm>

#include "DeviceTesting.h"
#include "VirtualKr310.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Frames = std::vector<Bytes>;
using Lines = std::vector<std::string>;

/// An import to CAB slot 3 with this name.
Frames named(std::string name) {
    name = std::string("\3\4", 2) + name;
    name.resize(12);
    return join({cab(3, {1, 2, 3}), {writeFrame({0xE1, {name.begin(), name.end()}})}});
}

struct Dialogue {
    const char* name;
    Frames frames;
    std::string answers = {};
    Lines changes = {};
};

/// A frame whose data are these bytes and then zeros, with a 1 at `one`.
Frames misfit(std::uint8_t command, Bytes data, std::size_t size, std::size_t one = 0) {
    data.resize(size);
    if (one != 0) {
        data[one] = 1;
    }
    return {writeFrame({command, data})};
}

const Dialogue kDialogues[] = {
    {"cab", cab(0), "E1: 01 | E1: 02 | E1: 03 | E1: 04", {"CAB 27 <- \"MYCAB\" 512 points, crc32 844cf1f6"}},
    {"amp", amp(2), "E2: 01 | E2: 02 | E2: 03 | E2: 04 | E2: 05", {"AMP 58 <- \"CLEAN\" 512 words, crc32 f0dde17b"}},
    {"mixed, with both names in one report",
     join({cab(3, {1, 2}), amp(2, {1, 2, 3, 4}), cab(3, {3}), {join({cab(3, {4})[0], amp(2, {5})[0]})}}),
     "E1: 01 | E1: 02 | E2: 01 | E2: 02 | E2: 03 | E2: 04 | E1: 03 | E1: 04 | E2: 05",
     {"CAB 30 <- \"MYCAB\" 512 points, crc32 844cf1f6", "AMP 58 <- \"CLEAN\" 512 words, crc32 f0dde17b"}},
    {"out of order", cab(3, {1, 3, 4}), "E1: 01 | E1: 03 | E1: 04"},
    {"no such CAB", cab(10), "E1: 01 | E1: 02 | E1: 03 | E1: 04"},
    {"no such AMP", amp(255), "E2: 01 | E2: 02 | E2: 03 | E2: 04 | E2: 05"},
    {"name of 10 bytes",
     named("0123456789"),
     "E1: 01 | E1: 02 | E1: 03 | E1: 04",
     {"CAB 30 <- \"0123456789\" 512 points, crc32 844cf1f6"}},
    {"unprintable name",
     named(" ~\x1F\x7F\xC3\xA9\"A"),
     "E1: 01 | E1: 02 | E1: 03 | E1: 04",
     {"CAB 30 <- \" ~????\"A\" 512 points, crc32 844cf1f6"}},
    {"deletions", {deletion(0), deletion(9), deletion(10), deletion(255)}, "", {"CAB 27 cleared", "CAB 36 cleared"}},
    // Ignored frames.
    {"unknown command", misfit(0x77, {1}, 1)},
    {"connect without its byte", misfit(0xE0, {}, 0)},
    {"connect with two bytes", misfit(0xE0, {0}, 2)},
    {"import with a slot alone", misfit(0xE1, {3}, 1)},
    {"phase 0", misfit(0xE1, {3, 0}, 514)},
    {"phase 5", misfit(0xE1, {3, 5}, 514)},
    {"short plane", misfit(0xE1, {3, 1}, 513)},
    {"short deletion", misfit(0xE4, {3}, 513)},
    {"deletion with a 1 after the slot", misfit(0xE4, {3}, 514, 1)},
    {"deletion with a 1 in the middle", misfit(0xE4, {3}, 514, 300)},
    {"deletion with a 1 at the end", misfit(0xE4, {3}, 514, 513)},
};

TEST(VirtualKr310, givesTheseAnswersAndMakesTheseChanges) {
    for (const auto& [name, frames, answers, changes] : kDialogues) {
        VirtualKr310 pedal;
        const VirtualKr310::Reaction reaction = send(pedal, frames);
        EXPECT_EQ(answered(reaction.reports), answers) << name;
        EXPECT_EQ(reaction.changes, changes) << name;
    }
}

TEST(VirtualKr310, storesAnImportOverTheOldContentUntilItIsDeleted) {
    Lines printed;
    VirtualKr310 pedal(Kr310Memory::factory(), [&](std::string_view line) { printed.emplace_back(line); });
    send(pedal, join({cab(3), amp(2)}));
    EXPECT_EQ(printed, (Lines{"CAB 30 <- \"MYCAB\" 512 points, crc32 844cf1f6",
                              "AMP 58 <- \"CLEAN\" 512 words, crc32 f0dde17b"}));
    Lines memory = memoryLines(pedal.memory());
    EXPECT_EQ(memory[2], "CAB 29 \"VINTAGE412\" crc32 f1cf3378");
    EXPECT_EQ(memory[3], "CAB 30 \"MYCAB\" crc32 844cf1f6");
    EXPECT_EQ(memory[12], "AMP 58 \"CLEAN\" crc32 f0dde17b");
    send(pedal, {deletion(3)});
    memory = memoryLines(pedal.memory());
    EXPECT_EQ(memory[2], "CAB 29 \"VINTAGE412\" crc32 f1cf3378");
    EXPECT_EQ(memory[3], "CAB 30 \"\" crc32 6c1ce17e");
    EXPECT_EQ(memory[12], "AMP 58 \"CLEAN\" crc32 f0dde17b");
}

TEST(VirtualKr310, whenPoweredUp_forgetsUnfinishedTransfersAndFramesButKeepsItsSlots) {
    VirtualKr310 pedal;
    send(pedal, join({cab(0), cab(3, {1, 2, 3}), amp(3, {1, 2, 3, 4})}));
    EXPECT_TRUE(pedal.receive(makeReport(unhex("AA 55 03 02 E1"))).reports.empty());
    pedal.powerUp();
    const VirtualKr310::Reaction reaction = send(pedal, join({cab(3, {4}), amp(3, {5})}));
    EXPECT_EQ(answered(reaction.reports), "E1: 04 | E2: 05");
    EXPECT_EQ(reaction.changes, Lines{});
    EXPECT_EQ(pedal.memory().cab[0].name, "MYCAB");
}

TEST(VirtualKr310, faultsDecideTheFateOfAReportByItsNumberSinceThePowerUp) {
    using enum VirtualKr310::Delivery;
    for (const auto& [faults, second] : {std::pair{"refuse=2", Refused},
                                         {"protocol-error=2", ProtocolError},
                                         {"no-answer=2", NoAnswer},
                                         {"unplug=2 refuse=2", Unplugged}}) {
        VirtualKr310 pedal;
        pedal.setFaults(faultsOf(faults));
        for (int turn = 0; turn < 2; ++turn) {
            pedal.powerUp();
            EXPECT_EQ(pedal.deliverNext(), Accepted) << faults;
            EXPECT_EQ(pedal.deliverNext(), second) << faults;
            EXPECT_EQ(pedal.deliverNext(), Accepted) << faults;
        }
    }
}

TEST(VirtualKr310, faultsChangeTheAnswersToAnImport) {
    struct Row {
        const char* faults;
        Frames frames;
        const char* answers;
    };
    for (const auto& [faults, frames, answers] :
         {Row{"silent", cab(3), ""},
          {"silent=1", cab(3), ""},
          {"silent=3", cab(3), "E1: 01 | E1: 02"},
          {"duplicate-ack", cab(3, {2}), "E1: 02 | E1: 02"},
          {"wrong-ack", cab(3), "E1: 02 | E1: 03 | E1: 04 | E1: 01"},
          {"wrong-ack", amp(2, {4, 5}), "E2: 05 | E2: 01"},
          {"ack-out-of-range", amp(2, {1}), "E2: FF"},
          {"ack-out-of-range=0 wrong-ack", cab(3, {1}), "E1: 00"},
          {"corrupt-crc=3", cab(3), "E1: 01 | E1: 02 | E1: 04"},  // counted over all answers
          {"garbage-inside=3", cab(3), "E1: 01 | E1: 02 | E1: 04"},
          {"long-frames", cab(3, {1, 2}), "E1: 01 00 | E1: 02 00"},
          {"duplicate-ack merge garbage-before garbage-between delay=30", cab(3, {1}),
           "30 ms E1: 01 | 30 ms E1: 01"}}) {
        VirtualKr310 pedal;
        pedal.setFaults(faultsOf(faults));
        EXPECT_EQ(answered(send(pedal, frames).reports), answers) << faults;
        pedal.setFaults({});
        EXPECT_EQ(answered(send(pedal, cab(3, {1})).reports), "E1: 01") << faults;
    }
}

TEST(VirtualKr310, faultsLeaveWhatIsStoredAlone) {
    for (const FaultEntry& fault : faultTable()) {
        VirtualKr310 pedal;
        pedal.setFaults(faultsOf(std::string(fault.name)));
        EXPECT_EQ(send(pedal, amp(2)).changes, Lines{"AMP 58 <- \"CLEAN\" 512 words, crc32 f0dde17b"}) << fault.name;
    }
}

// The names in the slots of the factory.
const std::string kCabNames =
    "85: 4F 50 45 4E 20 31 58 31 32 00 43 4C 4F 53 45 44 32 58 31 32 56 49 4E 54 41 47 45 34 31 32 "
    "4D 4F 44 45 52 4E 20 34 31 32 54 57 45 45 44 20 31 58 38 00 00 00 00 00 00 00 00 00 00 00 "
    "42 41 53 53 20 34 58 31 30 00 00 00 00 00 00 00 00 00 00 00 41 43 4F 55 53 54 49 43 00 00 "
    "00 00 00 00 00 00 00 00 00 00";
const std::string kAmpNames =
    "E3: 43 4C 45 41 4E 20 20 20 20 20 43 52 55 4E 43 48 20 20 20 20 4C 45 41 44 20 20 20 20 20 20 "
    "45 44 47 45 20 44 52 49 56 45 48 49 47 48 20 47 41 49 4E 20 20 20 20 20 20 20 20 20 20 20 "
    "4A 41 5A 5A 20 20 20 20 20 20 42 41 53 53 20 20 20 20 20 20 20 20 20 20 20 20 20 20 20 20 "
    "20 20 20 20 20 20 20 20 20 20";

/// Both lists, each after its time.
std::string names(const std::string& time = "") {
    return time + kCabNames + " | " + time + kAmpNames;
}

TEST(VirtualKr310, connect_isAnsweredByProgressAndNames) {
    struct Row {
        const char* faults;
        Kr310Startup startup;
        std::string answers;
    };
    for (const auto& [faults, startup, answers] :
         {Row{"", {100, seconds(1)}, "A5: 00 | 1000 ms A5: 64 | " + names("2000 ms ") + " | 2000 ms A5: C7"},
          {"silent=1", {100, seconds(1)}, "A5: 00 | 1000 ms A5: 64 | " + names("2000 ms ") + " | 2000 ms A5: C7"},
          {"silent=0", {100, seconds(1)}, ""},
          {"amp-names-first", {199, {}}, "A5: 00 | " + kAmpNames + " | " + kCabNames + " | A5: C7"},
          {"names-after-done=1500",
           {100, seconds(1)},
           "A5: 00 | 1000 ms A5: 64 | 2000 ms A5: C7 | " + names("3500 ms ")},
          {"progress-over-199",
           {199, seconds(1)},
           "A5: 00 | 1000 ms A5: C8 | 2000 ms A5: FF | " + names("3000 ms ") + " | 3000 ms A5: C7"},
          {"", {67, {}}, "A5: 00 | A5: 43 | A5: 86 | " + names() + " | A5: C7"},
          {"", {198, {}}, "A5: 00 | A5: C6 | " + names() + " | A5: C7"},
          {"", {199, {}}, "A5: 00 | " + names() + " | A5: C7"},
          {"", {200, {}}, "A5: 00 | " + names() + " | A5: C7"},
          {"", {4'000'000'000, {}}, "A5: 00 | " + names() + " | A5: C7"}}) {
        VirtualKr310 pedal;
        pedal.setStartup(startup);
        pedal.setFaults(faultsOf(faults));
        EXPECT_EQ(answered(send(pedal, {connectFrame()}).reports), answers) << faults << ' ' << startup.progressStep;
    }
}

TEST(VirtualKr310, startUp_goesThroughAll200ValuesInTwoSeconds) {
    VirtualKr310 pedal;
    const std::vector<InputReport> reports = send(pedal, {connectFrame()}).reports;
    ASSERT_EQ(reports.size(), 204U) << "each list of names comes in two reports";
    for (std::uint8_t value = 0; value < 199; ++value) {
        EXPECT_EQ(reports[value].due, milliseconds(10) * value);
        EXPECT_EQ(reports[value].bytes[6], value);
    }
    EXPECT_EQ(reports.back().due, milliseconds(1990));
    pedal.setStartup({0, milliseconds(10)});
    EXPECT_EQ(send(pedal, {connectFrame()}).reports.size(), 204U) << "a step of 0 counts as 1";
}

}  // namespace
}  // namespace kelvo
