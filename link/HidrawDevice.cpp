#include "HidrawDevice.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace kelvo {
namespace {

/// hidraw expects the report number, 0, before the report.
constexpr std::size_t kMessageSize = 1 + kReportSize;

/// Repeats a system call while signals interrupt it.
template <typename Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

UniqueFd openAndLock(const std::string& node) {
    UniqueFd fd(uninterrupted([&] { return ::open(node.c_str(), O_RDWR | O_CLOEXEC | O_NOCTTY); }));
    if (!fd) {
        throw std::runtime_error(std::generic_category().message(errno));
    }
    struct stat status {};
    if (fstat(fd.get(), &status) != 0 || !S_ISCHR(status.st_mode)) {
        throw std::runtime_error("not a character device");
    }
    if (flock(fd.get(), LOCK_EX | LOCK_NB) != 0) {
        throw std::runtime_error("in use by another program");
    }
    return fd;
}

}  // namespace

HidrawDevice::HidrawDevice(const std::string& node) : node_(openAndLock(node)) {}

bool HidrawDevice::setReport(std::span<const std::uint8_t, kReportSize> report) {
    std::array<std::uint8_t, kMessageSize> message{};
    std::ranges::copy(report, message.begin() + 1);
    return uninterrupted([&] { return ::write(fd(), message.data(), message.size()); }) == ssize_t{kMessageSize};
}

std::optional<std::size_t> HidrawDevice::readReport(std::span<std::uint8_t> buffer) const {
    const ssize_t length = uninterrupted([&] { return ::read(fd(), buffer.data(), buffer.size()); });
    // After any error poll(2) would report the node as readable forever.
    if (length <= 0) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(length);
}

}  // namespace kelvo
