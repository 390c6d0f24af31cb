#pragma once

#include <filesystem>
#include <iosfwd>
#include <optional>

#include "UniqueFd.h"

namespace kelvo {

/// The first controller of the kernel module vhci-hcd in sysfs.
inline constexpr auto kVhciController = "/sys/devices/platform/vhci_hcd.0";

/// The first free port for a full-speed device, from the controller's file "status". Nothing if all are in use, or
/// still busy with a device that was just unplugged.
[[nodiscard]] std::optional<unsigned> freePort(std::istream& status);

/// Plugs a full-speed device into this machine's kernel. Returns a socket with the kernel, as the host, at its other
/// end; closing it unplugs the device. Throws std::runtime_error with the reason on failure.
[[nodiscard]] UniqueFd plugIntoKernel(const std::filesystem::path& controller = kVhciController);

}  // namespace kelvo
