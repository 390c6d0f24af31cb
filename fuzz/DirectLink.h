#pragma once

#include <functional>
#include <memory>
#include <span>
#include <utility>

#include "HidManager.h"

namespace kelvo::fuzz {

/// A HID layer without a thread: `run` announces one device, runs the given function and returns. The link's actions
/// follow the order of the calls below, so the same input gives the same run.
class DirectManager : public HidManager {
public:
    explicit DirectManager(std::function<void()> body) : body_(std::move(body)) {}

    bool open(const HidMatching&, HidCallbacks callbacks) override {
        callbacks_ = std::move(callbacks);
        return true;
    }
    void stop() override {}
    void run() override {
        callbacks_.deviceMatching(device);
        body_();
    }

    void deliver(std::span<const std::uint8_t> report) { callbacks_.inputReport(device, report); }
    void unplug() { callbacks_.deviceRemoval(device); }

    /// Receives the output reports. Set it before `run`.
    std::shared_ptr<HidDevice> device;

private:
    const std::function<void()> body_;
    HidCallbacks callbacks_;
};

/// A device that passes each output report to a function.
class DirectDevice : public HidDevice {
public:
    using Taker = std::function<bool(std::span<const std::uint8_t, kReportSize> report)>;

    explicit DirectDevice(Taker taker) : taker_(std::move(taker)) {}
    [[nodiscard]] bool setReport(std::span<const std::uint8_t, kReportSize> report) override { return taker_(report); }

private:
    const Taker taker_;
};

}  // namespace kelvo::fuzz
