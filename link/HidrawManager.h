#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "HidManager.h"
#include "HidrawDevice.h"
#include "UniqueFd.h"

struct udev;
struct udev_device;
struct udev_monitor;

namespace kelvo {

struct UdevRelease {
    void operator()(udev* context) const;
    void operator()(udev_device* device) const;
    void operator()(udev_monitor* monitor) const;
};

/// The real cable: the kernel's hidraw nodes, found and watched with udev.
///
/// One device at a time: while one is attached, all others are ignored. The three numbers of the matching are compared
/// with idVendor, idProduct and bcdDevice of the node's usb_device. A node that differs only in its release is
/// unusable. So is one that cannot be opened; the reason then names the node, the error and the rules file that gives
/// access. Reasons go to the callback and to the system log. The node is tried again at its next udev event, so
/// installing the rules and `udevadm trigger` are enough.
///
/// A device that is still attached when `run` returns is closed without a callback; the next `run` finds it again.
///
/// Call `open` and `run` on the same thread. It sleeps in one poll(2) over the udev monitor, the node and a wake-up. A
/// device counts as removed when its node fails or at its udev event, whichever comes first; queued reports are
/// delivered before. If poll(2) fails, the device counts as removed, `run` returns and the log says why.
class HidrawManager final : public HidManager {
public:
    HidrawManager();

    /// Fails, and logs it, when udev does not answer or no descriptor is left.
    bool open(const HidMatching& matching, HidCallbacks callbacks) override;
    void run() override;
    void stop() override;

private:
    [[nodiscard]] bool matches(udev_device& device, const std::string& node) const;
    void cannotUse(const std::string& reason) const;
    void attachPresent();
    void attach(udev_device& device);
    void detach();
    void waitAndServe();
    void deliverReport();
    void serveMonitor();

    HidMatching matching_;
    HidCallbacks callbacks_;

    /// An eventfd, readable after `stop`.
    const UniqueFd wakeUp_;
    std::atomic<bool> stopRequested_ = false;

    std::unique_ptr<udev, UdevRelease> udev_;
    std::unique_ptr<udev_monitor, UdevRelease> monitor_;

    std::shared_ptr<HidrawDevice> device_;
    /// The path of `device_` in sysfs. Unlike the node's name, it is never reused for another device.
    std::string syspath_;
};

}  // namespace kelvo
