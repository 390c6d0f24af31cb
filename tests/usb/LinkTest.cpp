// The link alone over the kernel's own USB stack: replugs, and a pedal that does not take its output.

#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <condition_variable>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "Descriptors.h"
#include "HidrawManager.h"
#include "PluggedPedal.h"
#include "SleepingThread.h"

namespace kelvo::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::seconds;

struct Counts {
    std::size_t arrivals = 0;
    std::size_t removals = 0;
    std::size_t reports = 0;
};

/// A HidrawManager that serves the real cable on a separate thread, and counts what it reports.
class CableLink {
public:
    CableLink() {
        manager_.open({.vendorId = 0x0483, .productId = 0x5703, .versionNumber = 200},
                      {.deviceMatching = [this](const auto& device) { note(&Counts::arrivals, device); },
                       .deviceRemoval = [this](const auto&) { note(&Counts::removals, nullptr); },
                       .inputReport = [this](const auto& device, auto) { note(&Counts::reports, device); }});
        thread_ = std::thread([this] { manager_.run(); });
    }
    ~CableLink() {
        manager_.stop();
        thread_.join();
    }

    /// Waits until there are n of them, at most 20 s; false when there are not.
    [[nodiscard]] bool waitFor(std::size_t Counts::*what, std::size_t n) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, seconds(20), [&] { return counts_.*what >= n; });
    }
    [[nodiscard]] Counts counts() {
        const std::lock_guard lock(mutex_);
        return counts_;
    }
    /// Null when none is there.
    [[nodiscard]] std::shared_ptr<HidDevice> device() {
        const std::lock_guard lock(mutex_);
        return device_;
    }

private:
    void note(std::size_t Counts::*what, const std::shared_ptr<HidDevice>& device) {
        const std::lock_guard lock(mutex_);
        device_ = device;
        ++(counts_.*what);
        changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    Counts counts_;
    std::shared_ptr<HidDevice> device_;
    HidrawManager manager_;
    std::thread thread_;
};

/// Asks for the names; the pedal answers with more than 200 reports.
constexpr Report kConnect{8, 0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25};
/// A frame of no known command; the pedal says nothing.
constexpr Report kNothing{};

/// Descriptors of this process; reading the list takes one itself.
std::size_t openCount() {
    return openDescriptors().size();
}

/// Sends a report to the device that is there.
bool send(CableLink& link, const Report& report) {
    const auto device = link.device();
    return device != nullptr && device->setReport(report);
}

TEST(Link, isFoundAndLostTwentyTimesWithoutLosingADescriptor) {
    PluggedPedal pedal;
    CableLink link;
    ASSERT_TRUE(link.waitFor(&Counts::arrivals, 1));
    const std::size_t before = openCount();
    for (std::size_t n = 1; n <= 20; ++n) {
        const std::size_t reports = link.counts().reports;
        ASSERT_TRUE(send(link, kConnect)) << n;
        ASSERT_TRUE(link.waitFor(&Counts::reports, reports + 1)) << n;
        auto device = link.device();
        pedal.unplug();
        ASSERT_TRUE(link.waitFor(&Counts::removals, n)) << n;
        EXPECT_FALSE(device->setReport(kNothing)) << n;
        device.reset();
        pedal.plug();
        ASSERT_TRUE(link.waitFor(&Counts::arrivals, n + 1)) << n;
    }
    EXPECT_EQ(link.counts().arrivals, 21U);
    EXPECT_EQ(link.counts().removals, 20U);
    EXPECT_EQ(openCount(), before);
}

struct Refusal {
    const char* command;
    const char* answer;
    seconds atLeast;
    seconds lessThan;
};

class LinkRefusal : public testing::TestWithParam<Refusal> {};

TEST_P(LinkRefusal, failsTheReportAndThePedalStays) {
    const auto& [command, answer, atLeast, lessThan] = GetParam();
    PluggedPedal pedal;
    CableLink link;
    ASSERT_TRUE(link.waitFor(&Counts::arrivals, 1));
    pedal.tell(command, answer);
    const auto start = Clock::now();
    EXPECT_FALSE(send(link, kConnect));
    EXPECT_GE(Clock::now() - start, atLeast);
    EXPECT_LT(Clock::now() - start, lessThan);
    EXPECT_EQ(link.counts().removals, 0U);
    pedal.tell("go", "going");
    EXPECT_TRUE(send(link, kConnect));
    EXPECT_TRUE(link.waitFor(&Counts::reports, 1));
}

// The kernel waits five seconds for a pedal that does not answer.
INSTANTIATE_TEST_SUITE_P(, LinkRefusal,
                         testing::Values(Refusal{"hang", "hanging", seconds(5), seconds(7)},
                                         Refusal{"stall", "stalling", seconds(0), seconds(1)}),
                         [](const auto& test) { return std::string(test.param.command); });

TEST(Link, anUnplugInTheMiddleOfAReportNeitherBlocksNorLeaks) {
    PluggedPedal pedal;
    CableLink link;
    ASSERT_TRUE(link.waitFor(&Counts::arrivals, 1));
    const std::size_t before = openCount();
    for (std::size_t n = 1; n <= 5; ++n) {
        pedal.tell("hang", "hanging");
        std::promise<pid_t> thread;
        auto device = link.device();
        ASSERT_NE(device, nullptr) << n;
        auto write = std::async(std::launch::async, [&thread, device = std::move(device)] {
            thread.set_value(gettid());
            return device->setReport(kNothing);
        });
        waitUntilThreadIsIn(SYS_write, thread.get_future().get());
        const auto pulled = Clock::now();
        pedal.unplug();
        ASSERT_TRUE(link.waitFor(&Counts::removals, n)) << n;
        EXPECT_FALSE(write.get());
        EXPECT_LT(Clock::now() - pulled, seconds(2));
        pedal.tell("go", "going");
        pedal.plug();
        ASSERT_TRUE(link.waitFor(&Counts::arrivals, n + 1)) << n;
        write = {};
        EXPECT_EQ(openCount(), before) << n;
    }
}

}  // namespace
}  // namespace kelvo::test
