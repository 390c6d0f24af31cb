#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "UniqueFd.h"
#include "UsbKr310.h"

namespace kelvo {

/// The cable between a UsbKr310 and its host: a stream socket with USB/IP messages. One thread.
class UsbCable {
public:
    using Clock = UsbKr310::Clock;

    /// `device` must outlive this object.
    explicit UsbCable(UsbKr310& device) : device_(device) {}

    /// Powers the device up and connects it with the host at the other end of `socket`. The cable must be unplugged.
    void plug(UniqueFd socket);
    /// No effect while unplugged.
    void unplug();
    [[nodiscard]] bool isPlugged() const { return static_cast<bool>(socket_); }

    /// For poll(2): the descriptor, -1 while unplugged, and the events to wait for.
    [[nodiscard]] int fd() const { return socket_.get(); }
    [[nodiscard]] short events() const;

    /// When `serve` must be called even if poll(2) reports no event.
    [[nodiscard]] std::optional<Clock::time_point> nextDue() const;

    /// Receives from the host and sends what is due and what is unsent. Never blocks. Unplugs and returns the reason
    /// when the host has closed its end, when it breaks the protocol, and when a fault of the device requires it.
    [[nodiscard]] std::optional<std::string> serve(short revents, Clock::time_point now);

private:
    [[nodiscard]] bool takeFromHost(Clock::time_point now);
    void sendToHost();

    UsbKr310& device_;
    UniqueFd socket_;
    std::vector<std::uint8_t> unsent_;
};

}  // namespace kelvo
