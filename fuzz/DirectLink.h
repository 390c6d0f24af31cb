#pragma once

#include <functional>
#include <memory>
#include <span>
#include <utility>

#include "HidManager.h"

namespace kelvo::fuzz {

/// A HID layer without a thread: `run` lets one device arrive, does what it was given, and returns. What the link does
/// then happens in the order of the calls below, and the same input gives the same run.
class DirectManager : public HidManager {
public:
    explicit DirectManager(std::function<void()> body) : body_(std::move(body)) {}

    void setDeviceMatching(const HidMatching&) override {}
    void registerDeviceMatchingCallback(DeviceCallback callback) override { arrival_ = std::move(callback); }
    void registerDeviceRemovalCallback(DeviceCallback callback) override { removal_ = std::move(callback); }
    void registerInputReportCallback(InputReportCallback callback) override { input_ = std::move(callback); }
    bool open() override { return true; }
    void stop() override {}
    void run() override {
        arrival_(device);
        body_();
    }

    void deliver(std::span<const std::uint8_t> report) { input_(device, report); }
    void unplug() { removal_(device); }

    /// Takes the output reports; set before `run`.
    std::shared_ptr<HidDevice> device;

private:
    const std::function<void()> body_;
    DeviceCallback arrival_;
    DeviceCallback removal_;
    InputReportCallback input_;
};

/// A device that hands each output report to a function.
class DirectDevice : public HidDevice {
public:
    using Taker = std::function<bool(std::span<const std::uint8_t, kReportSize> report)>;

    explicit DirectDevice(Taker taker) : taker_(std::move(taker)) {}
    [[nodiscard]] bool setReport(std::span<const std::uint8_t, kReportSize> report) override { return taker_(report); }

private:
    const Taker taker_;
};

}  // namespace kelvo::fuzz
