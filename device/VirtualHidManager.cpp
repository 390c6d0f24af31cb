#include "VirtualHidManager.h"

#include <utility>

#include "VirtualCable.h"

namespace kelvo {

VirtualHidManager::VirtualHidManager(VirtualKr310& pedal) : VirtualHidManager(pedal, Options()) {}

VirtualHidManager::VirtualHidManager(VirtualKr310& pedal, const Options& options)
    : cable_(std::make_shared<VirtualCable>(pedal, options)), identity_(options.identity) {}

VirtualHidManager::~VirtualHidManager() {
    cable_->unplug();
}

bool VirtualHidManager::open(const HidMatching& matching, HidCallbacks callbacks) {
    watching_ = matching == identity_;
    callbacks_ = std::move(callbacks);
    return true;
}

void VirtualHidManager::run() {
    while (true) {
        const VirtualCable::Event event = cable_->next(watching_);
        switch (event.kind) {
            case VirtualCable::EventKind::kStop:
                return;
            case VirtualCable::EventKind::kArrival:
                callbacks_.deviceMatching(event.device);
                break;
            case VirtualCable::EventKind::kRemoval:
                callbacks_.deviceRemoval(event.device);
                break;
            case VirtualCable::EventKind::kInput:
                callbacks_.inputReport(event.device, event.report);
                break;
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
