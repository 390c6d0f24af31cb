#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "HidManager.h"

namespace kelvo::test {

/// Longest wait for something that must happen. A test fails after it; one that passes never waits as long.
inline constexpr std::chrono::seconds kPatience{20};

/// A device that keeps every output report and can refuse one, or hold one up. Thread-safe.
class ScriptedDevice : public HidDevice {
public:
    [[nodiscard]] bool setReport(std::span<const std::uint8_t, kReportSize> report) override {
        std::unique_lock lock(mutex_);
        ++attempts_;
        changed_.notify_all();
        const std::size_t attempt = attempts_;
        changed_.wait(lock, [&] { return !held_; });
        if (attempt == refused_) {
            return false;
        }
        std::copy(report.begin(), report.end(), reports_.emplace_back().begin());
        changed_.notify_all();
        return true;
    }

    /// The attempt-th call of setReport, counted from 1 over the device's whole life, fails.
    void refuseReport(std::size_t attempt) {
        const std::lock_guard lock(mutex_);
        refused_ = attempt;
    }
    /// setReport does not return until releaseReports.
    void holdReports() {
        const std::lock_guard lock(mutex_);
        held_ = true;
    }
    void releaseReports() {
        const std::lock_guard lock(mutex_);
        held_ = false;
        changed_.notify_all();
    }

    /// Calls of setReport so far, refused and held ones included.
    [[nodiscard]] std::size_t attempts() const {
        const std::lock_guard lock(mutex_);
        return attempts_;
    }
    /// The reports taken so far.
    [[nodiscard]] std::vector<Report> reports() const {
        const std::lock_guard lock(mutex_);
        return reports_;
    }
    /// The frame bytes in the reports taken so far.
    [[nodiscard]] std::vector<std::uint8_t> sentBytes() const {
        std::vector<std::uint8_t> bytes;
        for (const Report& report : reports()) {
            const std::size_t count = std::min<std::size_t>(report[0], kReportSize - 1);
            bytes.insert(bytes.end(), report.begin() + 1, report.begin() + 1 + static_cast<std::ptrdiff_t>(count));
        }
        return bytes;
    }
    void forgetReports() {
        const std::lock_guard lock(mutex_);
        reports_.clear();
    }

    [[nodiscard]] bool waitForAttempts(std::size_t count) {
        return wait([&] { return attempts_ >= count; });
    }
    [[nodiscard]] bool waitForReports(std::size_t count) {
        return wait([&] { return reports_.size() >= count; });
    }

private:
    template <typename Condition>
    bool wait(Condition condition) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, kPatience, condition);
    }

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Report> reports_;
    std::size_t attempts_ = 0;
    std::size_t refused_ = 0;
    bool held_ = false;
};

/// A HID layer whose bus is the test's script: what attach, detach and deliver are given happens in that order on the
/// thread inside `run`, as soon as there is one. Thread-safe.
class ScriptedHidManager : public HidManager {
public:
    void attach(std::shared_ptr<HidDevice> device) {
        post([this, device = std::move(device)] { callbacks_.deviceMatching(device); });
    }
    void detach(std::shared_ptr<HidDevice> device) {
        post([this, device = std::move(device)] { callbacks_.deviceRemoval(device); });
    }
    void reportUnusable(const std::string& reason) {
        post([this, reason] { callbacks_.unusable(reason); });
    }
    /// One input report of any length, the count byte included.
    void deliver(std::shared_ptr<HidDevice> device, std::vector<std::uint8_t> report) {
        post(
            [this, device = std::move(device), report = std::move(report)] { callbacks_.inputReport(device, report); });
    }
    /// `bytes` as input reports of 64 bytes with up to 63 of them each.
    void deliverBytes(const std::shared_ptr<HidDevice>& device, std::span<const std::uint8_t> bytes) {
        while (!bytes.empty()) {
            const std::span<const std::uint8_t> piece = bytes.first(std::min(bytes.size(), kReportSize - 1));
            std::vector<std::uint8_t> report{static_cast<std::uint8_t>(piece.size())};
            report.insert(report.end(), piece.begin(), piece.end());
            report.resize(kReportSize, 0);
            deliver(device, std::move(report));
            bytes = bytes.subspan(piece.size());
        }
    }

    /// True once all that was posted before has happened; false if `run` ended first.
    [[nodiscard]] bool settle() {
        std::unique_lock lock(mutex_);
        const std::size_t target = posted_;
        changed_.wait_for(lock, kPatience, [&] { return done_ >= target || ended_; });
        return done_ >= target;
    }

    /// The calls made on this manager, in order.
    [[nodiscard]] std::vector<std::string> calls() const {
        const std::lock_guard lock(mutex_);
        return calls_;
    }
    [[nodiscard]] std::optional<HidMatching> matching() const {
        const std::lock_guard lock(mutex_);
        return identifiers_;
    }
    void failOpen() {
        const std::lock_guard lock(mutex_);
        openSucceeds_ = false;
    }

    bool open(const HidMatching& matching, HidCallbacks callbacks) override {
        note("open");
        const std::lock_guard lock(mutex_);
        identifiers_ = matching;
        callbacks_ = std::move(callbacks);
        return openSucceeds_;
    }
    void run() override {
        note("run");
        std::unique_lock lock(mutex_);
        ended_ = false;
        while (changed_.wait(lock, [&] { return stopping_ || !script_.empty(); }), !stopping_) {
            const std::function<void()> step = std::move(script_.front());
            script_.pop_front();
            lock.unlock();
            step();
            lock.lock();
            ++done_;
            changed_.notify_all();
        }
        stopping_ = false;
        ended_ = true;
        changed_.notify_all();
    }
    void stop() override {
        note("stop");
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        changed_.notify_all();
    }

private:
    void note(const char* call) {
        const std::lock_guard lock(mutex_);
        calls_.emplace_back(call);
    }
    void post(std::function<void()> step) {
        const std::lock_guard lock(mutex_);
        script_.push_back(std::move(step));
        ++posted_;
        changed_.notify_all();
    }

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> script_;
    std::size_t posted_ = 0;
    std::size_t done_ = 0;
    std::vector<std::string> calls_;
    std::optional<HidMatching> identifiers_;
    bool openSucceeds_ = true;
    bool stopping_ = false;
    bool ended_ = false;
    // Set before `run` and used inside it only, hence without the mutex.
    HidCallbacks callbacks_;
};

}  // namespace kelvo::test
