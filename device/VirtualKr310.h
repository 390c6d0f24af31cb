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

/// How the pedal goes through its start-up: the values 0, step, 2 * step and so on, one per pace, and 199 at the end.
struct Kr310Startup {
    /// 1 or more; 0 counts as 1.
    std::uint32_t progressStep = 1;
    /// With a step of 1 there are 200 values, so the whole takes two seconds.
    std::chrono::microseconds progressPace{10'000};
};

/// A KR310 in software: output reports in, input reports out. It has no clock and no thread; it says how long after the
/// output report each input report is due, and its owner sees to that.
///
/// All functions may be called on any thread.
class VirtualKr310 {
public:
    using LineSink = std::function<void(std::string_view line)>;

    /// What one output report led to.
    struct Reaction {
        /// Ordered by due time, save where a report was held up for others (Faults::namesAfterDone, mergedReports).
        std::vector<InputReport> reports;
        /// One line for each finished change of the memory, without line end.
        std::vector<std::string> changes;
    };

    /// `sink` is given the lines of Reaction::changes, on the thread that is in `receive` and with nothing locked.
    explicit VirtualKr310(Kr310Memory memory = Kr310Memory::factory(), LineSink sink = {});

    void setStartup(const Kr310Startup& startup);
    void setFaults(const Faults& faults);
    [[nodiscard]] Faults faults() const;

    /// A copy of what the slots hold now.
    [[nodiscard]] Kr310Memory memory() const;

    /// Forgets half-received frames and unfinished transfers, and counts output reports anew, as a power cycle does.
    /// The memory stays.
    void powerUp();

    /// What becomes of the next output report. Called once for each, before `receive`; only kTaken ones get there.
    enum class Delivery { kTaken, kRefused, kProtocolError, kNoAnswer, kUnplugged };
    [[nodiscard]] Delivery deliverNext();

    /// Takes one output report, without report number. A report that is not 64 bytes long, or whose count is not 1 to
    /// 63, is ignored; so is a frame with a wrong CRC, an unknown command, or a LENGTH that does not fit its command,
    /// and a deletion with anything but 0 after its slot.
    ///
    /// A transfer is the packets of phases 1, 2 and so on up to the name, all for the same slot and in that order; the
    /// last packet may be repeated, and phase 1 starts afresh at any time. The slot is written when the name arrives.
    /// Any other packet ends the transfer without effect. Every packet is acknowledged, also one for a slot that does
    /// not exist.
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
