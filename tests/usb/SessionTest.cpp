// Start-up, imports, a deletion and a failing bus over the kernel's own USB stack.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "CableApp.h"
#include "RVHidClass.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

QStringList rows(const SlotTableView& table) {
    QStringList texts;
    for (int row = 0; row < 10; ++row) {
        texts.append(table.model()->index(row, 0).data().toString());
    }
    return texts;
}

TEST(Session, fillsBothTables_andLeavesInThePedalWhatItImportedAndNothingElse) {
    PluggedPedal pedal;
    CableApp app(pedal);
    app.start();
    EXPECT_THAT(app.services.sleeps, ElementsAre(2, 1));
    EXPECT_THAT(app.services.alerts, IsEmpty());
    EXPECT_THAT(rows(app.controller.ImportIRTableV()),
                ElementsAre("27.OPEN 1X12", "28.CLOSED2X12", "29.VINTAGE412", "30.MODERN 412", "31.TWEED 1X8", "32.",
                            "33.BASS 4X10", "34.", "35.ACOUSTIC", "36."));
    EXPECT_THAT(rows(app.controller.ImportCabTableV()),
                ElementsAre("56.CLEAN     ", "57.CRUNCH    ", "58.LEAD      ", "59.EDGE DRIVE", "60.HIGH GAIN ",
                            "61.          ", "62.JAZZ      ", "63.BASS      ", "64.          ", "65.          "));

    auto memory = pedal.memory();
    app.importIR(9, kWave);
    EXPECT_TRUE(pedal.says("CAB 36 <- \"BRIGHT\" 512 points, crc32 a0a36dee"));
    app.importAMP(2, QStringLiteral(KELVO_SAMPLES "/Lead.amp"));
    EXPECT_TRUE(pedal.says("AMP 58 <- \"Lead\" 512 words, crc32 f3d57e0b"));
    app.deleteCAB(3);
    EXPECT_TRUE(pedal.says("CAB 30 cleared"));
    EXPECT_EQ(rows(app.controller.ImportIRTableV()).at(9), "36.BRIGHT");
    EXPECT_EQ(rows(app.controller.ImportCabTableV()).at(2), "58.LEAD");
    EXPECT_EQ(rows(app.controller.ImportIRTableV()).at(3), "30EMPTY");
    memory.at(3) = "CAB 30 \"\" crc32 6c1ce17e";
    memory.at(9) = "CAB 36 \"BRIGHT\" crc32 a0a36dee";
    memory.at(12) = "AMP 58 \"Lead\" crc32 f3d57e0b";
    EXPECT_EQ(pedal.memory(), memory);
}

/// A fault that strikes once. The connect frame is one report, a packet nine: this is the fourth of the second packet.
class BusError : public testing::TestWithParam<std::string> {};

TEST_P(BusError, duringATransfer_endsNothing_nextImportIsComplete) {
    PluggedPedal pedal;
    CableApp app(pedal);
    app.start();
    const std::string fault = "fault " + GetParam() + "=14";
    pedal.tell(fault, fault);
    app.importIR(0, kWave);
    ASSERT_TRUE(serveUntil([&] { return app.controller.transferState().IRTick == 2; }));
    // Waits for the write that is held up, if it is.
    app.importIR(1, kWave);
    EXPECT_TRUE(pedal.says("CAB 28 <- \"BRIGHT\" 512 points, crc32 a0a36dee"));
    EXPECT_TRUE(isOpenDevice);
    EXPECT_THAT(app.services.alerts, IsEmpty());
    EXPECT_EQ(pedal.memory().at(0), "CAB 27 \"OPEN 1X12\" crc32 f1cf3378");
}

INSTANTIATE_TEST_SUITE_P(, BusError, testing::Values("protocol-error", "refuse", "no-answer"));

}  // namespace
}  // namespace kelvo::test
