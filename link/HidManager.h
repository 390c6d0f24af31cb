#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

namespace kelvo {

/// Bytes of an input or output report without its report number, as the device's report descriptor fixes it.
inline constexpr std::size_t kReportSize = 64;

using Report = std::array<std::uint8_t, kReportSize>;

/// The devices that a HidManager looks for. All three numbers must match. `versionNumber` is the device release of the
/// USB device descriptor (bcdDevice), read as a plain binary number.
struct HidMatching {
    std::int64_t vendorId = 0;
    std::int64_t productId = 0;
    std::int64_t versionNumber = 0;
    bool operator==(const HidMatching&) const = default;
};

/// One HID device. Its address is its identity. The object may outlive the removal of the device; it then refuses
/// reports.
class HidDevice {
public:
    virtual ~HidDevice() = default;

    /// Sends one output report, report number 0, and waits until the platform has accepted it. Returns false when any
    /// part of the report was refused. Any thread, one call at a time.
    [[nodiscard]] virtual bool setReport(std::span<const std::uint8_t, kReportSize> report) = 0;
};

/// What a HidManager reports, on the thread that is in `run`. A callback that is not set does nothing.
struct HidCallbacks {
    using DeviceCallback = std::function<void(const std::shared_ptr<HidDevice>& device)>;
    /// `report` contains one input report without its report number. It may have any length and is only valid during
    /// the call.
    using InputReportCallback =
        std::function<void(const std::shared_ptr<HidDevice>& device, std::span<const std::uint8_t> report)>;

    /// Called once per matching device, whether it is present at `run` or arrives later.
    DeviceCallback deviceMatching = [](const auto&) {};
    /// Called once when an announced device has been removed.
    DeviceCallback deviceRemoval = [](const auto&) {};
    InputReportCallback inputReport = [](const auto&, auto) {};
    /// A device resembles the wanted one but cannot be used. `reason` is a sentence for the user.
    std::function<void(const std::string& reason)> unusable = [](const auto&) {};
};

/// The platform's HID layer: everything the link asks of the operating system.
class HidManager {
public:
    virtual ~HidManager() = default;

    /// Starts watching the bus. Returns false on failure; `run` then finds no device but still waits for `stop`.
    virtual bool open(const HidMatching& matching, HidCallbacks callbacks) = 0;

    /// Serves callbacks on the calling thread until `stop`.
    virtual void run() = 0;

    /// Makes the current `run` return, or the next one if none is running. Any thread, also inside a callback.
    virtual void stop() = 0;
};

}  // namespace kelvo
