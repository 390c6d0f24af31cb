#pragma once

#include <umockdev.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace kelvo {

/// A USB device and its node, as sysfs shows them. By default it is the pedal.
struct UsbDevice {
    std::string vendor = "0483";
    std::string product = "5703";
    std::string release = "00c8";
    std::string subsystem = "hidraw";
    bool isNodePlainFile = false;
    bool isOnUsb = true;
};

/// What a node answers to one read or write.
struct Answer {
    int error = 0;
    long result = -1;
    std::vector<std::uint8_t> bytes = {};
};

/// USB devices in a separate sysfs, /dev and udev. Device `number` has the node /dev/hidraw<number>; the node is one
/// end of a pseudo-terminal, its cable the other. Every device gets its own number, and stays in sysfs when it is
/// unplugged.
class FakeBus {
public:
    FakeBus();
    ~FakeBus();
    FakeBus(const FakeBus&) = delete;
    FakeBus& operator=(const FakeBus&) = delete;

    /// Makes node 0 give these answers, one per call, and EIO after them. Call it before the device is plugged in.
    void setAnswers(std::deque<Answer> toWrites, std::deque<Answer> toReads);
    /// The bytes of each write that was answered.
    std::vector<std::vector<std::uint8_t>> written() const;

    /// The device is there, and udev reports it.
    void plug(int number, const UsbDevice& device = {});
    /// udev reports the node again: "add", "change" or "remove".
    void sendEvent(int number, const char* action);
    /// udev reports that the device has gone.
    void unplug(int number) { sendEvent(number, "remove"); }
    /// The device's folder in sysfs has gone, and udev has not reported it. Its node stays, as if another device had
    /// it.
    void loseFromSysfs(int number);
    /// The node fails before udev reports it.
    void cut(int number);

    /// Sends bytes to the reader of the node.
    void send(int number, const std::vector<std::uint8_t>& bytes);

    /// Called before every change: umockdev 0.17 mixes up its paths when two threads use libudev at once, so whatever
    /// watches the bus on a thread has to be waiting.
    std::function<void()> settle = [] {};

    /// The path of the node in the real file system.
    std::string realNode(int number) const;

private:
    static gboolean onWrite(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer self);
    static gboolean onRead(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer self);
    std::string rootDir() const;
    int cable(int number);

    // The answers are given on umockdev's thread, which the test bed starts, so they come before it.
    mutable std::mutex mutex_;
    std::deque<Answer> toWrites_;
    std::deque<Answer> toReads_;
    std::vector<std::vector<std::uint8_t>> written_;
    UMockdevTestbed* const testbed_;
    UMockdevIoctlBase* const handler_ = umockdev_ioctl_base_new();
};

}  // namespace kelvo
