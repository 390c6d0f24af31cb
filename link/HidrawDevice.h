#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "HidManager.h"
#include "UniqueFd.h"

namespace kelvo {

/// One open hidraw node. It owns the descriptor. A thread that is blocked in setReport keeps a reference to the device,
/// so the kernel cannot reuse the descriptor's number before that write has returned.
class HidrawDevice final : public HidDevice {
public:
    /// Opens and locks `node`, so that a second copy of the utility cannot disturb a running transfer. Throws
    /// std::runtime_error with the reason when the node cannot be opened, is not a character device or is already
    /// locked.
    explicit HidrawDevice(const std::string& node);

    /// A failure does not mean that the device is gone: the bus can fail while the device stays plugged in. Blocks as
    /// long as the kernel does, which is 5.1 s when the device accepts no output.
    [[nodiscard]] bool setReport(std::span<const std::uint8_t, kReportSize> report) override;

    /// Reads the next queued input report, up to the size of `buffer`, and returns its length, or nothing when the
    /// device is gone. Blocks while no report is queued.
    [[nodiscard]] std::optional<std::size_t> readReport(std::span<std::uint8_t> buffer) const;

    /// For poll(2).
    [[nodiscard]] int fd() const { return node_.get(); }

private:
    const UniqueFd node_;
};

}  // namespace kelvo
