#include "CableLink.h"

#include <chrono>

namespace kelvo::test {

CableLink::CableLink() {
    const auto note = [this](std::size_t Counts::*what) {
        ++(counts_.*what);
        changed_.notify_all();
    };
    manager_.setDeviceMatching({.vendorId = 0x0483, .productId = 0x5703, .versionNumber = 200});
    manager_.registerDeviceMatchingCallback([this, note](const std::shared_ptr<HidDevice>& device) {
        const std::lock_guard lock(mutex_);
        device_ = device;
        note(&Counts::arrivals);
    });
    manager_.registerDeviceRemovalCallback([this, note](const std::shared_ptr<HidDevice>&) {
        const std::lock_guard lock(mutex_);
        device_.reset();
        note(&Counts::removals);
    });
    manager_.registerInputReportCallback(
        [this, note](const std::shared_ptr<HidDevice>&, std::span<const std::uint8_t> report) {
            const std::lock_guard lock(mutex_);
            if (report.size() == kReportSize) {
                note(&Counts::reports);
            }
        });
    thread_ = std::thread([this] {
        manager_.open();
        manager_.run();
    });
}

CableLink::~CableLink() {
    manager_.stop();
    thread_.join();
}

bool CableLink::waitFor(std::size_t Counts::*what, std::size_t n) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(20), [&] { return counts_.*what >= n; });
}

bool CableLink::waitForArrival(std::size_t n) {
    return waitFor(&Counts::arrivals, n);
}

bool CableLink::waitForRemoval(std::size_t n) {
    return waitFor(&Counts::removals, n);
}

bool CableLink::waitForReports(std::size_t n) {
    return waitFor(&Counts::reports, n);
}

CableLink::Counts CableLink::counts() {
    const std::lock_guard lock(mutex_);
    return counts_;
}

std::shared_ptr<HidDevice> CableLink::device() {
    const std::lock_guard lock(mutex_);
    return device_;
}

}  // namespace kelvo::test
