// The cable is pulled at every output report, and before every acknowledgement, of both transfers, of a set of
// files and of a deletion. The alert comes, its button ends the process with status 0, and no slot is written that was
// not asked for.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Driver.h"
#include "FileDrag.h"
#include "RVHidClass.h"
#include "ReliabilityApp.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

using testing::IsEmpty;

void expectTheEnd(RunningApp& app) {
    ASSERT_TRUE(serveUntil([&] { return !app.services.alerts.empty(); }));
    EXPECT_EQ(app.services.alerts.size(), 1U);
    EXPECT_EQ(app.services.alerts[0].alert.messageText, "No device connected. Please connected your KR310");
    EXPECT_EQ(app.services.alerts[0].alert.buttons, QStringList{"Exit"});
    EXPECT_FALSE(isOpenDevice);
    EXPECT_THAT(app.services.exits, IsEmpty());
    app.services.alerts[0].answer(kAlertFirstButtonReturn);
    EXPECT_THAT(app.services.exits, testing::ElementsAre(0));
}

std::vector<Action> actions() {
    std::vector<Action> actions = singleActions();
    actions.push_back({"SetOfWaves", 28, 4, {"CAB 34", "CAB 35"}, [](RunningApp& app, const SampleDir& files) {
                           drop(app.controller.ImportIRTableV(), 7,
                                {QUrl::fromLocalFile(files.write("a.wav", waveOf(0x123456))),
                                 QUrl::fromLocalFile(files.write("b.wav", waveOf(0x234567))),
                                 QUrl::fromLocalFile(files.write("c.wav", waveOf(0x345678)))});
                       }});
    return actions;
}

class Unplugged : public testing::TestWithParam<Action> {};

TEST_P(Unplugged, atEachOutputReport_bringsTheAlertAndWritesWhatWasCompleteBefore) {
    const SampleDir files;
    const auto& written = GetParam().written;
    for (std::uint32_t k = 1; k <= GetParam().reports * written.size(); ++k) {
        RunningApp app;
        startQuickly(app);
        Faults faults;
        faults.unplugAtReport = triedReports(app) + k;
        app.pedal.setFaults(faults);
        GetParam().act(app, files);
        expectTheEnd(app);
        EXPECT_EQ(triedReports(app), 1 + k);
        const auto complete = static_cast<std::ptrdiff_t>((k - 1) / GetParam().reports);
        EXPECT_EQ(changedSlots(app.pedal), std::vector(written.begin(), written.begin() + complete)) << k;
    }
}

TEST_P(Unplugged, beforeEachAcknowledgement_showsTheAlertAndWritesOneSlotAtMost) {
    const SampleDir files;
    for (std::uint8_t phase = 1; phase <= GetParam().acknowledgements; ++phase) {
        RunningApp app;
        startQuickly(app);
        Faults faults;
        faults.silentFromPhase = phase;
        app.pedal.setFaults(faults);
        GetParam().act(app, files);
        // 9 reports for each packet of data, one for the name, and one before them at the start.
        const std::size_t sent = phase == GetParam().acknowledgements ? GetParam().reports + 1U : phase * 9U + 1U;
        ASSERT_TRUE(app.manager.waitFor([&](const auto& activity) { return activity.outputReports.size() == sent; }));
        app.manager.unplug();
        expectTheEnd(app);
        const bool complete = phase == GetParam().acknowledgements;
        EXPECT_EQ(changedSlots(app.pedal), complete ? std::vector{GetParam().written[0]} : std::vector<std::string>{});
    }
}

INSTANTIATE_TEST_SUITE_P(During, Unplugged, testing::ValuesIn(actions()),
                         [](const auto& action) { return std::string(action.param.name); });

}  // namespace
}  // namespace kelvo::test
