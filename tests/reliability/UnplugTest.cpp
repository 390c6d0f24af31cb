// The cable is pulled at every output report, and before every acknowledgement, of both transfers and of a deletion.
// The alert comes, its button ends the process with status 0, and no slot is written that was not asked for.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RVHidClass.h"
#include "ReliabilityApp.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

using testing::IsEmpty;
using testing::IsSubsetOf;

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

struct Action {
    const char* name;
    std::uint32_t reports;
    std::uint8_t acknowledgements;
    const char* slot;
    void (*act)(RunningApp& app, const SampleDir& files);
};

const Action kActions[] = {
    {"IRImport", 28, 4, "CAB 30",
     [](RunningApp& app, const SampleDir& files) { app.importIR(3, files.write("a.wav", waveOf(0x123456))); }},
    {"AmpImport", 37, 5, "AMP 60",
     [](RunningApp& app, const SampleDir& files) { app.importAMP(4, files.write("a.amp", ampOf(0x12345678))); }},
    {"Deletion", 9, 0, "CAB 27",
     [](RunningApp& app, const SampleDir&) {
         app.controller.ImportIRTableV().selectRow(0);
         app.controller.deleteCAB();
         app.services.alerts.back().answer(kAlertFirstButtonReturn);
         app.services.alerts.clear();
     }},
};

class Unplugged : public testing::TestWithParam<Action> {};

TEST_P(Unplugged, atEachOutputReport_bringsTheAlertAndWritesNothing) {
    const SampleDir files;
    for (std::uint32_t k = 1; k <= GetParam().reports; ++k) {
        RunningApp app;
        startQuickly(app);
        Faults faults;
        faults.unplugAtReport = triedReports(app) + k;
        app.pedal.setFaults(faults);
        GetParam().act(app, files);
        expectTheEnd(app);
        EXPECT_EQ(triedReports(app), 1 + k);
        EXPECT_THAT(changedSlots(app.pedal), IsEmpty()) << k;
    }
}

TEST_P(Unplugged, beforeEachAcknowledgement_bringsTheAlertAndWritesTheAskedSlotAtMost) {
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
        EXPECT_EQ(changedSlots(app.pedal),
                  complete ? std::vector<std::string>{GetParam().slot} : std::vector<std::string>{});
    }
}

INSTANTIATE_TEST_SUITE_P(During, Unplugged, testing::ValuesIn(kActions),
                         [](const auto& action) { return std::string(action.param.name); });

}  // namespace
}  // namespace kelvo::test
