#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kelvo {

/// What may be wrong with a virtual KR310. Every fault works alone and together with any other; a default-made value is
/// a sound pedal. The faults concern what the pedal sends; what it stores follows from what reaches it.
struct Faults {
    /// No acknowledgement of this phase and all later ones; 0: no answer to anything, CMD_CONNECT included.
    std::optional<std::uint8_t> silentFromPhase;
    /// Every answer comes this much later.
    std::chrono::milliseconds answerDelay{0};
    /// Every acknowledgement is sent twice.
    bool duplicateAcknowledgement = false;
    /// Phase n is acknowledged as n + 1, the last phase as 1.
    bool wrongAcknowledgement = false;
    /// Every acknowledgement carries this phase instead; wins over wrongAcknowledgement.
    std::optional<std::uint8_t> acknowledgementOutOfRange;
    /// Every n-th frame has a wrong CRC; 0: none, 1: all.
    std::uint32_t corruptCrcEvery = 0;
    /// Every frame has one data byte more, 0, and a LENGTH that counts it.
    bool longFrames = false;
    /// Garbage in front of the first frame of every answer.
    bool garbageBefore = false;
    /// Garbage after every frame.
    bool garbageBetween = false;
    /// Every n-th frame has garbage put into its middle, which spoils it; 0: none, 1: all.
    std::uint32_t garbageInsideEvery = 0;
    /// Frame bytes per report, 1 to 63; 0: as many as fit.
    std::uint32_t splitReports = 0;
    /// The frames of one answer follow each other without a gap, so that a report may hold several. A report leaves
    /// when its last byte is due.
    bool mergedReports = false;
    /// Every report says it carries 255 frame bytes.
    bool countOver63 = false;
    /// Reports come without their last byte.
    bool reportsOf63 = false;
    /// Reports come with one byte more; with reportsOf63, the two sizes take turns.
    bool reportsOf65 = false;
    /// The progress values 200 and 255 are sent, each for its pace, before the final 199.
    bool progressOver199 = false;
    /// The AMP names come before the CAB names.
    bool ampNamesFirst = false;
    /// The name lists come this much after the final 199 instead of before it.
    std::optional<std::chrono::milliseconds> namesAfterDone;
    /// The k-th output report since the pedal was plugged in is refused; 0: none.
    std::uint32_t refuseReport = 0;
    /// The bus answers the k-th output report since the pedal was plugged in with a protocol error, or not at all; 0:
    /// none. On a cable without a kernel both are refusals.
    std::uint32_t protocolErrorAtReport = 0;
    std::uint32_t noAnswerAtReport = 0;
    /// The pedal is unplugged at the k-th output report since it was plugged in, and that report refused; 0: never.
    std::uint32_t unplugAtReport = 0;
};

/// A fault by name, for command lines and parameterised tests.
struct FaultEntry {
    std::string_view name;
    /// What the number after the name means; empty when the fault takes none.
    std::string_view argument;
    /// The number when none is given, and the least and the greatest that are accepted.
    std::uint32_t usual;
    std::uint32_t least;
    std::uint32_t greatest;
    void (*set)(Faults& faults, std::uint32_t number);
};

/// All faults, each once.
[[nodiscard]] std::span<const FaultEntry> faultTable();

/// The numbers that a fault takes, in words: "1 to 63", or "1 or more".
[[nodiscard]] std::string numbersOf(const FaultEntry& fault);

/// Switches on what `text` names: "corrupt-crc" or "corrupt-crc=3". Returns what is wrong with it, with `faults`
/// unchanged, when there is no such fault, it takes no number, or not this one; nothing when all is well.
[[nodiscard]] std::optional<std::string> switchOn(std::string_view text, Faults& faults);

}  // namespace kelvo
