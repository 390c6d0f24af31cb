// Every fault of the virtual pedal against the running controller: it neither crashes nor hangs, no slot is written
// that was not asked for, and the next import works.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "AppHarness.h"
#include "LoadDataWindowController.h"
#include "SBProgressBar.h"
#include "SampleFiles.h"

namespace kelvo::test {
namespace {

using testing::IsSubsetOf;

Faults faultNamed(const std::string& name) {
    Faults faults;
    EXPECT_EQ(switchOn(name, faults), std::nullopt);
    return faults;
}

std::vector<std::string> faultNames() {
    std::vector<std::string> names;
    for (const FaultEntry& entry : faultTable()) {
        names.emplace_back(entry.name);
    }
    return names;
}

class Fault : public testing::TestWithParam<std::string> {
protected:
    QString wave(const QString& name) { return files_.write(name, WaveFile{.data = FileBytes(64, 0x40)}.bytes()); }
    static bool isUnplug() { return GetParam().starts_with("unplug"); }

    /// Waits until neither side has sent anything for a while: garbage leaves the ring at a byte per 10 ms. On a busy
    /// machine the looks of serveUntil, which are 2 ms apart, come as late as the threads that they wait for.
    static void settle(const RunningApp& app) {
        std::size_t reports = 0;
        int quietLooks = 0;
        EXPECT_TRUE(serveUntil([&] {
            const auto activity = app.manager.activity();
            const std::size_t now = activity.outputReports.size() + activity.inputReports;
            const bool isQuiet = std::exchange(reports, now) == now && activity.pendingReports == 0;
            quietLooks = isQuiet ? quietLooks + 1 : 0;
            return quietLooks >= 60;
        }));
    }
    /// The fault under test; one that counts output reports strikes in the middle of the first import.
    static Faults importFault() {
        const std::string name = GetParam();
        const bool counts = isUnplug() || name.starts_with("refuse");
        return faultNamed(counts ? name + "=6" : name == "delay" ? "delay=50" : name);
    }

    SampleDir files_;
};

TEST_P(Fault, duringTheImports_writesNoOtherSlotAndTheNextImportWorks) {
    RunningApp app;
    app.start();
    app.pedal.setFaults(importFault());
    app.importIR(3, wave("first.wav"));
    settle(app);
    app.importAMP(4, files_.write("first.amp", ampFile(std::array<std::uint32_t, 2>{5, 6})));
    settle(app);
    EXPECT_THAT(changedSlots(app.pedal), IsSubsetOf({"CAB 30", "CAB 31", "AMP 60"}));
    if (isUnplug()) {
        EXPECT_TRUE(serveUntil([&] { return app.services.alerts.size() == 1; }));
        return;
    }
    app.pedal.setFaults({});
    app.importIR(5, wave("next.wav"));
    EXPECT_TRUE(serveUntil([&] { return app.pedal.memory().cab[5].name == "NEXT"; }));
    EXPECT_EQ(app.pedal.memory().cab[5].words[0], 0x404000U);
    EXPECT_THAT(changedSlots(app.pedal), IsSubsetOf({"CAB 30", "CAB 31", "AMP 60", "CAB 32"}));
}

TEST_P(Fault, duringTheStart_leavesTheProcessUsable) {
    RunningApp app(faultNamed(GetParam()));
    app.whileLoading = [&] {
        settle(app);
        if (isUnplug()) {
            EXPECT_TRUE(serveUntil([&] { return app.services.alerts.size() == 1; }));
        }
        app.pedal.setFaults({});
        app.controller.loadWindow().progressBar()->setFloatValue(1.0);
    };
    app.start();
    EXPECT_THAT(changedSlots(app.pedal), testing::IsEmpty());
    if (!isUnplug()) {
        app.importIR(5, wave("next.wav"));
        EXPECT_TRUE(serveUntil([&] { return app.pedal.memory().cab[5].name == "NEXT"; }));
    }
}

INSTANTIATE_TEST_SUITE_P(Each, Fault, testing::ValuesIn(faultNames()), [](const auto& fault) {
    std::string name = fault.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST(FaultPair, everyPairDuringAnImport_writesNoOtherSlot) {
    const std::vector<std::string> names = faultNames();
    const SampleDir files;
    const QString path = files.write("pair.wav", WaveFile{.data = FileBytes(64, 0x40)}.bytes());
    RunningApp app;
    app.start();
    for (const std::string& first : names) {
        for (const std::string& second : names) {
            Faults faults = faultNamed(first);
            EXPECT_EQ(switchOn(second, faults), std::nullopt);
            faults.unplugAtReport = 0;
            faults.answerDelay = {};
            app.pedal.setFaults(faults);
            app.importIR(3, path);
            EXPECT_TRUE(app.manager.waitFor([](const auto& activity) { return activity.pendingReports == 0; }));
        }
    }
    EXPECT_THAT(changedSlots(app.pedal), IsSubsetOf({"CAB 30"}));
}

}  // namespace
}  // namespace kelvo::test
