#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "VhciPort.h"

namespace kelvo {
namespace {

/// As Linux 6.1 shows it with one device attached.
constexpr auto kStatus =
    "hub port sta spd dev      sockfd local_busid\n"
    "hs  0000 006 002 00010002 000005 3-1\n"
    "hs  0001 005 000 00000000 000000 0-0\n"
    "hs  0002 004 000 00000000 000000 0-0\n"
    "hs  0003 004 000 00000000 000000 0-0\n"
    "ss  0008 004 000 00000000 000000 0-0\n";

std::optional<unsigned> freePortOf(const std::string& text) {
    std::istringstream status(text);
    return freePort(status);
}

TEST(VhciPort, isTheFirstHighSpeedOneWithNothingAttached) {
    EXPECT_EQ(freePortOf(kStatus), 2U);
    EXPECT_EQ(freePortOf("hs  0000 006 002 00010002 000005 3-1\nss  0008 004 000 00000000 000000 0-0\n"), std::nullopt);
    EXPECT_EQ(freePortOf("hs\nhs x y\n\nhs 1\n"), std::nullopt);
}

/// A controller's folder without a kernel.
class VhciFolder : public testing::Test {
protected:
    VhciFolder() {
        std::string name = std::filesystem::temp_directory_path() / "vhciXXXXXX";
        folder = mkdtemp(name.data());
    }
    ~VhciFolder() override { std::filesystem::remove_all(folder); }

    void put(const char* name, const char* text) const { std::ofstream(folder / name) << text; }
    std::string complaint() const {
        try {
            static_cast<void>(plugIntoKernel(folder));
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "none";
    }

    std::filesystem::path folder;
};

TEST_F(VhciFolder, getsPortSocketDeviceAndSpeed) {
    put("status", kStatus);
    put("attach", "");
    const UniqueFd device = plugIntoKernel(folder);
    std::ostringstream attached;
    attached << std::ifstream(folder / "attach").rdbuf();
    EXPECT_THAT(attached.str(), testing::MatchesRegex("2 [0-9]+ 65538 2"));
    // The other end is not open here.
    char byte = 0;
    EXPECT_EQ(read(device.get(), &byte, 1), 0);
}

TEST_F(VhciFolder, failure_isExplained) {
    const std::filesystem::path attach = folder / "attach";
    EXPECT_EQ(complaint(), "this kernel has no virtual USB port; as root: modprobe vhci-hcd");
    put("status", "hub port sta spd dev      sockfd local_busid\n");
    EXPECT_EQ(complaint(), "no virtual USB port is free");
    put("status", kStatus);
    std::filesystem::create_directory(attach);
    EXPECT_EQ(complaint(), "plugging in needs root: " + attach.string() + ": Is a directory");
    std::filesystem::remove(attach);
    std::filesystem::create_symlink("/dev/full", attach);
    EXPECT_EQ(complaint(), "the kernel did not take the device on port 2: No space left on device");
}

}  // namespace
}  // namespace kelvo
