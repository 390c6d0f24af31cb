#include "RunningManager.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <future>
#include <utility>

#include "SleepingThread.h"

namespace kelvo {

RunningManager::RunningManager(FakeBus& bus)
    : bus_(bus), log_([this](std::string_view line) { noteLog(std::string(line)); }) {
    isOpen = open();
    bus_.settle = [this] { waitUntilIdle(); };
}

RunningManager::~RunningManager() {
    bus_.settle = [] {};
    manager.stop();
    join();
}

bool RunningManager::open() {
    return manager.open(
        {.vendorId = 0x0483, .productId = 0x5703, .versionNumber = 200},
        {.deviceMatching =
             [this](const std::shared_ptr<HidDevice>& device) {
                 {
                     const std::lock_guard lock(mutex_);
                     device_ = device;
                 }
                 noteCallback("arrived");
             },
         .deviceRemoval =
             [this](const std::shared_ptr<HidDevice>& device) {
                 noteCallback(device == this->device() ? "removed" : "another device removed");
             },
         .inputReport =
             [this](const std::shared_ptr<HidDevice>& device, std::span<const std::uint8_t> report) {
                 noteCallback((device == this->device() ? "report of " : "another device's report of ") +
                              std::to_string(report.size()) + " bytes beginning with " +
                              std::to_string(report.front()));
             }});
}

void RunningManager::start(std::function<void()> prepare) {
    std::promise<pid_t> id;
    thread_ = std::thread([this, &id, prepare = std::move(prepare)] {
        if (prepare) {
            prepare();
        }
        runsOn_ = std::this_thread::get_id();
        id.set_value(gettid());
        manager.run();
    });
    threadId_ = id.get_future().get();
}

void RunningManager::waitUntilIdle(long systemCall) const {
    if (runsOn_ != std::thread::id() && runsOn_ != std::this_thread::get_id()) {
        waitUntilThreadIsIn(systemCall, threadId_);
    }
}

void RunningManager::interrupt() const {
    static std::atomic<bool> handled;
    handled = false;
    std::signal(SIGUSR1, [](int) { handled = true; });
    tgkill(getpid(), threadId_, SIGUSR1);
    waitUntil([] { return handled.load(); }, "the signal");
}

void RunningManager::join() {
    if (thread_.joinable()) {
        thread_.join();
        runsOn_ = {};
    }
}

std::vector<std::string> RunningManager::waitFor(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(20), [&] { return events_.size() >= count; });
    return events_;
}

std::shared_ptr<HidDevice> RunningManager::device() {
    const std::lock_guard lock(mutex_);
    return device_;
}

void RunningManager::forgetDevice() {
    const std::lock_guard lock(mutex_);
    device_.reset();
}

void RunningManager::noteCallback(const std::string& event) {
    EXPECT_EQ(std::this_thread::get_id(), runsOn_);
    note(event);
}

void RunningManager::noteLog(const std::string& line) {
    if (line.find(" is open: ") == std::string::npos) {
        note("log: " + line);
        return;
    }
    const std::lock_guard lock(mutex_);
    opened_.push_back(line);
}

std::vector<std::string> RunningManager::opened() {
    const std::lock_guard lock(mutex_);
    return opened_;
}

void RunningManager::note(const std::string& event) {
    {
        const std::lock_guard lock(mutex_);
        events_.push_back(event);
    }
    changed_.notify_all();
    if (onEvent) {
        onEvent(event);
    }
}

FoundPedal::PluggedBus::PluggedBus(NodeScript* script) {
    if (script != nullptr) {
        setScript(0, *script);
    }
    plug(0);
}

FoundPedal::FoundPedal(NodeScript* script) : bus(script) {
    link.start();
    link.waitFor(1);
}

}  // namespace kelvo
