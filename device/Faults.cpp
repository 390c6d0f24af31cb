#include "Faults.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace kelvo {
namespace {

constexpr std::uint32_t kAnyCount = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint32_t kHour = 3'600'000;

using Number = std::uint32_t;

constexpr FaultEntry kTable[] = {
    {"silent", "from phase", 0, 0, 5,
     [](Faults& faults, Number phase) { faults.silentFromPhase = static_cast<std::uint8_t>(phase); }},
    {"delay", "milliseconds", 500, 1, kHour,
     [](Faults& faults, Number time) { faults.answerDelay = std::chrono::milliseconds(time); }},
    {"duplicate-ack", "", 0, 0, 0, [](Faults& faults, Number) { faults.duplicateAcknowledgement = true; }},
    {"wrong-ack", "", 0, 0, 0, [](Faults& faults, Number) { faults.wrongAcknowledgement = true; }},
    {"ack-out-of-range", "phase", 255, 0, 255,
     [](Faults& faults, Number phase) { faults.acknowledgementOutOfRange = static_cast<std::uint8_t>(phase); }},
    {"corrupt-crc", "every n-th frame", 1, 1, kAnyCount,
     [](Faults& faults, Number every) { faults.corruptCrcEvery = every; }},
    {"long-frames", "", 0, 0, 0, [](Faults& faults, Number) { faults.longFrames = true; }},
    {"garbage-before", "", 0, 0, 0, [](Faults& faults, Number) { faults.garbageBefore = true; }},
    {"garbage-between", "", 0, 0, 0, [](Faults& faults, Number) { faults.garbageBetween = true; }},
    {"garbage-inside", "every n-th frame", 1, 1, kAnyCount,
     [](Faults& faults, Number every) { faults.garbageInsideEvery = every; }},
    {"split", "bytes per report", 1, 1, 63, [](Faults& faults, Number bytes) { faults.splitReports = bytes; }},
    {"merge", "", 0, 0, 0, [](Faults& faults, Number) { faults.mergedReports = true; }},
    {"count-over-63", "", 0, 0, 0, [](Faults& faults, Number) { faults.countOver63 = true; }},
    {"reports-of-63", "", 0, 0, 0, [](Faults& faults, Number) { faults.reportsOf63 = true; }},
    {"reports-of-65", "", 0, 0, 0, [](Faults& faults, Number) { faults.reportsOf65 = true; }},
    {"progress-over-199", "", 0, 0, 0, [](Faults& faults, Number) { faults.progressOver199 = true; }},
    {"amp-names-first", "", 0, 0, 0, [](Faults& faults, Number) { faults.ampNamesFirst = true; }},
    {"names-after-done", "milliseconds", 0, 0, kHour,
     [](Faults& faults, Number time) { faults.namesAfterDone = std::chrono::milliseconds(time); }},
    {"refuse", "output report", 1, 1, kAnyCount, [](Faults& faults, Number report) { faults.refuseReport = report; }},
    {"protocol-error", "output report", 1, 1, kAnyCount,
     [](Faults& faults, Number report) { faults.protocolErrorAtReport = report; }},
    {"no-answer", "output report", 1, 1, kAnyCount,
     [](Faults& faults, Number report) { faults.noAnswerAtReport = report; }},
    {"unplug", "output report", 1, 1, kAnyCount, [](Faults& faults, Number report) { faults.unplugAtReport = report; }},
};

}  // namespace

std::span<const FaultEntry> faultTable() {
    return kTable;
}

std::string numbersOf(const FaultEntry& fault) {
    const std::string end = fault.greatest == kAnyCount ? "or more" : "to " + std::to_string(fault.greatest);
    return std::to_string(fault.least) + " " + end;
}

std::optional<std::string> switchOn(std::string_view text, Faults& faults) {
    const std::size_t equals = text.find('=');
    const std::string name(text.substr(0, equals));
    const auto entry = std::ranges::find(kTable, name, &FaultEntry::name);
    if (entry == std::ranges::end(kTable)) {
        return "there is no fault '" + name + "'";
    }
    Number number = entry->usual;
    if (equals != std::string_view::npos) {
        const std::string_view digits = text.substr(equals + 1);
        if (entry->argument.empty()) {
            return name + " takes no number, got '" + std::string(digits) + "'";
        }
        const char* const end = digits.data() + digits.size();
        const auto [stop, error] = std::from_chars(digits.data(), end, number);
        if (error == std::errc::result_out_of_range) {
            number = kAnyCount;
        }
        if (error == std::errc::invalid_argument || stop != end || number < entry->least || number > entry->greatest) {
            return name + " wants " + numbersOf(*entry) + ", got '" + std::string(digits) + "'";
        }
    }
    entry->set(faults, number);
    return {};
}

}  // namespace kelvo
