#pragma once

#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <sys/types.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "FakeBus.h"
#include "HidrawManager.h"
#include "LogListener.h"

namespace kelvo {

using Events = std::vector<std::string>;

/// A HidrawManager that looks for the KR310 on a separate thread and records, in order, what it reports:
///
///     "devices cannot ..."                       a line of the log about no device
///     "not open"                                 `open` has failed
///     arrived(0), "unusable: ...", "removed"     the callbacks
///     "report of N bytes beginning with B"
///
/// A callback fails the test on another thread, for another device, or without the line in the log that belongs to it.
class RunningManager {
public:
    explicit RunningManager(FakeBus& bus);
    ~RunningManager();

    /// Starts the thread, which opens the manager and runs it.
    void start();
    /// Waits until the thread, if it runs, sleeps because there is nothing to do; in poll(2), as long as it has
    /// something to watch.
    void waitUntilIdle(long systemCall = SYS_ppoll) const;
    /// Sends the thread a signal; returns when its handler has run.
    void interrupt() const;
    /// Waits for the thread's end. The manager must have been stopped.
    void join();

    /// Waits until there are `count` events, at most 20 s, and returns all there are.
    Events waitFor(std::size_t count);
    Events events() { return waitFor(0); }

    /// The device that arrived last.
    std::shared_ptr<HidDevice> device();
    void forgetDevice();

    /// Called on the manager's thread after each event is recorded.
    std::function<void(const std::string& event)> onEvent;

    HidrawManager manager;

private:
    bool open();
    void note(const std::string& event);

    FakeBus& bus_;
    std::mutex mutex_;
    std::condition_variable changed_;
    Events events_;
    std::shared_ptr<HidDevice> device_;
    std::string lastLine_;  // of the log; the manager's thread only
    test::LogListener log_;
    pid_t threadId_ = 0;
    /// Written on the thread itself, so that its callbacks may read it.
    std::thread::id runsOn_;
    std::thread thread_;
};

/// The event of the arrival of FakeBus's device `number`.
std::string arrived(int number);

/// An empty bus and a manager that is not started.
class HidrawTest : public testing::Test {
protected:
    /// Plugs in device 0 and waits until the manager has found it.
    void findPedal();

    FakeBus bus;
    RunningManager link{bus};
};

}  // namespace kelvo
