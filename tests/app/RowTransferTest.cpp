// What a row says of the transfer into it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <utility>

#include "AppHarness.h"
#include "SampleFiles.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

QVariant share(const SlotTableView& table, int row) {
    return table.model()->index(row, 0).data(SlotTableModel::kTransferRole);
}

/// Each row's share of its transfer as the table hears of it; -1 where there is none any more.
class Shares {
public:
    explicit Shares(const SlotTableView& table) {
        QObject::connect(table.model(), &QAbstractItemModel::dataChanged, &context_,
                         [this, &table](const QModelIndex& cell, const QModelIndex&, const QList<int>& roles) {
                             if (roles.contains(SlotTableModel::kTransferRole)) {
                                 const QVariant now = share(table, cell.row());
                                 heard.emplace_back(cell.row(), now.isValid() ? now.toDouble() : -1);
                             }
                         });
    }
    std::vector<std::pair<int, double>> heard;

private:
    QObject context_;
};

class RowTransfer : public testing::Test {
protected:
    explicit RowTransfer(const Faults& faults = {}) : app_(faults) { app_.start(); }

    QString wave() const { return files_.write(QStringLiteral("a.wav"), WaveFile{.data = FileBytes(8, 1)}.bytes()); }
    QString amp() const { return files_.write(QStringLiteral("b.amp"), ampFile(std::array<std::uint32_t, 1>{7})); }
    void acknowledge(std::uint8_t command, std::uint8_t phase) {
        app_.controller.CMD_CallBack(std::array<std::uint8_t, kFrameBufferSize>{0xAA, 0x55, 2, 0, command, phase});
    }
    /// All that the receive thread has told so far has been shown.
    static void serve() { QCoreApplication::processEvents(); }

    SampleDir files_;
    RunningApp app_;
    SlotTableView& cab_ = app_.controller.ImportIRTableV();
    SlotTableView& amp_ = app_.controller.ImportCabTableV();
    Shares cabShares_{cab_};
    Shares ampShares_{amp_};
};

TEST_F(RowTransfer, ofACab_growsByAQuarterWithEachAcknowledgementAndIsFullOnce) {
    app_.importIR(3, wave());
    ASSERT_TRUE(serveUntil([&] { return cabShares_.heard.size() == 5; }));
    EXPECT_THAT(cabShares_.heard, ElementsAre(Pair(3, 0.0), Pair(3, 0.25), Pair(3, 0.5), Pair(3, 0.75), Pair(3, 1.0)));
    EXPECT_FALSE(share(cab_, 3).isValid());
    EXPECT_THAT(ampShares_.heard, IsEmpty());
}

TEST_F(RowTransfer, ofAnAmp_growsByAFifthAndLeavesNothingThoughItsPhaseStaysFive) {
    app_.importAMP(8, amp());
    ASSERT_TRUE(serveUntil([&] { return ampShares_.heard.size() == 6; }));
    EXPECT_THAT(ampShares_.heard,
                ElementsAre(Pair(8, 0.0), Pair(8, 0.2), Pair(8, 0.4), Pair(8, 0.6), Pair(8, 0.8), Pair(8, 1.0)));
    EXPECT_EQ(app_.controller.transferState().AMPTick, 5);
    EXPECT_FALSE(share(amp_, 8).isValid());
    EXPECT_THAT(cabShares_.heard, IsEmpty());
}

TEST_F(RowTransfer, ofARefusedFileOrACancelledChooser_isNothing) {
    app_.importIR(4, files_.write(QStringLiteral("bad.wav"), FileBytes(100, 'x')));
    app_.importAMP(4, files_.write(QStringLiteral("bad.amp"), FileBytes(100, 'x')));
    app_.services.choice.clear();
    app_.controller.importIrButtonClick();
    serve();
    EXPECT_THAT(cabShares_.heard, IsEmpty());
    EXPECT_THAT(ampShares_.heard, IsEmpty());
}

TEST_F(RowTransfer, nobodyAskedFor_isNothing) {
    for (const std::uint8_t phase : {0, 1, 2, 3, 4, 5}) {
        acknowledge(0xE1, phase);
        acknowledge(0xE2, phase);
    }
    serve();
    EXPECT_THAT(cabShares_.heard, IsEmpty());
    EXPECT_THAT(ampShares_.heard, IsEmpty());
}

/// The pedal keeps silent, so that the test gives its answers.
class HandFedTransfer : public RowTransfer {
protected:
    HandFedTransfer() : RowTransfer({.silentFromPhase = 1}) {}

    void feed(std::uint8_t command, std::uint8_t phase) {
        acknowledge(command, phase);
        serve();
    }
};

TEST_F(HandFedTransfer, thatStopsHalfWay_keepsItsShareUntilTheNextOneBegins) {
    app_.importIR(3, wave());
    serve();
    EXPECT_EQ(share(cab_, 3), 0.0);
    feed(0xE1, 1);
    feed(0xE1, 2);
    EXPECT_EQ(share(cab_, 3), 0.5);
    EXPECT_EQ(cab_.model()->index(3, 0).data(Qt::AccessibleDescriptionRole), "50 % sent");
    EXPECT_FALSE(cab_.model()->index(4, 0).data(Qt::AccessibleDescriptionRole).isValid());
    cabShares_.heard.clear();
    app_.importIR(4, wave());
    serve();
    EXPECT_THAT(cabShares_.heard, ElementsAre(Pair(3, -1.0), Pair(4, 0.0)));
}

TEST_F(HandFedTransfer, isNotMovedByWhatComesOutOfTurn) {
    app_.importIR(3, wave());
    feed(0xE1, 0);
    feed(0xE1, 2);
    feed(0xE1, 4);
    EXPECT_EQ(share(cab_, 3), 0.0);
    feed(0xE1, 1);
    feed(0xE1, 1);
    EXPECT_EQ(share(cab_, 3), 0.25);
    feed(0xE1, 0);
    feed(0xE1, 7);
    EXPECT_EQ(share(cab_, 3), 0.25);
}

TEST_F(HandFedTransfer, ofACabGoesOnWhereTheLastAmpPacketZeroesItsPhase) {
    app_.importIR(3, wave());
    feed(0xE1, 1);
    feed(0xE2, 5);
    EXPECT_EQ(app_.controller.transferState().IRTick, 0);
    EXPECT_EQ(share(cab_, 3), 0.25);
    feed(0xE1, 2);
    EXPECT_EQ(share(cab_, 3), 0.5);
}

TEST_F(HandFedTransfer, whoseRestGoesToAnotherSlot_neverBecomesFull) {
    app_.importIR(3, wave());
    feed(0xE1, 1);
    app_.importAMP(8, amp());
    for (const std::uint8_t phase : {2, 3, 4}) {
        feed(0xE1, phase);
    }
    EXPECT_EQ(share(cab_, 3), 0.25);
    EXPECT_FALSE(share(cab_, 8).isValid());
}

TEST_F(HandFedTransfer, withoutASelectedRow_isNoRows) {
    cab_.clearSelection();
    app_.services.choice = QUrl::fromLocalFile(wave());
    app_.controller.importIrButtonClick();
    feed(0xE1, 1);
    EXPECT_THAT(cabShares_.heard, IsEmpty());
}

}  // namespace
}  // namespace kelvo::test
