#include <gtest/gtest.h>

#include <algorithm>
#include <mutex>
#include <thread>

#include "DeviceTesting.h"
#include "VirtualHidManager.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using Activity = VirtualHidManager::Activity;
using Log = std::vector<std::string>;
using Options = VirtualHidManager::Options;

bool setReport(HidDevice& device, const Bytes& report) {
    return device.setReport(std::span(report).first<64>());
}

/// A pedal on a virtual cable, and a host that notes every callback. A callback on another thread than the one inside
/// `run` fails the test.
class Bench {
public:
    explicit Bench(const Options& options = {.record = true}) : manager(pedal, options) {}
    ~Bench() {
        if (loop.joinable()) {
            finish();
        }
    }

    /// Opens the manager and serves it on a separate thread.
    void start(const HidMatching& wanted = {0x0483, 0x5703, 200}) {
        EXPECT_TRUE(
            manager.open(wanted, {.deviceMatching = [this](const auto& device) { note(numbered("arrival ", device)); },
                                  .deviceRemoval = [this](const auto& device) { note(numbered("removal ", device)); },
                                  .inputReport =
                                      [this](const auto& device, std::span<const std::uint8_t> report) {
                                          EXPECT_EQ(device, this->device());
                                          note("report " + hex(report.subspan(1, report[0])));
                                      }}));
        loop = std::thread([this] {
            runsOn_ = std::this_thread::get_id();
            manager.run();
        });
    }
    /// Plugs the pedal in, starts, and waits for its arrival.
    void connect() {
        manager.plug();
        start();
        await(&Activity::arrivals, 1);
    }
    /// Stops the manager and waits until `run` has returned.
    void finish() {
        manager.stop();
        loop.join();
    }

    void await(std::size_t Activity::*number, std::size_t count) const {
        ASSERT_TRUE(manager.waitFor([=](const Activity& seen) { return seen.*number >= count; }));
    }
    /// The events: "arrival 1", "removal 1" (numbered by device) and "report AA 55", with the counted bytes.
    [[nodiscard]] Log log() {
        const std::lock_guard lock(mutex_);
        return log_;
    }
    /// The device that was announced last, or null.
    [[nodiscard]] std::shared_ptr<HidDevice> device() {
        const std::lock_guard lock(mutex_);
        return devices_.empty() ? nullptr : devices_.back();
    }
    /// Writes a frame to that device as a host does. False at the first report that is refused.
    [[nodiscard]] bool send(const Bytes& frame) {
        const std::shared_ptr<HidDevice> to = device();
        return to &&
               std::ranges::all_of(makeReports(frame), [&](const Bytes& report) { return setReport(*to, report); });
    }

    /// The output reports that the manager had recorded when the pedal reported a change.
    std::size_t reportsAtChange = 0;
    VirtualKr310 pedal{Kr310Memory::factory(),
                       [this](std::string_view) { reportsAtChange = manager.activity().outputReports.size(); }};
    VirtualHidManager manager;
    /// Called with every event after it was noted; to be set before `start`.
    std::function<void(const std::string& event)> onEvent = [](const auto&) {};
    std::thread loop;

private:
    void note(const std::string& event) {
        EXPECT_EQ(std::this_thread::get_id(), runsOn_);
        {
            const std::lock_guard lock(mutex_);
            log_.push_back(event);
        }
        onEvent(event);
    }

    std::string numbered(const char* what, const std::shared_ptr<HidDevice>& device) {
        const std::lock_guard lock(mutex_);
        auto at = std::ranges::find(devices_, device);
        if (at == devices_.end()) {
            at = devices_.insert(at, device);
        }
        return what + std::to_string(at - devices_.begin() + 1);
    }

    std::mutex mutex_;
    Log log_;
    std::vector<std::shared_ptr<HidDevice>> devices_;
    /// Written on the thread itself, so that its callbacks may read it.
    std::thread::id runsOn_;
};

/// A bench whose host knows the pedal.
struct ConnectedBench : Bench {
    explicit ConnectedBench(const Options& options = {.record = true}) : Bench(options) { connect(); }
};

TEST(VirtualHidManager, announcesEachPlugAndUnplugOnce) {
    Bench bench;
    bench.manager.plug();
    bench.connect();
    bench.manager.plug();
    bench.manager.unplug();
    bench.manager.unplug();
    bench.await(&Activity::removals, 1);
    EXPECT_EQ(bench.log(), (Log{"arrival 1", "removal 1"}));
    bench.manager.plug();
    bench.await(&Activity::arrivals, 2);
    EXPECT_EQ(bench.log(), (Log{"arrival 1", "removal 1", "arrival 2"}));
}

TEST(VirtualHidManager, announcesNothingToAHostThatLooksForAnotherDevice) {
    for (const HidMatching& wanted :
         {HidMatching{0x0484, 0x5703, 200}, {0x0483, 0x5704, 200}, {0x0483, 0x5703, 201}, {}}) {
        Bench bench;
        bench.manager.plug();
        bench.start(wanted);
        EXPECT_FALSE(bench.manager.waitFor([](const Activity& seen) { return seen.arrivals > 0; }, milliseconds(50)));
    }
}

TEST(VirtualHidManager, findsNoDeviceWithoutOpen_andNeedsNoCallbacks) {
    VirtualKr310 pedal;
    VirtualHidManager manager(pedal);
    manager.plug();
    {
        std::jthread loop([&] { manager.run(); });
        EXPECT_FALSE(manager.waitFor([](const Activity& seen) { return seen.arrivals > 0; }, milliseconds(20)));
        manager.stop();
    }
    EXPECT_TRUE(manager.open(kKr310Identity, {}));
    std::jthread loop([&] { manager.run(); });
    EXPECT_TRUE(manager.waitFor([](const Activity& seen) { return seen.arrivals == 1; }));
    manager.unplug();
    EXPECT_TRUE(manager.waitFor([](const Activity& seen) { return seen.removals == 1; }));
    manager.stop();
}

TEST(VirtualHidManager, stop_endsTheNextRunIfNoneIsRunning) {
    Bench bench;
    bench.manager.stop();
    bench.start();
    bench.loop.join();
    EXPECT_EQ(bench.log(), Log{});
}

TEST(VirtualHidManager, stop_worksWithinEveryCallback) {
    for (const std::string where : {"arrival 1", "report", "removal 1"}) {
        Bench bench;
        bench.onEvent = [&](const std::string& event) {
            if (event.starts_with(where)) {
                bench.manager.stop();
            }
        };
        bench.connect();
        EXPECT_TRUE(bench.send(cab(3)[0]));
        if (where == "removal 1") {
            bench.manager.unplug();
        }
        bench.loop.join();
        EXPECT_TRUE(bench.log().back().starts_with(where));
    }
}

TEST(VirtualHidManager, laterRun_announcesThePedalAgain) {
    ConnectedBench bench;
    bench.finish();
    bench.start();
    bench.await(&Activity::arrivals, 2);
    EXPECT_EQ(bench.log(), (Log{"arrival 1", "arrival 1"}));
}

TEST(VirtualHidManager, letsPlugAndUnplugComeFromManyThreadsAtOnce) {
    Bench bench;
    bench.start();
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&] {
                for (int turn = 0; turn < 50; ++turn) {
                    bench.manager.plug();
                    static_cast<void>(bench.send(cab(3)[0]));
                    bench.manager.unplug();
                }
            });
        }
    }
    bench.manager.plug();
    ASSERT_TRUE(bench.manager.waitFor([](const Activity& seen) { return seen.arrivals == seen.removals + 1; }));
    bench.manager.unplug();
    ASSERT_TRUE(bench.manager.waitFor([](const Activity& seen) { return seen.arrivals == seen.removals; }));
}

TEST(VirtualHidManagerReports, carryAnImport_andAreRecorded) {
    ConnectedBench bench;
    for (const Bytes& packet : cab(3)) {
        EXPECT_TRUE(bench.send(packet));
    }
    bench.await(&Activity::inputReports, 4);
    EXPECT_EQ(bench.log(), (Log{"arrival 1", "report AA 55 02 00 E1 01 21 35", "report AA 55 02 00 E1 02 11 56",
                                "report AA 55 02 00 E1 03 01 77", "report AA 55 02 00 E1 04 71 90"}));
    const Activity activity = bench.manager.activity();
    EXPECT_EQ(activity.changes, Log{"CAB 30 <- \"MYCAB\" 512 points, crc32 844cf1f6"});
    EXPECT_EQ(bench.reportsAtChange, 27U);
    ASSERT_EQ(activity.outputReports.size(), 28U);
    EXPECT_EQ(hex(std::span(activity.outputReports[0]).first(12)), "3F AA 55 03 02 E1 03 01 10 11 12 13");
    EXPECT_EQ(hex(std::span(activity.outputReports[8]).subspan(16, 4)), "C4 BA 5C 5C");
    EXPECT_EQ(activity.outputReports[27][63], 0x5C);
}

TEST(VirtualHidManagerReports, ofAnotherDevice_areNotKeptUnlessARecordIsWanted) {
    Bench bench({.identity = {0x1209, 0x0001, 1}});
    bench.manager.plug();
    bench.start({0x1209, 0x0001, 1});
    bench.await(&Activity::arrivals, 1);
    EXPECT_TRUE(bench.send(deletion(3)));
    EXPECT_EQ(bench.manager.activity().outputReports, std::vector<Report>{});
    EXPECT_EQ(bench.manager.activity().changes, Log{});
    EXPECT_EQ(bench.pedal.memory().cab[3].name, "");
}

TEST(VirtualHidManagerReports, arePendingUntilTheHostHasReadThem) {
    Bench bench;
    std::size_t pending = 0;
    bench.onEvent = [&](const std::string& event) {
        if (event.starts_with("report") && pending == 0) {
            // Its answer is the second.
            EXPECT_TRUE(bench.send(cab(3)[1]));
            pending = bench.manager.activity().pendingReports;
        }
    };
    bench.connect();
    EXPECT_TRUE(bench.send(cab(3)[0]));
    bench.await(&Activity::inputReports, 2);
    bench.finish();
    EXPECT_EQ(pending, 2U);
}

TEST(VirtualHidManagerReports, comeWhenTheyAreDue_andAreLostByAnUnplug) {
    ConnectedBench bench;
    bench.pedal.setStartup({199, seconds(3600)});
    EXPECT_TRUE(bench.send(connectFrame()));
    EXPECT_TRUE(bench.send(cab(3)[0]));
    bench.await(&Activity::inputReports, 2);
    EXPECT_EQ(bench.manager.activity().pendingReports, 5U);
    bench.manager.unplug();
    EXPECT_EQ(bench.manager.activity().pendingReports, 0U);
    bench.await(&Activity::removals, 1);
    EXPECT_EQ(bench.log(),
              (Log{"arrival 1", "report AA 55 02 00 A5 00 F0 1C", "report AA 55 02 00 E1 01 21 35", "removal 1"}));
}

TEST(VirtualHidManagerReports, areRefusedByADeviceThatIsNotPluggedIn) {
    std::shared_ptr<HidDevice> second;
    const Bytes report = makeReport(connectFrame());
    {
        ConnectedBench bench;
        const std::shared_ptr<HidDevice> first = bench.device();
        bench.manager.unplug();
        EXPECT_FALSE(setReport(*first, report));
        EXPECT_EQ(bench.manager.activity().refusedReports, 1U);
        EXPECT_TRUE(bench.manager.activity().outputReports.empty());
        bench.manager.plug();
        bench.await(&Activity::arrivals, 2);
        second = bench.device();
        EXPECT_FALSE(setReport(*first, report));
        EXPECT_TRUE(setReport(*second, report));
    }
    EXPECT_FALSE(setReport(*second, report)) << "the manager is gone";
}

TEST(VirtualHidManagerReports, areRefusedByFaults) {
    for (const char* fault : {"refuse=2", "protocol-error=2", "no-answer=2"}) {
        ConnectedBench bench;
        bench.pedal.setFaults(faultsOf(fault));
        EXPECT_FALSE(bench.send(cab(3)[0])) << fault;
        EXPECT_EQ(bench.manager.activity().outputReports.size(), 1U);
        EXPECT_EQ(bench.manager.activity().refusedReports, 1U);
        EXPECT_EQ(bench.manager.activity().removals, 0U);
        EXPECT_TRUE(bench.send(connectFrame())) << fault;
    }
}

TEST(VirtualHidManagerReports, unplugThePedalByAFault_atThatReportOfEachPlug) {
    ConnectedBench bench;
    bench.pedal.setFaults({.unplugAtReport = 2});
    for (const std::size_t turn : {1U, 2U}) {
        EXPECT_TRUE(bench.send(connectFrame()));
        EXPECT_FALSE(bench.send(connectFrame()));
        bench.await(&Activity::removals, turn);
        EXPECT_EQ(bench.manager.activity().outputReports.size(), turn);
        bench.manager.plug();
        bench.await(&Activity::arrivals, turn + 1);
    }
}

TEST(VirtualHidManagerReports, keepTheWirePaceInBothDirections_andTheDelayOfTheAnswer) {
    ConnectedBench bench({.wirePace = milliseconds(3)});
    bench.pedal.setFaults(faultsOf("split=1 delay=30"));
    const steady_clock::time_point begin = steady_clock::now();
    EXPECT_TRUE(bench.send(cab(3)[0]));
    EXPECT_GE(steady_clock::now() - begin, milliseconds(8 * 3));
    bench.await(&Activity::inputReports, 8);
    EXPECT_GE(steady_clock::now() - begin, milliseconds(8 * 3 + 30 + 7 * 3));
}

TEST(VirtualHidManagerReports, waitingForTheWire_areRefusedByAnUnplug) {
    ConnectedBench bench({.wirePace = seconds(3600), .record = true});
    std::jthread host([&] { EXPECT_FALSE(bench.send(deletion(3))); });
    EXPECT_TRUE(bench.manager.waitFor([](const Activity& seen) { return seen.outputReports.size() == 1; }));
    bench.manager.unplug();
    EXPECT_TRUE(bench.manager.waitFor([](const Activity& seen) { return seen.refusedReports == 1; }));
}

}  // namespace
}  // namespace kelvo
