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
    {"silent", "from phase", 0, 255,
     [](Faults& faults, Number phase) { faults.silentFromPhase = static_cast<std::uint8_t>(phase); }},
    {"delay", "milliseconds", 500, kHour,
     [](Faults& faults, Number time) { faults.answerDelay = std::chrono::milliseconds(time); }},
    {"duplicate-ack", "", 0, 0, [](Faults& faults, Number) { faults.duplicateAcknowledgement = true; }},
    {"wrong-ack", "", 0, 0, [](Faults& faults, Number) { faults.wrongAcknowledgement = true; }},
    {"ack-out-of-range", "phase", 255, 255,
     [](Faults& faults, Number phase) { faults.acknowledgementOutOfRange = static_cast<std::uint8_t>(phase); }},
    {"corrupt-crc", "every n-th frame", 1, kAnyCount,
     [](Faults& faults, Number every) { faults.corruptCrcEvery = every; }},
    {"garbage-before", "", 0, 0, [](Faults& faults, Number) { faults.garbageBefore = true; }},
    {"garbage-between", "", 0, 0, [](Faults& faults, Number) { faults.garbageBetween = true; }},
    {"garbage-inside", "every n-th frame", 1, kAnyCount,
     [](Faults& faults, Number every) { faults.garbageInsideEvery = every; }},
    {"split", "bytes per report", 1, 63, [](Faults& faults, Number bytes) { faults.splitReports = bytes; }},
    {"merge", "", 0, 0, [](Faults& faults, Number) { faults.mergedReports = true; }},
    {"count-over-63", "", 0, 0, [](Faults& faults, Number) { faults.countOver63 = true; }},
    {"reports-of-63", "", 0, 0, [](Faults& faults, Number) { faults.reportsOf63 = true; }},
    {"reports-of-65", "", 0, 0, [](Faults& faults, Number) { faults.reportsOf65 = true; }},
    {"progress-over-199", "", 0, 0, [](Faults& faults, Number) { faults.progressOver199 = true; }},
    {"names-after-done", "milliseconds", 0, kHour,
     [](Faults& faults, Number time) { faults.namesAfterDone = std::chrono::milliseconds(time); }},
    {"refuse", "output report", 1, kAnyCount, [](Faults& faults, Number report) { faults.refuseReport = report; }},
    {"protocol-error", "output report", 1, kAnyCount,
     [](Faults& faults, Number report) { faults.protocolErrorAtReport = report; }},
    {"no-answer", "output report", 1, kAnyCount,
     [](Faults& faults, Number report) { faults.noAnswerAtReport = report; }},
    {"unplug", "output report", 1, kAnyCount, [](Faults& faults, Number report) { faults.unplugAtReport = report; }},
};

}  // namespace

std::span<const FaultEntry> faultTable() {
    return kTable;
}

bool parseFault(std::string_view text, Faults& faults) {
    const std::size_t equals = text.find('=');
    const auto entry = std::ranges::find(kTable, text.substr(0, equals), &FaultEntry::name);
    if (entry == std::ranges::end(kTable)) {
        return false;
    }
    Number number = entry->usual;
    if (equals != std::string_view::npos) {
        const std::string_view digits = text.substr(equals + 1);
        const char* const end = digits.data() + digits.size();
        const auto [stop, error] = std::from_chars(digits.data(), end, number);
        if (entry->argument.empty() || error != std::errc() || stop != end || number > entry->greatest) {
            return false;
        }
    }
    entry->set(faults, number);
    return true;
}

}  // namespace kelvo
