#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "DeviceTesting.h"
#include "VirtualHidManager.h"

namespace kelvo {

/// A pedal on a virtual cable, and a host that notes every callback. A callback on another
/// thread than the one inside `run` fails the test.
class Bench {
public:
    explicit Bench(const VirtualHidManager::Options& options = {.record = true});
    ~Bench();

    /// Opens the manager, by default for a KR310, and serves it on a separate thread.
    void start(const HidMatching& wanted = {0x0483, 0x5703, 200});
    /// Stops the manager and waits until `run` has returned.
    void finish();
    void waitUntilRunReturns();

    void awaitArrivals(std::size_t count);
    void awaitRemovals(std::size_t count);
    void awaitInputReports(std::size_t count);
    /// The noted events: "arrival 1", "removal 1" (numbered by device) and "report AA 55", with the counted bytes.
    [[nodiscard]] std::vector<std::string> log();

    /// The device that was announced last, or null.
    [[nodiscard]] std::shared_ptr<HidDevice> device();
    /// Writes a report of the connect request to that device.
    [[nodiscard]] bool sendConnect() { return sendFrame(connectFrame()); }
    /// Writes a frame to that device as a host does. False at the first report that is refused.
    [[nodiscard]] bool sendFrame(const Bytes& frame);

    VirtualKr310 pedal;
    VirtualHidManager manager;
    /// Called with every event after it was noted; to be set before `start`.
    std::function<void(const std::string& event)> onEvent;

private:
    void note(const std::string& event);
    std::string numbered(const char* what, const std::shared_ptr<HidDevice>& device);

    std::mutex mutex_;
    std::vector<std::string> log_;
    std::vector<std::shared_ptr<HidDevice>> devices_;
    /// Written on the thread itself, so that its callbacks may read it.
    std::thread::id runsOn_;
    std::thread loop_;
};

/// A bench whose host knows the pedal.
class ConnectedBench : public Bench {
public:
    explicit ConnectedBench(const VirtualHidManager::Options& options = {.record = true});

    /// Switches faults on by name.
    void fault(std::initializer_list<const char*> texts);
    /// What came after the arrival.
    [[nodiscard]] std::vector<std::string> answers();
};

}  // namespace kelvo
