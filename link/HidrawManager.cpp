#include "HidrawManager.h"

#include <libudev.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "NSLog.h"

namespace kelvo {
namespace {

constexpr auto kSubsystem = "hidraw";
constexpr std::string_view kRulesFile = "70-kelvo.rules";

/// The longest report that the kernel delivers (its HID_MAX_BUFFER_SIZE).
constexpr std::size_t kLongestReport = 16384;

/// poll(2) ignores this descriptor.
constexpr int kNoFd = -1;

struct EnumerateRelease {
    void operator()(udev_enumerate* list) const { udev_enumerate_unref(list); }
};

using UdevDevice = std::unique_ptr<udev_device, UdevRelease>;

/// udev returns null for a missing text; its view is empty.
std::string_view viewOf(const char* text) {
    return text == nullptr ? std::string_view() : std::string_view(text);
}

/// The USB device that a node belongs to, or null. `device` owns it.
udev_device* usbDeviceOf(udev_device& device) {
    return udev_device_get_parent_with_subsystem_devtype(&device, "usb", "usb_device");
}

/// True when the attribute consists of `number` in hexadecimal digits only.
bool attributeIs(udev_device& device, const char* name, std::int64_t number) {
    const std::string_view text = viewOf(udev_device_get_sysattr_value(&device, name));
    const char* const end = text.data() + text.size();
    std::int64_t value = 0;
    const auto [stop, error] = std::from_chars(text.data(), end, value, 16);
    return error == std::errc() && stop == end && value == number;
}

}  // namespace

void UdevRelease::operator()(udev* context) const {
    udev_unref(context);
}

void UdevRelease::operator()(udev_device* device) const {
    udev_device_unref(device);
}

void UdevRelease::operator()(udev_monitor* monitor) const {
    udev_monitor_unref(monitor);
}

HidrawManager::HidrawManager() : wakeUp_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

bool HidrawManager::open(const HidMatching& matching, HidCallbacks callbacks) {
    matching_ = matching;
    callbacks_ = std::move(callbacks);
    monitor_.reset();
    udev_.reset(udev_new());
    // Events from "kernel" come before the rules have given the user access to the node; those from "udev" come after.
    decltype(monitor_) monitor(udev_ ? udev_monitor_new_from_netlink(udev_.get(), "udev") : nullptr);
    if (!wakeUp_ || !monitor ||
        udev_monitor_filter_add_match_subsystem_devtype(monitor.get(), kSubsystem, nullptr) < 0 ||
        udev_monitor_enable_receiving(monitor.get()) < 0) {
        NSLog("devices cannot be watched: udev does not answer, or no descriptor is left");
        return false;
    }
    monitor_ = std::move(monitor);
    return true;
}

void HidrawManager::run() {
    if (!monitor_) {
        stopRequested_.wait(false);
    }
    if (!stopRequested_) {
        attachPresent();
    }
    while (!stopRequested_.exchange(false)) {
        waitAndServe();
    }
    device_.reset();
}

void HidrawManager::stop() {
    stopRequested_ = true;
    stopRequested_.notify_all();
    eventfd_write(wakeUp_.get(), 1);
}

bool HidrawManager::matches(udev_device& device, const std::string& node) const {
    udev_device* const usb = usbDeviceOf(device);
    if (usb == nullptr || !attributeIs(*usb, "idVendor", matching_.vendorId) ||
        !attributeIs(*usb, "idProduct", matching_.productId)) {
        return false;
    }
    const bool isRelease = attributeIs(*usb, "bcdDevice", matching_.versionNumber);
    if (!isRelease) {
        // Many devices share this vendor and product, so this may not be a pedal at all.
        std::ostringstream line;
        line << node << " has the vendor and product of the pedal, but release "
             << viewOf(udev_device_get_sysattr_value(usb, "bcdDevice")) << " instead of " << std::hex
             << std::setfill('0') << std::setw(4) << matching_.versionNumber;
        cannotUse(line.str());
    }
    return isRelease;
}

void HidrawManager::cannotUse(const std::string& reason) const {
    NSLog(reason);
    callbacks_.unusable(reason);
}

// The monitor has listened since `open`, so no device that arrives during the listing is missed.
void HidrawManager::attachPresent() {
    const std::unique_ptr<udev_enumerate, EnumerateRelease> list(udev_enumerate_new(udev_.get()));
    if (!list || udev_enumerate_add_match_subsystem(list.get(), kSubsystem) < 0 ||
        udev_enumerate_scan_devices(list.get()) < 0) {
        return;
    }
    for (auto* entry = udev_enumerate_get_list_entry(list.get()); entry != nullptr;
         entry = udev_list_entry_get_next(entry)) {
        const UdevDevice device(udev_device_new_from_syspath(udev_.get(), udev_list_entry_get_name(entry)));
        if (device) {
            attach(*device);
        }
    }
}

void HidrawManager::attach(udev_device& device) {
    const std::string node(viewOf(udev_device_get_devnode(&device)));
    if (device_ || node.empty() || !matches(device, node)) {
        return;
    }
    std::string syspath(viewOf(udev_device_get_syspath(&device)));
    try {
        auto opened = std::make_shared<HidrawDevice>(node);
        // The event may be late: its device may be gone, and the next device may have the node's name. A path in sysfs
        // is never reused, so while it exists, the node belongs to this device.
        if (access(syspath.c_str(), F_OK) != 0) {
            return;
        }
        device_ = std::move(opened);
    } catch (const std::runtime_error& failure) {
        cannotUse(node + " cannot be opened: " + failure.what() + " (access is given by " + std::string(kRulesFile) +
                  ")");
        return;
    }
    syspath_ = std::move(syspath);
    // A user with two pedals learns from this which one is in use.
    udev_device& usb = *usbDeviceOf(device);
    std::ostringstream line;
    line << node << " is open: USB device " << viewOf(udev_device_get_sysname(&usb)) << ", release "
         << viewOf(udev_device_get_sysattr_value(&usb, "bcdDevice"));
    NSLog(line.str());
    callbacks_.deviceMatching(device_);
}

void HidrawManager::detach() {
    const auto device = std::exchange(device_, nullptr);
    callbacks_.deviceRemoval(device);
}

void HidrawManager::waitAndServe() {
    std::array<pollfd, 3> fds{{{wakeUp_.get(), POLLIN, 0},
                               {device_ ? device_->fd() : kNoFd, POLLIN, 0},
                               {udev_monitor_get_fd(monitor_.get()), POLLIN, 0}}};
    const auto& [wakeUp, node, monitor] = fds;
    if (poll(fds.data(), fds.size(), -1) < 0) {
        if (errno != EINTR) {
            NSLog("devices cannot be waited for: " + std::generic_category().message(errno));
            if (device_) {
                detach();
            }
            stop();
        }
        return;
    }
    // The node comes first: queued reports must be delivered before the removal, which a failed read reports. The
    // wake-up stays readable meanwhile.
    if (node.revents != 0) {
        deliverReport();
        return;
    }
    if (wakeUp.revents != 0) {
        eventfd_t count = 0;
        eventfd_read(wakeUp_.get(), &count);
    }
    if (monitor.revents != 0) {
        serveMonitor();
    }
}

void HidrawManager::deliverReport() {
    std::array<std::uint8_t, kLongestReport> buffer{};
    if (const auto length = device_->readReport(buffer)) {
        callbacks_.inputReport(device_, std::span(buffer).first(*length));
    } else {
        detach();
    }
}

void HidrawManager::serveMonitor() {
    const UdevDevice device(udev_monitor_receive_device(monitor_.get()));
    if (!device) {
        return;
    }
    if (viewOf(udev_device_get_action(device.get())) != "remove") {
        attach(*device);
    } else if (device_ && viewOf(udev_device_get_syspath(device.get())) == syspath_) {
        // A removed device no longer has its USB parent, but its path in sysfs is still known.
        detach();
    }
}

}  // namespace kelvo
