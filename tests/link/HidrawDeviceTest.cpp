#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <deque>
#include <future>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "Descriptors.h"
#include "FakeBus.h"
#include "RunningManager.h"
#include "SleepingThread.h"

namespace kelvo {
namespace {

using Bytes = std::vector<std::uint8_t>;

using HidrawDeviceTest = HidrawTest;

Answer reportOf(std::uint8_t fill) {
    return {.result = 64, .bytes = Bytes(64, fill)};
}

TEST_F(HidrawDeviceTest, deliversReportsOfAnyLength) {
    findPedal();
    // One at a time: the fake node would join what is queued together.
    bus.send(0, Bytes(64, 1));
    link.waitFor(2);
    bus.send(0, Bytes(65, 2));
    link.waitFor(3);
    bus.send(0, Bytes(1, 255));
    EXPECT_EQ(link.waitFor(4), (Events{arrived(0), "report of 64 bytes beginning with 1",
                                       "report of 65 bytes beginning with 2", "report of 1 bytes beginning with 255"}));
}

struct Write {
    std::string name;
    std::deque<Answer> answers;
    bool isAccepted;
};

class HidrawDeviceWrite : public HidrawTest, public testing::WithParamInterface<Write> {};

TEST_P(HidrawDeviceWrite, isOneOf65Bytes_andItsFailureIsNotTheEndOfTheDevice) {
    bus.setAnswers(GetParam().answers, {reportOf(5)});
    findPedal();
    Bytes message(65);
    std::iota(message.begin() + 1, message.end(), std::uint8_t{63});
    Report report;
    std::copy(message.begin() + 1, message.end(), report.begin());
    EXPECT_EQ(link.device()->setReport(report), GetParam().isAccepted);
    EXPECT_EQ(bus.written(), std::vector<Bytes>(GetParam().answers.size(), message));
    bus.send(0, {0});
    EXPECT_EQ(link.waitFor(3), (Events{arrived(0), "report of 64 bytes beginning with 5", "removed"}));
}

INSTANTIATE_TEST_SUITE_P(
    , HidrawDeviceWrite,
    testing::Values(Write{"complete", {{.result = 65}}, true},
                    Write{"afterSignals", {{.error = EINTR}, {.error = EINTR}, {.result = 65}}, true},
                    Write{"oneByteShort", {{.result = 64}}, false}, Write{"nothing", {{.result = 0}}, false},
                    Write{"stalledEndpoint", {{.error = EPIPE}}, false}, Write{"noDevice", {{.error = ENODEV}}, false}),
    [](const auto& test) { return test.param.name; });

TEST_F(HidrawDeviceTest, removal_isReportedOnce_whetherUdevOrTheNodeIsFirst) {
    findPedal();
    bus.unplug(0);
    link.waitFor(2);
    bus.cut(0);
    bus.plug(1);
    link.waitFor(3);
    bus.cut(1);
    link.waitFor(4);
    EXPECT_FALSE(link.device()->setReport(Report{}));
    bus.unplug(1);
    bus.plug(2);
    EXPECT_EQ(link.waitFor(5), (Events{arrived(0), "removed", arrived(1), "removed", arrived(2)}));
    EXPECT_EQ(openNodes(), 1);
}

class HidrawDeviceEnd : public HidrawTest, public testing::WithParamInterface<Answer> {};

TEST_P(HidrawDeviceEnd, isReportedAfterTheQueuedReports_alsoIfUdevReportsItEarlier) {
    bus.setAnswers({}, {{.error = EINTR}, reportOf(1), reportOf(2), GetParam()});
    link.onEvent = [&](const std::string& event) {
        if (event == "report of 64 bytes beginning with 1") {
            bus.unplug(0);
        }
    };
    findPedal();
    bus.send(0, {0});
    link.waitFor(4);
    bus.plug(1);
    EXPECT_EQ(link.waitFor(5), (Events{arrived(0), "report of 64 bytes beginning with 1",
                                       "report of 64 bytes beginning with 2", "removed", arrived(1)}));
}

INSTANTIATE_TEST_SUITE_P(, HidrawDeviceEnd, testing::Values(Answer{.error = ENODEV}, Answer{.result = 0}),
                         [](const auto& test) { return test.param.error == 0 ? "endOfFile" : "noDevice"; });

TEST(HidrawDeviceBlockedWrite, holdsUpNoReportAndNoRemoval_andKeepsTheDescriptor) {
    FakeBus bus;
    bus.plug(0);
    auto link = std::make_unique<RunningManager>(bus);
    link->start();
    link->waitFor(1);
    std::promise<pid_t> id;
    // Nothing reads from the cable, so the kernel soon blocks a write.
    std::future<void> writes = std::async(std::launch::async, [&id, device = link->device()]() mutable {
        id.set_value(gettid());
        while (device->setReport(Report{})) {
        }
        device.reset();
    });
    waitUntilThreadIsIn(SYS_write, id.get_future().get());
    bus.send(0, Bytes(64, 4));
    link->waitFor(2);
    bus.unplug(0);
    EXPECT_EQ(link->waitFor(3), (Events{arrived(0), "report of 64 bytes beginning with 4", "removed"}));
    link.reset();
    EXPECT_EQ(openNodes(), 1);
    bus.cut(0);
    writes.get();
    EXPECT_EQ(openNodes(), 0);
}

}  // namespace
}  // namespace kelvo
