#include "FakeBus.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
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

std::string usbPath(int number) {
    return "/devices/pci0000:00/usb1/1-" + std::to_string(number + 1);
}

std::string interfacePath(int number) {
    return usbPath(number) + "/1-" + std::to_string(number + 1) + ":1.0";
}

std::string hidrawPath(int number) {
    return interfacePath(number) + "/0003:0483:5703.0001/hidraw/hidraw" + std::to_string(number);
}

std::string nodeOf(int number) {
    return "/dev/hidraw" + std::to_string(number);
}

std::string usbDevice(int number, const UsbIds& ids) {
    return "P: " + usbPath(number) + "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nA: idVendor=" + ids.vendor +
           "\\n\nA: idProduct=" + ids.product + "\\n\nA: bcdDevice=" + ids.release + "\\n\n\n";
}

std::string hidrawNode(int number, const std::string& content = "") {
    const std::string name = "hidraw" + std::to_string(number);
    return "P: " + interfacePath(number) + "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_interface\n\nP: " + hidrawPath(number) +
           "\nN: " + name + content + "\nE: SUBSYSTEM=hidraw\nE: DEVNAME=/dev/" + name + "\n\n";
}

Answer take(std::deque<Answer>& answers) {
    if (answers.empty()) {
        return {.error = EIO};
    }
    Answer answer = std::move(answers.front());
    answers.pop_front();
    return answer;
}

}  // namespace

NodeScript::NodeScript(std::deque<Answer> toWrites, std::deque<Answer> toReads)
    : toWrites_(std::move(toWrites)), toReads_(std::move(toReads)) {}

NodeScript::~NodeScript() {
    const std::lock_guard lock(mutex_);
}

int NodeScript::writes() const {
    const std::lock_guard lock(mutex_);
    return writes_;
}

std::vector<std::uint8_t> NodeScript::lastWrite() const {
    const std::lock_guard lock(mutex_);
    return lastWrite_;
}

gboolean NodeScript::onWrite(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer self) {
    auto& script = *static_cast<NodeScript*>(self);
    const std::lock_guard lock(script.mutex_);
    ++script.writes_;
    const UMockdevIoctlData* const data = umockdev_ioctl_client_get_arg(client);
    script.lastWrite_.assign(data->data, data->data + data->data_len);
    const Answer answer = take(script.toWrites_);
    umockdev_ioctl_client_complete(client, answer.error != 0 ? -1 : answer.count, answer.error);
    return TRUE;
}

gboolean NodeScript::onRead(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer self) {
    auto& script = *static_cast<NodeScript*>(self);
    const std::lock_guard lock(script.mutex_);
    Answer answer = take(script.toReads_);
    const auto length = static_cast<int>(answer.bytes.size());
    if (length > 0) {
        umockdev_ioctl_data_update(umockdev_ioctl_client_get_arg(client), 0, answer.bytes.data(), length);
    }
    umockdev_ioctl_client_complete(client, answer.error != 0 ? -1 : length, answer.error);
    return TRUE;
}

FakeBus::FakeBus() : testbed_(umockdev_testbed_new()) {
    // Its own and GLib's thread open descriptors while they start, and end the process when there is none.
    waitUntilThreadsAreIn(SYS_ppoll, 2);
}

FakeBus::~FakeBus() {
    g_object_unref(testbed_);
    std::ranges::for_each(handlers_, g_object_unref);
}

void FakeBus::setScript(int number, NodeScript& script) {
    // The answers come on umockdev's thread.
    const std::lock_guard lock(script.mutex_);
    UMockdevIoctlBase* const handler = umockdev_ioctl_base_new();
    handlers_.push_back(handler);
    g_signal_connect_data(handler, "handle-write", G_CALLBACK(NodeScript::onWrite), &script, nullptr, {});
    g_signal_connect_data(handler, "handle-read", G_CALLBACK(NodeScript::onRead), &script, nullptr, {});
    if (umockdev_testbed_attach_ioctl(testbed_, nodeOf(number).c_str(), handler, nullptr) == FALSE) {
        throw std::runtime_error("no script for " + nodeOf(number));
    }
}

void FakeBus::add(const std::string& description) {
    settle();
    if (umockdev_testbed_add_from_string(testbed_, description.c_str(), nullptr) == FALSE) {
        throw std::runtime_error("not a device: " + description);
    }
}

void FakeBus::plug(int number, const UsbIds& ids) {
    add(usbDevice(number, ids) + hidrawNode(number));
}

void FakeBus::loseFromSysfs(int number) {
    std::filesystem::remove_all(rootDir() + "/sys" + hidrawPath(number));
}

void FakeBus::plugWithoutUsbDevice(int number) {
    add(hidrawNode(number));
}

void FakeBus::plugWithHiddev(int number) {
    const std::string name = "hiddev" + std::to_string(number);
    add(usbDevice(number, {}) + "P: " + interfacePath(number) +
        "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_interface\n\nP: " + interfacePath(number) + "/usbmisc/" + name +
        "\nN: " + name + "\nE: SUBSYSTEM=usbmisc\nE: DEVNAME=/dev/" + name + "\n\n");
}

void FakeBus::plugPlainFile(int number) {
    add(usbDevice(number, {}) + hidrawNode(number, "=00"));
}

void FakeBus::sendEvent(int number, const char* action) {
    settle();
    umockdev_testbed_uevent(testbed_, ("/sys" + hidrawPath(number)).c_str(), action);
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

std::vector<std::uint8_t> FakeBus::receive(int number, std::size_t count) {
    std::vector<std::uint8_t> bytes(count);
    for (std::size_t have = 0; have < count;) {
        const ssize_t more = ::read(cable(number), &bytes[have], count - have);
        if (more <= 0) {
            throw std::runtime_error("nothing comes out of " + nodeOf(number));
        }
        have += static_cast<std::size_t>(more);
    }
    return bytes;
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

void FakeBus::openToAll() {
    const auto root = std::filesystem::path(realNode(0)).parent_path().parent_path();
    std::filesystem::permissions(root, std::filesystem::perms(0755));
    for (const auto& socket : std::filesystem::directory_iterator(root / "ioctl")) {
        std::filesystem::permissions(socket, std::filesystem::perms(0777));
    }
}

}  // namespace kelvo
