#include "FakeBus.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "SleepingThread.h"
#include "UniqueFd.h"

// GLib, libudev and umockdev are built without ThreadSanitizer, so it cannot see their locks.
// The name is the sanitizer's. NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __tsan_default_suppressions() {
    return "called_from_lib:libglib-2.0.so\ncalled_from_lib:libgobject-2.0.so\ncalled_from_lib:libgio-2.0.so\n"
           "called_from_lib:libumockdev.so\ncalled_from_lib:libumockdev-preload.so\ncalled_from_lib:libudev.so\n";
}

namespace kelvo {
namespace {

std::string nameOf(int number) {
    return "hidraw" + std::to_string(number);
}

std::string nodeOf(int number) {
    return "/dev/" + nameOf(number);
}

std::string usbPath(int number) {
    return "/devices/pci0000:00/usb1/1-" + std::to_string(number + 1);
}

std::string interfacePath(int number) {
    return usbPath(number) + "/1-" + std::to_string(number + 1) + ":1.0";
}

std::string nodePath(int number, const std::string& subsystem = UsbDevice().subsystem) {
    return interfacePath(number) + "/0003:0483:5703.0001/" + subsystem + "/" + nameOf(number);
}

void complete(UMockdevIoctlClient* client, std::deque<Answer>& answers) {
    Answer answer{.error = EIO};
    if (!answers.empty()) {
        answer = std::move(answers.front());
        answers.pop_front();
    }
    if (!answer.bytes.empty()) {
        umockdev_ioctl_data_update(umockdev_ioctl_client_get_arg(client), 0, answer.bytes.data(),
                                   static_cast<int>(answer.bytes.size()));
    }
    umockdev_ioctl_client_complete(client, answer.result, answer.error);
}

}  // namespace

FakeBus::FakeBus() : testbed_(umockdev_testbed_new()) {
    // Its own and GLib's thread open descriptors while they start, and end the process when there is none.
    waitUntilThreadsAreIn(SYS_ppoll, 2);
}

FakeBus::~FakeBus() {
    g_object_unref(testbed_);
    g_object_unref(handler_);
    const std::lock_guard lock(mutex_);  // ThreadSanitizer cannot see that the thread has ended
}

void FakeBus::setAnswers(std::deque<Answer> toWrites, std::deque<Answer> toReads) {
    const std::lock_guard lock(mutex_);
    toWrites_ = std::move(toWrites);
    toReads_ = std::move(toReads);
    g_signal_connect_data(handler_, "handle-write", G_CALLBACK(onWrite), this, nullptr, {});
    g_signal_connect_data(handler_, "handle-read", G_CALLBACK(onRead), this, nullptr, {});
    if (umockdev_testbed_attach_ioctl(testbed_, nodeOf(0).c_str(), handler_, nullptr) == FALSE) {
        throw std::runtime_error("no answers for " + nodeOf(0));
    }
}

gboolean FakeBus::onWrite(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer self) {
    auto& bus = *static_cast<FakeBus*>(self);
    const std::lock_guard lock(bus.mutex_);
    const UMockdevIoctlData* const data = umockdev_ioctl_client_get_arg(client);
    bus.written_.emplace_back(data->data, data->data + data->data_len);
    complete(client, bus.toWrites_);
    return TRUE;
}

gboolean FakeBus::onRead(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer self) {
    auto& bus = *static_cast<FakeBus*>(self);
    const std::lock_guard lock(bus.mutex_);
    complete(client, bus.toReads_);
    return TRUE;
}

std::vector<std::vector<std::uint8_t>> FakeBus::written() const {
    const std::lock_guard lock(mutex_);
    return written_;
}

void FakeBus::plug(int number, const UsbDevice& device) {
    std::string text;
    if (device.isOnUsb) {
        text = "P: " + usbPath(number) + "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nA: idVendor=" + device.vendor +
               "\\n\nA: idProduct=" + device.product + "\\n\nA: bcdDevice=" + device.release + "\\n\n\n";
    }
    text += "P: " + interfacePath(number) + "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_interface\n\n";
    text += "P: " + nodePath(number, device.subsystem) + "\nN: " + nameOf(number) +
            (device.isNodePlainFile ? "=00" : "") + "\nE: SUBSYSTEM=" + device.subsystem +
            "\nE: DEVNAME=" + nodeOf(number) + "\n\n";
    settle();
    if (umockdev_testbed_add_from_string(testbed_, text.c_str(), nullptr) == FALSE) {
        throw std::runtime_error("not a device: " + text);
    }
}

void FakeBus::sendEvent(int number, const char* action) {
    settle();
    umockdev_testbed_uevent(testbed_, ("/sys" + nodePath(number)).c_str(), action);
}

void FakeBus::loseFromSysfs(int number) {
    std::filesystem::remove_all(rootDir() + "/sys" + nodePath(number));
}

int FakeBus::cable(int number) {
    return umockdev_testbed_get_dev_fd(testbed_, nodeOf(number).c_str());
}

// The test bed closes the cable's descriptor itself in the end, so its number stays taken.
void FakeBus::cut(int number) {
    const UniqueFd nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
    if (dup2(nothing.get(), cable(number)) < 0) {
        throw std::runtime_error("cannot cut " + nodeOf(number));
    }
}

void FakeBus::send(int number, const std::vector<std::uint8_t>& bytes) {
    if (::write(cable(number), bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
        throw std::runtime_error("cannot send to " + nodeOf(number));
    }
}

std::string FakeBus::rootDir() const {
    gchar* const path = umockdev_testbed_get_root_dir(testbed_);
    std::string root = path;
    g_free(path);
    return root;
}

std::string FakeBus::realNode(int number) const {
    return rootDir() + nodeOf(number);
}

}  // namespace kelvo
