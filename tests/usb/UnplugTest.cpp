// The cable pulled while the utility loads, sends, waits and is idle.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>

#include "CableApp.h"
#include "LoadDataWindowController.h"
#include "RVHidClass.h"
#include "ServeEvents.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;

constexpr auto kOldSlot = "CAB 27 \"OPEN 1X12\" crc32 f1cf3378";

/// The alert is there, its button ends the process, and nothing can be sent any more.
void expectEnd(CableApp& app) {
    ASSERT_TRUE(serveUntil([&] { return !app.services.alerts.empty(); }));
    ASSERT_EQ(app.services.alerts.size(), 1U);
    const Alert& shown = app.services.alerts[0].alert;
    EXPECT_EQ(shown.messageText, "No device connected. Please connected your KR310");
    EXPECT_EQ(shown.buttons, QStringList{"Exit"});
    EXPECT_EQ(shown.style, AlertStyle::Critical);
    EXPECT_FALSE(isOpenDevice);
    std::array<std::uint8_t, 8> frame{0xAA, 0x55, 0x02, 0x00, 0xE0};
    EXPECT_FALSE(HID_WreteData(frame.data(), frame.size()));
    EXPECT_THAT(app.services.exits, testing::IsEmpty());
    app.services.alerts[0].answer(kAlertFirstButtonReturn);
    EXPECT_THAT(app.services.exits, ElementsAre(0));
}

/// The percentage that the loading window shows.
int percentage(const KelvoAppDelegate& controller) {
    const QLabel* const label = controller.loadWindow().loadDataLabel();
    return label != nullptr ? label->text().chopped(1).toInt() : 0;
}

TEST(Unplug, whileLoading) {
    PluggedPedal pedal;
    CableApp app(pedal, 50);
    app.whileLoading = [&] {
        EXPECT_TRUE(serveUntil([&] { return percentage(app.controller) >= 5; }));
        pedal.unplug();
        expectEnd(app);
        EXPECT_LT(percentage(app.controller), 100);
        stopModal();
    };
    app.start();
    EXPECT_THAT(app.services.exits, ElementsAre(0));
}

// The connect frame is one report, a packet nine: the sixth report is the fifth of the first packet.
TEST(Unplug, betweenTwoReportsOfAPacket) {
    PluggedPedal pedal;
    CableApp app(pedal);
    app.start();
    pedal.tell("fault unplug=6", "fault unplug=6");
    app.importIR(0, kWave);
    EXPECT_TRUE(pedal.says("unplugged: by a fault"));
    expectEnd(app);
    EXPECT_EQ(pedal.memory().at(0), kOldSlot);
}

TEST(Unplug, betweenTwoPhases) {
    PluggedPedal pedal;
    CableApp app(pedal);
    app.start();
    pedal.tell("fault silent=2", "fault silent=2");
    app.importIR(0, kWave);
    // The first phase is acknowledged, the second goes out and is not.
    ASSERT_TRUE(serveUntil([&] { return app.controller.transferState().IRTick == 2; }));
    pedal.unplug();
    expectEnd(app);
    EXPECT_EQ(pedal.memory().at(0), kOldSlot);
}

TEST(Unplug, andPluggedInAgain_isNotUsedByTheSameRunButByTheNext) {
    PluggedPedal pedal;
    {
        CableApp app(pedal);
        app.start();
        pedal.unplug();
        expectEnd(app);
        pedal.plug();
        EXPECT_FALSE(serveUntil([] { return isOpenDevice.load(); }, std::chrono::milliseconds(300)));
    }
    CableApp next(pedal);
    next.start();
    EXPECT_EQ(next.controller.IRNameArr().first(), "27.OPEN 1X12");
}

}  // namespace
}  // namespace kelvo::test
