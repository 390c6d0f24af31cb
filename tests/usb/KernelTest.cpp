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

/// A line of the KR310's folder in sysfs; "?" when there is none.
std::string attribute(const std::string& name) {
    const auto usbDevice = std::filesystem::canonical("/sys/class/hidraw/" + hidrawNode().substr(5) + "/device/../..");
    std::string line = "?";
    std::ifstream file(usbDevice / name);
    std::getline(file, line);
    return line;
}

TEST(Kernel, enumeratesTheKr310) {
    PluggedPedal pedal;
    EXPECT_EQ(attribute("idVendor"), "0483");
    EXPECT_EQ(attribute("idProduct"), "5703");
    EXPECT_EQ(attribute("bcdDevice"), "00c8");
    EXPECT_EQ(attribute("speed"), "12");
    EXPECT_EQ(attribute("manufacturer"), "Virtual");
    EXPECT_EQ(attribute("product"), "KR310");
    EXPECT_EQ(attribute("bNumInterfaces"), " 1");
    EXPECT_EQ(attribute("bConfigurationValue"), "1");
    EXPECT_EQ(attribute("bMaxPower"), "100mA");
}

/// What sysfs says of the endpoints of the KR310's interface, in the order of the directory.
std::string endpoints() {
    std::string all;
    for (const auto& entry : std::filesystem::directory_iterator(
             std::filesystem::canonical("/sys/class/hidraw/" + hidrawNode().substr(5) + "/device/.."))) {
        if (entry.path().filename().string().starts_with("ep_")) {
            for (const char* const part : {"direction", "type", "wMaxPacketSize", "interval"}) {
                std::string line;
                std::ifstream file(entry.path() / part);
                std::getline(file, line);
                all += line + ' ';
            }
        }
    }
    return all;
}

TEST(Kernel, seesTwoInterruptEndpointsOf64BytesAndOneHidInterface) {
    PluggedPedal pedal;
    const std::string inFirst = "in Interrupt 0040 1ms out Interrupt 0040 1ms ";
    const std::string outFirst = "out Interrupt 0040 1ms in Interrupt 0040 1ms ";
    // The kernel lists them only after it has made the node.
    waitUntil([&] { return endpoints().size() >= inFirst.size(); }, "two endpoints");
    EXPECT_THAT(endpoints(), testing::AnyOf(inFirst, outFirst));
}

TEST(Kernel, readsTheReportDescriptor) {
    PluggedPedal pedal;
    std::ifstream file("/sys/class/hidraw/" + hidrawNode().substr(5) + "/device/report_descriptor", std::ios::binary);
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
