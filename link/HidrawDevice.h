#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "HidManager.h"
#include "UniqueFd.h"

namespace kelvo {

/// One open hidraw node.
///
/// The device owns the descriptor. A thread whose setReport is still blocked in the kernel holds the device, so the
/// descriptor's number is not given to another file before that write has returned.
class HidrawDevice final : public HidDevice {
public:
    /// Opens `node` and locks it, so that a second copy of the utility cannot talk into a running transfer. Throws
    /// std::runtime_error, whose text is the reason, when the node cannot be opened, is no character device or is
    /// locked already.
    explicit HidrawDevice(const std::string& node);

    /// Any error means that this report has failed, no more: the bus can fail while the device stays plugged in, and
    /// a removal is reported in other ways. Blocks as long as the kernel does: 5.1 s when the device takes no
    /// output.
    [[nodiscard]] bool setReport(std::span<const std::uint8_t, kReportSize> report) override;

    /// Takes the next queued input report, up to the size of `buffer`, and returns its length; nothing when the device
    /// has gone. Blocks while no report is queued.
    [[nodiscard]] std::optional<std::size_t> readReport(std::span<std::uint8_t> buffer) const;

    /// For poll(2).
    [[nodiscard]] int fd() const { return node_.get(); }

private:
    const UniqueFd node_;
};

}  // namespace kelvo
