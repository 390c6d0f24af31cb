#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "UsbIp.h"

namespace kelvo {

/// The number of both interrupt endpoints of the virtual KR310. Those of a real one are unknown.
inline constexpr std::uint8_t kUsbReportEndpoint = 1;

/// The answer to a control transfer on endpoint 0: the bytes of an IN transfer, at most as many as the setup requests,
/// or no bytes for an OUT transfer. Returns nothing for an unsupported request, which stalls.
///
/// Supported are the requests for enumeration as a HID device: the device, configuration, string and report
/// descriptors, SET_CONFIGURATION of 0 and 1, and SET_IDLE.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> answerControl(const UsbSetup& setup);

}  // namespace kelvo
