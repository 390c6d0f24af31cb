#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <span>
#include <thread>
#include <vector>

#include "VirtualHidManager.h"
#include "VirtualKr310.h"

namespace kelvo {

/// The least that can send a transfer in the ordered way: the first packet at once, and each further one from a thread
/// that looks every 10 ms whether an answer has come. It knows no frames and no files; it sends reports that somebody
/// else made.
class BareHost {
public:
    /// Plugs the pedal in and waits until it is found.
    explicit BareHost(const VirtualHidManager::Options& cable, VirtualKr310::LineSink sink);
    ~BareHost();
    BareHost(const BareHost&) = delete;
    BareHost& operator=(const BareHost&) = delete;

    /// Sends the first of the packets, and has the thread send the others. They stay where they are until the pedal has
    /// reported its change.
    void transfer(std::span<const std::vector<Report>> packets);

    VirtualKr310 pedal;
    VirtualHidManager manager;

private:
    void send(const std::vector<Report>& packet);
    void tick();

    std::shared_ptr<HidDevice> device_;
    std::span<const std::vector<Report>> packets_;
    std::size_t sent_ = 0;
    std::atomic<std::size_t> answers_ = 0;
    std::atomic<bool> underWay_ = false;
    std::atomic<bool> done_ = false;
    std::thread hidThread_;
    std::thread tickThread_;
};

}  // namespace kelvo
