#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include "Faults.h"
#include "Kr310Frames.h"

namespace kelvo {

/// One input report, and how long after the output report that it answers it is due.
struct InputReport {
    std::chrono::microseconds due{0};
    /// 64 bytes from a sound pedal.
    std::vector<std::uint8_t> bytes;
};

/// Counts the frames the pedal has sent, for the faults that strike every n-th.
using FrameCounter = std::uint64_t;

/// Turns the frames of one answer into input reports, with the faults of the wire put in. A frame begins a report of
/// its own unless Faults::mergedReports is set. The uncounted bytes of a report are 0xAA, so that a
/// receiver that trusts them sees false headers.
class AnswerWriter {
public:
    /// `faults` and `counter` must outlive the writer.
    AnswerWriter(const Faults& faults, FrameCounter& counter) : faults_(faults), counter_(counter) {}

    /// Adds one frame, due so long after the output report; later calls must not name an earlier time.
    void add(std::chrono::microseconds due, Frame frame);

    /// The reports of all frames added. Ends the writer.
    [[nodiscard]] std::vector<InputReport> finish();

private:
    struct Stretch {
        std::chrono::microseconds due;
        std::vector<std::uint8_t> bytes;
    };

    const Faults& faults_;
    FrameCounter& counter_;
    std::vector<Stretch> stretches_;
};

}  // namespace kelvo
