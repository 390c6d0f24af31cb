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
/// One device at a time: while one is attached every other is ignored, its arrival and its removal. The three numbers
/// of the matching are compared with idVendor, idProduct and bcdDevice of the node's usb_device; a node with another
/// release alone is reported as unusable. A node that cannot be opened counts as no device and is reported, too: which,
/// why, and which rule file gives access. Both go to the system log. It is tried again at its next udev event, so
/// installing the rules and `udevadm trigger` are enough.
///
/// A device that is still attached when `run` returns is let go without a callback; the next `run` finds it anew.
///
/// `open` and `run` belong to one thread. That thread sleeps in one poll(2) over the udev monitor, the node and a
/// wake-up; nothing else wakes it. A device is removed when its node ends or with its udev event, whichever comes
/// first; reports that are still queued are delivered before. A poll(2) that fails ends the device and the `run`, with
/// a line in the log.
class HidrawManager final : public HidManager {
public:
    HidrawManager();

    /// Fails, with a line in the system log, when udev does not answer or no descriptor is left.
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

    /// An eventfd; readable from `stop` until that is noticed.
    const UniqueFd wakeUp_;
    std::atomic<bool> stopRequested_ = false;

    std::unique_ptr<udev, UdevRelease> udev_;
    std::unique_ptr<udev_monitor, UdevRelease> monitor_;

    std::shared_ptr<HidrawDevice> device_;
    /// Where `device_` hangs in sysfs. Unlike the node's name it is not used again for the next device.
    std::string syspath_;
};

}  // namespace kelvo
