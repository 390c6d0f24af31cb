#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "UniqueFd.h"
#include "UsbKr310.h"

namespace kelvo {

/// The cable between a UsbKr310 and its host: a stream socket that carries USB/IP. One thread.
class UsbCable {
public:
    using Clock = UsbKr310::Clock;

    /// `device` outlives this object.
    explicit UsbCable(UsbKr310& device) : device_(device) {}

    /// Puts the device, freshly powered up, on the cable whose other end is the host. The cable must be unplugged.
    void plug(UniqueFd socket);
    void unplug();
    [[nodiscard]] bool isPlugged() const { return static_cast<bool>(socket_); }

    /// For poll(2): the descriptor, -1 while unplugged, and the events to wait for.
    [[nodiscard]] int fd() const { return socket_.get(); }
    [[nodiscard]] short events() const;

    /// When `serve` has something to do even if poll(2) reports nothing.
    [[nodiscard]] std::optional<Clock::time_point> nextDue() const;

    /// Takes what the host has sent, and sends what is due and what is left. Never blocks. Unplugs when the host has
    /// closed its end, when it breaks the protocol, or when the device wants it, and returns the reason then; nothing
    /// otherwise.
    [[nodiscard]] std::optional<std::string> serve(short revents, Clock::time_point now);

private:
    [[nodiscard]] bool takeFromHost(Clock::time_point now);
    void sendToHost();

    UsbKr310& device_;
    UniqueFd socket_;
    std::vector<std::uint8_t> unsent_;
};

}  // namespace kelvo
