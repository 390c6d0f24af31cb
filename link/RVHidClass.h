#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>

#include "HidManager.h"

namespace kelvo {

/// The KR310's identifiers in its USB device descriptor.
inline constexpr std::int64_t value_vid = 0x0483;
inline constexpr std::int64_t value_pid = 0x5703;
inline constexpr std::int64_t value_ver = 200;

/// True from the arrival of the first matching device until its removal. Written on the HID thread, read on any.
extern std::atomic<bool> isOpenDevice;

/// Finds the device with `manager` and serves it. When the device is removed, calls `quitWindow` and returns. Also
/// returns when another thread stops the manager. No device is open afterwards. HID thread.
void OpenHidDevice(HidManager& manager, const std::function<void()>& quitWindow);

/// Why the last unusable device could not be used; empty when there was none. Any thread.
[[nodiscard]] std::string unusableDevice();

/// Moves exactly n received bytes to `destination`, or returns false and moves none. Receive thread.
[[nodiscard]] bool HID_ReadData(std::uint32_t n, std::uint8_t* destination);

/// Sends n bytes as 64-byte output reports: a count byte, then up to 63 bytes. Bytes of a report after the counted ones
/// are left over from earlier reports. Returns false when no device is open or when a report is refused; the remaining
/// ones are then not sent. Any thread; the reports of two calls are never mixed.
bool HID_WreteData(const std::uint8_t* data, std::uint32_t n);

}  // namespace kelvo
