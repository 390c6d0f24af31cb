// How a kernel sees the virtual KR310.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iomanip>
#include <sstream>
#include <string>

#include "PluggedPedal.h"
#include "SleepingThread.h"

namespace kelvo::test {
namespace {

/// The folder of the KR310's HID device in sysfs; its interface and its USB device are the folders above.
std::filesystem::path hidDevice() {
    return std::filesystem::canonical("/sys/class/hidraw/" + hidrawNode().substr(5) + "/device");
}

/// The line of a file; "?" when there is none.
std::string lineOf(const std::filesystem::path& path) {
    std::string line = "?";
    std::ifstream file(path);
    std::getline(file, line);
    return line;
}

/// The endpoints of the interface, in the order of the directory.
std::string endpoints() {
    std::string all;
    for (const auto& entry : std::filesystem::directory_iterator(hidDevice().parent_path())) {
        if (entry.path().filename().string().starts_with("ep_")) {
            for (const char* const attribute : {"direction", "type", "wMaxPacketSize", "interval"}) {
                all += lineOf(entry.path() / attribute) + ' ';
            }
        }
    }
    return all;
}

TEST(Kernel, enumeratesTheKr310) {
    PluggedPedal pedal;
    std::string attributes;
    for (const char* const attribute : {"idVendor", "idProduct", "bcdDevice", "speed", "manufacturer", "product",
                                        "bNumInterfaces", "bConfigurationValue", "bMaxPower"}) {
        attributes += lineOf(hidDevice().parent_path().parent_path() / attribute) + ' ';
    }
    EXPECT_EQ(attributes, "0483 5703 00c8 12 Virtual KR310  1 1 100mA ");
    const std::string inFirst = "in Interrupt 0040 1ms out Interrupt 0040 1ms ";
    const std::string outFirst = "out Interrupt 0040 1ms in Interrupt 0040 1ms ";
    // The kernel lists them only after it has made the node.
    waitUntil([&] { return endpoints().size() >= inFirst.size(); }, "two endpoints");
    EXPECT_THAT(endpoints(), testing::AnyOf(inFirst, outFirst));
}

TEST(Kernel, readsTheReportDescriptor) {
    PluggedPedal pedal;
    std::ifstream file(hidDevice() / "report_descriptor", std::ios::binary);
    std::ostringstream text;
    text << std::hex << std::setfill('0');
    for (char byte = 0; file.get(byte);) {
        text << std::setw(2) << (static_cast<unsigned>(byte) & 0xFFU) << ' ';
    }
    EXPECT_EQ(text.str(),
              "06 00 ff 09 01 a1 01 09 02 15 00 26 ff 00 75 08 95 40 81 02 09 03 15 00 26 ff 00 75 08 95 40 91 02 c0 ");
}

}  // namespace
}  // namespace kelvo::test
