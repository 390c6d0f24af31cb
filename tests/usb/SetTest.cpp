// Sets and steps over the kernel's USB stack; the pedal prints every output report that it gets.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>

#include "CableApp.h"
#include "Driver.h"
#include "FileDrag.h"
#include "SampleFiles.h"
#include "SlotTableModel.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

/// A wave of 512 points that are different in each file.
FileBytes waveOf(std::uint32_t number) {
    WaveFile wave{.bitsPerSample = 24};
    for (std::uint32_t i = 0; i < 512; ++i) {
        append(wave.data, number * 0x010203U + i * 0x011D3BU, 3);
    }
    return wave.bytes();
}

class FilesInARow : public testing::Test {
protected:
    FilesInARow() {
        app_.start();
        pedal_.tell("reports", "reporting");
    }

    /// Whether that transfer ends, and no other has begun.
    bool hasEnded(std::uint64_t transfer) {
        return serveUntil([&] {
            const TransferProgress& progress = app_.controller.transferState().IRProgress;
            return progress.number == transfer && progress.acknowledged == 4;
        });
    }

    static SlotState state(const SlotTableView& table, int row) {
        return table.model()->index(row, 0).data(SlotTableModel::kStateRole).value<SlotState>();
    }

    SampleDir files_;
    PluggedPedal pedal_;
    CableApp app_{pedal_};
};

TEST_F(FilesInARow, setOfTen_sendsTheReportsOfTenImports) {
    QList<QUrl> dropped;
    for (std::uint32_t i = 1; i <= 10; ++i) {
        dropped.append(QUrl::fromLocalFile(files_.write(QString("Set %1.wav").arg(i), waveOf(i))));
    }
    ASSERT_TRUE(drop(app_.controller.ImportIRTableV(), 0, dropped));
    ASSERT_TRUE(hasEnded(10));
    const auto ofTheSet = pedal_.takeReports();
    EXPECT_EQ(ofTheSet.size(), 280U);
    for (int row = 0; row < 10; ++row) {
        app_.importIR(row, dropped[row].toLocalFile());
        ASSERT_TRUE(hasEnded(11 + static_cast<std::uint64_t>(row)));
    }
    EXPECT_EQ(pedal_.takeReports(), ofTheSet);
    EXPECT_THAT(pedal_.memory(), testing::Contains(testing::StartsWith("CAB 36 \"SET 10\"")));
}

TEST_F(FilesInARow, step_sendsTheReportsOfAnImport) {
    const QString first = files_.write("a.wav", waveOf(1));
    const QString second = files_.write("b.wav", waveOf(2));
    app_.importIR(4, first);
    ASSERT_TRUE(hasEnded(1));
    EXPECT_EQ(pedal_.takeReports().size(), 28U);
    QWidget& window = app_.controller.window();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&app_.controller.ImportIRTableV(), Qt::Key_Down, Qt::ControlModifier);
    ASSERT_TRUE(hasEnded(2));
    const auto ofTheKey = pedal_.takeReports();
    EXPECT_EQ(ofTheKey.size(), 28U);
    app_.importIR(4, second);
    ASSERT_TRUE(hasEnded(3));
    EXPECT_EQ(pedal_.takeReports(), ofTheKey);
}

TEST_F(FilesInARow, dropDuringASlowTransfer_waitsForItsEnd) {
    pedal_.tell("fault delay=300", "fault delay=300");
    SlotTableView& table = app_.controller.ImportIRTableV();
    ASSERT_TRUE(drop(table, 1, {QUrl::fromLocalFile(files_.write("a.wav", waveOf(1)))}));
    ASSERT_TRUE(drop(table, 7, {QUrl::fromLocalFile(files_.write("b.wav", waveOf(2)))}));
    EXPECT_EQ(state(table, 7), SlotState::Waiting);
    ASSERT_TRUE(hasEnded(2));
    ASSERT_TRUE(serveUntil([&] { return state(table, 7) == SlotState::Sent; }));
    EXPECT_EQ(state(table, 1), SlotState::Sent);
    EXPECT_THAT(pedal_.memory(),
                testing::IsSupersetOf({testing::StartsWith("CAB 28 \"A\""), testing::StartsWith("CAB 34 \"B\"")}));
}

TEST_F(FilesInARow, transfer_endsInItsOwnRow) {
    pedal_.tell("fault delay=300", "fault delay=300");
    app_.importIR(4, files_.write("a.wav", waveOf(1)));
    ASSERT_TRUE(serveUntil([&] { return app_.controller.transferState().IRProgress.acknowledged == 3; }));
    app_.importAMP(8, files_.write("b.amp", ampFile(std::array<std::uint32_t, 1>{7})));
    ASSERT_TRUE(hasEnded(1));
    EXPECT_EQ(state(app_.controller.ImportIRTableV(), 4), SlotState::Sent);
    ASSERT_TRUE(serveUntil([&] { return state(app_.controller.ImportCabTableV(), 8) == SlotState::Sent; }));
    EXPECT_THAT(pedal_.memory(),
                testing::IsSupersetOf({testing::StartsWith("CAB 31 \"A\""), testing::StartsWith("AMP 64 \"b\"")}));
}

}  // namespace
}  // namespace kelvo::test
