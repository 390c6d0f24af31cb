#include "BareHost.h"

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <utility>

namespace kelvo {

BareHost::BareHost(const VirtualHidManager::Options& cable, VirtualKr310::LineSink sink)
    : pedal(Kr310Memory::factory(), std::move(sink)), manager(pedal, cable) {
    manager.open(kKr310Identity, {.deviceMatching = [this](const auto& device) { device_ = device; },
                                  .inputReport = [this](const auto&, auto) { ++answers_; }});
    manager.plug();
    hidThread_ = std::thread([this] { manager.run(); });
    static_cast<void>(manager.waitFor([](const auto& activity) { return activity.arrivals > 0; }));
    tickThread_ = std::thread([this] { tick(); });
}

BareHost::~BareHost() {
    done_ = true;
    tickThread_.join();
    manager.stop();
    hidThread_.join();
}

void BareHost::transfer(std::span<const std::vector<Report>> packets) {
    packets_ = packets;
    sent_ = 1;
    answers_ = 0;
    underWay_ = true;
    send(packets_[0]);
}

void BareHost::send(const std::vector<Report>& packet) {
    for (const Report& report : packet) {
        if (!device_->setReport(report)) {
            std::cerr << "a report was refused\n";
            std::_Exit(EXIT_FAILURE);
        }
    }
}

void BareHost::tick() {
    while (!done_) {
        if (underWay_ && answers_ >= sent_) {
            const std::size_t next = sent_++;
            // Before the send, because the pedal's change may start the next transfer.
            underWay_ = sent_ < packets_.size();
            send(packets_[next]);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

}  // namespace kelvo
