#include "UsbCable.h"

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cstddef>
#include <iterator>
#include <span>
#include <stdexcept>
#include <utility>

namespace kelvo {
namespace {

constexpr std::size_t kReadSize = 4096;

}  // namespace

void UsbCable::plug(UniqueFd socket) {
    device_.powerUp();
    unsent_.clear();
    socket_ = std::move(socket);
}

void UsbCable::unplug() {
    // The kernel has the other end of the socket. It notices a shutdown before this call returns, but a close only
    // later.
    shutdown(socket_.get(), SHUT_RDWR);
    socket_.reset();
}

short UsbCable::events() const {
    return static_cast<short>(unsent_.empty() ? POLLIN : POLLIN | POLLOUT);
}

std::optional<UsbCable::Clock::time_point> UsbCable::nextDue() const {
    return isPlugged() ? device_.nextDue() : std::nullopt;
}

std::optional<std::string> UsbCable::serve(short revents, Clock::time_point now) {
    if (!isPlugged()) {
        return std::nullopt;
    }
    std::optional<std::string> end;
    try {
        if ((revents & ~POLLOUT) != 0 && !takeFromHost(now)) {
            end = "the host has closed the connection";
        }
        device_.deliverDue(now);
        sendToHost();
    } catch (const std::runtime_error& error) {
        end = error.what();
    }
    if (device_.wantsUnplug()) {
        end = "by a fault";
    }
    if (end) {
        unplug();
    }
    return end;
}

bool UsbCable::takeFromHost(Clock::time_point now) {
    std::array<std::uint8_t, kReadSize> buffer{};
    const ssize_t length = recv(socket_.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (length > 0) {
        device_.receive(std::span(buffer).first(static_cast<std::size_t>(length)), now);
    }
    return length > 0;
}

// The next recv reports any error.
void UsbCable::sendToHost() {
    const std::vector<std::uint8_t> answers = device_.takeAnswers();
    unsent_.insert(unsent_.end(), answers.begin(), answers.end());
    const ssize_t sent = send(socket_.get(), unsent_.data(), unsent_.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (sent > 0) {
        unsent_.erase(unsent_.begin(), unsent_.begin() + sent);
    }
}

}  // namespace kelvo
