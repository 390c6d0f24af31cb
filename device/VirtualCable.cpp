#include "VirtualCable.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelvo {
namespace {

class VirtualHidDevice : public HidDevice {
public:
    explicit VirtualHidDevice(std::shared_ptr<VirtualCable> cable) : cable_(std::move(cable)) {}

    bool setReport(std::span<const std::uint8_t, kReportSize> report) override { return cable_->send(this, report); }

private:
    const std::shared_ptr<VirtualCable> cable_;
};

}  // namespace

void VirtualCable::plug() {
    const std::lock_guard lock(mutex_);
    if (attached_) {
        return;
    }
    pedal_.powerUp();
    attached_ = std::make_shared<VirtualHidDevice>(shared_from_this());
    recordChanged();
}

void VirtualCable::unplug() {
    const std::lock_guard lock(mutex_);
    detach();
}

void VirtualCable::detach() {
    attached_.reset();
    pending_.clear();
    recordChanged();
}

void VirtualCable::recordChanged() {
    activity_.pendingReports = pending_.size() + (delivering_ ? 1 : 0);
    changed_.notify_all();
}

bool VirtualCable::send(const HidDevice* device, std::span<const std::uint8_t, kReportSize> report) {
    std::unique_lock lock(mutex_);
    if (!takesReport(device, lock)) {
        ++activity_.refusedReports;
        recordChanged();
        return false;
    }
    const Clock::time_point taken = Clock::now();
    nextOutput_ = taken + options_.wirePace;
    lock.unlock();
    VirtualKr310::Reaction reaction = pedal_.receive(report);
    lock.lock();
    if (options_.record) {
        std::ranges::copy(report, activity_.outputReports.emplace_back().begin());
        std::ranges::move(reaction.changes, std::back_inserter(activity_.changes));
    }
    if (attached_.get() == device) {
        for (InputReport& input : reaction.reports) {
            pending_.emplace(taken + input.due, std::move(input.bytes));
        }
    }
    recordChanged();
    return true;
}

bool VirtualCable::takesReport(const HidDevice* device, std::unique_lock<std::mutex>& lock) {
    const auto gone = [&] { return attached_.get() != device; };
    if (changed_.wait_until(lock, nextOutput_, gone)) {
        return false;
    }
    const VirtualKr310::Delivery delivery = pedal_.deliverNext();
    if (delivery == VirtualKr310::Delivery::Unplugged) {
        detach();
    }
    return delivery == VirtualKr310::Delivery::Accepted && !gone();
}

VirtualCable::Event VirtualCable::next(bool watching) {
    std::unique_lock lock(mutex_);
    while (true) {
        if (std::exchange(stopping_, false)) {
            announced_.reset();
            return {};
        }
        if (announced_ && announced_ != attached_) {
            return {EventKind::Removal, std::exchange(announced_, nullptr), {}};
        }
        if (watching && attached_ && !announced_) {
            announced_ = attached_;
            return {EventKind::Arrival, announced_, {}};
        }
        if (!announced_ || pending_.empty()) {
            changed_.wait(lock);
            continue;
        }
        const Clock::time_point due = std::max(pending_.begin()->first, nextInput_);
        if (Clock::now() < due) {
            changed_.wait_until(lock, due);
            continue;
        }
        nextInput_ = Clock::now() + options_.wirePace;
        delivering_ = true;
        Event event{EventKind::Input, announced_, std::move(pending_.begin()->second)};
        pending_.erase(pending_.begin());
        return event;
    }
}

void VirtualCable::served(EventKind kind) {
    const std::lock_guard lock(mutex_);
    activity_.arrivals += kind == EventKind::Arrival ? 1 : 0;
    activity_.removals += kind == EventKind::Removal ? 1 : 0;
    activity_.inputReports += kind == EventKind::Input ? 1 : 0;
    delivering_ = false;
    recordChanged();
}

void VirtualCable::stop() {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    recordChanged();
}

VirtualCable::Activity VirtualCable::activity() const {
    const std::lock_guard lock(mutex_);
    return activity_;
}

bool VirtualCable::waitFor(const std::function<bool(const Activity&)>& wanted,
                           std::chrono::milliseconds timeout) const {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, timeout, [&] { return wanted(activity_); });
}

}  // namespace kelvo
