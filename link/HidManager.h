#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

namespace kelvo {

/// Size of an input and of an output report without its report number, fixed by the device's report descriptor.
inline constexpr std::size_t kReportSize = 64;

using Report = std::array<std::uint8_t, kReportSize>;

/// Which devices a HidManager looks for; all three numbers must match. `versionNumber` is the device release of the USB
/// device descriptor (bcdDevice) read as a plain binary number.
struct HidMatching {
    std::int64_t vendorId = 0;
    std::int64_t productId = 0;
    std::int64_t versionNumber = 0;
    bool operator==(const HidMatching&) const = default;
};

/// One attached HID device. Its identity is its address. It may outlive its removal; reports are then refused.
class HidDevice {
public:
    virtual ~HidDevice() = default;

    /// Sends one output report, report number 0, and waits until the platform has taken it. Returns false when the
    /// report was refused, in whole or in part. Any thread, one call at a time.
    [[nodiscard]] virtual bool setReport(std::span<const std::uint8_t, kReportSize> report) = 0;
};

/// What a HidManager reports, on the thread inside `run`. A callback that is left out does nothing.
struct HidCallbacks {
    using DeviceCallback = std::function<void(const std::shared_ptr<HidDevice>& device)>;
    /// `report` holds the bytes of one input report without its report number, whatever their count. It is only valid
    /// during the call.
    using InputReportCallback =
        std::function<void(const std::shared_ptr<HidDevice>& device, std::span<const std::uint8_t> report)>;

    /// Called once per matching device, for those present at `run` and for those that arrive later.
    DeviceCallback deviceMatching = [](const auto&) {};
    /// Called once when a device that was announced has gone away.
    DeviceCallback deviceRemoval = [](const auto&) {};
    InputReportCallback inputReport = [](const auto&, auto) {};
    /// A device was found that looks like the wanted one and cannot be used. `reason` is a sentence for the user.
    std::function<void(const std::string& reason)> unusable = [](const auto&) {};
};

/// The platform's HID layer: everything the link asks of the operating system.
class HidManager {
public:
    virtual ~HidManager() = default;

    /// Gets ready to watch the bus. Returns false when that failed; `run` then finds no device, but still waits.
    virtual bool open(const HidMatching& matching, HidCallbacks callbacks) = 0;

    /// Serves callbacks on the calling thread until `stop`.
    virtual void run() = 0;

    /// Makes the running, or else the next, `run` return. Any thread, also from within a callback.
    virtual void stop() = 0;
};

}  // namespace kelvo
