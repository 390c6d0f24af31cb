#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvo {

/// Bytes of the unpacker's assembly buffer and of every frame view: LENGTH 1018 plus 6 bytes around it.
inline constexpr std::size_t kFrameBufferSize = 1024;

using FrameView = std::span<const std::uint8_t, kFrameBufferSize>;

/// What the link and the protocol ask of the application.
class AppClass {
public:
    virtual ~AppClass() = default;

    /// Handles one frame whose CRC is good. The bytes after the frame are left over from earlier frames. The view is
    /// only valid during the call. Receive thread.
    virtual void CMD_CallBack(FrameView frame) = 0;

    /// The device is gone: shows the alert and ends the process. Returns at once. Any thread.
    virtual void exitApp() = 0;
};

/// The application, or null before start-up has set it.
inline std::atomic<AppClass*> AppClassPoint{nullptr};

/// Notifies the application, if there is one, that the device is gone. HID thread.
inline void quitWindow() {
    if (AppClass* const app = AppClassPoint.load()) {
        app->exitApp();
    }
}

}  // namespace kelvo
