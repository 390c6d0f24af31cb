#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "UsbIp.h"

namespace kelvo {

/// The number of both interrupt endpoints of the virtual KR310. Nobody has seen those of a real one.
inline constexpr std::uint8_t kUsbReportEndpoint = 1;

/// What the virtual KR310 answers to a control transfer on endpoint 0: the bytes of an IN transfer, at most as many as
/// the setup asks for, or no bytes where it obeys an OUT transfer. Nothing for all that it does not know: it stalls.
///
/// It knows the requests that enumeration as a HID device needs: its device, configuration, string and report
/// descriptors, SET_CONFIGURATION of 0 and 1, and SET_IDLE.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> answerControl(const UsbSetup& setup);

}  // namespace kelvo
