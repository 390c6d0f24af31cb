#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <thread>
#include <vector>

#include "RVHidClass.h"
#include "ScriptedHid.h"

namespace kelvo::test {

using Bytes = std::vector<std::uint8_t>;

/// Writes a whole frame; what the link says.
inline bool write(const Bytes& bytes) {
    return HID_WreteData(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

/// The link on a separate HID thread, with a scripted manager and one device, for the length of a test.
class ScriptedLink {
public:
    ScriptedLink() : thread_([this] { OpenHidDevice(manager, [this] { ++removals; }); }) {}
    ~ScriptedLink() { close(); }
    ScriptedLink(const ScriptedLink&) = delete;
    ScriptedLink& operator=(const ScriptedLink&) = delete;

    /// Plugs the device in; it is open afterwards.
    [[nodiscard]] bool attach() {
        manager.attach(device);
        return manager.settle() && isOpenDevice;
    }
    /// Unplugs the device and waits for the HID thread's end; true if no device is open then.
    [[nodiscard]] bool detach() {
        manager.detach(device);
        thread_.join();
        return !isOpenDevice;
    }
    /// Lets the device send `bytes`; they are in the ring afterwards.
    [[nodiscard]] bool receive(std::span<const std::uint8_t> bytes) {
        manager.deliverBytes(device, bytes);
        return manager.settle();
    }
    /// Stops the manager and waits for the HID thread's end.
    void close() {
        if (thread_.joinable()) {
            device->releaseReports();
            manager.stop();
            thread_.join();
        }
    }

    ScriptedHidManager manager;
    /// How often the link has said that the device is gone.
    std::atomic<int> removals{0};
    const std::shared_ptr<ScriptedDevice> device = std::make_shared<ScriptedDevice>();

private:
    std::thread thread_;  // last: it uses the members above
};

}  // namespace kelvo::test
