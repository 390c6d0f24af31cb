// Start-up, imports and deletion over the kernel's own USB stack.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CableApp.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const QString kSamples = QStringLiteral(KELVO_SAMPLES "/");

QStringList rows(const SlotTableView& table) {
    QStringList texts;
    for (int row = 0; row < 10; ++row) {
        texts.append(table.model()->index(row, 0).data().toString());
    }
    return texts;
}

TEST(Session, startUpFillsBothTables) {
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
}

TEST(Session, leavesInThePedalWhatItImportedAndNothingElse) {
    PluggedPedal pedal;
    CableApp app(pedal);
    app.start();
    app.importIR(9, kSamples + "Bright.wav");
    EXPECT_TRUE(pedal.says("CAB 36 <- \"BRIGHT\" 512 points, crc32 a0a36dee"));
    app.importAMP(2, kSamples + "Lead.amp");
    EXPECT_TRUE(pedal.says("AMP 58 <- \"Lead\" 512 words, crc32 f3d57e0b"));
    app.deleteCAB(3);
    EXPECT_TRUE(pedal.says("CAB 30 cleared"));
    EXPECT_EQ(rows(app.controller.ImportIRTableV()).at(9), "36.BRIGHT");
    EXPECT_EQ(rows(app.controller.ImportCabTableV()).at(2), "58.LEAD");
    EXPECT_EQ(rows(app.controller.ImportIRTableV()).at(3), "30EMPTY");
    EXPECT_THAT(pedal.memory(),
                ElementsAre("CAB 27 \"OPEN 1X12\" crc32 f1cf3378", "CAB 28 \"CLOSED2X12\" crc32 f1cf3378",
                            "CAB 29 \"VINTAGE412\" crc32 f1cf3378", "CAB 30 \"\" crc32 6c1ce17e",
                            "CAB 31 \"TWEED 1X8\" crc32 f1cf3378", "CAB 32 \"\" crc32 6c1ce17e",
                            "CAB 33 \"BASS 4X10\" crc32 f1cf3378", "CAB 34 \"\" crc32 6c1ce17e",
                            "CAB 35 \"ACOUSTIC\" crc32 f1cf3378", "CAB 36 \"BRIGHT\" crc32 a0a36dee",
                            "AMP 56 \"CLEAN\" crc32 f1e8ba9e", "AMP 57 \"CRUNCH\" crc32 f1e8ba9e",
                            "AMP 58 \"Lead\" crc32 f3d57e0b", "AMP 59 \"EDGE DRIVE\" crc32 f1e8ba9e",
                            "AMP 60 \"HIGH GAIN\" crc32 f1e8ba9e", "AMP 61 \"\" crc32 f1e8ba9e",
                            "AMP 62 \"JAZZ\" crc32 f1e8ba9e", "AMP 63 \"BASS\" crc32 f1e8ba9e",
                            "AMP 64 \"\" crc32 f1e8ba9e", "AMP 65 \"\" crc32 f1e8ba9e"));
}

}  // namespace
}  // namespace kelvo::test
