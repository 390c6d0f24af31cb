// Every output report of every action of the user is refused once. Nothing else is written, and the next import works.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ReliabilityApp.h"

namespace kelvo::test {
namespace {

using testing::IsSubsetOf;

class RefusedReport : public testing::TestWithParam<Action> {
protected:
    RefusedReport() { startQuickly(app_); }

    /// `act` while the k-th report from now on is refused.
    template <typename Act>
    void refuse(std::uint32_t k, Act act) {
        Faults faults;
        faults.refuseReport = triedReports(app_) + k;
        app_.pedal.setFaults(faults);
        act();
        ++refused_;
        ASSERT_TRUE(app_.manager.waitFor([this](const auto& activity) { return activity.refusedReports == refused_; }))
            << k;
        app_.pedal.setFaults({});
        ASSERT_TRUE(settle(app_)) << k;
    }
    /// A sound import into CAB slot 5 must come through, point by point.
    void importNext(std::uint32_t k) {
        const std::uint32_t point = 0x400000 + k;
        app_.importIR(5, files_.write(QStringLiteral("next%1.wav").arg(k), waveOf(point)));
        const std::string name = "NEXT" + std::to_string(k);
        ASSERT_TRUE(serveUntil([&] { return app_.pedal.memory().cab[5].name == name; })) << k;
        EXPECT_THAT(app_.pedal.memory().cab[5].words, testing::Each(point)) << k;
        ASSERT_TRUE(serveUntil([&] { return app_.controller.transferState().IRTick == 0; }));
    }

    SampleDir files_;
    RunningApp app_;
    std::size_t refused_ = 0;
};

TEST_P(RefusedReport, leavesTheActionUnfinishedAndTheNextImportWorks) {
    for (std::uint32_t k = 1; k <= GetParam().reports; ++k) {
        refuse(k, [this] { GetParam().act(app_, files_); });
        EXPECT_THAT(changedSlots(app_.pedal), IsSubsetOf({"CAB 32"})) << k;
        importNext(k);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, RefusedReport, testing::ValuesIn(singleActions()),
                         [](const auto& action) { return std::string(action.param.name); });

TEST(RefusedStart, leavesAProcessThatTheNextImportWorksIn) {
    const SampleDir files;
    RunningApp app({.refuseReport = 1});
    startQuickly(app);
    EXPECT_EQ(app.manager.activity().refusedReports, 1U);
    app.importIR(5, files.write("next.wav", waveOf(0x42)));
    ASSERT_TRUE(app.waitForChanges(1));
    EXPECT_THAT(changedSlots(app.pedal), testing::ElementsAre("CAB 32"));
}

TEST(WhatIsHeld, isTheSameAfterASessionWithImportsAndAnUnplug) {
    const SampleDir files;
    const QString path = files.write("a.wav", waveOf(1));
    const auto session = [&](bool unplug) {
        RunningApp app;
        startQuickly(app);
        app.importIR(3, path);
        ASSERT_TRUE(app.waitForChanges(1));
        if (unplug) {
            app.manager.unplug();
            ASSERT_TRUE(serveUntil([&] { return app.services.alerts.size() == 1; }));
        }
    };
    session(false);  // the toolkit's own, which it keeps
    const Holdings before = holdings();
    session(false);
    session(true);
    const Holdings after = holdings();
    EXPECT_EQ(after.descriptors, before.descriptors);
    EXPECT_EQ(after.threads, before.threads);
}

}  // namespace
}  // namespace kelvo::test
