#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <variant>
#include <vector>

namespace kelvo {

/// Size of every USB/IP header. All its numbers are big-endian 32-bit words. The kernel's documentation describes it as
/// "USB/IP protocol".
inline constexpr std::size_t kUsbIpHeaderSize = 48;

/// Most bytes that a request may transfer: the maximum of wLength in a control transfer.
inline constexpr std::size_t kUsbIpLongestTransfer = 65535;

/// The error numbers in a device's answers. The protocol fixes them, not this machine.
inline constexpr std::int32_t kUsbStall = -32;
inline constexpr std::int32_t kUsbProtocolError = -71;
inline constexpr std::int32_t kUsbUnlinked = -104;

enum class UsbDirection : std::uint8_t { Out = 0, In = 1 };

using UsbSetup = std::array<std::uint8_t, 8>;

/// One transfer that the host requests (CMD_SUBMIT).
struct UsbRequest {
    std::uint32_t number = 0;
    UsbDirection direction = UsbDirection::Out;
    std::uint8_t endpoint = 0;
    /// The most bytes of an IN transfer, the exact number of an OUT transfer.
    std::size_t length = 0;
    /// Only meaningful on endpoint 0.
    UsbSetup setup{};
    /// The bytes of an OUT transfer.
    std::vector<std::uint8_t> data;
};

/// The host no longer wants the answer to the request `target` (CMD_UNLINK).
struct UsbUnlink {
    std::uint32_t number = 0;
    std::uint32_t target = 0;
};

using UsbIpMessage = std::variant<UsbRequest, UsbUnlink>;

/// Splits the host's bytes into messages.
class UsbIpReader {
public:
    /// Returns the messages that these bytes complete, in order. Throws std::runtime_error with the reason for a header
    /// that no host sends to a device without isochronous endpoints. The stream is then unusable.
    [[nodiscard]] std::vector<UsbIpMessage> take(std::span<const std::uint8_t> bytes);

    /// Discards an incomplete message.
    void reset() { held_.clear(); }

private:
    std::vector<std::uint8_t> held_;
};

/// Appends RET_SUBMIT to `out`. `data` are the bytes of the transfer in either direction; a request that failed has
/// `status` and no data.
void appendSubmitAnswer(std::vector<std::uint8_t>& out, const UsbRequest& request, std::int32_t status,
                        std::span<const std::uint8_t> data);

/// Appends RET_UNLINK to `out`. `status` is kUsbUnlinked if the target was still pending, otherwise 0.
void appendUnlinkAnswer(std::vector<std::uint8_t>& out, const UsbUnlink& unlink, std::int32_t status);

}  // namespace kelvo
