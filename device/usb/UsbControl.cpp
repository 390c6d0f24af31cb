#include "UsbControl.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "VirtualCable.h"

namespace kelvo {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// Two-byte requests: bmRequestType, then bRequest.
constexpr std::uint16_t kGetDeviceDescriptor = 0x8006;
constexpr std::uint16_t kGetInterfaceDescriptor = 0x8106;
constexpr std::uint16_t kSetConfiguration = 0x0009;
constexpr std::uint16_t kSetIdle = 0x210A;

enum DescriptorType : std::uint8_t { kDevice = 1, kConfiguration = 2, kString = 3, kReport = 0x22 };

/// Usage page FF00, one input and one output report of 64 bytes, no report numbers.
constexpr auto kReportDescriptor = std::to_array<std::uint8_t>(
    {0x06, 0x00, 0xFF, 0x09, 0x01, 0xA1, 0x01,                          // usage page, usage, collection
     0x09, 0x02, 0x15, 0x00, 0x26, 0xFF, 0x00, 0x75, 0x08, 0x95, 0x40,  // 64 bytes of 0 to 255
     0x81, 0x02,                                                        // input
     0x09, 0x03, 0x15, 0x00, 0x26, 0xFF, 0x00, 0x75, 0x08, 0x95, 0x40,  // 64 bytes of 0 to 255
     0x91, 0x02, 0xC0});                                                // output, end of the collection

constexpr std::uint8_t kManufacturerString = 1;
constexpr std::uint8_t kProductString = 2;

constexpr auto kDeviceDescriptor =
    std::to_array<std::uint8_t>({0x12, 0x01, 0x00, 0x02,              // USB 2.0
                                 0x00, 0x00, 0x00, 0x40,              // classes are the interface's; 64 bytes a packet
                                 0x83, 0x04, 0x03, 0x57, 0xC8, 0x00,  // vendor, product, release
                                 0x01, 0x02, 0x00, 0x01});            // strings, no serial number, one configuration

constexpr std::int64_t wordAt(std::size_t offset) {
    return kDeviceDescriptor.at(offset) | kDeviceDescriptor.at(offset + 1) << 8;
}
static_assert(wordAt(8) == kKr310Identity.vendorId && wordAt(10) == kKr310Identity.productId &&
              wordAt(12) == kKr310Identity.versionNumber);

/// The endpoints are those of kUsbReportEndpoint; the last byte of each is the interval in milliseconds.
constexpr auto kConfigurationDescriptor = std::to_array<std::uint8_t>(
    {0x09, 0x02, 0x29, 0x00, 0x01, 0x01, 0x00, 0x80, 0x32,  // one interface, 100 mA from the bus
     0x09, 0x04, 0x00, 0x00, 0x02, 0x03, 0x00, 0x00, 0x00,  // class HID, two endpoints
     0x09, 0x21, 0x11, 0x01, 0x00, 0x01, 0x22, 0x22, 0x00,  // HID 1.11, the report descriptor's size
     0x07, 0x05, 0x81, 0x03, 0x40, 0x00, 0x01,              // interrupt IN
     0x07, 0x05, 0x01, 0x03, 0x40, 0x00, 0x01});            // interrupt OUT
static_assert(kConfigurationDescriptor.size() == 0x29 && kReportDescriptor.size() == 0x22);

/// String 0 lists the languages: English (United States) alone.
constexpr std::array<std::uint8_t, 4> kLanguages = {4, kString, 0x09, 0x04};

Bytes stringDescriptor(std::string_view text) {
    Bytes bytes = {static_cast<std::uint8_t>(2 + 2 * text.size()), kString};
    for (const char letter : text) {
        bytes.push_back(static_cast<std::uint8_t>(letter));
        bytes.push_back(0);
    }
    return bytes;
}

Bytes copyOf(std::span<const std::uint8_t> bytes) {
    return {bytes.begin(), bytes.end()};
}

std::optional<Bytes> stringNumber(std::uint8_t number) {
    switch (number) {
        case 0:
            return copyOf(kLanguages);
        case kManufacturerString:
            return stringDescriptor("Virtual");
        case kProductString:
            return stringDescriptor("KR310");
        default:
            return std::nullopt;
    }
}

std::optional<Bytes> deviceDescriptor(std::uint8_t type, std::uint8_t number) {
    if (type == kString) {
        return stringNumber(number);
    }
    if (number != 0 || (type != kDevice && type != kConfiguration)) {
        return std::nullopt;
    }
    return type == kDevice ? copyOf(kDeviceDescriptor) : copyOf(kConfigurationDescriptor);
}

std::optional<Bytes> answerInFull(const UsbSetup& setup) {
    const std::uint8_t valueLow = setup[2];
    const std::uint8_t valueHigh = setup[3];
    switch (setup[0] << 8 | setup[1]) {
        case kGetDeviceDescriptor:
            return deviceDescriptor(valueHigh, valueLow);
        case kGetInterfaceDescriptor:
            return valueHigh == kReport ? std::optional(copyOf(kReportDescriptor)) : std::nullopt;
        case kSetConfiguration:
            return valueLow <= 1 ? std::optional(Bytes()) : std::nullopt;
        case kSetIdle:
            return Bytes();
        default:
            return std::nullopt;
    }
}

}  // namespace

std::optional<std::vector<std::uint8_t>> answerControl(const UsbSetup& setup) {
    std::optional<Bytes> answer = answerInFull(setup);
    const std::size_t wanted = setup[6] | static_cast<std::size_t>(setup[7]) << 8;
    if (answer && answer->size() > wanted) {
        answer->resize(wanted);
    }
    return answer;
}

}  // namespace kelvo
