#pragma once

#include <functional>
#include <utility>

#include "ScriptedHid.h"

namespace kelvo::test {

/// A device that lets the test look at the utility before it takes a report.
class WatchedDevice : public ScriptedDevice {
public:
    explicit WatchedDevice(std::function<void()> look) : look_(std::move(look)) {}
    [[nodiscard]] bool setReport(std::span<const std::uint8_t, kReportSize> report) override {
        look_();
        return ScriptedDevice::setReport(report);
    }

private:
    const std::function<void()> look_;
};

}  // namespace kelvo::test
