#pragma once

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

/// A HidrawManager that looks for the KR310 on a separate thread and records, in order, what it reports:
/// "arrived", "report of N bytes beginning with B", "removed" (of the device that arrived), and "log: " and each line
/// of the system log. A callback on another thread than that one fails the test. Stops and ends with the object.
class RunningManager {
public:
    explicit RunningManager(FakeBus& bus);
    ~RunningManager();

    /// Opens the manager again.
    bool open();

    /// Starts the thread; `prepare` is called on it first.
    void start(std::function<void()> prepare = {});
    /// Waits until the thread, if it runs, sleeps because there is nothing to do; in poll(2), as long as it has
    /// something to watch.
    void waitUntilIdle(long systemCall = SYS_ppoll) const;
    /// Sends the thread a signal; returns when its handler has run.
    void interrupt() const;
    /// Waits for the thread's end. The manager must have been stopped.
    void join();

    /// Waits until there are `count` events, at most 20 s, and returns all there are.
    std::vector<std::string> waitFor(std::size_t count);
    std::vector<std::string> events() { return waitFor(0); }

    /// The log's lines about nodes that were opened. They are no events, since every case would have them.
    std::vector<std::string> opened();

    /// The device that arrived last.
    std::shared_ptr<HidDevice> device();
    /// Keeps no device any more.
    void forgetDevice();

    /// Called on the manager's thread after each event is written down.
    std::function<void(const std::string& event)> onEvent;

    HidrawManager manager;
    /// What the constructor's `open` returned.
    bool isOpen = false;

private:
    void note(const std::string& event);
    void noteLog(const std::string& line);
    void noteCallback(const std::string& event);

    FakeBus& bus_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> events_;
    std::vector<std::string> opened_;
    std::shared_ptr<HidDevice> device_;
    test::LogListener log_;
    pid_t threadId_ = 0;
    /// Written on the thread itself, so that its callbacks may read it.
    std::thread::id runsOn_;
    std::thread thread_;
};

/// A bus with one pedal, whose node `script` answers for if it is given, and a running manager that has found it.
class FoundPedal {
    struct PluggedBus : FakeBus {
        explicit PluggedBus(NodeScript* script);
    };

public:
    explicit FoundPedal(NodeScript* script = nullptr);

    PluggedBus bus;
    RunningManager link{bus};
};

}  // namespace kelvo
