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

/// The simplest host that sends a transfer as required: the first packet at once, each further one from a thread that
/// checks every 10 ms for an answer. It knows no frames and no files; it sends recorded reports.
class BareHost {
public:
    /// Plugs the pedal in and waits until the host has found it.
    explicit BareHost(const VirtualHidManager::Options& cable, VirtualKr310::LineSink sink);
    ~BareHost();
    BareHost(const BareHost&) = delete;
    BareHost& operator=(const BareHost&) = delete;

    /// Sends the first packet; the thread sends the others. The packets must live until the pedal has reported its
    /// change.
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
