#include "RVHidClass.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <span>
#include <utility>

#include "CircleBuffer.h"

namespace kelvo {

std::atomic<bool> isOpenDevice{false};

namespace {

constexpr std::uint8_t kReportPayload = kReportSize - 1;  // byte 0 of a report counts the frame bytes that follow

std::mutex handleMutex;
std::shared_ptr<HidDevice> DeviceHandle;  // guarded by handleMutex
std::string unusableReason;               // guarded by handleMutex

std::shared_ptr<HidDevice> deviceHandle() {
    const std::lock_guard lock(handleMutex);
    return DeviceHandle;
}

void setDeviceHandle(std::shared_ptr<HidDevice> device) {
    const std::lock_guard lock(handleMutex);
    DeviceHandle.swap(device);  // the old device is destroyed after the lock is released
}

void openDevice(const std::shared_ptr<HidDevice>& device) {
    setDeviceHandle(device);
    isOpenDevice = true;
}

void closeDevice() {
    isOpenDevice = false;
    setDeviceHandle(nullptr);
}

void Handle_DeviceMatchingCallback(const std::shared_ptr<HidDevice>& device) {
    if (!isOpenDevice) {
        openDevice(device);
    }
}

void Handle_DeviceRemovalCallback(HidManager& manager, const std::function<void()>& quitWindow,
                                  const std::shared_ptr<HidDevice>& device) {
    if (!isOpenDevice || device != deviceHandle()) {
        return;
    }
    closeDevice();
    manager.stop();
    quitWindow();
}

void keepReason(const std::string& reason) {
    const std::lock_guard lock(handleMutex);
    unusableReason = reason;
}

void deviceReportCallback(const std::shared_ptr<HidDevice>& device, std::span<const std::uint8_t> report) {
    if (report.size() != kReportSize || device != deviceHandle()) {
        return;
    }
    putRX_buffer(report.subspan(1).data(), std::min(report[0], kReportPayload));
}

}  // namespace

void OpenHidDevice(HidManager& manager, const std::function<void()>& quitWindow) {
    const HidMatching matching{value_vid, value_pid, value_ver};
    const HidCallbacks callbacks{
        .deviceMatching = Handle_DeviceMatchingCallback,
        .deviceRemoval = [&](const auto& device) { Handle_DeviceRemovalCallback(manager, quitWindow, device); },
        .inputReport = deviceReportCallback,
        .unusable = keepReason,
    };
    keepReason({});
    manager.open(matching, callbacks);  // after a failure no device is found
    manager.run();
    closeDevice();
}

std::string unusableDevice() {
    const std::lock_guard lock(handleMutex);
    return unusableReason;
}

bool HID_ReadData(std::uint32_t n, std::uint8_t* destination) {
    return getRX_buffer(n, destination);
}

bool HID_WreteData(const std::uint8_t* data, std::uint32_t n) {
    static std::mutex frameMutex;
    static Report WriteReportBuffer{};  // guarded by frameMutex; never cleared

    if (!isOpenDevice) {
        return false;  // without waiting for a write that a removed device still blocks
    }
    const std::lock_guard lock(frameMutex);
    // A copy, so that a slow write does not block the removal callback at handleMutex.
    const std::shared_ptr<HidDevice> device = deviceHandle();
    if (!device) {
        return false;
    }
    for (std::uint32_t position = 0; position < n;) {
        const std::uint32_t count = std::min<std::uint32_t>(n - position, kReportPayload);
        WriteReportBuffer[0] = static_cast<std::uint8_t>(count);
        std::copy_n(data + position, count, WriteReportBuffer.begin() + 1);
        if (!device->setReport(WriteReportBuffer)) {
            return false;
        }
        position += count;
    }
    return true;
}

}  // namespace kelvo
