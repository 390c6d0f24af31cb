#include "VirtualHidManager.h"

#include <utility>

namespace kelvo {

bool VirtualHidManager::open(const HidMatching& matching, HidCallbacks callbacks) {
    watching_ = matching == identity_;
    callbacks_ = std::move(callbacks);
    return true;
}

void VirtualHidManager::run() {
    while (true) {
        const VirtualCable::Event event = cable_->next(watching_);
        switch (event.kind) {
            case VirtualCable::EventKind::Stop:
                return;
            case VirtualCable::EventKind::Arrival:
                callbacks_.deviceMatching(event.device);
                break;
            case VirtualCable::EventKind::Removal:
                callbacks_.deviceRemoval(event.device);
                break;
            case VirtualCable::EventKind::Input:
                callbacks_.inputReport(event.device, event.report);
                break;
        }
        cable_->served(event.kind);
    }
}

}  // namespace kelvo
