// What a row shows of the transfers into it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QVariantAnimation>

#include "Driver.h"
#include "FileImports.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

double share(const SlotTableView& table, int row) {
    return table.model()->index(row, 0).data(SlotTableModel::kShareRole).toDouble();
}

using RowTransfer = FileImports;

TEST_F(RowTransfer, ofACab_isSentWhenItsFourPacketsAreAcknowledged) {
    app_.importIR(3, wave("a.wav"));
    ASSERT_TRUE(serveUntil([&] { return cab_.findChild<QVariantAnimation*>() != nullptr; }));
    EXPECT_EQ(state(cab_, 3), SlotState::Sent);
    EXPECT_THAT(rowsThatAre(SlotState::Idle, cab_), ElementsAre(0, 1, 2, 4, 5, 6, 7, 8, 9));
    EXPECT_EQ(rowsThatAre(SlotState::Idle, amp_).size(), 10U);
}

TEST_F(RowTransfer, ofAnAmp_isSentThoughItsPhaseStaysFive) {
    app_.importAMP(8, amp("b.amp"));
    ASSERT_TRUE(serveUntil([&] { return state(amp_, 8) == SlotState::Sent; }));
    EXPECT_EQ(app_.controller.transferState().AMPTick, 5);
    EXPECT_EQ(rowsThatAre(SlotState::Idle, cab_).size(), 10U);
}

TEST_F(RowTransfer, ofARefusedFileOrACancelledChooser_isNothing) {
    app_.importIR(4, files_.write("bad.wav", FileBytes(100, 'x')));
    app_.importAMP(4, files_.write("bad.amp", FileBytes(100, 'x')));
    app_.services.choice.clear();
    app_.controller.importIrButtonClick();
    QCoreApplication::processEvents();
    EXPECT_EQ(rowsThatAre(SlotState::Idle, cab_).size(), 10U);
    EXPECT_EQ(rowsThatAre(SlotState::Idle, amp_).size(), 10U);
}

/// The test gives the pedal's answers.
class HandFedTransfer : public FileImports {
protected:
    HandFedTransfer() : FileImports({.silentFromPhase = 1}) {}

    void deleteRow(int row) {
        cab_.selectRow(row);
        app_.controller.deleteCAB();
        app_.services.alerts.back().answer(kAlertFirstButtonReturn);
    }
};

TEST_F(HandFedTransfer, unrequestedAcknowledgements_changeNothing) {
    acknowledge({0, 1, 2, 3, 4, 5});
    acknowledge({0, 1, 2, 3, 4, 5}, 0xE2);
    EXPECT_EQ(rowsThatAre(SlotState::Idle, cab_).size(), 10U);
    EXPECT_EQ(rowsThatAre(SlotState::Idle, amp_).size(), 10U);
}

TEST_F(HandFedTransfer, growsByAQuarterWithEachAcknowledgementInTurn) {
    app_.importIR(3, wave("a.wav"));
    EXPECT_EQ(share(cab_, 3), 0.0);
    acknowledge({0});
    EXPECT_EQ(share(cab_, 3), 0.0);
    for (const std::uint8_t phase : {1, 2, 3}) {
        acknowledge({phase, phase});
        EXPECT_EQ(share(cab_, 3), phase / 4.0);
        EXPECT_EQ(state(cab_, 3), SlotState::Running);
    }
    acknowledge({4});
    EXPECT_EQ(state(cab_, 3), SlotState::Sent);
    acknowledge({4});
    EXPECT_EQ(state(cab_, 3), SlotState::Sent);
}

TEST_F(HandFedTransfer, ofAnAmp_growsByAFifth) {
    app_.importAMP(3, amp("a.amp"));
    acknowledge({1, 2}, 0xE2);
    EXPECT_EQ(share(amp_, 3), 0.4);
    EXPECT_TRUE(
        amp_.model()->index(3, 0).data(Qt::AccessibleDescriptionRole).toString().startsWith("40 % sent: a.amp"));
}

TEST_F(HandFedTransfer, thatAnotherImportReplaces_isCutOffUntilTheRowsNextImport) {
    app_.importIR(3, wave("a.wav"));
    acknowledge({1, 2});
    app_.importIR(4, wave("b.wav"));
    EXPECT_EQ(state(cab_, 3), SlotState::CutOff);
    EXPECT_EQ(state(cab_, 4), SlotState::Running);
    acknowledge({1, 2, 3, 4});
    EXPECT_EQ(state(cab_, 3), SlotState::CutOff);
    app_.importIR(3, wave("c.wav"));
    EXPECT_EQ(state(cab_, 3), SlotState::Running);
}

TEST_F(HandFedTransfer, whosePacketsComeOutOfTurn_isCutOff) {
    app_.importIR(3, wave("a.wav"));
    acknowledge({1});
    app_.importIR(4, wave("b.wav"));
    // The first one's answer moves the second.
    acknowledge({2});
    EXPECT_EQ(state(cab_, 4), SlotState::CutOff);
    acknowledge({1, 2, 3, 4});
    EXPECT_EQ(state(cab_, 4), SlotState::CutOff);
}

TEST_F(HandFedTransfer, whoseEndTheWindowHasNotHandled_isNotShownAsTheOneBefore) {
    app_.importIR(3, wave("a.wav"));
    acknowledge({1, 2, 3, 4});
    app_.importIR(3, wave("b.wav"));
    receive({3, 1, 2, 3, 4});
    EXPECT_EQ(state(cab_, 3), SlotState::CutOff);
    QCoreApplication::processEvents();
    EXPECT_EQ(state(cab_, 3), SlotState::CutOff);
    app_.importIR(3, wave("c.wav"));
    receive({1, 2, 3, 4});
    EXPECT_EQ(state(cab_, 3), SlotState::Sent);
}

TEST_F(HandFedTransfer, ofACab_goesOnWhereTheLastAmpPacketZeroesItsPhase) {
    app_.importIR(3, wave("a.wav"));
    acknowledge({1});
    acknowledge({5}, 0xE2);
    EXPECT_EQ(app_.controller.transferState().IRTick, 0);
    acknowledge({2});
    EXPECT_EQ(share(cab_, 3), 0.5);
}

TEST_F(HandFedTransfer, whoseRestGoesToAnotherSlot_isCutOff) {
    app_.importIR(3, wave("a.wav"));
    acknowledge({1});
    app_.importAMP(8, amp("b.amp"));
    EXPECT_EQ(state(cab_, 3), SlotState::Running);
    acknowledge({2, 3, 4});
    EXPECT_EQ(state(cab_, 3), SlotState::CutOff);
    EXPECT_EQ(state(cab_, 8), SlotState::Idle);
}

TEST_F(HandFedTransfer, thatHasSentItsLastPacket_isSentThoughTheSlotNumberHasChanged) {
    app_.importIR(4, wave("a.wav"));
    acknowledge({1, 2, 3});
    app_.importAMP(8, amp("b.amp"));
    app_.importIR(6, files_.write("bad.wav", FileBytes(100, 'x')));
    acknowledge({4});
    EXPECT_EQ(state(cab_, 4), SlotState::Sent);
}

TEST_F(HandFedTransfer, withoutAnAnswerForThreeSeconds_saysSoUntilTheAnswerComes) {
    app_.importIR(3, wave("a.wav"));
    acknowledge({1});
    EXPECT_EQ(state(cab_, 3), SlotState::Running);
    ASSERT_TRUE(serveUntil([&] { return state(cab_, 3) == SlotState::NotAnswering; }));
    EXPECT_EQ(share(cab_, 3), 0.25);
    EXPECT_THAT(app_.services.alerts, IsEmpty());
    acknowledge({2});
    EXPECT_EQ(state(cab_, 3), SlotState::Running);
}

TEST_F(HandFedTransfer, intoARowThatIsDeletedMeanwhile_bringsItsLabelBackWithTheNamePacket) {
    app_.importIR(3, wave("a.wav"));
    acknowledge({1});
    deleteRow(3);
    EXPECT_EQ(app_.cabLabel(3), "30EMPTY");
    EXPECT_EQ(state(cab_, 3), SlotState::Running);
    acknowledge({2});
    EXPECT_EQ(app_.cabLabel(3), "30EMPTY");
    acknowledge({3});
    EXPECT_EQ(app_.cabLabel(3), "30.A");
    EXPECT_EQ(cab_.model()->index(3, 0).data(), "30.A");
    acknowledge({4});
    EXPECT_EQ(state(cab_, 3), SlotState::Sent);
}

TEST_F(HandFedTransfer, intoARowThatIsDeletedAfterTheNamePacket_leavesItEmpty) {
    app_.importIR(3, wave("a.wav"));
    acknowledge({1, 2, 3});
    deleteRow(3);
    acknowledge({4});
    EXPECT_EQ(app_.cabLabel(3), "30EMPTY");
    EXPECT_EQ(state(cab_, 3), SlotState::Idle);
    EXPECT_EQ(cab_.model()->index(3, 0).data(Qt::AccessibleDescriptionRole), "");
}

TEST_F(HandFedTransfer, intoARowThatIsDeletedAfterItsEnd_leavesNoMark) {
    app_.importIR(3, wave("a.wav"));
    acknowledge({1, 2, 3, 4});
    deleteRow(3);
    EXPECT_EQ(state(cab_, 3), SlotState::Idle);
    EXPECT_FALSE(button("nextIR").isEnabled());
}

TEST_F(HandFedTransfer, withoutASelectedRow_isNoRows) {
    cab_.clearSelection();
    app_.services.choice = QUrl::fromLocalFile(wave("a.wav"));
    app_.controller.importIrButtonClick();
    acknowledge({1});
    EXPECT_EQ(rowsThatAre(SlotState::Idle, cab_).size(), 10U);
}

}  // namespace
}  // namespace kelvo::test
