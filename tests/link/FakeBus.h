#pragma once

#include <umockdev.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace kelvo {

/// The attributes of a usb_device, as sysfs shows them.
struct UsbIds {
    std::string vendor = "0483";
    std::string product = "5703";
    std::string release = "00c8";
};

/// What a node answers to one read or write: an errno value, or else a count or the bytes of a report.
struct Answer {
    int error = 0;
    long count = 0;
    std::vector<std::uint8_t> bytes = {};
};

/// Replaces the kernel at one node and gives prepared answers, one per call. What is not prepared is
/// answered with EIO.
class NodeScript {
public:
    NodeScript(std::deque<Answer> toWrites, std::deque<Answer> toReads);
    ~NodeScript();
    NodeScript(const NodeScript&) = delete;
    NodeScript& operator=(const NodeScript&) = delete;

    /// Writes seen so far.
    int writes() const;
    /// The bytes of the latest write.
    std::vector<std::uint8_t> lastWrite() const;

private:
    friend class FakeBus;
    static gboolean onWrite(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer self);
    static gboolean onRead(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer self);

    mutable std::mutex mutex_;
    std::deque<Answer> toWrites_;
    std::deque<Answer> toReads_;
    int writes_ = 0;
    std::vector<std::uint8_t> lastWrite_;
};

/// USB devices in a sysfs, a /dev and a udev of the test's own. Device `number` has the node /dev/hidraw<number>; the
/// node is the one end of a pseudo-terminal, its cable the other. Every device gets its own number, and stays in
/// sysfs when it is unplugged.
class FakeBus {
public:
    FakeBus();
    ~FakeBus();
    FakeBus(const FakeBus&) = delete;
    FakeBus& operator=(const FakeBus&) = delete;

    /// Lets `script` answer for the node; before its device comes.
    void setScript(int number, NodeScript& script);

    /// The device is there, and udev tells those who listen already.
    void plug(int number, const UsbIds& ids = {});
    /// A hidraw node that belongs to no USB device.
    void plugWithoutUsbDevice(int number);
    /// The pedal with another node of its interface than hidraw's.
    void plugWithHiddev(int number);
    /// A "node" that is a plain file.
    void plugPlainFile(int number);

    /// udev reports the node again: "add", "change" or "remove".
    void sendEvent(int number, const char* action);
    /// udev tells that the device has gone.
    void unplug(int number) { sendEvent(number, "remove"); }
    /// The device's place in sysfs has gone, and udev has not told. Its node stays, as if another device had it now.
    void loseFromSysfs(int number);
    /// The node meets its end before udev tells.
    void cut(int number);

    /// Puts bytes where the node is read.
    void send(int number, const std::vector<std::uint8_t>& bytes);
    /// Waits for `count` bytes written to the node.
    std::vector<std::uint8_t> receive(int number, std::size_t count);

    /// Called before every change: umockdev 0.17 mixes up its paths when two threads use libudev at once, so whatever
    /// watches the bus on a thread has to be waiting.
    std::function<void()> settle = [] {};

    /// Where the node is in the real file system.
    std::string realNode(int number) const;
    /// Lets every user read the bus's files. The nodes keep their own permissions.
    void openToAll();

private:
    std::string rootDir() const;
    int cable(int number);
    void add(const std::string& description);

    UMockdevTestbed* testbed_;
    std::vector<UMockdevIoctlBase*> handlers_;
};

}  // namespace kelvo
