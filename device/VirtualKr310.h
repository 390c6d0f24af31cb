#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Faults.h"
#include "Kr310Answer.h"
#include "Kr310Frames.h"
#include "Kr310Memory.h"
#include "Kr310Transfer.h"

namespace kelvo {

/// The progress values that the pedal sends at start-up: 0, step, 2 * step and so on, and finally 199.
struct Kr310Startup {
    /// 1 or more; 0 counts as 1.
    std::uint32_t progressStep = 1;
    /// The time between two values. With a step of 1 there are 200 of them, so start-up takes two seconds.
    std::chrono::microseconds progressPace{10'000};
};

/// A KR310 in software: output reports in, input reports out. It has no clock and no thread. It returns each input
/// report with its delay after the output report; the caller keeps the time.
///
/// All functions may be called on any thread.
class VirtualKr310 {
public:
    using LineSink = std::function<void(std::string_view line)>;

    /// The results of one output report.
    struct Reaction {
        /// Ordered by due time, except with Faults::namesAfterDone and mergedReports.
        std::vector<InputReport> reports;
        /// One line for each change of the memory, without line end.
        std::vector<std::string> changes;
    };

    /// `sink` gets the lines of Reaction::changes, on the thread that is in `receive` and without a lock held.
    explicit VirtualKr310(
        Kr310Memory memory = Kr310Memory::factory(), LineSink sink = [](std::string_view) {});

    void setStartup(const Kr310Startup& startup);
    void setFaults(const Faults& faults);
    [[nodiscard]] Faults faults() const;

    /// A copy of the current memory.
    [[nodiscard]] Kr310Memory memory() const;

    /// Discards incomplete frames and unfinished transfers, and restarts the count of output reports. The memory stays.
    void powerUp();

    /// The fate of the next output report. Call it once for each report; only those with Accepted go to `receive`.
    enum class Delivery { Accepted, Refused, ProtocolError, NoAnswer, Unplugged };
    [[nodiscard]] Delivery deliverNext();

    /// Processes one output report without report number. Ignores a report that is not 64 bytes long or whose count is
    /// not 1 to 63, a frame with a wrong CRC, an unknown command or a LENGTH that does not fit its command, and a
    /// deletion with a byte other than 0 after its slot.
    ///
    /// A transfer consists of the packets of phases 1, 2 and so on up to the name, in this order and for the same slot.
    /// The last packet may be repeated, and phase 1 starts a new transfer at any time. The slot is written when the
    /// name arrives. Any other packet cancels the transfer. Every packet is acknowledged, even for a slot that does not
    /// exist.
    [[nodiscard]] Reaction receive(std::span<const std::uint8_t> report);

private:
    void handle(const Frame& frame, AnswerWriter& answer, std::vector<std::string>& changes);
    void connect(const Frame& frame, AnswerWriter& answer) const;
    void takePacket(const Kr310Bank& bank, Kr310Transfer& transfer, const Frame& frame, AnswerWriter& answer,
                    std::vector<std::string>& changes);
    void acknowledge(const Frame& packet, std::uint8_t lastPhase, AnswerWriter& answer) const;
    void deleteCab(const Frame& frame, std::vector<std::string>& changes);

    const LineSink sink_;
    mutable std::mutex mutex_;
    Kr310Memory memory_;
    Kr310Startup startup_;
    Faults faults_;
    std::uint32_t outputReports_ = 0;
    FrameReader reader_;
    FrameCounter frameCounter_ = 0;
    Kr310Transfer cabTransfer_;
    Kr310Transfer ampTransfer_;
};

}  // namespace kelvo
