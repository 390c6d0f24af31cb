#include "UsbIp.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>

namespace kelvo {
namespace {

enum Command : std::uint32_t { kSubmit = 1, kUnlink = 2, kSubmitAnswer = 3, kUnlinkAnswer = 4 };

/// Offsets of the header's words and of the setup bytes.
enum Offset : std::size_t {
    kCommand = 0,
    kNumber = 4,
    kDirection = 12,
    kEndpoint = 16,
    kUnlinkTarget = 20,
    kLength = 24,
    kPacketCount = 32,
    kSetup = 40,
};

constexpr std::uint32_t kGreatestEndpoint = 15;
/// The packet count of a transfer that is not isochronous: the documented value, and the one that the kernel sends.
constexpr std::uint32_t kNoPackets[] = {0xFFFFFFFF, 0};

using Header = std::span<const std::uint8_t, kUsbIpHeaderSize>;

std::uint32_t wordAt(Header header, std::size_t offset) {
    std::uint32_t word = 0;
    for (const std::uint8_t byte : header.subspan(offset, 4)) {
        word = word << 8 | byte;
    }
    return word;
}

void appendWord(std::vector<std::uint8_t>& out, std::uint32_t word) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        out.push_back(static_cast<std::uint8_t>(word >> shift));
    }
}

void appendHeader(std::vector<std::uint8_t>& out, Command command, std::uint32_t number, std::int32_t status,
                  std::size_t length) {
    const std::size_t end = out.size() + kUsbIpHeaderSize;
    appendWord(out, command);
    appendWord(out, number);
    // Device, direction and endpoint are left 0 in an answer.
    out.resize(out.size() + 12);
    appendWord(out, static_cast<std::uint32_t>(status));
    appendWord(out, static_cast<std::uint32_t>(length));
    out.resize(end);
}

[[noreturn]] void refuse(const char* what, std::uint32_t value) {
    throw std::runtime_error(std::string("the host sent a USB/IP header with ") + what + ' ' + std::to_string(value));
}

void demand(bool sound, const char* what, std::uint32_t value) {
    if (!sound) {
        refuse(what, value);
    }
}

UsbRequest readSubmit(Header header) {
    const std::uint32_t direction = wordAt(header, kDirection);
    const std::uint32_t endpoint = wordAt(header, kEndpoint);
    const std::uint32_t length = wordAt(header, kLength);
    const std::uint32_t packets = wordAt(header, kPacketCount);
    demand(direction <= 1, "direction", direction);
    demand(endpoint <= kGreatestEndpoint, "endpoint", endpoint);
    demand(length <= kUsbIpLongestTransfer, "length", length);
    demand(std::ranges::find(kNoPackets, packets) != std::end(kNoPackets), "packet count", packets);
    UsbRequest request{.number = wordAt(header, kNumber),
                       .direction = direction == 0 ? UsbDirection::Out : UsbDirection::In,
                       .endpoint = static_cast<std::uint8_t>(endpoint),
                       .length = length};
    std::ranges::copy(header.subspan(kSetup), request.setup.begin());
    return request;
}

UsbIpMessage readHeader(Header header) {
    switch (const std::uint32_t command = wordAt(header, kCommand)) {
        case kSubmit:
            return readSubmit(header);
        case kUnlink:
            return UsbUnlink{wordAt(header, kNumber), wordAt(header, kUnlinkTarget)};
        default:
            refuse("command", command);
    }
}

/// Bytes that follow the header.
std::size_t payloadOf(const UsbIpMessage& message) {
    const auto* const request = std::get_if<UsbRequest>(&message);
    return request != nullptr && request->direction == UsbDirection::Out ? request->length : 0;
}

}  // namespace

std::vector<UsbIpMessage> UsbIpReader::take(std::span<const std::uint8_t> bytes) {
    std::ranges::copy(bytes, std::back_inserter(held_));
    std::vector<UsbIpMessage> messages;
    std::span<const std::uint8_t> rest(held_);
    while (rest.size() >= kUsbIpHeaderSize) {
        UsbIpMessage message = readHeader(rest.first<kUsbIpHeaderSize>());
        const std::span<const std::uint8_t> afterHeader = rest.subspan(kUsbIpHeaderSize);
        const std::size_t payload = payloadOf(message);
        if (payload > afterHeader.size()) {
            break;
        }
        if (payload > 0) {
            const auto data = afterHeader.first(payload);
            std::get<UsbRequest>(message).data.assign(data.begin(), data.end());
        }
        messages.push_back(std::move(message));
        rest = afterHeader.subspan(payload);
    }
    held_.erase(held_.begin(), held_.end() - static_cast<std::ptrdiff_t>(rest.size()));
    return messages;
}

void appendSubmitAnswer(std::vector<std::uint8_t>& out, const UsbRequest& request, std::int32_t status,
                        std::span<const std::uint8_t> data) {
    appendHeader(out, kSubmitAnswer, request.number, status, data.size());
    if (request.direction == UsbDirection::In) {
        std::ranges::copy(data, std::back_inserter(out));
    }
}

void appendUnlinkAnswer(std::vector<std::uint8_t>& out, const UsbUnlink& unlink, std::int32_t status) {
    appendHeader(out, kUnlinkAnswer, unlink.number, status, 0);
}

}  // namespace kelvo
