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

/// True from the first matching device's arrival until that device is removed. Written on the HID thread, read on any.
extern std::atomic<bool> isOpenDevice;

/// Looks for the device with `manager` and serves it. Returns after the device has been removed, which calls
/// `quitWindow`, or after somebody else has stopped the manager; no device is open then. HID thread.
void OpenHidDevice(HidManager& manager, const std::function<void()>& quitWindow);

/// Why the last device that was found could not be used; empty when there was none. Any thread.
[[nodiscard]] std::string unusableDevice();

/// Takes exactly n received bytes into destination, or none at all and returns false. Receive thread.
[[nodiscard]] bool HID_ReadData(std::uint32_t n, std::uint8_t* destination);

/// Sends n bytes as 64-byte output reports: a count byte, then up to 63 bytes. The bytes of a report that
/// follow the counted ones are left from earlier reports. Returns false when no device is open or at the first report
/// that is refused; the rest is then not sent. Any thread; one call's reports are never mixed with another's.
bool HID_WreteData(const std::uint8_t* data, std::uint32_t n);

}  // namespace kelvo
