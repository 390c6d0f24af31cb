#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "AppHarness.h"
#include "SampleFiles.h"

namespace kelvo::test {

/// Has the pedal's last progress handled before the loading window exists, so that the start takes no tick of it.
void startQuickly(RunningApp& app);

/// Output reports that were tried since the pedal was plugged in, which the faults count.
std::uint32_t triedReports(const RunningApp& app);

/// Asks the pedal for its names until nothing else went out since the question before: then all that it said earlier
/// has been handled and answered. The pedal must be sound by now. False when that does not end.
[[nodiscard]] bool settle(const RunningApp& app);

/// What a process must not keep.
struct Holdings {
    std::map<int, std::string> descriptors;
    std::size_t threads = 0;
    /// Resident memory in KiB.
    std::size_t memory = 0;
};
Holdings holdings();

/// A sound wave of 512 equal 24-bit points, and a sound model of 512 equal words.
FileBytes waveOf(std::uint32_t point);
FileBytes ampOf(std::uint32_t word);

/// What the user can ask for, into one slot.
struct Action {
    const char* name;
    std::uint32_t reports;
    std::uint8_t acknowledgements;
    std::vector<std::string> written;  ///< in this order
    void (*act)(RunningApp& app, const SampleDir& files);
};
/// An IR import, an amp import and a deletion.
std::vector<Action> singleActions();

}  // namespace kelvo::test
