#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvo {

/// Size of the unpacker's assembly buffer, and so of every frame that is handed on: LENGTH 1018 plus 6 bytes around it.
inline constexpr std::size_t kFrameBufferSize = 1024;

using FrameView = std::span<const std::uint8_t, kFrameBufferSize>;

/// What the link and the protocol ask of the application.
class AppClass {
public:
    virtual ~AppClass() = default;

    /// Handles one frame whose CRC is good. Earlier frames left the bytes that follow it. The view is only valid during
    /// the call. Receive thread.
    virtual void CMD_CallBack(FrameView frame) = 0;

    /// The device has gone: tells the user and ends the process. Returns at once. Any thread.
    virtual void exitApp() = 0;
};

/// The application, or null before start-up has set it.
inline std::atomic<AppClass*> AppClassPoint{nullptr};

/// Tells the application, if there is one, that the device has gone. HID thread.
inline void quitWindow() {
    if (AppClass* const app = AppClassPoint.load()) {
        app->exitApp();
    }
}

}  // namespace kelvo
