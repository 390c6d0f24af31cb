#pragma once

#include <filesystem>
#include <iosfwd>
#include <optional>

#include "UniqueFd.h"

namespace kelvo {

/// Where the stock module vhci-hcd shows its first controller.
inline constexpr auto kVhciController = "/sys/devices/platform/vhci_hcd.0";

/// The first free port for a full-speed device in the text of the controller's file "status"; nothing when all are
/// taken, or still busy with the last device that was pulled.
[[nodiscard]] std::optional<unsigned> freePort(std::istream& status);

/// Plugs a full-speed device into this machine's own kernel. The kernel is the host at the other end of the socket that
/// is returned; closing it pulls the cable. Throws std::runtime_error, whose text says what is missing, when it cannot
/// be done.
[[nodiscard]] UniqueFd plugIntoKernel(const std::filesystem::path& controller = kVhciController);

}  // namespace kelvo
