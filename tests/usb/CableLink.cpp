#include "CableLink.h"

#include <chrono>

namespace kelvo::test {

CableLink::CableLink() {
    const auto note = [this](std::size_t Counts::*what) {
        ++(counts_.*what);
        changed_.notify_all();
    };
    const HidCallbacks callbacks{
        .deviceMatching =
            [this, note](const auto& device) {
                const std::lock_guard lock(mutex_);
                device_ = device;
                note(&Counts::arrivals);
            },
        .deviceRemoval =
            [this, note](const auto&) {
                const std::lock_guard lock(mutex_);
                device_.reset();
                note(&Counts::removals);
            },
        .inputReport =
            [this, note](const auto&, auto report) {
                const std::lock_guard lock(mutex_);
                if (report.size() == kReportSize) {
                    note(&Counts::reports);
                }
            },
    };
    manager_.open({.vendorId = 0x0483, .productId = 0x5703, .versionNumber = 200}, callbacks);
    thread_ = std::thread([this] { manager_.run(); });
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
