#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "AMPFile.h"
#include "AppHarness.h"
#include "LoadDataWindowController.h"
#include "LogListener.h"
#include "SBProgressBar.h"
#include "ScriptedLink.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DeviceCommands : public testing::Test {
protected:
    DeviceCommands() { EXPECT_TRUE(link_.attach()); }

    /// A frame as the unpacker hands it on: zeros where `data` ends.
    void receive(std::uint8_t command, const std::string& data) {
        std::array<std::uint8_t, kFrameBufferSize> frame{0xAA, 0x55, 0, 0, command};
        std::copy(data.begin(), data.end(), frame.begin() + 5);
        controller_.CMD_CallBack(frame);
    }
    void acknowledge(std::uint8_t command, char phase) { receive(command, std::string(1, phase)); }

    /// Command, slot and phase of each frame sent so far; all data packets are 521 bytes long and name packets 19.
    std::vector<std::vector<int>> sentPackets() {
        std::vector<std::vector<int>> packets;
        const std::vector<std::uint8_t> bytes = link_.device->sentBytes();
        for (std::size_t at = 0; at < bytes.size();) {
            packets.push_back({bytes[at + 4], bytes[at + 5], bytes[at + 6]});
            at += bytes[at + 3] == 2 ? 521 : 19;
        }
        return packets;
    }

    ScriptedLink link_;
    ScriptedServices services_;
    KelvoAppDelegate controller_{link_.manager, services_.functions()};
};

TEST_F(DeviceCommands, cabNames_endAtTheirFirstNulAndLoseBitSeven) {
    receive(0x85, std::string("cab1\0\0\0\0\0\0"
                              "\0\0\0\0\0\0\0\0\0\0"
                              "\xC1"
                              "bc\0\0\0\0\0\0\0"
                              "abcdefghij"
                              "ab\x80"
                              "cd",
                              45));
    EXPECT_EQ(controller_.IRNameArr(),
              (QStringList{"27.CAB1", "28.", "29.ABC", "30.ABCDEFGHIJ", "31.AB", "32.", "33.", "34.", "35.", "36."}));
    EXPECT_EQ(controller_.AMPNameArr(), QStringList(10, QString()));
    // The table shows them from its next reload on.
    EXPECT_EQ(controller_.tableView_objectValueForTableColumn_row(1, 0, 0), "27.CAB1");
}

TEST_F(DeviceCommands, ampNames_keepTenBytesAndLogThePartialNameOncePerByte) {
    std::vector<std::string> lines;
    const LogListener listener([&](std::string_view line) { lines.emplace_back(line); });
    receive(0xE3, std::string("a\0b\x80\xFF\x01\x1F\x7F~z", 10) + std::string(80, '\0') + "Clean     ");
    EXPECT_EQ(controller_.AMPNameArr()[0], QString::fromUtf8("56.A B\u00B7\u00B7\x01\x1F\x7F~Z"));
    EXPECT_EQ(controller_.AMPNameArr()[9], "65.CLEAN     ");
    EXPECT_EQ(controller_.AMPNameArr().size(), 10);
    ASSERT_EQ(lines.size(), 100U);
    EXPECT_EQ(lines[0], "a");
    EXPECT_EQ(lines[9], "a b\u00B7\u00B7\x01\x1F\x7F~z");
    EXPECT_EQ(lines[90], "C");
    EXPECT_EQ(lines[99], "Clean     ");
}

TEST_F(DeviceCommands, acknowledgements_sendTheNextPhaseAndTheLastOfEitherKindEndsTheIRsPhase) {
    for (const int phase : {1, 2, 3}) {
        acknowledge(0xE1, static_cast<char>(phase));
        EXPECT_EQ(controller_.transferState().IRTick, phase + 1);
    }
    acknowledge(0xE1, 4);
    EXPECT_EQ(controller_.transferState().IRTick, 0);
    for (const int phase : {1, 2, 3, 4}) {
        acknowledge(0xE2, static_cast<char>(phase));
        EXPECT_EQ(controller_.transferState().AMPTick, phase + 1);
    }
    acknowledge(0xE1, 1);
    acknowledge(0xE2, 5);
    EXPECT_EQ(controller_.transferState().AMPTick, 5);
    EXPECT_EQ(controller_.transferState().IRTick, 0);
    // The interrupted IR transfer continues: its next acknowledgement says where it is.
    acknowledge(0xE1, 2);
    EXPECT_THAT(sentPackets(), ElementsAre(ElementsAre(0xE1, 0, 2), ElementsAre(0xE1, 0, 3), ElementsAre(0xE1, 0, 4),
                                           ElementsAre(0xE2, 0, 2), ElementsAre(0xE2, 0, 3), ElementsAre(0xE2, 0, 4),
                                           ElementsAre(0xE2, 0, 5), ElementsAre(0xE1, 0, 2), ElementsAre(0xE1, 0, 3)));
}

TEST_F(DeviceCommands, otherCommandsAndPhases_doNothing) {
    for (const int command : {0x00, 0xE0, 0xE4, 0xFF, 0x84, 0x86, 0xA4}) {
        receive(static_cast<std::uint8_t>(command), "\x01");
    }
    for (const int phase : {0, 6, 128, 255}) {
        acknowledge(0xE1, static_cast<char>(phase));
        acknowledge(0xE2, static_cast<char>(phase));
    }
    EXPECT_THAT(sentPackets(), IsEmpty());
    EXPECT_EQ(controller_.IRNameArr(), QStringList(10, QString()));
    EXPECT_EQ(controller_.AMPNameArr(), QStringList(10, QString()));
    EXPECT_EQ(controller_.PRESET_PARAValue(), 0);
}

TEST(Progress, setsTheBarOfTheLoadingWindow) {
    // The bar refuses what is over 199 and keeps the 50 that came before.
    const std::pair<std::uint8_t, double> rows[] = {
        {0, 0.0}, {100, 100.0 / 199.0}, {198, 198.0 / 199.0}, {200, 50.0 / 199.0}, {255, 50.0 / 199.0}, {199, 1.0}};
    RunningApp app({.silentFromPhase = 0});
    app.whileLoading = [&] {
        for (const auto& [value, shown] : rows) {
            std::array<std::uint8_t, kFrameBufferSize> frame{0xAA, 0x55, 0x02, 0x00, 0xA5, 50};
            app.controller.CMD_CallBack(frame);
            frame[5] = value;
            app.controller.CMD_CallBack(frame);
            EXPECT_EQ(app.controller.PRESET_PARAValue(), value);
            EXPECT_EQ(app.controller.loadWindow().progressBar()->floatValue(), shown);
            EXPECT_TRUE(app.controller.loadWindow().window()->isVisible());
        }
        app.controller.loadWindow().progressBar()->setFloatValue(1.0);
    };
    app.start();
}

}  // namespace
}  // namespace kelvo::test
