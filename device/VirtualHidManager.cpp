#include "VirtualHidManager.h"

#include <utility>

#include "VirtualCable.h"

namespace kelvo {

VirtualHidManager::VirtualHidManager(VirtualKr310& pedal) : VirtualHidManager(pedal, Options()) {}

VirtualHidManager::VirtualHidManager(VirtualKr310& pedal, const Options& options)
    : cable_(std::make_shared<VirtualCable>(pedal, options.wirePace)), identity_(options.identity) {}

VirtualHidManager::~VirtualHidManager() {
    cable_->unplug();
}

void VirtualHidManager::setDeviceMatching(const HidMatching& matching) {
    matching_ = matching;
}

void VirtualHidManager::registerDeviceMatchingCallback(DeviceCallback callback) {
    arrival_ = std::move(callback);
}

void VirtualHidManager::registerDeviceRemovalCallback(DeviceCallback callback) {
    removal_ = std::move(callback);
}

void VirtualHidManager::registerInputReportCallback(InputReportCallback callback) {
    input_ = std::move(callback);
}

bool VirtualHidManager::open() {
    opened_ = true;
    return true;
}

void VirtualHidManager::run() {
    const bool watching = opened_ && matching_ == identity_;
    while (true) {
        const VirtualCable::Event event = cable_->next(watching);
        if (event.kind == VirtualCable::EventKind::kStop) {
            return;
        }
        if (event.kind == VirtualCable::EventKind::kArrival && arrival_) {
            arrival_(event.device);
        }
        if (event.kind == VirtualCable::EventKind::kRemoval && removal_) {
            removal_(event.device);
        }
        if (event.kind == VirtualCable::EventKind::kInput && input_) {
            input_(event.device, event.report);
        }
        cable_->served(event.kind);
    }
}

void VirtualHidManager::stop() {
    cable_->stop();
}

void VirtualHidManager::plug() {
    cable_->plug();
}

void VirtualHidManager::unplug() {
    cable_->unplug();
}

VirtualHidManager::Activity VirtualHidManager::activity() const {
    return cable_->activity();
}

bool VirtualHidManager::waitFor(const std::function<bool(const Activity&)>& wanted,
                                std::chrono::milliseconds timeout) const {
    return cable_->waitFor(wanted, timeout);
}

}  // namespace kelvo
