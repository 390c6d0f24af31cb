#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include "Faults.h"
#include "Kr310Frames.h"

namespace kelvo {

/// One input report, and its delay after the output report that it answers.
struct InputReport {
    std::chrono::microseconds due{0};
    /// 64 bytes, unless a fault changes that.
    std::vector<std::uint8_t> bytes;
};

/// The number of frames that the pedal has sent, for faults that affect every n-th.
using FrameCounter = std::uint64_t;

/// Converts the frames of one answer to input reports and adds the faults. Each frame begins a new report unless
/// Faults::mergedReports is set. The uncounted bytes of a report are 0xAA, so that a receiver that reads them finds
/// false headers.
class AnswerWriter {
public:
    /// `faults` and `counter` must outlive the writer.
    AnswerWriter(const Faults& faults, FrameCounter& counter) : faults_(faults), counter_(counter) {}

    /// Adds one frame that is due this long after the output report. Times must not decrease from call to call.
    void add(std::chrono::microseconds due, Frame frame);

    /// The reports of all frames added. The last call.
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
