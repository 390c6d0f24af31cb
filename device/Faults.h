#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kelvo {

/// The faults of a virtual KR310. All of them can be combined; a default-constructed value has none. Faults change what
/// the pedal sends and accepts, but not how it stores what it has accepted.
struct Faults {
    /// No acknowledgement of this phase and all later ones; 0: no answer to anything, CMD_CONNECT included.
    std::optional<std::uint8_t> silentFromPhase;
    /// Every answer comes this much later.
    std::chrono::milliseconds answerDelay{0};
    /// Every acknowledgement is sent twice.
    bool duplicateAcknowledgement = false;
    /// Phase n is acknowledged as n + 1, the last phase as 1.
    bool wrongAcknowledgement = false;
    /// Every acknowledgement has this phase instead; overrides wrongAcknowledgement.
    std::optional<std::uint8_t> acknowledgementOutOfRange;
    /// Every n-th frame has a wrong CRC; 0: none, 1: all.
    std::uint32_t corruptCrcEvery = 0;
    /// Every frame has an additional data byte, 0, that LENGTH includes.
    bool longFrames = false;
    /// Garbage before the first frame of every answer.
    bool garbageBefore = false;
    /// Garbage after every frame.
    bool garbageBetween = false;
    /// Every n-th frame is corrupted by garbage in its middle; 0: none, 1: all.
    std::uint32_t garbageInsideEvery = 0;
    /// Frame bytes per report, 1 to 63; 0: as many as fit.
    std::uint32_t splitReports = 0;
    /// A report may contain several frames of one answer. It is sent when its last byte is due.
    bool mergedReports = false;
    /// The count byte of every report is 255.
    bool countOver63 = false;
    /// Reports lack their last byte.
    bool reportsOf63 = false;
    /// Reports have an additional byte; with reportsOf63, the two sizes alternate.
    bool reportsOf65 = false;
    /// The progress values 200 and 255 are sent, at the usual pace, before the final 199.
    bool progressOver199 = false;
    /// The AMP names are sent before the CAB names.
    bool ampNamesFirst = false;
    /// The name lists are sent this much after the final 199 instead of before it.
    std::optional<std::chrono::milliseconds> namesAfterDone;
    /// The k-th output report since the pedal was plugged in is refused; 0: none.
    std::uint32_t refuseReport = 0;
    /// The bus answers the k-th output report since the pedal was plugged in with a protocol error, or not at all; 0:
    /// none. A cable without a kernel refuses the report in both cases.
    std::uint32_t protocolErrorAtReport = 0;
    std::uint32_t noAnswerAtReport = 0;
    /// The pedal is unplugged at the k-th output report since it was plugged in, which is refused; 0: never.
    std::uint32_t unplugAtReport = 0;
};

/// A fault with its name, for command lines and parameterised tests.
struct FaultEntry {
    std::string_view name;
    /// The meaning of the number after the name; empty if the fault has none.
    std::string_view argument;
    /// The default number, and the smallest and largest that are accepted.
    std::uint32_t usual;
    std::uint32_t least;
    std::uint32_t greatest;
    void (*set)(Faults& faults, std::uint32_t number);
};

/// All faults, each once.
[[nodiscard]] std::span<const FaultEntry> faultTable();

/// The range of a fault's number in words: "1 to 63" or "1 or more".
[[nodiscard]] std::string numbersOf(const FaultEntry& fault);

/// Switches on the fault in `text`, such as "corrupt-crc" or "corrupt-crc=3". Returns an error message, without
/// changing `faults`, for an unknown fault, a number for a fault that has none, and a number out of range.
[[nodiscard]] std::optional<std::string> switchOn(std::string_view text, Faults& faults);

}  // namespace kelvo
