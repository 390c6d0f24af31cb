#include "VhciPort.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>

namespace kelvo {
namespace {

/// The kernel's VDEV_ST_NULL: nothing is attached to the port.
constexpr unsigned kFree = 4;
/// The device's number on the remote bus: bus 1, device 2. Nothing depends on it.
constexpr unsigned kDeviceId = 0x10002;
/// The kernel's USB_SPEED_FULL.
constexpr unsigned kFullSpeed = 2;

[[noreturn]] void throwError(const std::string& what, int error) {
    throw std::runtime_error(what + ": " + std::generic_category().message(error));
}

void attach(const std::filesystem::path& file, unsigned port, const UniqueFd& socket) {
    const UniqueFd attachFile(open(file.c_str(), O_WRONLY | O_CLOEXEC));
    if (!attachFile) {
        throwError("plugging in needs root: " + file.string(), errno);
    }
    std::ostringstream line;
    line << port << ' ' << socket.get() << ' ' << kDeviceId << ' ' << kFullSpeed;
    const std::string text = line.str();
    if (write(attachFile.get(), text.data(), text.size()) < 0) {
        throwError("the kernel did not take the device on port " + std::to_string(port), errno);
    }
}

}  // namespace

std::optional<unsigned> freePort(std::istream& status) {
    for (std::string line; std::getline(status, line);) {
        // "hub port sta spd dev ...": "hs  0000 004 000 00000000 000000 0-0"; the hub "ss" takes no full speed.
        std::istringstream fields(line);
        std::string hub;
        unsigned port = 0;
        unsigned state = 0;
        if (fields >> hub >> port >> state && hub == "hs" && state == kFree) {
            return port;
        }
    }
    return std::nullopt;
}

UniqueFd plugIntoKernel(const std::filesystem::path& controller) {
    std::ifstream status(controller / "status");
    if (!status) {
        throw std::runtime_error("this kernel has no virtual USB port; as root: modprobe vhci-hcd");
    }
    const std::optional<unsigned> port = freePort(status);
    if (!port) {
        throw std::runtime_error("no virtual USB port is free");
    }
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throwError("socketpair", errno);
    }
    UniqueFd device(ends[0]);
    const UniqueFd kernel(ends[1]);
    attach(controller / "attach", *port, kernel);
    return device;
}

}  // namespace kelvo
