#include "ManagerTesting.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kelvo {

using Activity = VirtualHidManager::Activity;

Bench::Bench(const VirtualHidManager::Options& options) : manager(pedal, options) {}

Bench::~Bench() {
    if (loop_.joinable()) {
        finish();
    }
}

void Bench::start(const HidMatching& wanted) {
    EXPECT_TRUE(
        manager.open(wanted, {.deviceMatching = [this](const auto& device) { note(numbered("arrival ", device)); },
                              .deviceRemoval = [this](const auto& device) { note(numbered("removal ", device)); },
                              .inputReport =
                                  [this](const auto& device, std::span<const std::uint8_t> report) {
                                      EXPECT_EQ(device, this->device());
                                      note("report " + hex(report.subspan(1, std::min<std::size_t>(report[0], 63))));
                                  }}));
    loop_ = std::thread([this] {
        runsOn_ = std::this_thread::get_id();
        manager.run();
    });
}

void Bench::finish() {
    manager.stop();
    loop_.join();
}

void Bench::waitUntilRunReturns() {
    loop_.join();
}

void Bench::awaitArrivals(std::size_t count) {
    ASSERT_TRUE(manager.waitFor([=](const Activity& seen) { return seen.arrivals >= count; }));
}

void Bench::awaitRemovals(std::size_t count) {
    ASSERT_TRUE(manager.waitFor([=](const Activity& seen) { return seen.removals >= count; }));
}

void Bench::awaitInputReports(std::size_t count) {
    ASSERT_TRUE(manager.waitFor([=](const Activity& seen) { return seen.inputReports >= count; }));
}

std::vector<std::string> Bench::log() {
    const std::lock_guard lock(mutex_);
    return log_;
}

std::shared_ptr<HidDevice> Bench::device() {
    const std::lock_guard lock(mutex_);
    return devices_.empty() ? nullptr : devices_.back();
}

bool Bench::sendFrame(const Bytes& frame) {
    const std::shared_ptr<HidDevice> to = device();
    return to && std::ranges::all_of(makeReports(frame),
                                     [&](const Bytes& report) { return to->setReport(std::span(report).first<64>()); });
}

void Bench::note(const std::string& event) {
    EXPECT_EQ(std::this_thread::get_id(), runsOn_);
    {
        const std::lock_guard lock(mutex_);
        log_.push_back(event);
    }
    if (onEvent) {
        onEvent(event);
    }
}

std::string Bench::numbered(const char* what, const std::shared_ptr<HidDevice>& device) {
    const std::lock_guard lock(mutex_);
    auto at = std::ranges::find(devices_, device);
    if (at == devices_.end()) {
        at = devices_.insert(at, device);
    }
    return what + std::to_string(at - devices_.begin() + 1);
}

ConnectedBench::ConnectedBench(const VirtualHidManager::Options& options) : Bench(options) {
    manager.plug();
    start();
    awaitArrivals(1);
}

void ConnectedBench::fault(std::initializer_list<const char*> texts) {
    Faults faults;
    for (const char* text : texts) {
        EXPECT_EQ(switchOn(text, faults), std::nullopt);
    }
    pedal.setFaults(faults);
}

std::vector<std::string> ConnectedBench::answers() {
    std::vector<std::string> events = log();
    events.erase(events.begin());
    return events;
}

}  // namespace kelvo
