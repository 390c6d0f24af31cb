#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "Descriptors.h"
#include "FakeBus.h"
#include "RunningManager.h"
#include "UniqueFd.h"

namespace kelvo {
namespace {

using Events = std::vector<std::string>;

/// Takes root's power over files from the calling thread, if it has it.
void becomeOrdinary() {
    constexpr uid_t kNobody = 65534;
    setfsuid(kNobody);
}

void setAccess(FakeBus& bus, int number, mode_t mode) {
    bus.openToAll();
    ASSERT_EQ(chmod(bus.realNode(number).c_str(), mode), 0);
}

TEST(HidrawManagerAccess, aNodeWithoutPermission_isNoDeviceAndOneLogLine) {
    FakeBus bus;
    bus.plug(0);
    setAccess(bus, 0, 0);
    RunningManager link(bus);
    link.start(becomeOrdinary);
    EXPECT_EQ(link.waitFor(1), Events{"log: /dev/hidraw0 cannot be opened: Permission denied (access is given by "
                                      "70-kelvo.rules)"});
}

TEST(HidrawManagerAccess, nodeWithoutPermission_isOpenedAfterTheRules) {
    FakeBus bus;
    bus.plug(0);
    setAccess(bus, 0, 0);
    RunningManager link(bus);
    link.start(becomeOrdinary);
    link.waitFor(1);
    setAccess(bus, 0, 0666);
    bus.sendEvent(0, "change");
    EXPECT_EQ(link.waitFor(2), (Events{"log: /dev/hidraw0 cannot be opened: Permission denied (access is given by "
                                       "70-kelvo.rules)",
                                       "arrived"}));
}

TEST(HidrawManagerAccess, theSecondDeviceIsUsedWhenTheFirstCannotBeOpened) {
    FakeBus bus;
    bus.plug(0);
    setAccess(bus, 0, 0);
    bus.plug(1);
    setAccess(bus, 1, 0666);
    RunningManager link(bus);
    link.start(becomeOrdinary);
    EXPECT_EQ(link.waitFor(2), (Events{"log: /dev/hidraw0 cannot be opened: Permission denied (access is given by "
                                       "70-kelvo.rules)",
                                       "arrived"}));
}

TEST(HidrawManagerAccess, aNodeInUse_isNoDeviceUntilItIsFree) {
    FakeBus bus;
    bus.plug(0);
    UniqueFd other(::open(bus.realNode(0).c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    ASSERT_EQ(flock(other.get(), LOCK_EX | LOCK_NB), 0);
    RunningManager link(bus);
    link.start();
    link.waitFor(1);
    EXPECT_EQ(openNodes(), 1);
    other.reset();
    bus.sendEvent(0, "change");
    EXPECT_EQ(link.waitFor(2), (Events{"log: /dev/hidraw0 cannot be opened: in use by another program (access is given "
                                       "by 70-kelvo.rules)",
                                       "arrived"}));
}

TEST(HidrawManagerAccess, aNodeInUseByIt_isLockedAgainstAnotherAndFreeAfterTheUnplug) {
    FoundPedal pedal;
    const UniqueFd other(::open(pedal.bus.realNode(0).c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    EXPECT_EQ(flock(other.get(), LOCK_EX | LOCK_NB), -1);
    pedal.bus.sendEvent(0, "remove");
    pedal.link.waitFor(2);
    pedal.link.forgetDevice();
    EXPECT_EQ(flock(other.get(), LOCK_EX), 0);
}

TEST(HidrawManagerAccess, aNodeThatIsGoneAlready_isNoDeviceAndOneLogLine) {
    FakeBus bus;
    bus.plug(0);
    ASSERT_TRUE(std::filesystem::remove(bus.realNode(0)));
    RunningManager link(bus);
    link.start();
    EXPECT_EQ(link.waitFor(1), Events{"log: /dev/hidraw0 cannot be opened: No such file or directory (access is given "
                                      "by 70-kelvo.rules)"});
}

TEST(HidrawManagerAccess, aPlainFileInPlaceOfTheNode_isNoDeviceAndLeftAlone) {
    FakeBus bus;
    bus.plugPlainFile(0);
    RunningManager link(bus);
    link.start();
    EXPECT_EQ(link.waitFor(1), Events{"log: /dev/hidraw0 cannot be opened: not a character device (access is given by "
                                      "70-kelvo.rules)"});
    for (const auto& [fd, target] : openDescriptors()) {
        EXPECT_NE(target, bus.realNode(0));
    }
}

TEST(RuleFile, givesTheSeatsUserAccessByAllThreeIdsInLowerCase) {
    std::ifstream file(KELVO_RULES);
    std::string rules;
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with('#')) {
            rules += line + '\n';
        }
    }
    EXPECT_EQ(rules,
              "SUBSYSTEM==\"hidraw\", KERNEL==\"hidraw*\", ATTRS{idVendor}==\"0483\", ATTRS{idProduct}==\"5703\", "
              "ATTRS{bcdDevice}==\"00c8\", TAG+=\"uaccess\"\n");
}

TEST(RuleFile, hasTheNameThatTheLogNamesAndSortsBeforeTheSeatRules) {
    const auto name = std::filesystem::path(KELVO_RULES).filename().string();
    EXPECT_EQ(name, "70-kelvo.rules");
    EXPECT_LT(name, "73-seat-late.rules");
}

}  // namespace
}  // namespace kelvo
