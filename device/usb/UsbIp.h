#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <variant>
#include <vector>

namespace kelvo {

/// Size of every USB/IP header. All its numbers are big-endian 32-bit words; the kernel documents it as "USB/IP
/// protocol".
inline constexpr std::size_t kUsbIpHeaderSize = 48;

/// Most bytes of one transfer that a request may name: what fits into wLength of a control transfer.
inline constexpr std::size_t kUsbIpLongestTransfer = 65535;

/// The kernel's error numbers that a device answers with. They are fixed by the protocol, not by this machine.
inline constexpr std::int32_t kUsbStall = -32;
inline constexpr std::int32_t kUsbProtocolError = -71;
inline constexpr std::int32_t kUsbUnlinked = -104;

enum class UsbDirection : std::uint8_t { kOut = 0, kIn = 1 };

using UsbSetup = std::array<std::uint8_t, 8>;

/// One transfer that the host asks for (CMD_SUBMIT).
struct UsbRequest {
    std::uint32_t number = 0;
    UsbDirection direction = UsbDirection::kOut;
    std::uint8_t endpoint = 0;
    /// Most bytes that an IN transfer may carry; the bytes that an OUT transfer carries.
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

/// Cuts what the host sends into messages.
class UsbIpReader {
public:
    /// The messages that became complete with these bytes, in their order. Throws std::runtime_error, whose text is the
    /// reason, when a header is none that a host sends to a device without isochronous endpoints; nothing after it can
    /// be trusted then.
    [[nodiscard]] std::vector<UsbIpMessage> take(std::span<const std::uint8_t> bytes);

    /// Forgets a message that is not yet complete.
    void reset() { held_.clear(); }

private:
    std::vector<std::uint8_t> held_;
};

/// Appends RET_SUBMIT to `out`: the request was carried out with `data`, which an IN transfer brings and an OUT
/// transfer has taken, or it failed with `status` and no data.
void appendSubmitAnswer(std::vector<std::uint8_t>& out, const UsbRequest& request, std::int32_t status,
                        std::span<const std::uint8_t> data);

/// Appends RET_UNLINK to `out`: kUsbUnlinked when the target was still waiting, else 0.
void appendUnlinkAnswer(std::vector<std::uint8_t>& out, const UsbUnlink& unlink, std::int32_t status);

}  // namespace kelvo
