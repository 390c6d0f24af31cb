#include "RunningManager.h"

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <future>
#include <string_view>

#include "SleepingThread.h"

namespace kelvo {

RunningManager::RunningManager(FakeBus& bus)
    : bus_(bus), log_([this](std::string_view line) {
          lastLine_ = line;
          if (line.starts_with("devices cannot")) {
              note(lastLine_);
          }
      }) {
    bus_.settle = [this] { waitUntilIdle(); };
}

RunningManager::~RunningManager() {
    bus_.settle = [] {};
    manager.stop();
    join();
}

bool RunningManager::open() {
    const auto noteOf = [this](const std::shared_ptr<HidDevice>& device, const std::string& event) {
        note(device == this->device() ? event : "another device: " + event);
    };
    HidCallbacks callbacks;
    callbacks.deviceMatching = [this](const auto& device) {
        {
            const std::lock_guard lock(mutex_);
            device_ = device;
        }
        note(lastLine_);
    };
    callbacks.deviceRemoval = [noteOf](const auto& device) { noteOf(device, "removed"); };
    callbacks.inputReport = [noteOf](const auto& device, auto report) {
        noteOf(device, "report of " + std::to_string(report.size()) + " bytes beginning with " +
                           std::to_string(report.front()));
    };
    callbacks.unusable = [this](const std::string& reason) {
        EXPECT_EQ(reason, lastLine_);
        note("unusable: " + reason);
    };
    return manager.open({.vendorId = 0x0483, .productId = 0x5703, .versionNumber = 200}, callbacks);
}

void RunningManager::start() {
    std::promise<pid_t> id;
    thread_ = std::thread([this, &id] {
        runsOn_ = std::this_thread::get_id();
        id.set_value(gettid());
        if (!open()) {
            note("not open");
        }
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

Events RunningManager::waitFor(std::size_t count) {
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

void RunningManager::note(const std::string& event) {
    EXPECT_EQ(std::this_thread::get_id(), runsOn_);
    {
        const std::lock_guard lock(mutex_);
        events_.push_back(event);
    }
    changed_.notify_all();
    if (onEvent) {
        onEvent(event);
    }
}

std::string arrived(int number) {
    return "/dev/hidraw" + std::to_string(number) + " is open: USB device 1-" + std::to_string(number + 1) +
           ", release 00c8";
}

void HidrawTest::findPedal() {
    bus.plug(0);
    link.start();
    link.waitFor(1);
}

}  // namespace kelvo
