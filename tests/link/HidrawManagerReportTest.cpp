#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <numeric>
#include <ostream>
#include <span>
#include <string>
#include <vector>

#include "Allocations.h"
#include "FakeBus.h"
#include "RunningManager.h"

namespace kelvo {
namespace {

using Events = std::vector<std::string>;
using Bytes = std::vector<std::uint8_t>;

const Report kCounting = [] {
    Report report;
    std::iota(report.begin(), report.end(), std::uint8_t{63});
    return report;
}();

TEST(HidrawManagerReport, deliversEveryInputReportWithItsLength) {
    FoundPedal pedal;
    // One at a time: the fake node would join what is queued together.
    pedal.bus.send(0, Bytes(64, 1));
    pedal.link.waitFor(2);
    pedal.bus.send(0, Bytes(63, 2));
    pedal.link.waitFor(3);
    pedal.bus.send(0, Bytes(65, 3));
    pedal.link.waitFor(4);
    pedal.bus.send(0, Bytes(1, 255));
    EXPECT_EQ(pedal.link.waitFor(5),
              (Events{"arrived", "report of 64 bytes beginning with 1", "report of 63 bytes beginning with 2",
                      "report of 65 bytes beginning with 3", "report of 1 bytes beginning with 255"}));
}

TEST(HidrawManagerReport, allocatesNoMemory) {
    FakeBus bus;
    bus.plug(0);
    RunningManager link(bus);
    std::vector<std::size_t> allocations(3);
    std::atomic<std::size_t> reports = 0;
    link.manager.open({.vendorId = 0x0483, .productId = 0x5703, .versionNumber = 200},
                      {.inputReport = [&](const auto&, std::span<const std::uint8_t>) {
                          allocations[reports] = test::allocations();
                          ++reports;
                          reports.notify_one();
                      }});
    link.start();
    link.waitUntilIdle();
    for (std::size_t report = 0; report < 3; ++report) {
        bus.send(0, Bytes(64, 1));
        reports.wait(report);
    }
    EXPECT_EQ(allocations, std::vector<std::size_t>(3, allocations[0]));
}

TEST(HidrawManagerReport, readsOnAfterASignal) {
    NodeScript script({}, {{.error = EINTR}, {.error = EINTR}, {.bytes = Bytes(64, 9)}, {.error = ENODEV}});
    FoundPedal pedal(&script);
    pedal.bus.send(0, {0});
    EXPECT_EQ(pedal.link.waitFor(3), (Events{"arrived", "report of 64 bytes beginning with 9", "removed"}));
}

TEST(HidrawManagerReport, writesAZeroAndTheSixtyFourBytes) {
    NodeScript script({{.count = 65}}, {});
    FoundPedal pedal(&script);
    EXPECT_TRUE(pedal.link.device()->setReport(kCounting));
    EXPECT_EQ(script.writes(), 1);
    EXPECT_EQ(script.lastWrite(),
              (Bytes{0,   63,  64,  65,  66,  67,  68,  69,  70,  71,  72,  73,  74,  75,  76,  77,  78,
                     79,  80,  81,  82,  83,  84,  85,  86,  87,  88,  89,  90,  91,  92,  93,  94,  95,
                     96,  97,  98,  99,  100, 101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 111, 112,
                     113, 114, 115, 116, 117, 118, 119, 120, 121, 122, 123, 124, 125, 126}));
}

TEST(HidrawManagerReport, writesAgainAfterASignal) {
    NodeScript script({{.error = EINTR}, {.error = EINTR}, {.count = 65}}, {});
    FoundPedal pedal(&script);
    EXPECT_TRUE(pedal.link.device()->setReport(kCounting));
    EXPECT_EQ(script.writes(), 3);
}

struct Refusal {
    std::string name;
    Answer answer;
};

void PrintTo(const Refusal& refusal, std::ostream* out) {
    *out << refusal.name;
}

class HidrawManagerRefusal : public testing::TestWithParam<Refusal> {};

TEST_P(HidrawManagerRefusal, failsTheReportButIsNotTheEndOfTheDevice) {
    NodeScript script({GetParam().answer, {.count = 65}}, {{.bytes = Bytes(64, 5)}, {.error = EIO}});
    FoundPedal pedal(&script);
    EXPECT_FALSE(pedal.link.device()->setReport(kCounting));
    EXPECT_EQ(script.writes(), 1);
    EXPECT_TRUE(pedal.link.device()->setReport(kCounting));
    EXPECT_EQ(pedal.link.events(), Events{"arrived"});
    pedal.bus.send(0, {0});
    EXPECT_EQ(pedal.link.waitFor(3), (Events{"arrived", "report of 64 bytes beginning with 5", "removed"}));
}

INSTANTIATE_TEST_SUITE_P(
    , HidrawManagerRefusal,
    testing::Values(Refusal{"oneByteShort", {.count = 64}}, Refusal{"tenBytes", {.count = 10}},
                    Refusal{"nothing", {.count = 0}}, Refusal{"stalledEndpoint", {.error = EPIPE}},
                    Refusal{"outputNotTaken", {.error = ETIMEDOUT}}, Refusal{"noMemory", {.error = ENOMEM}},
                    Refusal{"protocolError", {.error = EPROTO}}, Refusal{"inputOutputError", {.error = EIO}},
                    Refusal{"shutDown", {.error = ESHUTDOWN}}, Refusal{"noDevice", {.error = ENODEV}}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace kelvo
